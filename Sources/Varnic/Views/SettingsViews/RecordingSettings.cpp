#include "Varnic/Views/SettingsViews/RecordingSettings.h"

#include "Varnic/Background.h"
#include "Varnic/Views/Context/ViewContext.h"
#include "VarnicCore/Models/Wording.h"
#include "VarnicCore/Text/Language.h"

#include <QLocale>
#include <QPointer>

#include <fmt/format.h>

#include <algorithm>
#include <string_view>
#include <tuple>
#include <utility>

namespace varnic {

namespace {

constexpr const char* automaticName = "Automatic";

/// "en" of "en-GB".
std::string_view languageOf(std::string_view tag) {
    return tag.substr(0, tag.find('-'));
}

} // namespace

RecordingSettings* RecordingSettings::create(const QQmlEngine* engine, const QJSEngine* /*scripts*/) {
    return new RecordingSettings(ViewContext::of(*engine).model);
}

RecordingSettings::RecordingSettings(AppModel& model, std::vector<std::filesystem::path> dataDirectories)
    : model_(model), dataDirectories_(std::move(dataDirectories)) {
    const auto follow = [this](auto& property) {
        watchers_.push_back(property.addNotifier([this] { Q_EMIT changed(); }));
    };
    follow(model.settings.localeID);
    follow(model.settings.speechModel);
    follow(model.settings.liveTranscript);
    follow(model.settings.keepAudio);
}

QCoro::Task<> RecordingSettings::lookForLanguages() {
    const QPointer self(this);
    const auto list = [reader = QLocale().name().toStdString(), directories = dataDirectories_] {
        std::vector<SpeechModel> models = SpeechModels::installed(directories);
        std::vector<Permissions::Language> languages = Permissions::onDeviceLanguages(models, reader);
        if (SpeechModels::tellLanguages(models)) {
            languages.insert(languages.begin(), {.id = std::string(LanguageChoice::automatic), .name = automaticName});
        }
        return std::pair(std::move(models), std::move(languages));
    };
    auto found = co_await inBackground(list);
    if (self && found != std::pair(models_, languages_)) {
        std::tie(models_, languages_) = std::move(found);
        Q_EMIT changed();
    }
}

QList<QString> RecordingSettings::languages() const {
    QList<QString> names;
    for (const Permissions::Language& language : languages_) {
        names << QString::fromStdString(language.name);
    }
    return names;
}

/// A model for "en" takes "en-GB" too.
int RecordingSettings::language() const {
    const std::string locale = model_.settings.localeID.value();
    for (const std::string_view tag : {std::string_view(locale), languageOf(locale)}) {
        const auto found = std::ranges::find(languages_, tag, &Permissions::Language::id);
        if (found != languages_.end()) {
            return static_cast<int>(found - languages_.begin());
        }
    }
    return -1;
}

void RecordingSettings::setLanguage(int language) {
    model_.settings.localeID = languages_.at(static_cast<std::size_t>(language)).id;
}

QString RecordingSettings::otherLanguage() const {
    if (model_.settings.language().isAutomatic) {
        return QString::fromUtf8(automaticName);
    }
    const QString tag = QString::fromStdString(model_.settings.localeID.value());
    const QString name = QLocale::languageToString(QLocale(tag).language());
    return QLocale(tag).language() == QLocale::C ? tag : name;
}

QString RecordingSettings::languageDetail() const {
    const LanguageChoice language = model_.settings.language();
    if (!language.isAutomatic) {
        return {};
    }
    const std::string name = Language::name(language.locale, "en");
    return QString::fromStdString(Wording::shown(fmt::format(
        "Found out when a call has ended, for each side. Live lines are in {}, the language of this Mac.", name)));
}

bool RecordingSettings::hasSeveralModels() const {
    const auto fits = [locale = model_.settings.language().locale](const SpeechModel& model) {
        return model.fits(locale);
    };
    return std::ranges::count_if(models_, fits) > 1;
}

int RecordingSettings::model() const {
    const ModelChoice choice = ModelChoice::from(model_.settings.speechModel.value());
    return choice.preference == ModelChoice::Preference::fastest ? 1 : 0;
}

void RecordingSettings::setModel(int model) {
    const bool isFastest = model == 1;
    const auto preference = isFastest ? ModelChoice::Preference::fastest : ModelChoice::Preference::bestWords;
    model_.settings.speechModel = ModelChoice{.preference = preference, .id = {}}.text();
}

QString RecordingSettings::languageNote() {
    return QString::fromStdString(
        Wording::shown("Only languages with a speech model on this Mac are listed. Audio never leaves your Mac."));
}

} // namespace varnic
