#include "Varnic/AppModel/AppSettings.h"

#include <QString>
#include <QVariant>

#include <algorithm>

namespace varnic {

namespace {

QString text(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

std::string readText(const QSettings& store, const char* key, std::string_view otherwise) {
    return store.value(key, text(otherwise)).toString().toStdString();
}

/// A Boolean, or `otherwise` where there is none. In an INI file it stands as a word.
bool readFlag(const QSettings& store, const char* key, bool otherwise) {
    const QVariant value = store.value(key);
    if (value.typeId() == QMetaType::Bool || value.toString() == "true" || value.toString() == "false") {
        return value.toBool();
    }
    return otherwise;
}

AISettings readAI(const QSettings& store) {
    try {
        return AISettings::decode(store.value("ai").toByteArray().toStdString());
    } catch (const std::exception&) {
        return {};
    }
}

std::string firstWord(std::string_view name) {
    const std::size_t start = std::min(name.find_first_not_of(' '), name.size());
    return std::string(name.substr(start, name.find(' ', start) - start));
}

std::string languageTag(std::string_view locale) {
    std::string tag(locale);
    std::ranges::replace(tag, '_', '-');
    return tag;
}

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
    : yourName(readText(*store, "yourName", firstWord(userName))), consentSeen(readFlag(*store, "consentSeen", false)),
      remindEveryTime(readFlag(*store, "remindEveryTime", false)),
      headsUpTone(Consent::toneFrom(readText(*store, "headsUpTone", "")).value_or(Consent::Tone::friendly)),
      showPill(readFlag(*store, "showPill", true)), hotkeyEnabled(readFlag(*store, "hotkeyEnabled", true)),
      hotkey(hotkeyChoiceFrom(readText(*store, "hotkey", "")).value_or(HotkeyChoice::ctrlOptCmdR)),
      keepAudio(readFlag(*store, "keepAudio", true)), liveTranscript(readFlag(*store, "liveTranscript", true)),
      localeID(readText(*store, "localeID", languageTag(locale))), ai(readAI(*store)), store_(std::move(store)) {
    const auto flag = [](bool value) { return QVariant(value); };
    const auto words = [](const std::string& value) { return QVariant(text(value)); };
    const auto raw = [](auto value) { return QVariant(text(rawValue(value))); };
    keep("yourName", yourName, words);
    keep("consentSeen", consentSeen, flag);
    keep("remindEveryTime", remindEveryTime, flag);
    keep("headsUpTone", headsUpTone, raw);
    keep("showPill", showPill, flag);
    keep("hotkeyEnabled", hotkeyEnabled, flag);
    keep("hotkey", hotkey, raw);
    keep("keepAudio", keepAudio, flag);
    keep("liveTranscript", liveTranscript, flag);
    keep("localeID", localeID, words);
    keep("ai", ai, [](const AISettings& value) { return QVariant(QByteArray::fromStdString(value.encode())); });
}

template <typename Value, typename Encode>
void AppSettings::keep(const char* key, QProperty<Value>& property, Encode encode) {
    writers_.push_back(
        property.addNotifier([this, key, &property, encode] { store_->setValue(key, encode(property.value())); }));
}

} // namespace varnic
