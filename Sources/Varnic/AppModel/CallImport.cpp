#include "Varnic/AppModel/CallImport.h"

#include "VarnicCore/Audio/AudioFiles.h"
#include "VarnicCore/Files/AtomicWrite.h"
#include "VarnicCore/Text/Unicode.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace varnic {

namespace fs = std::filesystem;

namespace {

Date dateOf(const statx_timestamp& time) {
    return std::chrono::floor<std::chrono::milliseconds>(std::chrono::sys_time<std::chrono::nanoseconds>(
        std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec)));
}

/// When a recording was made, or now where that is unknown. A copy may keep the date of the last change, but never that
/// of its creation.
Date creationDate(const fs::path& file) {
    struct statx status{};
    if (::statx(AT_FDCWD, file.c_str(), 0, STATX_BTIME | STATX_MTIME, &status) != 0) {
        return currentDate();
    }
    const Date changed = dateOf(status.stx_mtime);
    const bool isKnown = (status.stx_mask & STATX_BTIME) != 0 && status.stx_btime.tv_sec > 0;
    return isKnown ? std::min(changed, dateOf(status.stx_btime)) : changed;
}

void copyTrack(const fs::path& file, const fs::path& track) {
    std::error_code error;
    if (!fs::is_regular_file(file, error) || ::access(file.c_str(), R_OK) != 0) {
        throw std::runtime_error("Couldn’t read that file");
    }
    AtomicWrite::copy(file, track);
}

} // namespace

CopiedCall copyIn(const CallImport& call, const Uuid& id, const fs::path& folder) {
    Recording recording{.noteID = id, .startedAt = currentDate(), .source = call.source, .audioFolder = id.text()};
    for (const auto& file : {call.files.you, call.files.them}) {
        recording.startedAt = file ? std::min(recording.startedAt, creationDate(*file)) : recording.startedAt;
    }
    auto mark = std::make_shared<RecordingMarkFile>(
        RecordingMarkFile::create(folder, {id, recording.startedAt, call.source, call.files.speakers()}));
    const auto take = [&](const std::optional<fs::path>& file, Speaker side) -> std::optional<fs::path> {
        if (!file) {
            return std::nullopt;
        }
        const std::string extension = Unicode::lowerCased(file->extension().string());
        fs::path track = folder / (std::string(rawValue(side)) + (extension.empty() ? ".m4a" : extension));
        copyTrack(*file, track);
        const double duration = AudioFiles::duration(track);
        if (!(duration > 0)) {
            throw std::runtime_error("That file has no audio Varnic can read");
        }
        recording.duration = std::max(recording.duration, duration);
        return track;
    };
    recording.tracks = {.you = take(call.files.you, Speaker::you), .them = take(call.files.them, Speaker::them)};
    return {std::move(recording), std::move(mark)};
}

} // namespace varnic
