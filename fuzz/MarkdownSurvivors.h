#pragma once

#include "VarnicCore/Models/Block.h"
#include "VarnicCore/Text/Unicode.h"

#include <unicode/regex.h>

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

/// Which blocks come back from Markdown as they went in. The format has fixed shapes and hardly any escaping, so some
/// texts cannot: each condition below says what happens to the others.
namespace varnic::MarkdownSurvivors {

/// The text without the tag of a to-do, by the pattern itself.
inline std::string withoutTag(const std::string& text) {
    static const std::unique_ptr<icu::RegexPattern> pattern = [] {
        UErrorCode status = U_ZERO_ERROR;
        std::unique_ptr<icu::RegexPattern> made(icu::RegexPattern::compile(uR"(\s+_\([^)]*\)_$)", 0, status));
        return U_FAILURE(status) != 0 ? throw std::runtime_error("bad pattern") : std::move(made);
    }();
    UErrorCode status = U_ZERO_ERROR;
    const icu::UnicodeString wide = Unicode::utf16(text);
    const std::unique_ptr<icu::RegexMatcher> matcher(pattern->matcher(wide, status));
    if (matcher->find() == 0) {
        return text;
    }
    return Unicode::utf8(matcher->replaceFirst({}, status));
}

/// A newline starts another block; blanks at the end are trimmed; CR in front of the newline becomes part of it.
inline bool fitsOneLine(std::string_view text) {
    return text.find('\n') == std::string_view::npos && !text.ends_with('\r') &&
           Unicode::trimEnd(text, Unicode::isBlank) == text;
}

/// A backslash in front is taken for escaping.
inline bool isUnescaped(std::string_view text) {
    return !text.starts_with('\\');
}

/// What follows nothing but the line's own beginning or none at all is trimmed of blanks on both sides.
inline bool fitsTrimmed(std::string_view text) {
    return fitsOneLine(text) && isUnescaped(text) && Unicode::trimBlanks(text) == text;
}

/// "- [ ] a" is a to-do, whatever it was.
inline bool looksLikeTodo(std::string_view text) {
    return text.starts_with("[ ] ") || text.starts_with("[x] ") || text.starts_with("[X] ");
}

/// Short rows are padded, cells trimmed, newlines become spaces, and a row of dashes is taken for the separator.
inline bool survives(const std::vector<std::vector<std::string>>& rows) {
    const auto keepsCell = [](const std::string& cell) {
        return !Unicode::any(cell, Unicode::isNewline) && Unicode::trimBlanks(cell) == cell;
    };
    const auto isDashes = [](const std::string& cell) {
        const std::string_view inner = Unicode::trim(cell, [](char32_t c) { return c == U':'; });
        return !inner.empty() && inner.find_first_not_of('-') == std::string_view::npos;
    };
    return !rows.empty() && std::ranges::all_of(rows, [&](const auto& row) {
        return !row.empty() && row.size() == rows.front().size() && std::ranges::all_of(row, keepsCell) &&
               !std::ranges::all_of(row, isDashes);
    });
}

/// `tag` is what the export writes behind the text of a to-do.
inline bool survives(const Block& block, const std::string& tag = {}) {
    const std::string& text = block.text;
    switch (block.kind) {
    case BlockKind::paragraph:
        // An empty line is no block, and a bar in front makes a table.
        return fitsTrimmed(text) && !text.empty() && !text.starts_with('|');
    case BlockKind::heading:
    case BlockKind::subheading:
    case BlockKind::quote:
        // Without a text, "## " is trimmed to "##", a paragraph.
        return fitsOneLine(text) && !text.empty();
    case BlockKind::bullet:
        return fitsOneLine(text) && isUnescaped(text) && !text.empty() && !looksLikeTodo(text);
    case BlockKind::todo:
        // "- [ ] " is trimmed to "- [ ]", a bullet; and a text that ends like a tag, or runs into it, loses its end.
        return fitsOneLine(text + tag) && isUnescaped(text) && !(text + tag).empty() && withoutTag(text + tag) == text;
    case BlockKind::flashcard:
        return fitsTrimmed(text) && fitsTrimmed(block.back);
    case BlockKind::table:
        return survives(block.rows);
    case BlockKind::divider:
        return true;
    }
    return false;
}

} // namespace varnic::MarkdownSurvivors
