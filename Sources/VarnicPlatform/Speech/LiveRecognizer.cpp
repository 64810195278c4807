#include "VarnicPlatform/Speech/LiveRecognizer.h"

#include "VarnicCore/Transcript/Utterances.h"
#include "VarnicPlatform/Speech/RecognitionThread.h"
#include "VarnicPlatform/Speech/SpeechModel.h"

#include <optional>
#include <utility>

namespace varnic {

namespace {

/// A request gets no audio that begins later than this, in seconds after its own beginning.
constexpr double longestRequest = 50;
/// A longer pause in seconds ends a line of the transcript.
constexpr double lineGap = 1.2;
/// What a time stamp may be off by without there being a gap, in seconds.
constexpr double tolerance = 0.05;

} // namespace

/// Takes the results of all the requests, which may outlive the recogniser.
struct LiveRecognizer::Handler {
    Speaker speaker = Speaker::you;
    Lines onPartial;
    Lines onCommit;
    /// Held while a callback runs, which may itself cancel.
    std::recursive_mutex gate;
    bool isOpen = true;

    /// `began` is when the request did. Lines are built from times within the call: a request that took over in the
    /// middle of an utterance has words from before its own beginning, and a line's times count from 0 on.
    void take(SpeechResult result, double began) {
        for (TimedWord& word : result.words) {
            word.start += began;
        }
        std::vector<Segment> lines = Utterances::build(result.words, result.formatted, speaker, 0, lineGap);
        const std::scoped_lock lock(gate);
        if (isOpen) {
            (result.isFinal ? onCommit : onPartial)(speaker, std::move(lines));
        }
    }

    void close() {
        const std::scoped_lock lock(gate);
        isOpen = false;
    }
};

std::unique_ptr<LiveRecognizer> LiveRecognizer::create(Speaker speaker, const std::string& locale,
                                                       const std::vector<std::filesystem::path>& dataDirectories,
                                                       Lines onPartial, Lines onCommit) {
    std::optional<SpeechModel> model = SpeechModels::choose(SpeechModels::installed(dataDirectories), locale,
                                                            {.preference = ModelChoice::Preference::fastest, .id = {}});
    if (!model) {
        return nullptr;
    }
    const std::string id = model->id;
    const auto thread =
        std::make_shared<RecognitionThread>(*std::move(model), locale, SpeechModels::detectorFile(dataDirectories));
    const auto makeRequest = [thread](SpeechRequest::OnResult onResult) { return thread->open(std::move(onResult)); };
    auto recognizer = std::make_unique<LiveRecognizer>(speaker, makeRequest, std::move(onPartial), std::move(onCommit));
    recognizer->model_ = id;
    return recognizer;
}

LiveRecognizer::LiveRecognizer(Speaker speaker, SpeechRequestFactory makeRequest, Lines onPartial, Lines onCommit)
    : handler_(std::make_shared<Handler>()), makeRequest_(std::move(makeRequest)) {
    handler_->speaker = speaker;
    handler_->onPartial = std::move(onPartial);
    handler_->onCommit = std::move(onCommit);
}

LiveRecognizer::~LiveRecognizer() {
    cancel();
}

void LiveRecognizer::append(const PcmBuffer& buffer, double at) {
    const std::scoped_lock lock(lock_);
    if (isOver_) {
        return;
    }
    if (!request_ || at - chunkStart_ > longestRequest) {
        rotate(at);
    }
    if (!request_) {
        return;
    }
    // Against all that was given, so that many small gaps add up to one.
    if (at - fed_ > tolerance) {
        request_->skip(at - fed_);
        fed_ = at;
    }
    request_->append(buffer);
    fed_ += static_cast<double>(buffer.frames()) / buffer.rate;
}

void LiveRecognizer::endAudio() {
    const std::scoped_lock lock(lock_);
    if (!std::exchange(isOver_, true) && request_) {
        request_->endAudio();
    }
}

bool LiveRecognizer::isDone() const {
    const std::scoped_lock lock(lock_);
    return isOver_ && (!request_ || request_->isDone());
}

void LiveRecognizer::cancel() {
    handler_->close();
    const std::scoped_lock lock(lock_);
    isOver_ = true;
    if (request_) {
        request_->cancel();
    }
}

/// The old request goes on by itself until its last result, unless the new one takes over in the middle of its audio.
void LiveRecognizer::rotate(double at) {
    const std::unique_ptr<SpeechRequest> old = std::move(request_);
    const bool goesOn = at - fed_ <= tolerance;
    if (old && !goesOn) {
        old->endAudio();
    }
    request_ = makeRequest_([handler = handler_, at](const SpeechResult& result) { handler->take(result, at); });
    if (old && goesOn) {
        old->endAudio();
    }
    chunkStart_ = at;
    fed_ = at;
}

} // namespace varnic
