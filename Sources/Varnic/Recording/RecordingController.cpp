#include "Varnic/Recording/RecordingController.h"

#include "Varnic/Background.h"
#include "Varnic/LoopExecutor.h"
#include "Varnic/Recording/RecordingHealth.h"
#include "VarnicCore/Audio/AudioFiles.h"
#include "VarnicPlatform/Speech/SpeechModel.h"

#include <QCoro/QCoroTimer>
#include <QPointer>

#include <algorithm>
#include <chrono>
#include <functional>
#include <stdexcept>

namespace varnic {

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

constexpr std::array bothSides{Speaker::you, Speaker::them};
/// How long audio that was played before the stop may take to arrive.
constexpr auto lateSound = 250ms;
/// How long the recognisers get for their final results.
constexpr auto lastWords = 1200ms;

std::optional<std::uintmax_t> freeBytes(const fs::path& folder) {
    // The folder itself may yet have to be made.
    std::error_code error;
    fs::path there = folder;
    while (!fs::exists(there, error) && there.has_relative_path()) {
        there = there.parent_path();
    }
    const fs::space_info space = fs::space(there, error);
    return error ? std::nullopt : std::optional(space.available);
}

std::unique_ptr<LiveRecognizer> installedRecognizer(Speaker speaker, const std::string& locale,
                                                    LiveRecognizer::Lines onPartial, LiveRecognizer::Lines onCommit) {
    return LiveRecognizer::create(speaker, locale, SpeechModels::dataDirectories(), std::move(onPartial),
                                  std::move(onCommit));
}

} // namespace

RecordingController::RecordingController(QObject* parent)
    : QObject(parent), makeRecognizer(installedRecognizer), diskSpace(freeBytes) {
    ticker_.setInterval(50ms);
    ticker_.setTimerType(Qt::PreciseTimer);
    connect(&ticker_, &QTimer::timeout, this, &RecordingController::tick);
    healthTimer_.setInterval(1s);
    connect(&healthTimer_, &QTimer::timeout, this, &RecordingController::checkHealth);
}

RecordingController::~RecordingController() {
    if (capture_) {
        capture_->stop();
    }
    if (recorder_) {
        recorder_->cancelRecognizers();
    }
}

bool RecordingController::isPaused() const {
    return recorder_ && recorder_->pauses().isPaused();
}

bool RecordingController::hasLiveTranscript() const {
    return recorder_ && recorder_->hasRecognizers();
}

std::vector<Segment> RecordingController::liveSegments() const {
    std::vector<Segment> lines = committed_;
    for (const auto& [speaker, unfinished] : partial_) {
        lines.insert(lines.end(), unfinished.begin(), unfinished.end());
    }
    std::ranges::stable_sort(lines, {}, &Segment::start);
    return lines;
}

QCoro::Task<> RecordingController::start(Uuid noteID, fs::path folder, std::shared_ptr<CaptureSource> capture,
                                         std::optional<std::string> liveLocale, std::string source,
                                         WantedSides wanted) {
    if (isBusy(state_)) {
        co_return;
    }
    const QPointer self(this);
    const int session = ++session_;
    setState(Session::Starting());
    noteID_ = noteID;
    folder_ = folder;
    liveLanguage_ = liveLocale.value_or("");
    reset(std::move(source));
    std::exception_ptr failure;
    try {
        if (const auto refusal = RecordingHealth::refusal(diskSpace(folder))) {
            throw std::runtime_error(*refusal);
        }
        // Opening the models takes a moment, which is no part of the recording that the mark tells of.
        TrackRecorder::Recognizers recognizers;
        if (liveLocale) {
            const auto openModels = recognizerMaker(*liveLocale);
            recognizers = co_await inBackground(openModels);
            if (!self || session_ != session) {
                co_return;
            }
        }
        mark_ = std::make_shared<RecordingMarkFile>(RecordingMarkFile::create(
            folder, {noteID, currentDate(), source_, std::vector(bothSides.begin(), bothSides.end())}));
        const auto recorder = std::make_shared<TrackRecorder>(folder, std::move(recognizers));
        recorder_ = recorder;
        hostStart_ = HostClock::now();
        startedAt_ = currentDate();
        // Held here, since the recording may be discarded while the devices are still opening.
        const auto open = [capture, recorder, wanted, hostStart = hostStart_] {
            return capture->start(hostStart, wanted, [recorder](Speaker speaker, PcmBuffer buffer, double at) {
                recorder->deliver(speaker, std::move(buffer), at);
            });
        };
        auto sides = co_await inBackground(open);
        if (!self || session_ != session) {
            capture->stop();
            co_return;
        }
        capture_ = capture;
        begin(std::move(sides));
    } catch (const std::exception& error) {
        if (self && session_ == session) {
            fail(error.what());
        }
        failure = std::current_exception();
    }
    if (failure) {
        std::rethrow_exception(failure);
    }
}

