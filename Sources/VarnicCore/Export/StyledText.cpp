#include "VarnicCore/Export/StyledText.h"

#include "VarnicCore/Text/Unicode.h"

#include <unicode/ubidi.h>
#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace varnic {

namespace {

constexpr char32_t replacement = U'\uFFFD';
constexpr char32_t lineSeparator = U'\u2028';
constexpr char32_t paragraphSeparator = U'\u2029';

void append(std::string& text, char32_t c) {
    std::uint8_t bytes[U8_MAX_LENGTH];
    std::size_t length = 0;
    U8_APPEND_UNSAFE(bytes, length, c);
    text.append(bytes, bytes + length);
}

/// What stands for a code point; newlines of all kinds become LF or U+2028.
char32_t printable(char32_t c) {
    if (c == U'\r' || c == paragraphSeparator) {
        return U'\n';
    }
    if (c == U'\t' || c == U'\n') {
        return c;
    }
    if (Unicode::isNewline(c)) {
        return lineSeparator;
    }
    const auto point = static_cast<UChar32>(c);
    return u_charType(point) == U_CONTROL_CHAR || U_IS_UNICODE_NONCHAR(point) ? replacement : c;
}

std::string cleaned(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const char32_t c = Unicode::next(text, at);
        if (c == U'\r' && text.substr(at).starts_with('\n')) {
            continue;
        }
        append(result, printable(c));
    }
    return result;
}

bool beginsRightToLeft(const std::vector<Run>& runs) {
    // What has no direction of its own, such as the mark of a to-do, is left to the runs after it.
    for (const Run& run : runs) {
        const icu::UnicodeString wide = Unicode::utf16(run.text);
        const UBiDiDirection direction = ubidi_getBaseDirection(wide.getBuffer(), wide.length());
        if (direction != UBIDI_NEUTRAL) {
            return direction == UBIDI_RTL;
        }
    }
    return false;
}

/// Keeps empty runs only where a paragraph would have none.
void addPiece(std::vector<Run>& runs, const Run& like, std::string_view text) {
    if (!runs.empty() && runs.back().text.empty()) {
        runs.pop_back();
    } else if (!runs.empty() && text.empty()) {
        return;
    }
    runs.push_back({std::string(text), like.font, like.colour, like.struckThrough});
}

Paragraph paragraphOf(std::vector<Run> runs, const ParagraphStyle& style) {
    const bool isRightToLeft = beginsRightToLeft(runs);
    return {std::move(runs), style, isRightToLeft};
}

Paragraph cellOf(Run run) {
    run.text = StyledText::withLineBreaks(run.text);
    return paragraphOf({std::move(run)}, {});
}

std::string inSeconds(Date date) {
    constexpr std::size_t lengthWithSeconds = std::string_view("2026-03-14T09:26:53").size();
    return formatDate(date).substr(0, lengthWithSeconds) + "Z";
}

} // namespace

StyledText::StyledText(std::string_view title, Date created, Date modified)
    : title_(withLineBreaks(title)), created_(created), modified_(modified) {}

void StyledText::add(const std::vector<Run>& runs, const ParagraphStyle& style) {
    std::vector<Run> current;
    for (const Run& run : runs) {
        const std::string text = cleaned(run.text);
        std::string_view rest = text;
        for (std::size_t end = rest.find('\n'); end != std::string_view::npos; end = rest.find('\n')) {
            addPiece(current, run, rest.substr(0, end));
            items_.emplace_back(paragraphOf(std::exchange(current, {}), style));
            rest.remove_prefix(end + 1);
        }
        addPiece(current, run, rest);
    }
    items_.emplace_back(paragraphOf(std::move(current), style));
}

void StyledText::addTable(const std::vector<std::vector<Run>>& rows) {
    StyledTable table;
    for (const auto& row : rows) {
        table.columns = row.size();
        std::ranges::transform(row, std::back_inserter(table.rows.emplace_back()), cellOf);
    }
    items_.emplace_back(std::move(table));
}

void StyledText::add(StyledText other) {
    std::ranges::move(other.items_, std::back_inserter(items_));
}

std::string StyledText::created() const {
    return inSeconds(created_);
}

std::string StyledText::modified() const {
    return inSeconds(modified_);
}

std::string StyledText::withLineBreaks(std::string_view text) {
    const std::string clean = cleaned(text);
    std::string result;
    for (const char c : clean) {
        c == '\n' ? result.append(lineBreak) : result.append(1, c);
    }
    return result;
}

} // namespace varnic
