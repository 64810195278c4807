#pragma once

#include "VarnicPlatform/Speech/SpeechModel.h"

#include <array>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace varnic {

enum class PermissionState { granted, notAsked, denied };

/// One thing that recording takes, as the user reads of it.
struct Permission {
    PermissionState state = PermissionState::notAsked;
    std::string title;
    /// What it is for.
    std::string purpose;
    /// It can't be had, whether or not the user has said yes; `remedy` tells what to do.
    bool isMissing = false;
    /// What to do where it is missing.
    std::string remedy;
    /// Its settings, see Permissions::openSettings.
    std::string pane;
};

/// Whether Varnic may and can record and transcribe. The desktop asks nobody, so Varnic does: `saidYes` is whether the
/// user has agreed once inside Varnic, and until then nothing is granted. After that a state tells whether it works.
/// Any thread, but for `override`.
namespace Permissions {

struct States {
    /// Whether there is a microphone that can be opened.
    PermissionState mic = PermissionState::notAsked;
    /// Whether the computer's sound can be reached.
    PermissionState screen = PermissionState::notAsked;
    /// Whether a speech model for the language is installed.
    PermissionState speech = PermissionState::notAsked;

    bool operator==(const States&) const = default;
};

/// What there is, for the words about what is missing.
struct Surroundings {
    /// Whether PipeWire's configuration for programs can be read, without which nothing is asked.
    bool isConfigured = true;
    /// See SoundSurvey.
    bool isReachable = true;
    bool hasSound = true;
    bool hasMicrophone = true;
    /// The output that is there in place of a microphone; empty for none.
    std::string output;
    /// Whether one of the speech models fits the language.
    bool hasModel = true;
    /// The languages of the speech models, as the user calls them.
    std::vector<std::string> languages;
};

struct Findings {
    States states;
    Surroundings there;
};

/// What `survey` gives when set, with nothing asked of the system. Set before other threads ask.
inline std::optional<States> override;

/// Asks PipeWire once where the user has said yes, which takes some milliseconds, at most a few seconds (see
/// SoundSurvey::take). `models` are those that there are to transcribe the language with.
States survey(bool saidYes, const LanguageChoice& language,
              const std::vector<SpeechModel>& models = SpeechModels::installed(SpeechModels::dataDirectories()));

/// The same with what there is; `reader` is the locale to name languages in.
Findings look(bool saidYes, const LanguageChoice& language, const std::string& reader,
              const std::vector<SpeechModel>& models = SpeechModels::installed(SpeechModels::dataDirectories()));

/// Microphone, system audio and speech recognition, in this order, with what to do where one is missing; `locale` is
/// the language to transcribe.
std::array<Permission, 3> described(const Findings& findings, std::string_view locale, const std::string& reader);

/// The same where only the states are known.
std::array<Permission, 3> described(const States& states, std::string_view locale);

/// Where the user puts speech models; see docs/models.md for what goes there. Makes the folder where it is missing.
/// Throws LibraryError.
std::filesystem::path modelsFolder();

/// Opens the desktop's settings for "Privacy_Microphone", "Privacy_ScreenCapture" or "Privacy_SpeechRecognition"; false
/// where no program for that is found.
bool openSettings(std::string_view pane);

struct Language {
    /// A language tag such as "en" or "pt-BR".
    std::string id;
    /// Its name in the reader's language.
    std::string name;

    bool operator==(const Language&) const = default;
};

/// The languages of the models, sorted by name; `reader` is the locale to name them in.
std::vector<Language> onDeviceLanguages(const std::vector<SpeechModel>& models, const std::string& reader);

} // namespace Permissions
} // namespace varnic
