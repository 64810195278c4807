#include "VarnicCore/Editor/PastedText.h"

#include "VarnicCore/Editor/TypedForms.h"
#include "VarnicCore/Export/MarkdownImport.h"
#include "VarnicCore/Text/Unicode.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <utility>

namespace varnic::PastedText {

namespace {

std::vector<std::string_view> linesOf(std::string_view text) {
    std::vector<std::string_view> lines;
    while (true) {
        const std::size_t end = text.find('\n');
        lines.push_back(text.substr(0, end));
        if (end == std::string_view::npos) {
            return lines;
        }
        text.remove_prefix(end + 1);
    }
}

std::vector<std::string> cellsOf(std::string_view line) {
    std::vector<std::string> cells;
    while (true) {
        const std::size_t end = line.find('\t');
        cells.emplace_back(Unicode::trimBlanks(line.substr(0, end)));
        if (end == std::string_view::npos) {
            return cells;
        }
        line.remove_prefix(end + 1);
    }
}

std::ptrdiff_t tabsIn(std::string_view line) {
    return std::ranges::count(line, '\t');
}

/// Whether this is what word processors put in front of an item and a tab.
bool isListMark(std::string_view cell) {
    constexpr auto marks = std::to_array<std::string_view>({"•", "·", "▪", "◦", "-", "–", "*"});
    const std::size_t digits = std::min(cell.find_first_not_of("0123456789"), cell.size());
    const bool isNumber = digits > 0 && (cell.substr(digits) == "." || cell.substr(digits) == ")");
    return isNumber || std::ranges::find(marks, cell) != marks.end();
}

/// The line with one blank between its mark and the item; nothing for a line that is none.
std::optional<std::string> listItem(std::string_view line) {
    const std::size_t tab = line.find('\t');
    const std::string_view mark = line.substr(0, tab);
    if (tab == std::string_view::npos || !isListMark(mark)) {
        return std::nullopt;
    }
    const bool isBullet = mark.find_first_of("0123456789") == std::string_view::npos;
    return std::string(isBullet ? "•" : mark).append(" ").append(Unicode::trimBlanks(line.substr(tab)));
}

/// A to-do without text, which Markdown that is read without blanks at its lines' ends takes for a bullet.
void mendEmptyTodo(Block& block) {
    const bool isTicked = block.text == "[x]" || block.text == "[X]";
    if (block.kind == BlockKind::bullet && (isTicked || block.text == "[ ]")) {
        block.kind = BlockKind::todo;
        block.done = isTicked;
        block.text.clear();
    }
}

/// Goes through the lines; those of a table are taken together.
class Reader {
public:
    explicit Reader(std::string_view text) : lines_(linesOf(text)), trimmed_(lines_.size()) {
        std::ranges::transform(lines_, trimmed_.begin(), Unicode::trimBlanks);
    }

    std::vector<Block> read() {
        std::vector<Block> blocks;
        while (next_ < lines_.size()) {
            const std::size_t count = lengthOfNext();
            if (count > 1 && !isMarkdown(next_)) {
                blocks.push_back(table(count));
            } else if (isMarkdown(next_)) {
                addMarkdown(count, blocks);
            } else if (!trimmed_[next_].empty()) {
                blocks.push_back(lineBlock(next_));
            }
            next_ += count;
        }
        return blocks;
    }

private:
    /// Whether it is a shape of Markdown that may take several lines.
    [[nodiscard]] bool isMarkdown(std::size_t line) const {
        return trimmed_[line].starts_with('|') || trimmed_[line].starts_with("**Q:**");
    }

    [[nodiscard]] bool isRow(std::size_t line) const { return tabsIn(lines_[line]) > 0 && !listItem(trimmed_[line]); }

    /// How many lines from the next on make one thing.
    [[nodiscard]] std::size_t lengthOfNext() const {
        std::size_t end = next_ + 1;
        if (trimmed_[next_].starts_with("**Q:**")) {
            return end < lines_.size() && trimmed_[end].starts_with("**A:**") ? 2 : 1;
        }
        if (trimmed_[next_].starts_with('|')) {
            while (end < lines_.size() && trimmed_[end].starts_with('|')) {
                ++end;
            }
            return end - next_;
        }
        if (trimmed_[next_].empty() || !isRow(next_)) {
            return 1;
        }
        bool isIndented = lines_[next_].starts_with('\t');
        while (end < lines_.size() && isRow(end) && tabsIn(lines_[end]) == tabsIn(lines_[next_])) {
            isIndented = isIndented && lines_[end].starts_with('\t');
            ++end;
        }
        return isIndented ? 1 : end - next_;
    }