QCoro::Task<std::optional<RecordingResult>> RecordingController::stop() {
    if (!isRecording(state_) || !recorder_) {
        co_return std::nullopt;
    }
    const QPointer self(this);
    const int session = session_;
    const auto recorder = recorder_;
    const auto capture = std::exchange(capture_, nullptr);
    const double wall = recorder->pauses().elapsed(now());
    setState(Session::Stopping());
    ticker_.stop();
    healthTimer_.stop();
    const auto close = [capture] { capture->stop(); };
    co_await inBackground(close);
    co_await QCoro::sleepFor(lateSound);
    const auto pad = [recorder, wall] {
        const double length = std::max(wall, recorder->longest());
        recorder->pad(length);
        return length;
    };
    const double target = co_await inBackground(pad);
    if (self && session_ == session) {
        takeInLateSides();
        recorder->keepOnly(sides_);
    }
    if (recorder->hasRecognizers()) {
        const auto end = [recorder] { recorder->endAudio(); };
        co_await inBackground(end);
        co_await QCoro::sleepFor(lastWords);
    }
    const auto finish = [recorder] { recorder->close(); };
    co_await inBackground(finish);
    if (!self || session_ != session) {
        co_return std::nullopt;
    }
    RecordingResult result{.noteID = noteID_,
                           .folder = folder_,
                           .tracks = tracks(),
                           .startedAt = startedAt_,
                           .duration = target,
                           .source = source_,
                           .live = liveSegments(),
                           .isLiveBehind = !recorder->haveRecognizersHeardAll(sides_),
                           .liveModel = recorder->liveModel(),
                           .liveLanguage = liveLanguage_,
                           .loss = std::nullopt,
                           .mark = mark_};
    for (const auto& [speaker, sentence] : recorder->losses()) {
        result.loss = result.loss ? *result.loss + " " + sentence : sentence;
    }
    release();
    setState(Session::Idle());
    co_return result;
}

void RecordingController::discard() {
    // The folder of a recording that has ended is that of a call.
    if (!isBusy(state_)) {
        return;
    }
    ++session_;
    // The mark is held until the folder is gone, so that nobody takes it for a recording that died.
    const auto mark = mark_;
    release();
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
    setState(Session::Idle());
}

void RecordingController::pause() {
    if (isRecording(state_) && recorder_) {
        recorder_->pauses().pause(now());
        Q_EMIT stateChanged();
    }
}

void RecordingController::resume() {
    if (isPaused()) {
        recorder_->pauses().resume(now());
        expectedSince_.clear();
        Q_EMIT stateChanged();
    }
}

void RecordingController::loadDemo(double elapsed, std::vector<InkSample> samples, std::vector<Segment> committed,
                                   std::map<Speaker, std::vector<Segment>> partial, std::string source) {
    elapsed_ = elapsed;
    samples_ = std::move(samples);
    committed_ = std::move(committed);
    partial_ = std::move(partial);
    source_ = std::move(source);
    setState(Session::Recording{
        currentDate() - std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::duration<double>(elapsed))});
}

void RecordingController::clearDemo() {
    reset("Call");
    setState(Session::Idle());
}

void RecordingController::setState(SessionState state) {
    state_ = std::move(state);
    Q_EMIT stateChanged();
}

void RecordingController::setWarning(std::optional<std::string> warning) {
    if (warning_ != warning) {
        warning_ = std::move(warning);
        Q_EMIT warningChanged();
    }
}

void RecordingController::reset(std::string source) {
    source_ = std::move(source);
    elapsed_ = 0;
    samples_.clear();
    committed_.clear();
    partial_.clear();
    sides_.clear();
    awaited_.clear();
    expectedSince_.clear();
    setWarning(std::nullopt);
    Q_EMIT transcriptChanged();
}

std::function<TrackRecorder::Recognizers()> RecordingController::recognizerMaker(std::string locale) {
    return [make = makeRecognizer, locale = std::move(locale), onPartial = onMain(&RecordingController::takePartial),
            onCommit = onMain(&RecordingController::takeCommitted)] {
        TrackRecorder::Recognizers recognizers;
        for (const Speaker speaker : bothSides) {
            if (auto recognizer = make(speaker, locale, onPartial, onCommit)) {
                recognizers[speaker] = std::move(recognizer);
            }
        }
        return recognizers;
    };
}

