#include "VarnicCLI/Command.h"
#include "VarnicCLI/Files.h"
#include "VarnicCLI/Interruption.h"
#include "VarnicCLI/NotePrinter.h"
#include "VarnicCLI/Terminal.h"
#include "VarnicCLI/UserLibrary.h"
#include "VarnicCore/Audio/AudioReader.h"
#include "VarnicCore/Library/Folders.h"
#include "VarnicCore/Pipeline/CallProcessor.h"
#include "VarnicCore/Summariser/ExtractiveSummariser.h"
#include "VarnicCore/Text/Unicode.h"
#include "VarnicCore/Text/Wording.h"
#include "VarnicPlatform/Speech/SpeechModel.h"
#include "VarnicPlatform/Speech/SpeechTranscriber.h"

#include <fmt/format.h>

#include <algorithm>
#include <memory>

namespace varnic::cli {

namespace {

namespace fs = std::filesystem;

/// The audio folder of a call that is being filed: gone again unless the note was saved.
class AudioFolder {
public:
    explicit AudioFolder(fs::path folder) : folder_(std::move(folder)) { Folders::make(folder_); }

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

    void keep() { kept_ = true; }

private:
    fs::path folder_;
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

} // namespace

ExitCode transcribe(const Arguments& arguments) {
    arguments.expectNoWords();
    const auto you = arguments.value("you");
    const auto them = arguments.value("them");
    if (!you && !them) {
        throw UsageError("give a recording with --you, --them or both");
    }
    Recording recording{
        .noteID = Uuid::random(), .startedAt = currentDate(), .source = arguments.valueOr("source", "Call")};
    for (const auto& file : {you, them}) {
        if (file) {
            recording.duration = std::max(recording.duration, checkedDuration(*file));
            recording.startedAt = std::min(recording.startedAt, modifiedAt(*file));
        }
    }
    const Interruption interruption;
    LibraryStore store(libraryFolder());
    AudioFolder audio(store.audioFolder(recording.noteID));
    if (you) {
        recording.tracks.you = audio.add(*you, Speaker::you);
    }
    if (them) {
        recording.tracks.them = audio.add(*them, Speaker::them);
    }
    recording.audioFolder = recording.noteID.text();

    const std::string yourName = arguments.valueOr("your-name", "");
    const DigestContext context{.callDate = recording.startedAt,
                                .yourName = yourName,
                                .themName = arguments.valueOr("their-name", ""),
                                .source = recording.source};
    const std::string language = arguments.valueOr("language", "en-US");
    const CallProcessor processor(std::make_shared<SpeechTranscriber>(language, SpeechModels::dataDirectories()),
                                  std::make_shared<ExtractiveSummariser>());
    Note note = [&] {
        Terminal::ProgressBar bar;
        return processor.process(
            recording, context, [&bar](ProcessingStage stage) { bar.show(stage); }, interruption.token());
    }();
    if (interruption.happened()) {
        throw std::runtime_error("Stopped. Nothing was filed.");
    }
    note.call->language = language;
    store.save(note);
    audio.keep();

    if (arguments.has("json")) {
        fmt::print("{}\n", LibraryStore::encoded(note));
    } else {
        print(note, yourName, Region::user());
    }
    if (note.call->problem) {
        fmt::print(stderr, "varnic-cli: {}\n", Wording::shown(*note.call->problem));
        return ExitCode::failure;
    }
    return ExitCode::success;
}

} // namespace varnic::cli
