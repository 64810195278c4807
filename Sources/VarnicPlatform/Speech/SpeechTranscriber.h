#pragma once

#include "VarnicCore/Pipeline/Transcriber.h"
#include "VarnicPlatform/Speech/SpeechModel.h"

#include <filesystem>
#include <string>
#include <vector>

namespace varnic {

/// Transcribes on this machine with the speech model that is installed for a language; no audio leaves it. The models
/// are looked up for each file, so that one installed meanwhile is found. Immutable; any number of files at a time, by
/// a SharedRecognizer.
class SpeechTranscriber final : public Transcriber {
public:
    /// `language` is what is spoken in calls. The model is chosen of those under `dataDirectories`
    /// (SpeechModels::dataDirectories()). A language that no model knows is named in the language of `displayLocale`.
    SpeechTranscriber(LanguageChoice language, ModelChoice choice, std::vector<std::filesystem::path> dataDirectories,
                      std::string displayLocale = "en");

    /// Throws, in this order: `missingFile`; `notAuthorized` when no model is installed at all; `noOnDevice` when none
    /// is for the language; `failed` with a sentence for a file that cannot be read; `unavailable` when the engine does
    /// not take the model; `failed` for the engine's errors and after a request through `stop`. A track without speech
    /// gives nothing and needs no engine. Progress never falls and stays at or under 0.99.
    [[nodiscard]] std::vector<Segment> transcribe(const SpokenTrack& track, const ProgressCallback& progress,
                                                  std::stop_token stop) const override;

    /// Quick unless the language is to be found out; then each side is listened to for some moments, with the model
    /// that knows languages best, and only languages that a model knows are heard.
    [[nodiscard]] SpokenLanguages languages(const CallTracks& tracks, const std::stop_token& stop) const override;

    [[nodiscard]] bool surpasses(const std::string& liveModel, const SpokenLanguages& spoken) const override;

private:
    LanguageChoice language_;
    ModelChoice choice_;
    std::vector<std::filesystem::path> dataDirectories_;
    std::string displayLocale_;
};

} // namespace varnic
