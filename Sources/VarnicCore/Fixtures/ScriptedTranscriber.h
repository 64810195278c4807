#pragma once

#include "VarnicCore/Pipeline/Transcriber.h"

#include <map>
#include <string>
#include <vector>

namespace varnic {

/// Gives lines that are known beforehand the times at which somebody really speaks in the file.
class ScriptedTranscriber final : public Transcriber {
public:
    /// What each side says, in order.
    std::map<Speaker, std::vector<std::string>> script;

    /// The speech in the file and the speaker's lines, in pairs up to the shorter of the two. Throws `missingFile` when
    /// there is no file, AudioError for one that cannot be read.
    [[nodiscard]] std::vector<Segment> transcribe(const SpokenTrack& track, const ProgressCallback& progress,
                                                  std::stop_token stop) const override;
};

} // namespace varnic
