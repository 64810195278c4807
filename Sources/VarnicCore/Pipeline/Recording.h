#pragma once

#include "VarnicCore/Models/Call.h"
#include "VarnicCore/Models/Date.h"
#include "VarnicCore/Models/Segment.h"
#include "VarnicCore/Models/Speaker.h"
#include "VarnicCore/Models/Uuid.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace varnic {

/// Where the audio of a recording lies.
struct CallTracks {
    std::optional<std::filesystem::path> you;
    std::optional<std::filesystem::path> them;

    /// The speakers that have a track, you first.
    [[nodiscard]] std::vector<Speaker> speakers() const;

    bool operator==(const CallTracks&) const = default;
};

/// What is known of a recording before it is processed.
struct Recording {
    Uuid noteID;
    CallTracks tracks;
    /// The transcript written while the call ran; stands in for transcription when it is not empty, unless the tracks
    /// give a better one.
    std::optional<std::vector<Segment>> live;
    /// Whether `live` lacks words, since the machine did not keep up.
    bool isLiveBehind = false;
    /// The id of the speech model that wrote `live`, if it is one of this machine's.
    std::string liveModel;
    /// The language tag that `live` was written in; empty where nobody says.
    std::string liveLanguage;
    Date startedAt;
    /// Seconds.
    double duration = 0;
    std::string source;
    std::optional<std::string> audioFolder;
    /// What of the audio could not be kept, in sentences for the note.
    std::optional<std::string> loss;

    /// The call as far as it is known before it is transcribed, in the language of its live lines.
    [[nodiscard]] CallRecord record() const;
};

} // namespace varnic
