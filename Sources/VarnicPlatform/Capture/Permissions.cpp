#include "VarnicPlatform/Capture/Permissions.h"

#include "VarnicCore/Audio/CaptureError.h"
#include "VarnicPlatform/Capture/SoundSurvey.h"

#include <glib.h>
#include <unicode/locid.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <set>

namespace varnic::Permissions {

namespace {

PermissionState state(bool saidYes, const std::function<bool()>& works) {
    if (!saidYes) {
        return PermissionState::notAsked;
    }
    return works() ? PermissionState::granted : PermissionState::denied;
}

SoundSurvey survey() {
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

PermissionState microphone(bool saidYes) {
    return override ? override->mic : state(saidYes, [] { return survey().microphone.has_value(); });
}

PermissionState screen(bool saidYes) {
    return override ? override->screen : state(saidYes, [] { return survey().hasSound; });
}

PermissionState speech(bool saidYes, std::string_view locale, const std::vector<SpeechModel>& models) {
    return override ? override->speech
                    : state(saidYes, [&] { return SpeechModels::choose(models, locale).has_value(); });
}

void requestMicrophone(const std::function<void(bool)>& done) {
    done(microphone(true) == PermissionState::granted);
}

void requestSpeech(std::string_view locale, const std::vector<SpeechModel>& models,
                   const std::function<void(bool)>& done) {
    done(speech(true, locale, models) == PermissionState::granted);
}

bool requestScreen() {
    return screen(true) == PermissionState::granted;
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
