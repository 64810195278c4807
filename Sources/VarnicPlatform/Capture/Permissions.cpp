#include "VarnicPlatform/Capture/Permissions.h"

#include "VarnicCore/Audio/CaptureError.h"
#include "VarnicCore/Files/Folders.h"
#include "VarnicCore/Text/Language.h"
#include "VarnicPlatform/Capture/SoundSurvey.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <glib.h>

#include <algorithm>
#include <set>
#include <utility>

namespace varnic::Permissions {

namespace {

namespace fs = std::filesystem;

PermissionState grantedIf(bool works) {
    return works ? PermissionState::granted : PermissionState::denied;
}

bool isDenied(PermissionState state) {
    return state == PermissionState::denied;
}

/// Nothing where PipeWire's configuration for programs can't be read.
std::optional<SoundSurvey> soundSurvey() {
    try {
        return SoundSurvey::take();
    } catch (const CaptureError&) {
        return std::nullopt;
    }
}

bool launches(const std::vector<const char*>& command) {
    std::vector<char*> arguments;
    for (const char* word : command) {
        arguments.push_back(const_cast<char*>(word)); // GLib's parameter lacks the const; it only reads
    }
    arguments.push_back(nullptr);
    return g_spawn_async(
               nullptr, arguments.data(), nullptr,
               static_cast<GSpawnFlags>(G_SPAWN_SEARCH_PATH | G_SPAWN_STDOUT_TO_DEV_NULL | G_SPAWN_STDERR_TO_DEV_NULL),
               nullptr, nullptr, nullptr, nullptr) != 0;
}

/// What keeps all sound away; nothing where PipeWire has it.
std::optional<std::string> soundRemedy(const Surroundings& there) {
    if (!there.isConfigured) {
        return "PipeWire’s configuration for programs can’t be read, so nothing can be heard. On Debian it is in the "
               "package pipewire-bin.";
    }
    if (!there.isReachable) {
        return "PipeWire isn’t running, so nothing can be heard. Log out and in again, or start it with “systemctl "
               "--user start pipewire wireplumber”. It is in the packages pipewire and wireplumber.";
    }
    if (!there.hasSound) {
        return "PipeWire is running, but has no sound devices. It takes the package wireplumber to find them, and "
               "pipewire-pulse in place of PulseAudio, if that runs the sound.";
    }
    return std::nullopt;
}

std::string microphoneRemedy(const Surroundings& there) {
    if (auto remedy = soundRemedy(there)) {
        return std::move(*remedy);
    }
    const std::string found =
        there.output.empty() ? "" : fmt::format(" There is only “{}” to listen with.", there.output);
    return fmt::format("No microphone was found.{} Plug one in, or choose one in the sound settings.", found);
}

/// More languages than this are counted, and one that none of so many models knows is in no package.
constexpr std::size_t mostNamed = 8;

std::string speechRemedy(const Surroundings& there, const std::string& language) {
    const std::string later = "Calls are recorded without one, and can be transcribed later.";
    if (there.languages.empty()) {
        return "No speech model is installed. On Debian there is one for English in the package varnic-models, and one "
               "for 99 languages in varnic-models-whisper; others go into the models folder. " +
               later;
    }
    if (there.languages.size() > mostNamed) {
        return fmt::format("No speech model is installed for {}. There are models for {} other languages. Put one into "
                           "the models folder, or choose another language. {}",
                           language, there.languages.size(), later);
    }
    return fmt::format("No speech model is installed for {}. There are models for {}. On Debian there is one for 99 "
                       "languages in the package varnic-models-whisper; others go into the models folder. Or choose "
                       "another language. {}",
                       language, fmt::join(there.languages, ", "), later);
}

} // namespace

States survey(bool saidYes, const LanguageChoice& language, const std::vector<SpeechModel>& models) {
    return override || !saidYes ? override.value_or(States()) : look(true, language, "en", models).states;
}

Findings look(bool saidYes, const LanguageChoice& language, const std::string& reader,
              const std::vector<SpeechModel>& models) {
    if (override) {
        return {.states = *override, .there = {}};
    }
    const std::optional<SoundSurvey> found = soundSurvey();
    const SoundSurvey sound = found.value_or(SoundSurvey());
    Findings findings{.states = {},
                      .there = {.isConfigured = found.has_value(),
                                .isReachable = sound.isReachable,
                                .hasSound = sound.hasSound,
                                .hasMicrophone = sound.microphone.has_value(),
                                .output = sound.output.value_or(""),
                                .hasModel = SpeechModels::know(models, language),
                                .languages = {}}};
    for (const Language& known : onDeviceLanguages(models, reader)) {
        findings.there.languages.push_back(known.name);
    }
    if (saidYes) {
        findings.states = {.mic = grantedIf(findings.there.hasMicrophone),
                           .screen = grantedIf(findings.there.hasSound),
                           .speech = grantedIf(findings.there.hasModel)};
    }
    return findings;
}

std::array<Permission, 3> described(const States& states, std::string_view locale) {
    return described(Findings{.states = states, .there = {}}, locale, "en");
}

std::array<Permission, 3> described(const Findings& findings, std::string_view locale, const std::string& reader) {
    const auto& [states, there] = findings;
    return {Permission{.state = states.mic,
                       .title = "Microphone",
                       .purpose = "Your side.",
                       .isMissing = isDenied(states.mic) || !there.hasMicrophone,
                       .remedy = microphoneRemedy(there),
                       .pane = "Privacy_Microphone"},
            Permission{.state = states.screen,
                       .title = "System Audio",
                       .purpose = "Their side.",
                       .isMissing = isDenied(states.screen) || !there.hasSound,
                       .remedy = soundRemedy(there).value_or(
                           "PipeWire runs no sound here, so the other side can’t be heard. Install pipewire and "
                           "wireplumber, and pipewire-pulse in place of PulseAudio."),
                       .pane = "Privacy_ScreenCapture"},
            Permission{.state = states.speech,
                       .title = "Speech Recognition",
                       .purpose = "The transcript, on this computer.",
                       .isMissing = isDenied(states.speech) || !there.hasModel,
                       .remedy = speechRemedy(there, varnic::Language::name(locale, reader)),
                       .pane = "Privacy_SpeechRecognition"}};
}

fs::path modelsFolder() {
    const fs::path folder = SpeechModels::dataDirectories().front() / "varnic" / "models";
    Folders::make(folder);
    return folder;
}

bool openSettings(std::string_view pane) {
    if (pane == "Privacy_SpeechRecognition") {
        return launches({"gnome-control-center", "region"}) || launches({"systemsettings"});
    }
    return launches({"gnome-control-center", "sound"}) || launches({"systemsettings", "kcm_pulseaudio"}) ||
           launches({"xfce4-settings-manager"}) || launches({"pavucontrol"});
}

std::vector<Language> onDeviceLanguages(const std::vector<SpeechModel>& models, const std::string& reader) {
    std::set<std::string> ids;
    for (const SpeechModel& model : models) {
        ids.insert(model.locales.begin(), model.locales.end());
    }
    std::vector<Language> languages;
    for (const std::string& id : ids) {
        languages.push_back({.id = id, .name = varnic::Language::name(id, reader)});
    }
    std::ranges::stable_sort(languages, {}, &Language::name);
    return languages;
}

} // namespace varnic::Permissions
