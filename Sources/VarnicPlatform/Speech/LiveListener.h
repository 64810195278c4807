#pragma once

#include "VarnicPlatform/Speech/SpeechModel.h"
#include "VarnicPlatform/Speech/SpeechRequest.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <thread>

namespace varnic {

/// The speech engine at work on one side of a running call: a thread of its own that hears the requests opened here,
/// one after the other in the order of their opening. All sound is heard, however fast it comes; unfinished results are
/// given only while nothing waits. Any thread.
class LiveListener {
public:
    /// Starts the thread, which loads the model while sound may come in already. Where the engine does not take it,
    /// requests have no results, and each new one tries again. Without a usable detector speech is told by its level.
    LiveListener(SpeechModel model, std::string locale, std::optional<std::filesystem::path> detector);

    LiveListener(const LiveListener&) = delete;
    LiveListener& operator=(const LiveListener&) = delete;

    /// Gives up all requests. Blocks for at most the decoding that runs.
    ~LiveListener();

    /// A request may outlive the listener, and does nothing then. Results come on the listener's thread.
    [[nodiscard]] std::unique_ptr<SpeechRequest> open(SpeechRequest::OnResult onResult);

private:
    class Queue;
    class Request;
    class Worker;

    std::shared_ptr<Queue> queue_;
    std::jthread thread_;
};

} // namespace varnic
