#pragma once

#include <string>
#include <string_view>

/// Languages by their tags: "en", "en-US", "en_GB". Any thread.
namespace varnic::Language {

/// The language alone, "en" of "en-US", as ICU spells it, and "no" for both ways of writing Norwegian; empty for what
/// names none.
std::string bare(std::string_view tag);

/// Whether two tags are of one language, wherever it is spoken.
bool isSame(std::string_view a, std::string_view b);

/// Whether it is English, which is also taken for what names no language.
bool isEnglish(std::string_view tag);

/// Its name for a reader of the locale `reader`, or the tag where it has none.
std::string name(std::string_view tag, std::string_view reader);

} // namespace varnic::Language
