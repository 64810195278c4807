#include "Varnic/Recording/TrackRecorder.h"

#include "VarnicCore/Audio/CaptureSource.h"
#include "VarnicCore/Audio/Resampler.h"
#include "VarnicCore/Models/CallProblem.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <limits>
#include <system_error>

namespace varnic {

namespace {

/// Seconds by which the audio of one side may come later than that of the other: twice what waits for its turn at most.
constexpr double mostLag = 10;
/// Seconds for which audio has to be written again before a loss counts as over: a second of it waits in memory before
/// anything goes to the disk.
constexpr double recovery = 5;
/// Half a step of 16-bit audio; less is digital silence.
constexpr float leastSound = 1.0F / 65'536;

bool isHeard(const PcmBuffer& buffer) {
    return std::ranges::any_of(buffer.channels, [](const std::vector<float>& row) {
        return std::ranges::any_of(row, [](float sample) { return std::abs(sample) >= leastSound; });
    });
}

} // namespace

TrackRecorder::TrackRecorder(const std::filesystem::path& folder, Recognizers recognizers)
    : recognizers_(std::move(recognizers)) {
    for (const Speaker speaker : {Speaker::you, Speaker::them}) {
        writers_[speaker] = std::make_unique<TrackWriter>(trackFile(folder, speaker), speaker, true);
    }
}

std::filesystem::path TrackRecorder::trackFile(const std::filesystem::path& folder, Speaker speaker) {
    return folder / (std::string(rawValue(speaker)) + ".m4a");
}

void TrackRecorder::keepOnly(const std::vector<Speaker>& sides) {
    queue_.sync([this, &sides] {
        std::erase_if(writers_, [&](const auto& side) {
            const bool isKept = std::ranges::find(sides, side.first) != sides.end();
            if (!isKept) {
                std::error_code ignored;
                std::filesystem::remove(side.second->url(), ignored);
                const std::lock_guard guard(lossesLock_);
                losses_.erase(side.first);
            }
            return !isKept;
        });
    });
}

void TrackRecorder::deliver(Speaker speaker, PcmBuffer buffer, double at) {
    lastDelivery_[index(speaker)] = HostClock::now();
    if (isHeard(buffer)) {
        lastSound_[index(speaker)] = HostClock::now();
    }
    if (const auto place = pauses_.place(at)) {
        queue_.async([this, speaker, buffer = std::move(buffer), place = *place] { write(speaker, buffer, place); });
    }
}

void TrackRecorder::write(Speaker speaker, const PcmBuffer& buffer, double at) {
    const auto found = writers_.find(speaker);
    if (found == writers_.end()) {
        return;
    }
    // The next piece's time brings back what is missing here.
    if (attempt(speaker, at, [&](TrackWriter& writer) { writer.append(buffer, at); })) {
        noteSuccess(speaker, at);
    }
    // A side on which nothing is heard grows too: hours of silence made at once, when it is, would hold both up.
    for (const auto& [side, other] : writers_) {
        if (side != speaker) {
            attempt(side, at, [&](TrackWriter& writer) { writer.pad(at - mostLag); });
        }
    }
    levels_.set(speaker, found->second->level());
    const auto recognizer = recognizers_.find(speaker);
    if (recognizer == recognizers_.end()) {
        return;
    }
    try {
        recognizer->second->append(Resampler{TrackFormat::processing}.convert(buffer), at);
    } catch (const std::exception&) {
        // A piece that can't be converted is not recognised; the track is not affected.
    }
}

/// Whether the side's file took it. On the queue.
bool TrackRecorder::attempt(Speaker speaker, double at, const std::function<void(TrackWriter&)>& work) {
    try {
        work(*writers_.at(speaker));
        return true;
    } catch (const std::exception& error) {
        noteFailure(speaker, at, error.what());
        return false;
    }
}

void TrackRecorder::noteFailure(Speaker speaker, double at, const std::string& reason) {
    const std::lock_guard guard(lossesLock_);
    Loss& loss = losses_.try_emplace(speaker, Loss{.from = at, .reason = reason}).first->second;
    loss.last = std::max(loss.last, at);
    loss.isOver = false;
}

void TrackRecorder::noteSuccess(Speaker speaker, double at) {
    const std::lock_guard guard(lossesLock_);
    if (const auto loss = losses_.find(speaker); loss != losses_.end() && at > loss->second.last + recovery) {
        loss->second.isOver = true;
    }
}

std::optional<std::string> TrackRecorder::writeProblem() const {
    const std::lock_guard guard(lossesLock_);
    const Loss* first = nullptr;
    for (const auto& [speaker, loss] : losses_) {
        if (!loss.isOver && (first == nullptr || loss.from < first->from)) {
            first = &loss;
        }
    }
    return first == nullptr ? std::nullopt : std::optional(first->reason);
}

std::map<Speaker, std::string> TrackRecorder::losses() const {
    const std::lock_guard guard(lossesLock_);
    std::map<Speaker, std::string> sentences;
    for (const auto& [speaker, loss] : losses_) {
        sentences[speaker] =
            CallProblem::loss(speaker, loss.from, loss.isOver ? std::optional(loss.last) : std::nullopt, loss.reason);
    }
    return sentences;
}

double TrackRecorder::longest() {
    double seconds = 0;
    queue_.sync([&] {
        for (const auto& [speaker, writer] : writers_) {
            seconds = std::max(seconds, writer->seconds());
        }
    });
    return seconds;
}

void TrackRecorder::pad(double target) {
    queue_.sync([&] {
        for (const auto& [speaker, writer] : writers_) {
            attempt(speaker, writer->seconds(), [target](TrackWriter& track) { track.pad(target); });
        }
    });
}

bool TrackRecorder::haveRecognizersHeardAll(const std::vector<Speaker>& sides) const {
    return std::ranges::all_of(sides, [this](Speaker side) {
        const auto found = recognizers_.find(side);
        return found != recognizers_.end() && found->second->isDone();
    });
}

std::string TrackRecorder::liveModel() const {
    return recognizers_.empty() ? "" : recognizers_.begin()->second->model();
}

void TrackRecorder::endAudio() {
    for (const auto& [speaker, recognizer] : recognizers_) {
        recognizer->endAudio();
    }
}

void TrackRecorder::cancelRecognizers() {
    for (const auto& [speaker, recognizer] : recognizers_) {
        recognizer->cancel();
    }
}

void TrackRecorder::close() {
    queue_.sync([&] {
        for (const auto& [speaker, writer] : writers_) {
            if (attempt(speaker, writer->seconds(), [](TrackWriter& track) { track.close(); })) {
                noteSuccess(speaker, std::numeric_limits<double>::infinity());
            }
        }
    });
}

} // namespace varnic
