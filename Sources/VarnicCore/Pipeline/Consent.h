#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

/// The texts that remind the user to tell the other party about the recording.
namespace varnic::Consent {

/// The style of the message for the call's chat.
enum class Tone { friendly, formal, brief };

inline constexpr std::array allTones{Tone::friendly, Tone::formal, Tone::brief};

/// The form in which a tone is stored; also its id in lists.
std::string_view rawValue(Tone tone);
std::optional<Tone> toneFrom(std::string_view rawValue);

/// The name in the picker.
std::string_view title(Tone tone);

inline constexpr std::string_view reminderTitle = "Let people know you’re recording";
inline constexpr std::string_view reminderBody =
    "Recording laws vary by country and state — in many places everyone on the call has to agree. Tell people at the "
    "start, or paste a short heads-up into the chat.";

/// The message to paste in the call's chat; only the formal one carries the name, unless it is blank.
std::string headsUp(Tone tone, std::string_view yourName);

} // namespace varnic::Consent
