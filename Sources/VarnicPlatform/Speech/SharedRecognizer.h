#pragma once

#include "VarnicPlatform/Speech/SpeechModel.h"
#include "VarnicPlatform/Speech/SpeechRecognizer.h"

#include <memory>
#include <mutex>
#include <span>
#include <string_view>
#include <utility>

namespace varnic {

/// A SpeechRecognizer at which those who hear one language with one large model at the same time take turns: the two
/// sides of a call, each with Whisper base of its own, would take half a gigabyte more. Small models are not shared, so
/// that they use all processors. Any thread.
class SharedRecognizer {
public:
    /// Loads the model unless somebody holds it; throws as SpeechRecognizer::create does.
    static std::shared_ptr<const SharedRecognizer> of(const SpeechModel& model, std::string_view locale);

    explicit SharedRecognizer(SpeechRecognizer recognizer) : recognizer_(std::move(recognizer)) {}

    /// As SpeechRecognizer::decode, after those whose turn it is.
    [[nodiscard]] Recognition decode(std::span<const float> samples) const;

private:
    mutable std::mutex turn_;
    SpeechRecognizer recognizer_;
};

} // namespace varnic
