#pragma once

#include "Varnic/Recording/LevelBox.h"
#include "Varnic/Recording/PauseClock.h"
#include "Varnic/SerialQueue.h"
#include "VarnicCore/Audio/PcmBuffer.h"
#include "VarnicCore/Audio/TrackWriter.h"
#include "VarnicPlatform/Speech/LiveRecognizer.h"

#include <array>
#include <atomic>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace varnic {

/// The part of a recording that runs beside the main thread: each side's audio on its way into its track, into the
/// eye's levels and into the live recogniser. All writing of both sides happens in order of delivery on one queue of
/// its own; a side that delivers nothing follows the other with silence.
class TrackRecorder {
public:
    using Recognizers = std::map<Speaker, std::unique_ptr<LiveRecognizer>>;

    /// Makes the files "you.m4a" and "them.m4a" in the folder. Throws AudioError.
    TrackRecorder(const std::filesystem::path& folder, Recognizers recognizers);

    static std::filesystem::path trackFile(const std::filesystem::path& folder, Speaker speaker);

    /// Leaves out all other sides and removes their files: there is no audio of them to be had. Waits for the queue.
    void keepOnly(const std::vector<Speaker>& sides);

    /// Takes a buffer of audio of `at` seconds since time zero. Any thread, at once.
    void deliver(Speaker speaker, PcmBuffer buffer, double at);

    [[nodiscard]] LevelBox& levels() { return levels_; }

    [[nodiscard]] PauseClock& pauses() { return pauses_; }

    /// When audio of this side last came in, on the HostClock; 0 before the first.
    [[nodiscard]] double lastDelivery(Speaker speaker) const { return lastDelivery_[index(speaker)]; }

    /// When something was last heard on this side, on the HostClock: anything but digital silence. 0 before that.
    [[nodiscard]] double lastSound(Speaker speaker) const { return lastSound_[index(speaker)]; }

    /// Why audio cannot be written; nothing while all is well. The same sentence for as long as that lasts. Any thread.
    [[nodiscard]] std::optional<std::string> writeProblem() const;

    /// What the tracks lack of the audio that came, and why, a sentence for each side. Any thread.
    [[nodiscard]] std::map<Speaker, std::string> losses() const;

    /// Seconds of the longer track, with all that has been delivered. Waits for the queue.
    [[nodiscard]] double longest();

    /// Brings both tracks to this length, in seconds, at the least. Waits for the queue.
    void pad(double target);

    [[nodiscard]] bool hasRecognizers() const { return !recognizers_.empty(); }

    /// Whether, after `endAudio`, the recognisers have given their last results for these sides.
    [[nodiscard]] bool haveRecognizersHeardAll(const std::vector<Speaker>& sides) const;
    /// The id of the recognisers' model; empty where no model of this machine recognises.
    [[nodiscard]] std::string liveModel() const;

    /// Lets the recognisers come to their final results.
    void endAudio();
    /// Ends the recognisers; none of them calls back any more.
    void cancelRecognizers();

    /// Closes the files. Nothing may be delivered any more.
    void close();

    /// Hands the recognisers out, after `close`: to end one may take as long as its model does to load.
    Recognizers takeRecognizers() { return std::exchange(recognizers_, {}); }

private:
    static std::size_t index(Speaker speaker) { return speaker == Speaker::you ? 0 : 1; }

    /// Audio of one side that could not be written, in seconds of the call.
    struct Loss {
        double from = 0;
        double last = 0;
        bool isOver = false;
        std::string reason;
    };

    void write(Speaker speaker, const PcmBuffer& buffer, double at);
    bool attempt(Speaker speaker, double at, const std::function<void(TrackWriter&)>& work);
    void noteFailure(Speaker speaker, double at, const std::string& reason);
    void noteSuccess(Speaker speaker, double at);

    LevelBox levels_;
    PauseClock pauses_;
    std::array<std::atomic<double>, 2> lastDelivery_{};
    std::array<std::atomic<double>, 2> lastSound_{};
    mutable std::mutex lossesLock_;
    std::map<Speaker, Loss> losses_;
    /// Of the queue.
    std::map<Speaker, std::unique_ptr<TrackWriter>> writers_;
    Recognizers recognizers_;
    /// Last, so that its work ends before what it works on.
    SerialQueue queue_;
};

} // namespace varnic
