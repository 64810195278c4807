#pragma once

#include "VarnicCore/Models/Note.h"
#include "VarnicCore/Pipeline/Recording.h"

namespace varnic {

/// What lies on disk of a call besides its note.
struct CallFiles {
    CallTracks tracks;
    /// The call as it was before its last new transcript or summary is kept.
    bool hasEarlier = false;

    bool operator==(const CallFiles&) const = default;
};

/// What this program is doing with a call.
struct CallWork {
    bool isTranscribing = false;
    /// An AI is asked for a summary.
    bool isSummarising = false;
};

/// What may be done with the call of a note, and nothing with a note that is none: the one rule for the menus, the page
/// and the flows behind them.
struct CallActions {
    bool play = false;
    /// As one file with both sides.
    bool exportAudio = false;
    /// Anew, from the recording.
    bool transcribe = false;
    bool removeAudio = false;
    /// By an AI or by this program.
    bool summarise = false;
    bool bringBackEarlier = false;

    /// Pure; looks at no file.
    static CallActions of(const Note& note, const CallFiles& files, CallWork work);

    bool operator==(const CallActions&) const = default;
};

} // namespace varnic
