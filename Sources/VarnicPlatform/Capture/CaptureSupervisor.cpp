#include "VarnicPlatform/Capture/CaptureSupervisor.h"

#include "VarnicCore/Audio/CaptureError.h"
#include "VarnicCore/Audio/CaptureSource.h"

#include <fmt/format.h>

#include <algorithm>

namespace varnic {

namespace {

/// Seconds. A headset that changes to its telephone profile takes a few to open.
constexpr double openingTime = 6;
constexpr double answerTime = 3;
constexpr double tick = 0.1;
constexpr double shortestRetry = 0.1;
constexpr double longestRetry = 3;

} // namespace

CaptureSupervisor::CaptureSupervisor(FrameRing& microphoneRing, FrameRing& programsRing)
    : programsRing_(programsRing), connection_([this] { onChange(); }), microphone_(microphoneRing) {}

bool CaptureSupervisor::connect() {
    const SoundConnection::Lock lock(connection_);
    return connection_.open() && connection_.settle(answerTime);
}

void CaptureSupervisor::openMicrophone() {
    const SoundConnection::Lock lock(connection_);
    wantsMicrophone_ = true;
    const SoundNode* source = connection_.graph().microphone();
    if (source == nullptr) {
        throw CaptureError::micFailed("no input device");
    }
    const std::string name = source->label();
    const auto isDecided = [this] {
        tendMicrophone(HostClock::now());
        return microphone_.delivers() || connection_.isLost();
    };
    if (!connection_.waitFor(isDecided, openingTime) || !microphone_.delivers()) {
        throw CaptureError::micFailed("no sound comes from “" + name + "”");
    }
}

void CaptureSupervisor::openPrograms() {
    const SoundConnection::Lock lock(connection_);
    if (!connection_.graph().hasSound()) {
        throw CaptureError::systemAudioFailed(
            "PipeWire is running, but has no sound devices. Does PulseAudio run the sound?");
    }
    makePrograms(HostClock::now());
    const auto isDecided = [this] { return programs_->isReady() || programs_->hasFailed() || connection_.isLost(); };
    if (!connection_.waitFor(isDecided, openingTime) || !programs_->isReady()) {
        programs_.reset();
        throw CaptureError::systemAudioFailed("PipeWire refused the connection.");
    }
    wantsPrograms_ = true;
    onChange();
}

void CaptureSupervisor::watch() {
    const SoundConnection::Lock lock(connection_);
    connection_.every(tick, [this] { tend(); });
}

void CaptureSupervisor::choose(const CaptureDevices& devices) {
    const SoundConnection::Lock lock(connection_);
    microphone_.choose(devices.microphone);
    heard_ = devices.heard;
    onChange();
}

void CaptureSupervisor::close() {
    const SoundConnection::Lock lock(connection_);
    connection_.stopTicking();
    microphone_.close();
    programs_.reset();
    connection_.close();
}

std::optional<std::string> CaptureSupervisor::notice() const {
    const std::scoped_lock lock(wordsLock_);
    return notice_;
}

std::vector<std::string> CaptureSupervisor::problems() const {
    const std::scoped_lock lock(wordsLock_);
    return problems_;
}

void CaptureSupervisor::addProblem(const std::string& sentence) {
    const std::scoped_lock lock(wordsLock_);
    if (std::ranges::find(problems_, sentence) == problems_.end()) {
        problems_.push_back(sentence);
    }
}

void CaptureSupervisor::onChange() {
    // The first objects are told while the graph is being made.
    if (!connection_.isOpen()) {
        return;
    }
    microphone_.verify(connection_.graph());
    if (programs_) {
        programs_->relink(connection_.graph(), heardOutput());
        const bool wasExpected = expectsPrograms_.exchange(programs_->isPlaying());
        if (programs_->isPlaying() && !wasExpected) {
            programsWatchdog_.attempted(HostClock::now());
        }
    }
}

/// In the loop's thread, some times a second. What fails in a callback is mended here, since the library does not like
/// to lose an object while it calls back for it.
void CaptureSupervisor::tend() {
    const double now = HostClock::now();
    if (!tendConnection(now)) {
        return;
    }
    if (wantsMicrophone_) {
        tendMicrophone(now);
    }
    if (wantsPrograms_) {
        tendPrograms(now);
    }
    updateNotice();
}

/// Whether there is a connection.
bool CaptureSupervisor::tendConnection(double now) {
    if (connection_.isLost()) {
        addProblem("The connection to the sound system was lost.");
        microphone_.close();
        programs_.reset();
        connection_.close();
        expectsPrograms_ = wantsPrograms_;
        retryDelay_ = shortestRetry;
    }
    if (!connection_.isOpen() && now >= retryAt_ && !connection_.open()) {
        retryAt_ = now + retryDelay_;
        retryDelay_ = std::min(retryDelay_ * 2, longestRetry);
    }
    return connection_.isOpen();
}

void CaptureSupervisor::tendMicrophone(double now) {
    for (const std::string& problem : microphone_.tend(connection_.core(), connection_.graph(), now)) {
        addProblem(problem);
    }
    updateNotice();
}

/// The output that the user has chosen; null where that is none in particular, or isn't there.
const SoundNode* CaptureSupervisor::heardOutput() const {
    const auto outputs = connection_.graph().outputs();
    const auto found = std::ranges::find(outputs, heard_.name, &SoundNode::name);
    return heard_.isDefault() || found == outputs.end() ? nullptr : *found;
}

void CaptureSupervisor::updateNotice() {
    std::optional<std::string> notice = microphone_.notice();
    if (!notice && wantsPrograms_ && !heard_.isDefault() && heardOutput() == nullptr) {
        notice = fmt::format("“{}” is gone — recording all that programs play instead.",
                             heard_.label.empty() ? heard_.name : heard_.label);
    }
    const std::scoped_lock lock(wordsLock_);
    notice_ = std::move(notice);
}

void CaptureSupervisor::tendPrograms(double now) {
    const bool isSilent = programs_ && (programs_->isPlaying() || programs_->hasFailed()) &&
                          programsWatchdog_.barks(now, programsRing_.lastPush());
    if (isSilent) {
        addProblem("The Mac’s sound stopped coming in.");
    }
    if (!programs_ || isSilent) {
        makePrograms(now);
    }
}

void CaptureSupervisor::makePrograms(double now) {
    programs_.emplace(connection_.core(), programsRing_);
    programsWatchdog_.attempted(now);
}

} // namespace varnic
