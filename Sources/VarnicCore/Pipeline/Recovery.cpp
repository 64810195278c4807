#include "VarnicCore/Pipeline/Recovery.h"

#include "VarnicCore/Audio/AudioFiles.h"
#include "VarnicCore/Audio/TrackWriter.h"
#include "VarnicCore/Files/AtomicWrite.h"
#include "VarnicCore/Files/Folders.h"
#include "VarnicCore/Files/LibraryError.h"
#include "VarnicCore/Library/TrackFiles.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <exception>
#include <optional>
#include <utility>

namespace varnic::Recovery {

namespace fs = std::filesystem;

namespace {

/// More than a track has before its first second is whole: a head, and at 8 KB a second what was being written.
constexpr std::uintmax_t mostOfABeginning = 16'384;

/// A side's file that holds audio.
struct Track {
    fs::path file;
    /// Seconds.
    double length = 0;
};

std::optional<Track> trackOf(const std::vector<fs::path>& entries, Speaker speaker) {
    for (const fs::path& file : TrackFiles::of(entries, speaker)) {
        if (const double length = AudioFiles::duration(file); length > 0) {
            return Track{file, length};
        }
    }
    return std::nullopt;
}

/// The track of a side that was recorded but of which nothing is on disk, since it had just begun or nobody had spoken
/// there: the silence that it would have got at the recording's end. Nothing where the side has no such file.
std::optional<Track> silentTrack(const fs::path& folder, Speaker speaker, double length) {
    const fs::path file = folder / (std::string(rawValue(speaker)) + ".m4a");
    std::error_code missing;
    const std::uintmax_t size = fs::file_size(file, missing);
    if (missing || size > mostOfABeginning) {
        return std::nullopt;
    }
    try {
        TrackWriter writer(file, speaker, true);
        writer.pad(length);
        writer.close();
    } catch (const std::exception&) {
        return std::nullopt; // the other side is worth a note without it
    }
    return Track{file, length};
}

/// When the recording began that ended with the last change of the track.
Date startOf(const Track& track) {
    std::error_code failure;
    const auto changed = fs::last_write_time(track.file, failure);
    if (failure) {
        return Date{};
    }
    return std::chrono::floor<std::chrono::milliseconds>(std::chrono::file_clock::to_sys(changed) -
                                                         std::chrono::duration<double>(track.length));
}

bool holdsTracks(const std::vector<fs::path>& entries) {
    return std::ranges::any_of(allSpeakers, [&](Speaker speaker) { return !TrackFiles::of(entries, speaker).empty(); });
}

/// Whether the recording's note is saved, or was and has been deleted. Throws LibraryError where that cannot be told.
bool isFiled(const LibraryStore& store, const Uuid& id) {
    return Folders::isThere(store.url(id)) || Folders::isThere(store.url(id).string() + ".damaged") ||
           Folders::isThere(store.deletedDir() / id.text());
}

Recording describe(const fs::path& folder, const Uuid& id, const std::optional<RecordingMark>& mark) {
    const std::vector<fs::path> entries = Folders::entries(folder);
    std::optional<Track> you = trackOf(entries, Speaker::you);
    std::optional<Track> them = trackOf(entries, Speaker::them);
    if (mark && you && !them) {
        them = silentTrack(folder, Speaker::them, you->length);
    } else if (mark && them && !you) {
        you = silentTrack(folder, Speaker::you, them->length);
    }
    Recording recording{.noteID = id, .source = "Call", .audioFolder = id.text()};
    std::optional<Date> start;
    for (const std::optional<Track>& track : {you, them}) {
        if (track) {
            recording.duration = std::max(recording.duration, track->length);
            start = std::min(start.value_or(Date::max()), startOf(*track));
        }
    }
    recording.tracks.you = you ? std::optional(you->file) : std::nullopt;
    recording.tracks.them = them ? std::optional(them->file) : std::nullopt;
    recording.startedAt = mark ? mark->startedAt : start.value_or(Date{});
    if (mark) {
        recording.source = mark->source;
    }
    return recording;
}

/// A folder that holds a mark. Its note is looked for once the mark is ours: before that a living process may be about
/// to save it, and after that nobody is.
std::optional<DeadRecording> marked(const LibraryStore& store, const fs::path& folder, const Uuid& id) {
    std::optional<RecordingMarkFile> mark = RecordingMarkFile::adopt(folder);
    if (!mark) {
        return std::nullopt;
    }
    if (isFiled(store, id)) {
        mark->remove();
        return std::nullopt;
    }
    // An import that died leaves a part of what it copied.
    for (const fs::path& entry : Folders::entries(folder)) {
        if (AtomicWrite::isTemporary(entry)) {
            Folders::removeAll(entry);
        }
    }
    return DeadRecording{describe(folder, id, mark->read()), folder, std::move(*mark)};
}

/// A folder that holds none, but tracks: it gets one.
std::optional<DeadRecording> unmarked(const LibraryStore& store, const fs::path& folder, const Uuid& id) {
    if (isFiled(store, id)) {
        return std::nullopt;
    }
    if (!holdsTracks(Folders::entries(folder))) {
        RecordingMarkFile::removeUnborn(folder);
        return std::nullopt;
    }
    try {
        Recording recording = describe(folder, id, std::nullopt);
        const RecordingMark known{id, recording.startedAt, recording.source, recording.tracks.speakers()};
        RecordingMarkFile mark = RecordingMarkFile::create(folder, known);
        if (isFiled(store, id)) {
            mark.remove();
            return std::nullopt;
        }
        return DeadRecording{std::move(recording), folder, std::move(mark)};
    } catch (const LibraryError&) {
        return std::nullopt; // a library that takes no mark takes no note either
    }
}

} // namespace

std::vector<DeadRecording> find(const LibraryStore& store) {
    std::vector<DeadRecording> dead;
    // A note that cannot be looked for is not a note that was never saved.
    static_cast<void>(Folders::list(store.notesDir()));
    for (const fs::path& folder : Folders::list(store.audioDir())) {
        const auto id = Uuid::parse(folder.filename().string());
        if (!id || store.audioFolder(*id) != folder) {
            continue;
        }
        auto found = RecordingMarkFile::isIn(folder) ? marked(store, folder, *id) : unmarked(store, folder, *id);
        if (found) {
            dead.push_back(std::move(*found));
        }
    }
    std::ranges::sort(dead, {}, [](const DeadRecording& one) { return one.recording.startedAt; });
    return dead;
}

} // namespace varnic::Recovery
