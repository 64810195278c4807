#include "VarnicPlatform/Speech/RecognitionThread.h"

#include "VarnicCore/Audio/SampleConverter.h"
#include "VarnicCore/Pipeline/Transcriber.h"
#include "VarnicPlatform/Speech/ModelCheck.h"
#include "VarnicPlatform/Speech/UtteranceRecognizer.h"

#include <atomic>
#include <chrono>
#include <cmath>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <mutex>
#include <utility>
#include <variant>
#include <vector>

namespace varnic {

namespace {

using Clock = std::chrono::steady_clock;

/// The thread is not woken for less audio than this, in seconds.
constexpr double leastAudio = 0.05;
/// When no audio has come for so long, the open utterance is decoded as it stands; when for longer, it is over.
constexpr std::chrono::milliseconds partialAfter{300};
constexpr std::chrono::milliseconds endAfter{800};

constexpr AudioFormat engineFormat{UtteranceRecognizer::rate, 1};

/// What the two ends of a request share.
struct Ticket {
    SpeechRequest::OnResult onResult;
    std::atomic<bool> isCancelled = false;
    std::atomic<bool> isDone = false;
};

struct End {
    /// The next request goes on with what is open.
    bool isHandedOver = false;
};

/// Something that happens to a request: audio, seconds without audio, or its end.
struct Event {
    std::shared_ptr<Ticket> ticket;
    std::variant<PcmBuffer, double, End> what;
};

} // namespace

/// What is on its way from the requests to the thread.
class RecognitionThread::Queue {
public:
    void push(Event event) {
        bool wakes = true;
        {
            const std::scoped_lock lock(mutex_);
            if (const auto* sound = std::get_if<PcmBuffer>(&event.what)) {
                waiting_ += static_cast<double>(sound->frames()) / sound->rate;
                wakes = waiting_ >= leastAudio;
            } else {
                isUrgent_ = true;
            }
            lastPush_ = Clock::now();
            events_.push_back(std::move(event));
        }
        if (wakes) {
            changed_.notify_one();
        }
    }

    void close() {
        isClosed_ = true;
        {
            const std::scoped_lock lock(mutex_);
        }
        changed_.notify_one();
    }

    [[nodiscard]] bool isClosed() const { return isClosed_; }

    /// The request that was opened last.
    std::atomic<const Ticket*> newest = nullptr;

    /// Replaces `events` by what has come, once it is worth it or nothing has come for `patience` (for ever without
    /// one); false when the queue is closed.
    bool take(std::vector<Event>& events, std::optional<Clock::duration> patience) {
        events.clear();
        std::unique_lock lock(mutex_);
        const auto isReady = [this] { return isClosed_ || isUrgent_ || waiting_ >= leastAudio; };
        if (!patience) {
            changed_.wait(lock, isReady);
        }
        while (patience && !isReady() && Clock::now() < lastPush_ + *patience) {
            changed_.wait_until(lock, lastPush_ + *patience);
        }
        std::swap(events, events_);
        waiting_ = 0;
        isUrgent_ = false;
        return !isClosed_;
    }

    /// Nothing while something waits; else how long ago the last event came.
    std::optional<Clock::duration> idleFor() {
        const std::scoped_lock lock(mutex_);
        return events_.empty() ? std::optional(Clock::now() - lastPush_) : std::nullopt;
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<Event> events_;
    /// Seconds of audio in `events_`, and whether there is anything else in it.
    double waiting_ = 0;
    bool isUrgent_ = false;
    Clock::time_point lastPush_;
    std::atomic<bool> isClosed_ = false;
};

class RecognitionThread::Request final : public SpeechRequest {
public:
    Request(std::shared_ptr<Queue> queue, OnResult onResult)
        : queue_(std::move(queue)), ticket_(std::make_shared<Ticket>()) {
        ticket_->onResult = std::move(onResult);
        queue_->newest = ticket_.get();
    }

    Request(const Request&) = delete;
    Request& operator=(const Request&) = delete;

    ~Request() override {
        if (!isEnded_) {
            ticket_->isCancelled = true;
        }
    }

    void append(const PcmBuffer& buffer) override {
        if (buffer.format() == TrackFormat::processing || buffer.format() == engineFormat) {
            push(buffer);
        }
    }

    void skip(double seconds) override { push(seconds); }

    void endAudio() override {
        push(End{.isHandedOver = queue_->newest != ticket_.get()});
        isEnded_ = true;
    }

    [[nodiscard]] bool isDone() const override { return ticket_->isDone; }

    void cancel() override { ticket_->isCancelled = true; }

private:
    template <typename What>
    void push(What what) {
        if (!isEnded_ && !ticket_->isCancelled && !queue_->isClosed()) {
            queue_->push({ticket_, std::move(what)});
        }
    }

    std::shared_ptr<Queue> queue_;
    std::shared_ptr<Ticket> ticket_;
    bool isEnded_ = false;
};

/// The thread's own part.
class RecognitionThread::Worker {
public:
    Worker(std::shared_ptr<Queue> queue, SpeechModel model, std::string locale,
           std::optional<std::filesystem::path> detector)
        : queue_(std::move(queue)), model_(std::move(model)), locale_(std::move(locale)),
          detector_(std::move(detector)) {}

    void run() {
        load();
        std::vector<Event> events;
        while (queue_->take(events, patience())) {
            for (const Event& event : events) {
                guarded([&] { handle(event); });
                if (std::holds_alternative<End>(event.what)) {
                    event.ticket->isDone = true;
                }
            }
            guarded([this] { useTheTime(); });
        }
    }

private:
    /// The request that is being transcribed.
    struct Session {
        std::shared_ptr<Ticket> ticket;
        UtteranceRecognizer recognizer;
        std::optional<SampleConverter> converter;
        PcmBuffer converted;
    };

