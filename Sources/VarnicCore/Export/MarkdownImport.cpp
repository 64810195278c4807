#include "VarnicCore/Export/MarkdownImport.h"

#include "VarnicCore/Text/Unicode.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace varnic::MarkdownImport {

namespace {

// The patterns below are matched by hand: a regular expression of ICU keeps a stack that a line of megabytes
// overflows, or looks at such a line again from every place in it.

/// What follows the prefix; nothing when the line begins otherwise.
std::optional<std::string_view> after(std::string_view line, std::string_view beginning) {
    if (!line.starts_with(beginning)) {
        return std::nullopt;
    }
    return line.substr(beginning.size());
}

/// Undoes the export's escaping.
std::string cleaned(std::string_view text) {
    return std::string(after(text, "\\").value_or(text));
}

/// The lines of the text, trimmed of blanks. CR LF ends a line as LF does.
std::vector<std::string_view> trimmedLines(std::string_view text) {
    std::vector<std::string_view> lines;
    while (true) {
        const std::size_t end = text.find('\n');
        std::string_view line = text.substr(0, end);
        if (end != std::string_view::npos && line.ends_with('\r')) {
            line.remove_suffix(1);
        }
        lines.push_back(Unicode::trimBlanks(line));
        if (end == std::string_view::npos) {
            return lines;
        }
        text.remove_prefix(end + 1);
    }
}

/// Whether a pattern's "$" matches in front of this: nothing, or one last newline.
bool isEnd(std::string_view rest) {
    constexpr auto ends =
        std::to_array<std::string_view>({"", "\n", "\v", "\f", "\r", "\r\n", "\u0085", "\u2028", "\u2029"});
    return std::ranges::find(ends, rest) != ends.end();
}

/// The text without its last match of "\s+_\([^)]*\)_$": the tag with owner and due phrase.
std::string withoutTag(std::string_view text) {
    const std::size_t close = text.rfind(")_");
    if (close == std::string_view::npos || !isEnd(text.substr(close + 2))) {
        return std::string(text);
    }
    // The tag holds no other ")", so it begins behind the one before: at the first "_(" there that follows a space.
    const std::size_t before = close == 0 ? std::string_view::npos : text.rfind(')', close - 1);
    const std::size_t begin = before == std::string_view::npos ? 0 : before + 1;
    const std::string_view inside = text.substr(begin, close - begin);
    for (std::size_t open = inside.find("_("); open != std::string_view::npos; open = inside.find("_(", open + 1)) {
        const std::size_t kept = Unicode::trimEnd(inside.substr(0, open), Unicode::isSpace).size();
        if (kept < open) {
            return std::string(text.substr(0, begin + kept)).append(text.substr(close + 2));
        }
    }
    return std::string(text);
}

Block textBlock(BlockKind kind, std::string text) {
    Block block;
    block.kind = kind;
    block.text = std::move(text);
    return block;
}

/// A to-do, when the line begins as "^[-*] \[( |x|X)\] " says.
std::optional<Block> todo(std::string_view line) {
    for (const std::string_view mark : {"- [", "* ["}) {
        const auto rest = after(line, mark);
        if (rest && rest->size() >= 3 && rest->substr(1, 2) == "] " &&
            (rest->front() == ' ' || rest->front() == 'x' || rest->front() == 'X')) {
            Block block = textBlock(BlockKind::todo, cleaned(withoutTag(rest->substr(3))));
            block.done = rest->front() != ' ';
            return block;
        }
    }
    return std::nullopt;
}

std::optional<Block> quoteOrHeading(std::string_view line) {
    constexpr std::array<std::pair<std::string_view, BlockKind>, 4> beginnings{{
        {"### ", BlockKind::subheading},
        {"## ", BlockKind::heading},
        {"# ", BlockKind::heading},
        {"> ", BlockKind::quote},
    }};
    for (const auto& [beginning, kind] : beginnings) {
        if (const auto rest = after(line, beginning)) {
            return textBlock(kind, std::string(*rest));
        }
    }
    return std::nullopt;
}

std::optional<Block> bullet(std::string_view line) {
    const auto dash = after(line, "- ");
    const auto rest = dash ? dash : after(line, "* ");
    return rest ? std::optional(textBlock(BlockKind::bullet, cleaned(*rest))) : std::nullopt;
}

/// What one line says on its own.
Block lineBlock(std::string_view line) {
    if (auto block = quoteOrHeading(line)) {
        return std::move(*block);
    }
    if (auto block = todo(line)) {
        return std::move(*block);
    }
    if (auto block = bullet(line)) {
        return std::move(*block);
    }
    if (line == "---" || line == "***") {
        return textBlock(BlockKind::divider, {});
    }
    return textBlock(BlockKind::paragraph, cleaned(line));
}

/// Whether a cell matches "^:?-{3,}:?$".
bool isSeparator(std::string_view cell) {
    cell = after(cell, ":").value_or(cell);
    const std::size_t dashes = std::min(cell.find_first_not_of('-'), cell.size());
    cell.remove_prefix(dashes);
    return dashes >= 3 && isEnd(after(cell, ":").value_or(cell));
}

/// Goes through the lines; a question and a table take more than one.
class Reader {
public:
    explicit Reader(std::string_view text) : lines_(trimmedLines(text)) {}

    Document read() {
        Document document;
        while (next_ < lines_.size()) {
            const std::string_view line = lines_[next_++];
            if (line.empty()) {
                continue;
            }
            const auto title = after(line, "# ");
            if (title && !document.title && document.blocks.empty()) {
                document.title = *title;
            } else {
                document.blocks.push_back(block(line));
            }
        }
        return document;
    }

private:
    Block block(std::string_view line) {
        if (const auto front = after(line, "**Q:**")) {
            return flashcard(*front);
        }
        return line.starts_with('|') ? table(line) : lineBlock(line);
    }

    Block flashcard(std::string_view front) {
        std::string back;
        if (next_ < lines_.size()) {
            if (const auto answer = after(lines_[next_], "**A:**")) {
                back = cleaned(Unicode::trimBlanks(*answer));
                ++next_;
            }
        }
        return Block::flashcard(cleaned(Unicode::trimBlanks(front)), std::move(back));
    }

    Block table(std::string_view line) {
        std::vector<std::vector<std::string>> rows;
        while (true) {
            std::vector<std::string> cells = splitRow(line);
            if (!std::ranges::all_of(cells, isSeparator)) {
                rows.push_back(std::move(cells));
            }
            if (next_ == lines_.size() || !lines_[next_].starts_with('|')) {
                return Block::table(std::move(rows));
            }
            line = lines_[next_++];
        }
    }

    std::vector<std::string_view> lines_;
    std::size_t next_ = 0;
};

} // namespace

Document blocks(std::string_view text) {
    return Reader(text).read();
}

std::vector<std::string> splitRow(std::string_view line) {
    line = after(line, "|").value_or(line);
    if (line.ends_with('|') && !line.ends_with("\\|")) {
        line.remove_suffix(1);
    }
    std::vector<std::string> cells(1);
    for (const char c : line) {
        if (c == '|' && cells.back().ends_with('\\')) {
            cells.back().back() = '|';
        } else if (c == '|') {
            cells.emplace_back();
        } else {
            cells.back() += c;
        }
    }
    for (std::string& cell : cells) {
        cell = Unicode::trimBlanks(cell);
    }
    return cells;
}

} // namespace varnic::MarkdownImport