LiveRecognizer::Lines RecordingController::onMain(void (RecordingController::*take)(Speaker, std::vector<Segment>)) {
    return [self = QPointer(this), loop = &LoopExecutor::main(), take, session = session_](Speaker speaker,
                                                                                           std::vector<Segment> lines) {
        loop->post([self, take, session, speaker, lines = std::move(lines)] {
            if (self && self->session_ == session && isBusy(self->state_)) {
                (self.data()->*take)(speaker, lines);
            }
        });
    };
}

void RecordingController::takePartial(Speaker speaker, std::vector<Segment> lines) {
    partial_[speaker] = std::move(lines);
    Q_EMIT transcriptChanged();
}

void RecordingController::takeCommitted(Speaker speaker, std::vector<Segment> lines) {
    committed_.insert(committed_.end(), lines.begin(), lines.end());
    partial_[speaker].clear();
    Q_EMIT transcriptChanged();
}

void RecordingController::begin(std::vector<Speaker> sides) {
    sides_ = std::move(sides);
    awaited_ = capture_->awaited();
    std::vector<Speaker> kept = sides_;
    kept.insert(kept.end(), awaited_.begin(), awaited_.end());
    recorder_->keepOnly(kept);
    checkHealth();
    setState(Session::Recording{startedAt_});
    ticker_.start();
    healthTimer_.start();
}

void RecordingController::takeInLateSides() {
    const auto hasCome = [this](Speaker side) { return recorder_->lastDelivery(side) > 0; };
    const auto come = std::ranges::partition(awaited_, std::not_fn(hasCome));
    sides_.insert(sides_.end(), come.begin(), come.end());
    awaited_.erase(come.begin(), come.end());
    std::ranges::sort(sides_);
}

/// The files of the sides that recorded. One that came to nothing is left out, for it would spoil the other's
/// transcript.
CallTracks RecordingController::tracks() const {
    CallTracks tracks;
    const auto losses = recorder_->losses();
    for (const Speaker speaker : sides_) {
        const fs::path file = TrackRecorder::trackFile(folder_, speaker);
        if (!losses.contains(speaker) || AudioFiles::duration(file) > 0) {
            (speaker == Speaker::you ? tracks.you : tracks.them) = file;
        }
    }
    return tracks;
}

void RecordingController::fail(const std::string& message) {
    if (mark_) {
        mark_->remove();
    }
    release();
    setState(Session::Failed{message});
}

void RecordingController::tick() {
    if (!isRecording(state_)) {
        return;
    }
    elapsed_ = recorder_->pauses().elapsed(now());
    InkSample sample = recorder_->levels().tick();
    if (std::ranges::find(sides_, Speaker::you) == sides_.end()) {
        sample.you = 0;
    }
    if (std::ranges::find(sides_, Speaker::them) == sides_.end()) {
        sample.them = 0;
    }
    if (samples_.size() == samplesKept) {
        samples_.erase(samples_.begin());
    }
    samples_.push_back(sample);
    Q_EMIT ticked();
}

void RecordingController::checkHealth() {
    takeInLateSides();
    const RecordingHealth health{.sides = sides_,
                                 .silent = silentSides(),
                                 .diskSpace = diskSpace(folder_),
                                 .writeProblem = recorder_->writeProblem(),
                                 .notice = capture_->notice()};
    setWarning(health.warning());
    if (health.mustStop() && isRecording(state_)) {
        Q_EMIT mustStop();
    }
}

std::vector<Speaker> RecordingController::silentSides() {
    std::vector<Speaker> silent;
    const double current = HostClock::now();
    for (const Speaker side : sides_) {
        if (!capture_->expects(side) || isPaused()) {
            expectedSince_.erase(side);
            continue;
        }
        const double since = expectedSince_.try_emplace(side, current).first->second;
        const double last = side == Speaker::you ? recorder_->lastSound(side) : recorder_->lastDelivery(side);
        if (current - std::max(since, last) > RecordingHealth::silenceAllowed(side)) {
            silent.push_back(side);
        }
    }
    return silent;
}

double RecordingController::now() const {
    return HostClock::now() - hostStart_;
}

void RecordingController::release() {
    ticker_.stop();
    healthTimer_.stop();
    if (const auto capture = std::exchange(capture_, nullptr)) {
        capture->stop();
    }
    if (const auto recorder = std::exchange(recorder_, nullptr)) {
        recorder->cancelRecognizers();
        recorder->close();
        Background::start([ended = recorder->takeRecognizers()]() mutable { ended.clear(); });
    }
    mark_.reset();
}

} // namespace varnic
