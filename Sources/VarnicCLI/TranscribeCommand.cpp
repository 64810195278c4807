#include "VarnicCLI/CallFiling.h"
#include "VarnicCLI/Files.h"
#include "VarnicCLI/Interruption.h"
#include "VarnicCLI/UserLibrary.h"
#include "VarnicCore/Audio/AudioReader.h"
#include "VarnicCore/Library/Folders.h"
#include "VarnicCore/Library/LibraryError.h"
#include "VarnicCore/Library/RecordingMark.h"
#include "VarnicCore/Text/Unicode.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace varnic::cli {

namespace {

namespace fs = std::filesystem;

/// The audio folder of a call that is being filed: gone again unless the note was saved. Its mark keeps others from
/// taking it for a recording that died, and after a kill lets them find it.
class AudioFolder {
public:
    /// Throws LibraryError.
    AudioFolder(fs::path folder, const RecordingMark& mark)
        : folder_(std::move(folder)), mark_(makeMarked(folder_, mark)) {}

    AudioFolder(const AudioFolder&) = delete;
    AudioFolder& operator=(const AudioFolder&) = delete;

    ~AudioFolder() {
        if (!kept_) {
            Folders::removeAll(folder_);
        }
    }

    /// Copies a recording in as the track of a side. Throws LibraryError.
    fs::path add(const fs::path& recording, Speaker speaker) {
        const std::string extension = Unicode::lowerCased(recording.extension().string());
        fs::path track = folder_ / (std::string(rawValue(speaker)) + (extension.empty() ? ".m4a" : extension));
        std::error_code error;
        if (!fs::copy_file(recording, track, error)) {
            throw LibraryError("written", track, error);
        }
        return track;
    }

    void keep() {
        mark_.remove();
        kept_ = true;
    }

private:
    static RecordingMarkFile makeMarked(const fs::path& folder, const RecordingMark& mark) {
        Folders::make(folder);
        try {
            return RecordingMarkFile::create(folder, mark);
        } catch (...) {
            Folders::removeAll(folder);
            throw;
        }
    }

    fs::path folder_;
    RecordingMarkFile mark_;
    bool kept_ = false;
};

/// Seconds of sound in a recording; throws with the user's sentence where it holds none.
double checkedDuration(const fs::path& recording) {
    const double duration = audioLength(recording).seconds();
    if (!(duration > 0)) {
        throw std::runtime_error(fmt::format("“{}” has no audio Varnic can read.", recording.filename().string()));
    }
    return duration;
}

/// Checks the recordings and tells from them when the call was and how long. Throws with the user's sentence.
Recording describe(const Arguments& arguments, const std::vector<fs::path>& files) {
    Recording recording{
        .noteID = Uuid::random(), .startedAt = currentDate(), .source = arguments.valueOr("source", "Call")};
    for (const fs::path& file : files) {
        recording.duration = std::max(recording.duration, checkedDuration(file));
        recording.startedAt = std::min(recording.startedAt, modifiedAt(file));
    }
    recording.audioFolder = recording.noteID.text();
    return recording;
}

} // namespace

ExitCode transcribe(const Arguments& arguments) {
    arguments.expectNoWords();
    std::vector<fs::path> files;
    std::vector<Speaker> sides;
    for (const Speaker speaker : allSpeakers) {
        if (const auto file = arguments.value(std::string(rawValue(speaker)))) {
            files.emplace_back(*file);
            sides.push_back(speaker);
        }
    }
    if (files.empty()) {
        throw UsageError("give a recording with --you, --them or both");
    }
    Recording recording = describe(arguments, files);
    const FilingOptions options = FilingOptions::from(arguments);
    const Interruption interruption;
    LibraryStore store(libraryFolder());
    AudioFolder audio(store.audioFolder(recording.noteID),
                      {recording.noteID, recording.startedAt, recording.source, sides});
    for (std::size_t side = 0; side < files.size(); ++side) {
        auto& track = sides[side] == Speaker::you ? recording.tracks.you : recording.tracks.them;
        track = audio.add(files[side], sides[side]);
    }
    const Note note = makeNote(recording, options, interruption.token());
    if (interruption.happened()) {
        throw std::runtime_error("Stopped. Nothing was filed.");
    }
    store.save(note);
    audio.keep();
    if (options.json) {
        fmt::print("{}\n", LibraryStore::encoded(note));
    } else {
        printFiled(note, options);
    }
    return tellProblem(note);
}

} // namespace varnic::cli
