#pragma once

#include "VarnicPlatform/Speech/SpeechModel.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace varnic {

enum class PermissionState { granted, notAsked, denied };

/// Whether Varnic may and can record and write down. The desktop asks nobody, so Varnic does: `saidYes` is whether the
/// user has agreed once inside Varnic, and until then nothing is granted. After that a state tells whether it works.
/// Any thread, but for `override`.
namespace Permissions {

struct States {
    PermissionState mic;
    PermissionState screen;
    PermissionState speech;
};

/// What every reading gives when set, with nothing asked of the system. Set before other threads read.
inline std::optional<States> override;

/// Whether there is a microphone that can be opened. Asks PipeWire, see SoundSurvey::take.
PermissionState microphone(bool saidYes);
/// Whether the computer's sound can be reached. Asks PipeWire.
PermissionState screen(bool saidYes);
/// Whether a speech model for the locale is installed.
PermissionState speech(bool saidYes, std::string_view locale, const std::vector<SpeechModel>& models);

/// Called when the user has just said yes: `done` is told whether that grants it, on this thread.
void requestMicrophone(const std::function<void(bool)>& done);
void requestSpeech(std::string_view locale, const std::vector<SpeechModel>& models,
                   const std::function<void(bool)>& done);
bool requestScreen();

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
