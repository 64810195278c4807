#pragma once

#include "VarnicCore/Models/CallProblem.h"
#include "VarnicCore/Models/Note.h"
#include "VarnicCore/Models/Region.h"
#include "VarnicCore/Models/Summariser.h"
#include "VarnicCore/Pipeline/ProcessingStage.h"
#include "VarnicCore/Pipeline/Recording.h"
#include "VarnicCore/Pipeline/Transcriber.h"

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <vector>

namespace varnic {

/// A call that was transcribed.
struct WrittenCall {
    Note note;
    /// Whether its words are those of the moment only because the tracks, which ought to give better ones, gave none.
    bool isStopgap = false;
};

/// Turns what a recording left behind into a finished note. A plain value; several calls may be processed at once.
class CallProcessor {
public:
    CallProcessor(std::shared_ptr<const Transcriber> speechWriter, std::shared_ptr<const Summariser> digestMaker,
                  Region userRegion = Region::user());

    std::shared_ptr<const Transcriber> transcriber;
    std::shared_ptr<const Summariser> summariser;
    Region region;

    /// Takes the live transcript or, where there is none, it lacks words, was spoiled by an echo, or was written by a
    /// lesser model or in another language than the one spoken, transcribes both tracks at once; merges, summarises and
    /// makes the note; blocks until done. Whatever goes wrong with the call ends as a note whose `problem` says so.
    /// `progress` may be called on any thread.
    [[nodiscard]] WrittenCall process(const Recording& recording, const DigestContext& context,
                                      const StageCallback& progress, const std::stop_token& stop = {}) const;

    /// A copy of the note with a new transcript and, where that gives one, a new digest under the user's own title.
    /// Throws TranscriberError; the given note is unchanged either way.
    [[nodiscard]] Note retranscribe(const Note& note, const CallTracks& tracks, const DigestContext& context,
                                    const std::stop_token& stop = {}) const;

private:
    struct Sides {
        std::vector<Segment> you;
        std::vector<Segment> them;
    };

    [[nodiscard]] bool isOutdone(const Recording& recording, const SpokenLanguages& spoken,
                                 const std::stop_token& stop) const;
    [[nodiscard]] Sides transcribeBoth(const CallTracks& tracks, const SpokenLanguages& spoken,
                                       const std::function<void(double)>& overall, const std::stop_token& stop) const;
    [[nodiscard]] std::optional<CallDigest> tryDigest(const std::vector<Segment>& segments, DigestContext context,
                                                      const std::string& language, const std::stop_token& stop) const;
};

} // namespace varnic
