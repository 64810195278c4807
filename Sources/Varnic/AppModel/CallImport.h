#pragma once

#include "VarnicCore/Library/RecordingMark.h"
#include "VarnicCore/Pipeline/Recording.h"

#include <filesystem>
#include <memory>
#include <string>

namespace varnic {

/// Recordings made elsewhere that are to become one call.
struct CallImport {
    /// One at least.
    CallTracks files;
    std::string source = "Imported recording";
    std::string themName = "Speaker";
    /// The note is on disk while it is being transcribed, and stays when that is cancelled. Otherwise it is filed when
    /// it is finished; a cancelled one leaves nothing, and one whose program died is a recording to be recovered.
    bool isFiledAtOnce = true;
};

/// Recordings copied into the audio folder of their call.
struct CopiedCall {
    Recording recording;
    /// To be removed once the note is on disk; until then the folder counts as a recording that is being made.
    std::shared_ptr<RecordingMarkFile> mark;
};

/// Copies the recordings into the folder. Throws std::runtime_error with the user's sentence; what the folder holds
/// then is of no use. Blocks; any thread.
CopiedCall copyIn(const CallImport& call, const Uuid& id, const std::filesystem::path& folder);

} // namespace varnic
