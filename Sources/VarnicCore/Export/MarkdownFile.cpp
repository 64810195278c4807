#include "VarnicCore/Export/MarkdownFile.h"

#include "VarnicCore/Export/MarkdownImport.h"
#include "VarnicCore/Text/Unicode.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace varnic::MarkdownFile {

namespace {

constexpr std::string_view fence = "---";

/// Takes the first line off the text.
std::string_view takeLine(std::string_view& text) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.ends_with('\r')) {
        line.remove_suffix(1);
    }
    return line;
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// The key of a line "key: value" that is not indented; empty for any other line.
std::string_view keyOf(std::string_view line) {
    const std::size_t colon = line.find(':');
    const bool ends = colon != std::string_view::npos && (colon + 1 == line.size() || line[colon + 1] == ' ');
    const std::string_view key = ends ? line.substr(0, colon) : std::string_view();
    const bool isWord = std::ranges::all_of(key, [](char c) {
        return isDigit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == '-' || c == '.';
    });
    return isWord ? key : std::string_view();
}

/// Whether the line can stand in a front matter: a key, what goes with the one before, a comment or nothing.
bool isOfFrontMatter(std::string_view line) {
    return !keyOf(line).empty() || line.empty() || line.front() == ' ' || line.front() == '\t' ||
           line.starts_with("- ") || line == "-" || line.front() == '#';
}

/// A plain or quoted scalar of one line; nothing for anything else.
std::optional<std::string> scalar(std::string_view line) {
    const std::string_view value = Unicode::trimBlanks(line.substr(line.find(':') + 1));
    const bool isQuoted =
        value.size() > 1 && (value.front() == '"' || value.front() == '\'') && value.back() == value[0];
    if (!isQuoted) {
        // These begin what is more than a text, and " #" a comment.
        const bool isPlain =
            !value.empty() && std::string_view("|>[{&*!%@`\"'#").find(value.front()) == std::string::npos;
        return isPlain ? std::optional(std::string(Unicode::trimBlanks(value.substr(0, value.find(" #")))))
                       : std::nullopt;
    }
    std::string text;
    for (std::size_t i = 1; i + 1 < value.size(); ++i) {
        // In single quotes a quote is doubled; in double quotes a backslash stands before it, and before a backslash.
        const bool isEscape = i + 2 < value.size() &&
                              (value[0] == '\'' ? value.substr(i, 2) == "''"
                                                : value[i] == '\\' && (value[i + 1] == '"' || value[i + 1] == '\\'));
        i += isEscape ? 1 : 0;
        text += value[i];
    }
    return text;
}

struct FrontMatter {
    std::optional<std::string> title;
    std::optional<Date> created;
    /// The other lines.
    std::string rest;
};

/// Takes a front matter off the text, if it begins with one.
std::optional<FrontMatter> takeFrontMatter(std::string_view& text, const Region& region) {
    std::string_view left = text;
    if (Unicode::trimEnd(takeLine(left), Unicode::isBlank) != fence) {
        return std::nullopt;
    }
    FrontMatter matter;
    bool hasKeys = false;
    while (!left.empty()) {
        const std::string_view line = takeLine(left);
        const std::string_view trimmed = Unicode::trimEnd(line, Unicode::isBlank);
        if (trimmed == fence || trimmed == "...") {
            text = hasKeys ? left : text;
            return hasKeys ? std::optional(std::move(matter)) : std::nullopt;
        }
        if (!isOfFrontMatter(line)) {
            return std::nullopt;
        }
        const std::string key = Unicode::lowerCased(keyOf(line));
        hasKeys = hasKeys || !key.empty();
        const std::optional<std::string> value = key.empty() ? std::nullopt : scalar(line);
        const bool isDate = key == "date" || key == "created";
        const std::optional<Date> moment = isDate && value ? region.moment(*value) : std::nullopt;
        if (key == "title" && value && !matter.title) {
            matter.title = value;
        } else if (moment && !matter.created) {
            matter.created = moment;
        } else {
            matter.rest.append(line).append("\n");
        }
    }
    return std::nullopt;
}