    /// An error ends the session without a word: the transcript of the finished track does not depend on this one.
    template <typename Work>
    void guarded(Work work) {
        try {
            work();
        } catch (const std::exception&) {
            session_.reset();
        }
    }

    void load() {
        guarded([this] {
            if (!voice_) {
                voice_.emplace(makeDetector());
            }
            if (!recognizer_ && !ModelCheck::fault(model_, locale_)) {
                recognizer_ = SpeechRecognizer::create(model_, locale_);
            }
        });
    }

    std::optional<SpeechDetector> makeDetector() const {
        try {
            return detector_ ? std::optional(SpeechDetector::create(*detector_)) : std::nullopt;
        } catch (const TranscriberError&) {
            return std::nullopt;
        }
    }

    /// How long to wait for audio: while an utterance is open, until something has to be done about it.
    [[nodiscard]] std::optional<Clock::duration> patience() const {
        if (!session_ || !session_->recognizer.isOpen()) {
            return std::nullopt;
        }
        return isPartialGiven_ ? endAfter : partialAfter;
    }

    void handle(const Event& event) {
        if (queue_->isClosed() || event.ticket->isCancelled) {
            session_.reset();
            return;
        }
        isPartialGiven_ = false;
        if (event.ticket != last_) {
            begin(event.ticket);
        }
        if (!session_) {
            return;
        }
        if (const auto* sound = std::get_if<PcmBuffer>(&event.what)) {
            accept(*sound);
        } else if (const auto* seconds = std::get_if<double>(&event.what)) {
            flush();
            session_->recognizer.skip(std::llround(*seconds * UtteranceRecognizer::rate));
        } else {
            flush();
            if (std::get<End>(event.what).isHandedOver) {
                carried_ = session_->recognizer.takeAudio();
            } else {
                session_->recognizer.finish();
            }
            session_.reset();
        }
    }

    void begin(const std::shared_ptr<Ticket>& ticket) {
        last_ = ticket;
        session_.reset();
        load();
        if (!recognizer_) {
            return;
        }
        const auto decode = [this, ticket](std::span<const float> samples) {
            if (queue_->isClosed() || ticket->isCancelled) {
                throw TranscriberError::failed("cancelled");
            }
            return recognizer_->decode(samples);
        };
        const auto report = [this, ticket](const SpeechResult& result) {
            if (!queue_->isClosed() && !ticket->isCancelled) {
                ticket->onResult(result);
            }
        };
        session_.emplace(
            Session{ticket, UtteranceRecognizer(*voice_, decode, report, std::exchange(carried_, {})), {}, {}});
    }

    void accept(const PcmBuffer& sound) {
        const std::vector<float>& samples = sound.channels.front();
        if (sound.format() == engineFormat) {
            flush();
            session_->recognizer.add(samples);
            return;
        }
        std::optional<SampleConverter>& converter = session_->converter;
        if (!converter) {
            converter.emplace(
                SampleInput{AV_SAMPLE_FMT_FLTP, TrackFormat::processing.rate, Ffmpeg::Layout::ofChannels(1)},
                engineFormat);
        }
        const auto* row = reinterpret_cast<const std::uint8_t*>(samples.data());
        converter->convert(&row, static_cast<int>(samples.size()), session_->converted);
        passOn();
    }

    /// Gets the last samples out of the converter: the audio is interrupted.
    void flush() {
        if (session_->converter) {
            session_->converter->finish(session_->converted);
            session_->converter.reset();
            passOn();
        }
    }

    void passOn() {
        if (session_->converted.frames() > 0) {
            session_->recognizer.add(session_->converted.channels.front());
            session_->converted.channels.front().clear();
        }
    }

    /// Nothing waits: decodes what is open so far, or ends it when no audio has come for too long.
    void useTheTime() {
        if (session_ && session_->ticket->isCancelled) {
            session_.reset();
        }
        const std::optional<Clock::duration> idle = queue_->idleFor();
        if (!session_ || !idle) {
            return;
        }
        if (*idle >= endAfter) {
            session_->recognizer.finish();
        } else {
            isPartialGiven_ = *idle >= partialAfter;
            session_->recognizer.offerPartial(isPartialGiven_);
        }
    }

    std::shared_ptr<Queue> queue_;
    SpeechModel model_;
    std::string locale_;
    std::optional<std::filesystem::path> detector_;
    std::optional<LiveVoiceActivity> voice_;
    std::optional<SpeechRecognizer> recognizer_;
    /// The request whose events come now; its session ends before it where an error does.
    std::shared_ptr<Ticket> last_;
    std::optional<Session> session_;
    /// Audio of the request before it that is to be transcribed in the next session.
    std::vector<float> carried_;
    /// Whether the open utterance was decoded in the pause of delivery that lasts.
    bool isPartialGiven_ = false;
};

RecognitionThread::RecognitionThread(SpeechModel model, std::string locale,
                                     std::optional<std::filesystem::path> detector)
    : queue_(std::make_shared<Queue>()),
      thread_([worker = std::make_shared<Worker>(queue_, std::move(model), std::move(locale), std::move(detector))] {
          worker->run();
      }) {}

RecognitionThread::~RecognitionThread() {
    queue_->close();
}

std::unique_ptr<SpeechRequest> RecognitionThread::open(SpeechRequest::OnResult onResult) {
    return std::make_unique<Request>(queue_, std::move(onResult));
}

} // namespace varnic
