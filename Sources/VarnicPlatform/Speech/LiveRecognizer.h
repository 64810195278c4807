#pragma once

#include "VarnicCore/Audio/PcmBuffer.h"
#include "VarnicCore/Models/Segment.h"
#include "VarnicCore/Models/Speaker.h"
#include "VarnicPlatform/Speech/SpeechRequest.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace varnic {

/// Turns the audio of one side into transcript lines while a call runs. It works through a chain of requests of a
/// little over 50 seconds, each with its own time base. Any thread.
class LiveRecognizer {
public:
    /// Takes lines in the call's time, in seconds. Called on the engine's thread, one call at a time; it may not wait
    /// for a thread that calls `cancel`, nor destroy the recogniser.
    using Lines = std::function<void(Speaker, std::vector<Segment>)>;

    /// On this machine's engine with the fastest model; nothing where no model is installed for the locale. Quick: the
    /// model is loaded on the engine's thread meanwhile, and one that the engine does not take gives no lines.
    /// `onPartial` gets the lines of the open utterance, each time in place of those before; `onCommit` gets them when
    /// they are final, or none at all where the utterance came to nothing.
    static std::unique_ptr<LiveRecognizer> create(Speaker speaker, const std::string& locale,
                                                  const std::vector<std::filesystem::path>& dataDirectories,
                                                  Lines onPartial, Lines onCommit);

    /// On the engine that `makeRequest` opens requests with; it goes with the recogniser.
    LiveRecognizer(Speaker speaker, SpeechRequestFactory makeRequest, Lines onPartial, Lines onCommit);

    LiveRecognizer(const LiveRecognizer&) = delete;
    LiveRecognizer& operator=(const LiveRecognizer&) = delete;

    /// As `cancel`, and joins the engine's thread, which blocks for at most the decoding that runs.
    ~LiveRecognizer();

    /// The next audio, in a format that SpeechRequest takes, and the call's time in seconds at which it begins. Where
    /// that leaves a gap, there was silence. Only copies the audio; ignored after `endAudio` and `cancel`.
    void append(const PcmBuffer& buffer, double at);

    /// No more audio will come. What is open arrives as a commit.
    void endAudio();

    /// Whether, after `endAudio`, everything that came has been committed.
    [[nodiscard]] bool isDone() const;

    /// The id of the model that transcribes; empty where no model of this machine does.
    [[nodiscard]] const std::string& model() const { return model_; }

    /// Ends at once: no callback runs any more when it returns, but for one that it is called from.
    void cancel();

private:
    struct Handler;

    void rotate(double at);

    std::shared_ptr<Handler> handler_;
    SpeechRequestFactory makeRequest_;
    std::string model_;
    /// Guards what follows.
    mutable std::mutex lock_;
    std::unique_ptr<SpeechRequest> request_;
    /// The call's time at which the request began, and up to which it was given audio, in seconds.
    double chunkStart_ = 0;
    double fed_ = 0;
    bool isOver_ = false;
};

} // namespace varnic
