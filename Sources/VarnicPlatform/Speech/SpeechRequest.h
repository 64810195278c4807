#pragma once

#include "VarnicCore/Audio/PcmBuffer.h"
#include "VarnicCore/Transcript/Utterances.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace varnic {

/// What the engine has made of an utterance. Times count from the beginning of the request.
struct SpeechResult {
    std::vector<TimedWord> words;
    /// The same words as punctuated text.
    std::string formatted;
    /// Whether the utterance is over; otherwise a later result replaces this one. An utterance that came to nothing
    /// ends with a final result without words.
    bool isFinal = false;
};

/// An open request to recognise one side's audio as it comes. It gives results for one utterance after another, the
/// final one of each at the pause behind it. One thread at a time.
class SpeechRequest {
public:
    /// Called on the engine's thread, one call at a time.
    using OnResult = std::function<void(const SpeechResult&)>;

    SpeechRequest() = default;
    SpeechRequest(const SpeechRequest&) = delete;
    SpeechRequest& operator=(const SpeechRequest&) = delete;
    /// Results go on to come after `endAudio`; a request that was not ended is given up.
    virtual ~SpeechRequest() = default;

    /// The next audio, in the processing format or as one channel at the engine's 16 kHz. Only copies it.
    virtual void append(const PcmBuffer& buffer) = 0;

    /// So many seconds pass in which there is no audio.
    virtual void skip(double seconds) = 0;

    /// No more audio will come: the open utterance gets its final result, here or, where another request was opened
    /// already, there, with times before the beginning of that one.
    virtual void endAudio() = 0;

    /// Whether, after `endAudio`, all that came has been transcribed and its results been reported. Any thread.
    [[nodiscard]] virtual bool isDone() const { return true; }

    /// Gives up what is open; no result begins to be reported any more.
    virtual void cancel() = 0;
};

/// Opens a request with an engine.
using SpeechRequestFactory = std::function<std::unique_ptr<SpeechRequest>(SpeechRequest::OnResult)>;

} // namespace varnic
