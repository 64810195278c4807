#include "VarnicCore/Text/Breaks.h"

#include "VarnicCore/Text/Language.h"
#include "VarnicCore/Text/Unicode.h"

#include <unicode/brkiter.h>
#include <unicode/locid.h>
#include <unicode/ubrk.h>
#include <unicode/utf16.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

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

using Make = icu::BreakIterator* (*)(const icu::Locale&, UErrorCode&);

/// Of each language, since an iterator is costly to make; for one thread, which it serves at a time.
class Iterators {
public:
    /// `keywords` follow the language in the name of the locale.
    Iterators(Make make, std::string keywords) : make_(make), keywords_(std::move(keywords)) {}

    icu::BreakIterator& of(std::string_view language) {
        auto found = made_.find(language);
        if (found == made_.end()) {
            UErrorCode status = U_ZERO_ERROR;
            auto* made = make_(icu::Locale((Language::bare(language) + keywords_).c_str()), status);
            found = made_.emplace(language, checked(made, status)).first;
        }
        return *found->second;
    }

private:
    Make make_;
    std::string keywords_;
    std::map<std::string, Iterator, std::less<>> made_;
};

icu::BreakIterator& sentenceIterator(std::string_view language) {
    thread_local Iterators iterators(icu::BreakIterator::createSentenceInstance, "@ss=standard");
    return iterators.of(language);
}

icu::BreakIterator& wordIterator(std::string_view language) {
    thread_local Iterators iterators(icu::BreakIterator::createWordInstance, "");
    return iterators.of(language);
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

std::vector<std::string_view> sentences(std::string_view text, std::string_view language) {
    return pieces(text, sentenceIterator(language), isWhole);
}

std::vector<std::string_view> words(std::string_view text, std::string_view language) {
    return pieces(text, wordIterator(language), isWord);
}

} // namespace varnic::Breaks
