#pragma once

#include "VarnicPlatform/Speech/SpeechModel.h"

#include <memory>
#include <optional>
#include <span>
#include <string>

struct SherpaOnnxSpokenLanguageIdentification;

namespace varnic {

/// The speech engine's ear for languages, with one model. It computes on the calling thread alone. Movable; one thread
/// at a time.
class LanguageIdentifier {
public:
    /// Samples a second that it takes.
    static constexpr int rate = 16'000;

    /// With a model that `tellsLanguages`. Throws TranscriberError `unavailable` where the engine does not take its
    /// files.
    static LanguageIdentifier create(const SpeechModel& model);

    /// The tag of the language, whichever the model thinks it is, in at most half a minute of samples of full scale 1;
    /// nothing where the engine has no answer. It cannot be interrupted.
    [[nodiscard]] std::optional<std::string> identify(std::span<const float> samples) const;

private:
    struct Destroy {
        void operator()(const SherpaOnnxSpokenLanguageIdentification* identifier) const;
    };

    explicit LanguageIdentifier(const SherpaOnnxSpokenLanguageIdentification* identifier) : identifier_(identifier) {}

    std::unique_ptr<const SherpaOnnxSpokenLanguageIdentification, Destroy> identifier_;
};

} // namespace varnic
