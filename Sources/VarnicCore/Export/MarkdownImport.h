#pragma once

#include "VarnicCore/Models/Block.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Reads Markdown line by line: the shapes that the export writes and the common forms around them, without nesting or
/// inline formatting. What it does not know becomes a paragraph, so that no text is lost. Any bytes are read, in time
/// linear in their number. Any thread.
namespace varnic::MarkdownImport {

struct Document {
    /// The first heading of the first level, when no block stands before it.
    std::optional<std::string> title;
    std::vector<Block> blocks;

    bool operator==(const Document&) const = default;
};

Document blocks(std::string_view text);

/// The cells of one table line, trimmed of blanks; "\|" is a bar inside a cell. Never empty.
std::vector<std::string> splitRow(std::string_view line);

} // namespace varnic::MarkdownImport
