#include "Varnic/AppModel/AppSettings.h"

#include "Varnic/AppModel/SettingsFile.h"
#include "Varnic/AppModel/StoredSettings.h"

#include <QEvent>
#include <QString>
#include <QVariant>

#include <algorithm>
#include <chrono>
#include <utility>

namespace varnic {

namespace {

QString text(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

/// While somebody types, it is written once. In a store's own pace that would be with every key.
constexpr auto writeDelay = std::chrono::milliseconds(300);
constexpr const char* versionKey = "version";
constexpr const char* libraryLostKey = "libraryLost";

std::string firstWord(std::string_view name) {
    const std::size_t start = std::min(name.find_first_not_of(' '), name.size());
    return std::string(name.substr(start, name.find(' ', start) - start));
}

std::string languageTag(std::string_view locale) {
    std::string tag(locale);
    std::ranges::replace(tag, '_', '-');
    return tag;
}

/// Keeps a store from writing its file with the next turn of the loop, which is nearly every key, and has it written
/// later instead.
class LateWriting : public QObject {
public:
    explicit LateWriting(QTimer& later) : later_(later) {}

    bool eventFilter(QObject* /*store*/, QEvent* event) override {
        if (event->type() == QEvent::UpdateRequest) {
            later_.start();
        }
        return event->type() == QEvent::UpdateRequest;
    }

private:
    QTimer& later_;
};

} // namespace

std::string_view rawValue(HotkeyChoice choice) {
    constexpr std::array<std::string_view, allHotkeyChoices.size()> names{"ctrlOptCmdR", "optShiftR", "ctrlShiftR"};
    return names[static_cast<std::size_t>(choice)];
}

std::optional<HotkeyChoice> hotkeyChoiceFrom(std::string_view raw) {
    for (const HotkeyChoice choice : allHotkeyChoices) {
        if (rawValue(choice) == raw) {
            return choice;
        }
    }
    return std::nullopt;
}

AppSettings::AppSettings(std::unique_ptr<QSettings> store, std::string_view userName, std::string_view locale)
    : AppSettings(StoredSettings(*store), std::move(store), userName, locale) {}

AppSettings::AppSettings(StoredSettings stored, std::unique_ptr<QSettings>&& store, std::string_view userName,
                         std::string_view locale)
    : yourName(stored.text("yourName", firstWord(userName))), consentSeen(stored.flag("consentSeen", false)),
      remindEveryTime(stored.flag("remindEveryTime", false)),
      headsUpTone(stored.one("headsUpTone", Consent::toneFrom, Consent::Tone::friendly)),
      showPill(stored.flag("showPill", true)), hotkeyEnabled(stored.flag("hotkeyEnabled", true)),
      hotkey(stored.one("hotkey", hotkeyChoiceFrom, HotkeyChoice::ctrlOptCmdR)),
      hotkeyKeys(stored.text("hotkeyKeys", "")), keepAudio(stored.flag("keepAudio", true)),
      liveTranscript(stored.flag("liveTranscript", true)), localeID(stored.text("localeID", languageTag(locale))),
      speechModel(stored.text("speechModel", "bestWords")), ai(stored.ai("ai")),
      microphone(stored.device("microphone")), heardOutput(stored.device("heardOutput")),
      startsAtLogin(stored.flag("startsAtLogin", false)), libraryFolder(stored.folder(libraryFolderKey)),
      isLibraryLost(stored.flag(libraryLostKey, false)), userLanguage_(languageTag(locale)), store_(std::move(store)) {
    const SettingsFile::Reading reading = SettingsFile::keepAside(*store_, !stored.damaged().empty());
    readProblem_ = reading.problem;
    if (!SettingsFile::isLater(*store_)) {
        damaged_ = stored.damaged();
    }
    const bool isFolderDamaged = std::ranges::find(stored.damaged(), libraryFolderKey) != stored.damaged().end();
    if (libraryFolder.value().empty() && (reading.isIncomplete || isFolderDamaged)) {
        isLibraryLost = true;
    }
    if (isLibraryLost.value() && store_->status() == QSettings::AccessError) {
        // Nothing of the old file is left to be damaged at the next start.
        store_->setValue(libraryLostKey, true);
    }
    problem = readProblem_;
    writeSoon_.setSingleShot(true);
    writeSoon_.setInterval(writeDelay);
    QObject::connect(&writeSoon_, &QTimer::timeout, [this] { save(); });
    lateWriting_ = std::make_unique<LateWriting>(writeSoon_);
    store_->installEventFilter(lateWriting_.get());
    keepAll();
}

LanguageChoice AppSettings::language() const {
    return LanguageChoice::from(localeID.value(), userLanguage_);
}

void AppSettings::keepAll() {
    const auto flag = [](bool value) { return QVariant(value); };
    const auto words = [](const std::string& value) { return QVariant(text(value)); };
    const auto raw = [](auto value) { return QVariant(text(rawValue(value))); };
    const auto device = [](const DeviceChoice& value) {
        return QVariant(QByteArray::fromStdString(StoredSettings::encode(value)));
    };
    keep("yourName", yourName, words);
    keep("consentSeen", consentSeen, flag);
    keep("remindEveryTime", remindEveryTime, flag);
    keep("headsUpTone", headsUpTone, raw);
    keep("showPill", showPill, flag);
    keep("hotkeyEnabled", hotkeyEnabled, flag);
    keep("hotkey", hotkey, raw);
    keep("hotkeyKeys", hotkeyKeys, words);
    keep("keepAudio", keepAudio, flag);
    keep("liveTranscript", liveTranscript, flag);
    keep("localeID", localeID, words);
    keep("speechModel", speechModel, words);
    keep("ai", ai, [](const AISettings& value) { return QVariant(QByteArray::fromStdString(value.encode())); });
    keep("microphone", microphone, device);
    keep("heardOutput", heardOutput, device);
    keep("startsAtLogin", startsAtLogin, flag);
    keep(libraryFolderKey, libraryFolder, words);
    keep(libraryLostKey, isLibraryLost, flag);
}

bool AppSettings::save() {
    writeSoon_.stop();
    const auto unsaved = SettingsFile::write(*store_);
    store_->sync(); // which has nothing to write now, but asks for its next change to be written
    problem = unsaved ? unsaved : readProblem_;
    return !unsaved;
}

template <typename Value, typename Encode>
void AppSettings::keep(const char* key, QProperty<Value>& property, Encode encode) {
    writers_.push_back(property.addNotifier([this, key, &property, encode] {
        // The file is kept aside, and another start shall not find the same again.
        for (const char* damaged : std::exchange(damaged_, {})) {
            store_->remove(damaged);
        }
        if (isLibraryLost.value()) {
            store_->setValue(libraryLostKey, true);
        }
        store_->setValue(key, encode(property.value()));
        if (!store_->contains(versionKey)) {
            store_->setValue(versionKey, SettingsFile::version);
        }
        writeSoon_.start();
    }));
}

} // namespace varnic
