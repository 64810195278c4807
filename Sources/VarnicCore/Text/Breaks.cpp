#include "VarnicCore/Text/Breaks.h"

#include "VarnicCore/Text/Unicode.h"

#include <unicode/brkiter.h>
#include <unicode/locid.h>
#include <unicode/ubrk.h>
#include <unicode/utf16.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>

namespace varnic::Breaks {

namespace {

using Iterator = std::unique_ptr<icu::BreakIterator>;

Iterator checked(icu::BreakIterator* made, UErrorCode status) {
    Iterator iterator(made);
    if (U_FAILURE(status) != 0) {
        throw std::runtime_error("ICU has no sentence and word breaks");
    }
    return iterator;
}

// An iterator is costly to make and serves one thread at a time.
icu::BreakIterator& sentenceIterator() {
    thread_local const Iterator iterator = [] {
        UErrorCode status = U_ZERO_ERROR;
        auto* made = icu::BreakIterator::createSentenceInstance(icu::Locale("en@ss=standard"), status);
        return checked(made, status);
    }();
    return *iterator;
}

icu::BreakIterator& wordIterator() {
    thread_local const Iterator iterator = [] {
        UErrorCode status = U_ZERO_ERROR;
        auto* made = icu::BreakIterator::createWordInstance(icu::Locale::getEnglish(), status);
        return checked(made, status);
    }();
    return *iterator;
}

/// Turns ascending positions in the UTF-16 form of a text into those in its UTF-8 form.
class ByteOffsets {
public:
    explicit ByteOffsets(std::string_view text) : text_(text) {}

    std::size_t at(std::int32_t unit) {
        while (unit_ < unit) {
            unit_ += U16_LENGTH(Unicode::next(text_, byte_));
        }
        return byte_;
    }

private:
    std::string_view text_;
    std::size_t byte_ = 0;
    std::int32_t unit_ = 0;
};

bool isWhole(const icu::BreakIterator& /*breaks*/) {
    return true;
}

bool isWord(const icu::BreakIterator& breaks) {
    return breaks.getRuleStatus() >= UBRK_WORD_NONE_LIMIT;
}

std::vector<std::string_view> pieces(std::string_view text, icu::BreakIterator& breaks,
                                     bool (*counts)(const icu::BreakIterator&)) {
    std::vector<std::string_view> found;
    const icu::UnicodeString units = Unicode::utf16(text);
    ByteOffsets offsets(text);
    breaks.setText(units);
    std::size_t begin = 0;
    for (std::int32_t position = breaks.next(); position != icu::BreakIterator::DONE; position = breaks.next()) {
        const std::size_t end = offsets.at(position);
        if (counts(breaks)) {
            found.push_back(text.substr(begin, end - begin));
        }
        begin = end;
    }
    return found;
}

} // namespace

std::vector<std::string_view> sentences(std::string_view text) {
    return pieces(text, sentenceIterator(), isWhole);
}

std::vector<std::string_view> words(std::string_view text) {
    return pieces(text, wordIterator(), isWord);
}

} // namespace varnic::Breaks
