#include "VarnicCore/AISummariser/KeyText.h"

#include "VarnicCore/Text/Unicode.h"

#include <algorithm>

namespace varnic {

std::string KeyText::checked(std::string_view pasted) {
    // Not even looked at as a whole where it is far too long.
    constexpr std::size_t longestPaste = 4 * longest;
    std::string key(pasted.size() > longestPaste ? pasted : Unicode::trim(pasted));
    if (key.empty()) {
        throw Error("No key was given, so nothing was changed.");
    }
    if (key.size() > longest || std::ranges::any_of(key, [](char c) { return c < ' ' || c > '~'; })) {
        throw Error("A key is one line of plain letters, digits and signs.");
    }
    return key;
}

} // namespace varnic
