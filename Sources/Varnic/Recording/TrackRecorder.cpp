#include "Varnic/Recording/TrackRecorder.h"

#include "VarnicCore/Audio/CaptureSource.h"
#include "VarnicCore/Audio/Resampler.h"

#include <algorithm>
#include <exception>
#include <system_error>

namespace varnic {

namespace {

/// Seconds by which the sound of one side may come later than that of the other: twice what waits for its turn at most.
constexpr double mostLag = 10;

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
    queue_.async([this, sides] {
        std::erase_if(writers_, [&sides](const auto& side) {
            const bool isKept = std::ranges::find(sides, side.first) != sides.end();
            if (!isKept) {
                std::error_code ignored;
                std::filesystem::remove(side.second->url(), ignored);
            }
            return !isKept;
        });
    });
}

void TrackRecorder::deliver(Speaker speaker, PcmBuffer buffer, double at) {
    lastDelivery_[index(speaker)] = HostClock::now();
    if (const auto place = pauses_.place(at)) {
        queue_.async([this, speaker, buffer = std::move(buffer), place = *place] { write(speaker, buffer, place); });
    }
}

void TrackRecorder::write(Speaker speaker, const PcmBuffer& buffer, double at) {
    const auto found = writers_.find(speaker);
    if (found == writers_.end()) {
        return;
    }
    TrackWriter& writer = *found->second;
    try {
        writer.append(buffer, at);
        // A side on which nothing is heard grows too: hours of silence made at once, when it is, would hold both up.
        for (const auto& [side, other] : writers_) {
            other->pad(at - mostLag);
        }
        note(std::nullopt);
    } catch (const std::exception& error) {
        // The next piece's time brings back what is missing here.
        note(error.what());
    }
    levels_.set(speaker, writer.level());
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

void TrackRecorder::note(std::optional<std::string> problem) {
    const std::lock_guard guard(problemLock_);
    problem_ = std::move(problem);
}

std::optional<std::string> TrackRecorder::writeProblem() const {
    const std::lock_guard guard(problemLock_);
    return problem_;
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
            try {
                writer->pad(target);
            } catch (const std::exception& error) {
                note(error.what());
            }
        }
    });
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
            try {
                writer->close();
            } catch (const std::exception& error) {
                note(error.what());
            }
        }
    });
}

} // namespace varnic
