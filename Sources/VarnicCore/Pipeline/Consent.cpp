#include "VarnicCore/Pipeline/Consent.h"

#include "VarnicCore/Text/Unicode.h"

#include <algorithm>

namespace varnic::Consent {

namespace {

struct ToneNames {
    std::string_view rawValue;
    std::string_view title;
};

constexpr std::array<ToneNames, allTones.size()> toneNames{{
    {"friendly", "Friendly"},
    {"formal", "Formal"},
    {"brief", "Brief"},
}};

std::string formalHeadsUp(std::string_view name) {
    std::string text = "Before we begin: I’d like to record this call for note-taking. The recording stays on my "
                       "computer and isn’t shared. Please let me know if you do not consent";
    if (!name.empty()) {
        text.append(" — ").append(name);
    }
    return text + ".";
}

} // namespace

std::string_view rawValue(Tone tone) {
    return toneNames.at(static_cast<std::size_t>(tone)).rawValue;
}

std::optional<Tone> toneFrom(std::string_view rawValue) {
    const auto* const found = std::ranges::find(toneNames, rawValue, &ToneNames::rawValue);
    if (found == toneNames.end()) {
        return std::nullopt;
    }
    return allTones.at(static_cast<std::size_t>(found - toneNames.begin()));
}

std::string_view title(Tone tone) {
    return toneNames.at(static_cast<std::size_t>(tone)).title;
}

std::string headsUp(Tone tone, std::string_view yourName) {
    switch (tone) {
    case Tone::friendly:
        return "Heads up — I’m recording this call so I can take good notes. It stays on my Mac. Shout if you’d "
               "rather I didn’t!";
    case Tone::formal:
        return formalHeadsUp(Unicode::trimBlanks(yourName));
    case Tone::brief:
        return "FYI: recording this call for my notes (stays on my Mac). OK with everyone?";
    }
    return {};
}

} // namespace varnic::Consent
