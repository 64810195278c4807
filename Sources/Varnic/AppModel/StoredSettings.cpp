#include "Varnic/AppModel/StoredSettings.h"

#include <QByteArray>
#include <QString>
#include <QVariant>

#include <nlohmann/json.hpp>

#include <exception>

namespace varnic {

std::string StoredSettings::text(const char* key, std::string_view otherwise) const {
    const QVariant value = store_.value(key);
    return value.isValid() ? value.toString().toStdString() : std::string(otherwise);
}

/// In an INI file it stands as a word.
bool StoredSettings::flag(const char* key, bool otherwise) {
    const QVariant value = store_.value(key);
    if (value.typeId() == QMetaType::Bool || value.toString() == "true" || value.toString() == "false") {
        return value.toBool();
    }
    if (value.isValid()) {
        damaged_.push_back(key);
    }
    return otherwise;
}

AISettings StoredSettings::ai(const char* key) {
    const QByteArray stored = store_.value(key).toByteArray();
    try {
        return stored.isEmpty() ? AISettings() : AISettings::decode(stored.toStdString());
    } catch (const std::exception&) {
        damaged_.push_back(key);
        return {};
    }
}

DeviceChoice StoredSettings::device(const char* key) {
    const QByteArray stored = store_.value(key).toByteArray();
    if (stored.isEmpty()) {
        return {};
    }
    try {
        const nlohmann::json object = nlohmann::json::parse(stored.toStdString());
        return {.name = object.at("name").get<std::string>(), .label = object.at("label").get<std::string>()};
    } catch (const nlohmann::json::exception&) {
        damaged_.push_back(key);
        return {};
    }
}

std::string StoredSettings::folder(const char* key) {
    const std::string stored = text(key, "");
    if (stored.empty() || stored.front() == '/') {
        return stored;
    }
    damaged_.push_back(key);
    return {};
}

std::string StoredSettings::encode(const DeviceChoice& choice) {
    const nlohmann::json object{{"name", choice.name}, {"label", choice.label}};
    return choice.isDefault() ? "" : object.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

} // namespace varnic
