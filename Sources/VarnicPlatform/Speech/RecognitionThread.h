#pragma once

#include "VarnicPlatform/Speech/SpeechModel.h"
#include "VarnicPlatform/Speech/SpeechRequest.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <thread>

namespace varnic {

/// The speech engine at work on one side of a running call: a thread of its own that transcribes the requests opened
/// here, one after the other in the order of their opening. All audio is transcribed, however fast it comes; partial
/// results are given only while nothing waits. Any thread.
class RecognitionThread {
public:
    /// Starts the thread, which loads the model while audio may come in already. Where the engine does not take it,
    /// requests have no results, and each new one tries again. Without a usable detector speech is told by its level.
    RecognitionThread(SpeechModel model, std::string locale, std::optional<std::filesystem::path> detector);

    RecognitionThread(const RecognitionThread&) = delete;
    RecognitionThread& operator=(const RecognitionThread&) = delete;

    /// Gives up all requests. Blocks for at most the decoding that runs.
    ~RecognitionThread();

    /// A request may outlive the RecognitionThread, and does nothing then. Results come on its thread.
    [[nodiscard]] std::unique_ptr<SpeechRequest> open(SpeechRequest::OnResult onResult);

private:
    class Queue;
    class Request;
    class Worker;

    std::shared_ptr<Queue> queue_;
    std::jthread thread_;
};

} // namespace varnic
