#pragma once

#include "VarnicCore/Models/Block.h"

#include <string>
#include <string_view>
#include <vector>

/// Text from the clipboard on its way into a note. Any thread.
namespace varnic::PastedText {

/// The text in well-formed UTF-8, with "\n" for every form of line break and without control characters but tabs.
std::string cleaned(std::string_view text);

/// The blocks that the Markdown means; a title is a heading.
std::vector<Block> fromMarkdown(const std::string& cleaned);

/// The blocks that the lines mean when typed or in Markdown; lines with the same number of tabs are a table. Other
/// lines stay as they are, indentation included.
std::vector<Block> fromPlainText(const std::string& cleaned);

} // namespace varnic::PastedText
