#pragma once

#include <stdexcept>
#include <string>

namespace varnic {

/// Why a track could not be transcribed; `what()` is the user's sentence. Compares by kind and detail.
class TranscriberError : public std::runtime_error {
public:
    enum class Kind { noOnDevice, failed, notAuthorized, unavailable, missingFile };

    /// No model on this machine for a language, given by its name.
    static TranscriberError noOnDevice(const std::string& languageName);
    /// The engine's own message.
    static TranscriberError failed(const std::string& message);
    /// The user has not let the program use speech recognition, or its model is not installed.
    static TranscriberError notAuthorized();
    /// The engine cannot run now.
    static TranscriberError unavailable();
    static TranscriberError missingFile();

    [[nodiscard]] Kind kind() const { return kind_; }

    /// The language's name or the engine's message; empty for the other kinds.
    [[nodiscard]] const std::string& detail() const { return detail_; }

    bool operator==(const TranscriberError& other) const { return kind_ == other.kind_ && detail_ == other.detail_; }

private:
    TranscriberError(Kind kind, std::string detail, const std::string& sentence);

    Kind kind_;
    std::string detail_;
};

} // namespace varnic
