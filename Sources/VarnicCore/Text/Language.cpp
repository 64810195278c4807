#include "VarnicCore/Text/Language.h"

#include "VarnicCore/Text/Unicode.h"

#include <unicode/locid.h>

#include <algorithm>

namespace varnic::Language {

namespace {

icu::Locale localeOf(std::string_view tag) {
    std::string name(tag);
    std::ranges::replace(name, '-', '_');
    return icu::Locale::createCanonical(name.c_str());
}

} // namespace

std::string bare(std::string_view tag) {
    // An empty name is ICU's default locale.
    std::string language = tag.empty() ? std::string() : localeOf(tag).getLanguage();
    return language == "nb" || language == "nn" ? "no" : language;
}

bool isSame(std::string_view a, std::string_view b) {
    return bare(a) == bare(b);
}

bool isEnglish(std::string_view tag) {
    const std::string language = bare(tag);
    return language.empty() || language == "en";
}

std::string name(std::string_view tag, std::string_view reader) {
    icu::UnicodeString shown;
    localeOf(tag).getDisplayName(localeOf(reader), shown);
    return shown.isEmpty() ? std::string(tag) : Unicode::utf8(shown);
}

} // namespace varnic::Language