    [[nodiscard]] Block table(std::size_t count) const {
        std::vector<std::vector<std::string>> rows(count);
        std::transform(lines_.begin() + static_cast<std::ptrdiff_t>(next_),
                       lines_.begin() + static_cast<std::ptrdiff_t>(next_ + count), rows.begin(), cellsOf);
        return Block::table(std::move(rows));
    }

    void addMarkdown(std::size_t count, std::vector<Block>& blocks) const {
        const char* const begin = lines_[next_].data();
        const std::string_view last = lines_[next_ + count - 1];
        std::ranges::move(MarkdownImport::blocks({begin, last.data() + last.size()}).blocks,
                          std::back_inserter(blocks));
    }

    /// What the line means when typed, with all that it says; else what it means in Markdown.
    [[nodiscard]] Block lineBlock(std::size_t index) const {
        Block block;
        block.text = listItem(trimmed_[index]).value_or(std::string(trimmed_[index]));
        if (auto typed = NoteEditor::asTyped(block)) {
            if (typed->kind == BlockKind::bullet && typed->text.starts_with("[X] ")) {
                typed->text[1] = 'x'; // as Markdown has it too
            }
            auto todo = NoteEditor::asTyped(*typed);
            return std::move(todo ? *todo : *typed);
        }
        Block read = std::move(fromMarkdown(block.text).front());
        if (read.kind != BlockKind::paragraph) {
            return read;
        }
        if (block.text == trimmed_[index]) {
            block.text = Unicode::trimEnd(lines_[index], Unicode::isBlank);
        }
        return block;
    }

    std::vector<std::string_view> lines_;
    std::vector<std::string_view> trimmed_;
    std::size_t next_ = 0;
};

} // namespace

std::string cleaned(std::string_view text) {
    constexpr auto wideBreaks = std::to_array<std::string_view>({"\u0085", "\u2028", "\u2029"});
    constexpr std::string_view byteOrderMark = "\uFEFF";
    const std::string valid = Unicode::utf8(Unicode::utf16(text));
    std::string_view rest = valid;
    rest.remove_prefix(rest.starts_with(byteOrderMark) ? byteOrderMark.size() : 0);
    std::string clean;
    clean.reserve(rest.size());
    while (!rest.empty()) {
        const char c = rest.front();
        std::size_t length = 1;
        if (c == wideBreaks[0].front() || c == wideBreaks[1].front()) {
            const auto* const found =
                std::ranges::find_if(wideBreaks, [rest](std::string_view one) { return rest.starts_with(one); });
            length = found == wideBreaks.end() ? 1 : found->size();
            clean += found == wideBreaks.end() ? c : '\n';
        } else if (c == '\n' || c == '\r' || c == '\v' || c == '\f') {
            length = rest.starts_with("\r\n") ? 2 : 1;
            clean += '\n';
        } else if (c == '\t' || static_cast<unsigned char>(c) >= 0x20) {
            clean.append(c == '\x7F' ? 0 : 1, c);
        }
        rest.remove_prefix(length);
    }
    return clean;
}

std::vector<Block> fromMarkdown(const std::string& cleaned) {
    MarkdownImport::Document document = MarkdownImport::blocks(cleaned);
    if (document.title) {
        Block heading;
        heading.kind = BlockKind::heading;
        heading.text = std::move(*document.title);
        document.blocks.insert(document.blocks.begin(), std::move(heading));
    }
    std::ranges::for_each(document.blocks, mendEmptyTodo);
    return std::move(document.blocks);
}

std::vector<Block> fromPlainText(const std::string& cleaned) {
    std::vector<Block> blocks = Reader(cleaned).read();
    std::ranges::for_each(blocks, mendEmptyTodo);
    return blocks;
}

} // namespace varnic::PastedText
