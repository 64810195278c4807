#pragma once

#include "VarnicCore/Library/LibraryStore.h"
#include "VarnicCore/Library/RecordingMark.h"
#include "VarnicCore/Pipeline/Recording.h"

#include <filesystem>
#include <vector>

namespace varnic {

/// A recording whose process died before its note was saved. While the object lives, no other process takes it up.
struct DeadRecording {
    /// What the pipeline needs for the note. Its tracks are those that can be played, its duration that of the longer.
    Recording recording;
    std::filesystem::path folder;
    /// Remove it when the note is saved.
    RecordingMarkFile mark;

    [[nodiscard]] bool hasSound() const { return !recording.tracks.speakers().empty(); }
};

/// Recordings that a crash, a kill or a power cut left without a note.
namespace Recovery {

/// The dead recordings of the library, oldest first, also those without any audio in them. Recordings of living
/// processes are left alone; marks of those whose note was saved, and folders left before there was a mark, are
/// removed. A marked recording's side that has a file, but nothing in it yet, becomes silence. Where a mark is missing
/// or damaged, the recording's start is told from its tracks' dates and lengths, and the source is "Call". Reads each
/// track's packets. Throws LibraryError where the library cannot be looked into.
std::vector<DeadRecording> find(const LibraryStore& store);

} // namespace Recovery

} // namespace varnic
