#pragma once

#include "VarnicCore/Transcript/Utterances.h"
#include "VarnicPlatform/Speech/SpeechModel.h"

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

struct SherpaOnnxOfflineRecognizer;

namespace varnic {

/// What the engine recognised in a piece of audio.
struct Recognition {
    std::string text;
    /// The words of `text` in seconds from the piece's beginning; empty where the engine gives no times.
    std::vector<TimedWord> words;
    /// The engine's own units of text.
    std::size_t tokens = 0;
    /// Whether the engine has stopped before the end of what was said: there were more tokens than it gives at once.
    bool isCutShort = false;
};

/// The speech engine with one model. It computes on the calling thread alone. Movable; one thread at a time.
class SpeechRecognizer {
public:
    /// Samples a second that it takes.
    static constexpr int rate = 16'000;

    /// `locale` is what models of several languages are to hear. Throws TranscriberError `unavailable` where the engine
    /// does not take the model's files.
    static SpeechRecognizer create(const SpeechModel& model, std::string_view locale);

    /// Decodes samples of full scale 1, at most about half a minute of them: the time and the memory it takes grow with
    /// the square. It cannot be interrupted. Throws TranscriberError `failed`.
    [[nodiscard]] Recognition decode(std::span<const float> samples) const;

private:
    struct Destroy {
        void operator()(const SherpaOnnxOfflineRecognizer* recognizer) const;
    };

    SpeechRecognizer(const SherpaOnnxOfflineRecognizer* recognizer, double mostTokens)
        : recognizer_(recognizer), mostTokens_(mostTokens) {}

    [[nodiscard]] Recognition decodeOnce(std::span<const float> samples) const;

    std::unique_ptr<const SherpaOnnxOfflineRecognizer, Destroy> recognizer_;
    /// The tokens after which the engine stops, for each second of audio.
    double mostTokens_;
};

} // namespace varnic
