#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace varnic {

/// Why nothing can be recorded; `what()` is the user's sentence. Compares by kind and detail.
class CaptureError : public std::runtime_error {
public:
    enum class Kind { micFailed, systemAudioFailed, nothingToRecord, noDisplay };

    static CaptureError micFailed(const std::string& message);
    static CaptureError systemAudioFailed(const std::string& message);
    /// Neither side was asked for, or there is nothing to play.
    static CaptureError nothingToRecord();
    static CaptureError noDisplay();

    [[nodiscard]] Kind kind() const { return kind_; }

    bool operator==(const CaptureError& other) const {
        return kind_ == other.kind_ && std::string_view(what()) == other.what();
    }

private:
    CaptureError(Kind kind, const std::string& sentence) : std::runtime_error(sentence), kind_(kind) {}

    Kind kind_;
};

} // namespace varnic
