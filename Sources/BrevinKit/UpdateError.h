#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace brevin {

/// Why an update failed; `what()` is the user's sentence.
class UpdateError : public std::runtime_error {
public:
    explicit UpdateError(std::string_view message) : std::runtime_error(std::string(message)) {}

    [[nodiscard]] std::string message() const { return what(); }
};

/// The sentences of the known failures.
namespace UpdateMessages {

inline constexpr std::string_view feedUnavailable =
    "Couldn’t check for updates. Check your internet connection and try again.";
inline constexpr std::string_view downloadRefused = "The update file couldn’t be downloaded.";
inline constexpr std::string_view downloadTooLarge = "The download was larger than expected.";
inline constexpr std::string_view downloadIncomplete = "The download was incomplete.";
inline constexpr std::string_view wrongSignature = "The update’s signature didn’t match, so it wasn’t installed.";
inline constexpr std::string_view noApp = "The update didn’t contain an app.";
inline constexpr std::string_view wrongApp = "The downloaded update didn’t match this app.";
inline constexpr std::string_view damagedCode = "The downloaded app’s code signature is damaged.";

/// For any other error, described by its own text.
inline std::string other(std::string_view description) {
    return std::string("The update couldn’t be downloaded. ").append(description);
}

} // namespace UpdateMessages

} // namespace brevin
