#pragma once

#include "VarnicCore/Models/Block.h"
#include "VarnicCore/Models/Date.h"
#include "VarnicCore/Models/Region.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// A Markdown file on its way into the library: MarkdownImport's blocks, and what they don't hold. Any thread.
namespace varnic::MarkdownFile {

/// What a note cannot hold, in numbers of lines.
struct Simplified {
    /// Items of lists in lists, which have become items of one list.
    std::size_t nestedItems = 0;
    /// Lines of code that have lost their indentation.
    std::size_t codeLines = 0;

    [[nodiscard]] bool isAny() const { return nestedItems + codeLines > 0; }

    Simplified& operator+=(const Simplified& other) {
        nestedItems += other.nestedItems;
        codeLines += other.codeLines;
        return *this;
    }

    bool operator==(const Simplified&) const = default;
};

struct Contents {
    /// As the front matter says or else the first heading.
    std::optional<std::string> title;
    /// As the front matter says.
    std::optional<Date> created;
    std::vector<Block> blocks;
    Simplified simplified;
};

/// Takes title and date ("date" or "created", ISO 8601; in the region's zone where it names none) out of a front matter
/// in YAML. Whatever else that says stays, in front of the text. A heading that another title displaces stays a
/// heading.
Contents read(std::string_view text, const Region& region);

} // namespace varnic::MarkdownFile