/// The columns of white space in front of the line; a tab goes to the next multiple of four.
std::size_t indentation(std::string_view line) {
    constexpr std::size_t tab = 4;
    std::size_t columns = 0;
    for (const char c : line) {
        if (c != ' ' && c != '\t') {
            break;
        }
        columns += c == ' ' ? 1 : tab - columns % tab;
    }
    return columns;
}

bool isListItem(std::string_view trimmed) {
    const std::size_t digits = std::min(trimmed.find_first_not_of("0123456789"), trimmed.size());
    const std::string_view mark = trimmed.substr(digits, 2);
    return digits == 0 ? mark == "- " || mark == "* " || mark == "+ " : mark == ". " || mark == ") ";
}

/// Goes through the lines and counts.
class Counter {
public:
    Simplified count(std::string_view text) {
        while (!text.empty()) {
            take(takeLine(text));
        }
        return counted_;
    }

private:
    void take(std::string_view line) {
        const std::string_view trimmed = Unicode::trimBlanks(line);
        const std::size_t columns = indentation(line);
        if (trimmed.empty()) {
            isBehindBlank_ = true;
            return;
        }
        if (!fence_.empty() || trimmed.starts_with("```") || trimmed.starts_with("~~~")) {
            takeCode(trimmed, columns);
        } else if (isListItem(trimmed) && (listAt_ || columns < indentedCode)) {
            counted_.nestedItems += listAt_ && columns >= *listAt_ + leastStep ? 1U : 0U;
            listAt_ = std::min(columns, listAt_.value_or(columns));
        } else if (!listAt_ && columns >= indentedCode && (isBehindBlank_ || isInCode_)) {
            ++counted_.codeLines;
            isInCode_ = true;
            return;
        } else if (columns == 0) {
            listAt_.reset();
        }
        isBehindBlank_ = false;
        isInCode_ = false;
    }

    /// A line from the fence of a block of code to the one that ends it.
    void takeCode(std::string_view trimmed, std::size_t columns) {
        if (fence_.empty()) {
            fence_ = trimmed.substr(0, 3);
            fenceAt_ = columns;
        } else if (trimmed.starts_with(fence_) && trimmed.find_first_not_of(fence_.front()) == std::string_view::npos) {
            fence_ = {};
        } else {
            counted_.codeLines += columns > fenceAt_ ? 1U : 0U;
        }
    }

    /// Columns.
    static constexpr std::size_t indentedCode = 4;
    static constexpr std::size_t leastStep = 2;

    Simplified counted_;
    /// Where the outermost list begins, while one goes on.
    std::optional<std::size_t> listAt_;
    /// What ends the block of code; empty outside of one.
    std::string_view fence_;
    std::size_t fenceAt_ = 0;
    bool isBehindBlank_ = true;
    bool isInCode_ = false;
};

} // namespace

Contents read(std::string_view text, const Region& region) {
    const std::optional<FrontMatter> matter = takeFrontMatter(text, region);
    MarkdownImport::Document document = MarkdownImport::blocks(text);
    Contents contents{.title = document.title,
                      .created = std::nullopt,
                      .blocks = std::move(document.blocks),
                      .simplified = Counter().count(text)};
    if (!matter) {
        return contents;
    }
    contents.created = matter->created;
    if (matter->title && document.title && matter->title != document.title) {
        contents.blocks.insert(contents.blocks.begin(), Block{.kind = BlockKind::heading, .text = *document.title});
    }
    contents.title = matter->title ? matter->title : document.title;
    MarkdownImport::Document rest = MarkdownImport::blocks(matter->rest);
    contents.blocks.insert(contents.blocks.begin(), std::move_iterator(rest.blocks.begin()),
                           std::move_iterator(rest.blocks.end()));
    return contents;
}

} // namespace varnic::MarkdownFile
