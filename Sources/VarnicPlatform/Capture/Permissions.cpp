#include "VarnicPlatform/Capture/Permissions.h"

#include "VarnicCore/Audio/CaptureError.h"
#include "VarnicPlatform/Capture/SoundSurvey.h"

#include <fmt/format.h>
#include <glib.h>
#include <unicode/locid.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <set>

namespace varnic::Permissions {

namespace {

PermissionState grantedIf(bool works) {
    return works ? PermissionState::granted : PermissionState::denied;
}

SoundSurvey soundSurvey() {
    try {
        return SoundSurvey::take();
    } catch (const CaptureError&) {
        return {};
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

icu::Locale localeOf(std::string tag) {
    std::ranges::replace(tag, '-', '_');
    return icu::Locale::createCanonical(tag.c_str());
}

} // namespace

States survey(bool saidYes, std::string_view locale, const std::vector<SpeechModel>& models) {
    if (override) {
        return *override;
    }
    if (!saidYes) {
        return {};
    }
    const SoundSurvey sound = soundSurvey();
    return {.mic = grantedIf(sound.microphone.has_value()),
            .screen = grantedIf(sound.hasSound),
            .speech = grantedIf(SpeechModels::choose(models, locale).has_value())};
}

std::array<Permission, 3> described(const States& states, std::string_view locale) {
    return {Permission{.state = states.mic,
                       .title = "Microphone",
                       .purpose = "Your side.",
                       .remedy = "No microphone was found. Plug one in, or choose one in the sound settings.",
                       .pane = "Privacy_Microphone"},
            Permission{.state = states.screen,
                       .title = "System Audio",
                       .purpose = "Their side.",
                       .remedy = "PipeWire runs no sound here, so the other side can’t be heard. Install pipewire and "
                                 "wireplumber, and pipewire-pulse in place of PulseAudio.",
                       .pane = "Privacy_ScreenCapture"},
            Permission{.state = states.speech,
                       .title = "Speech Recognition",
                       .purpose = "The transcript, on this computer.",
                       .remedy = fmt::format("No speech model is installed for {}. Put one into "
                                             "~/.local/share/varnic/models; calls are recorded without one, and can be "
                                             "transcribed later.",
                                             locale),
                       .pane = "Privacy_SpeechRecognition"}};
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
        icu::UnicodeString shown;
        Language& language = languages.emplace_back(id, "");
        localeOf(id).getDisplayName(localeOf(reader), shown).toUTF8String(language.name);
        if (language.name.empty()) {
            language.name = id;
        }
    }
    std::ranges::stable_sort(languages, {}, &Language::name);
    return languages;
}

} // namespace varnic::Permissions
