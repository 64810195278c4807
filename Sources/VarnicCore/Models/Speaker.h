#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace varnic {

/// The two sides of a call: the microphone and what the computer plays.
enum class Speaker { you, them };

inline constexpr std::array allSpeakers{Speaker::you, Speaker::them};

/// The form in which a speaker is stored.
constexpr std::string_view rawValue(Speaker speaker) {
    return speaker == Speaker::you ? "you" : "them";
}

constexpr std::optional<Speaker> speakerFrom(std::string_view rawValue) {
    if (rawValue == "you") {
        return Speaker::you;
    }
    if (rawValue == "them") {
        return Speaker::them;
    }
    return std::nullopt;
}

constexpr std::string_view label(Speaker speaker) {
    return speaker == Speaker::you ? "You" : "Them";
}

constexpr Speaker other(Speaker speaker) {
    return speaker == Speaker::you ? Speaker::them : Speaker::you;
}

} // namespace varnic
