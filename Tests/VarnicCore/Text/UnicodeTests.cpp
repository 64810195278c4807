#include "VarnicCore/Text/Unicode.h"

#include <gtest/gtest.h>
#include <unicode/brkiter.h>

#include <array>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace varnic {
namespace {

/// What ICU alone says, in code units of UTF-16.
std::size_t countByIcu(const icu::UnicodeString& text) {
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::BreakIterator> breaks(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    breaks->setText(text);
    std::size_t count = 0;
    for (breaks->first(); breaks->next() != icu::BreakIterator::DONE;) {
        ++count;
    }
    return count;
}

// Letters that join with what stands beside them, in every order, among letters that never do.
TEST(UnicodeTests, characterStarts_randomText_areThoseOfIcu) {
    constexpr std::array<char32_t, 24> codePoints{
        U'a',      U'é',  U'’',  U'—',      U'\r', U'\n', U'\u00AD', U'\u0301', // marks and controls
        U'\u200D', U'👩', U'🚀', U'\uFE0F', U'🇩',  U'🇪',  U'©',      U'ᄒ',
        U'ᅡ',      U'ᆫ',  U'한', U'क',      U'्',   U'ि',  U'漢',     U'\u200B'};
    std::mt19937 random(7);
    for (int run = 0; run < 20000; ++run) {
        icu::UnicodeString text;
        for (std::size_t length = random() % 12; length > 0; --length) {
            text.append(static_cast<UChar32>(codePoints.at(random() % codePoints.size())));
        }
        const std::string utf8 = Unicode::utf8(text);
        const std::vector<std::size_t> starts = Unicode::characterStarts(utf8);
        ASSERT_EQ(starts.size(), countByIcu(text)) << utf8;
        for (std::size_t i = 0; i < starts.size(); ++i) {
            const std::size_t end = i + 1 < starts.size() ? starts[i + 1] : utf8.size();
            ASSERT_EQ(countByIcu(Unicode::utf16(utf8.substr(starts[i], end - starts[i]))), 1) << utf8;
        }
    }
}

} // namespace
} // namespace varnic
