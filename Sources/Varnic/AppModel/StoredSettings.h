#pragma once

#include "VarnicCore/AISummariser/AISettings.h"
#include "VarnicPlatform/Capture/CaptureDevices.h"

#include <QSettings>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace varnic {

/// Reads settings in their stored forms, and minds which it could not. Main thread.
class StoredSettings {
public:
    /// The store must outlive this.
    explicit StoredSettings(const QSettings& store) : store_(store) {}

    /// The keys of the values that could not be read.
    [[nodiscard]] const std::vector<const char*>& damaged() const { return damaged_; }

    // Each gives `otherwise` where there is none that can be read.

    [[nodiscard]] std::string text(const char* key, std::string_view otherwise) const;
    [[nodiscard]] bool flag(const char* key, bool otherwise);
    [[nodiscard]] AISettings ai(const char* key);
    [[nodiscard]] DeviceChoice device(const char* key);
    /// An absolute path, or empty.
    [[nodiscard]] std::string folder(const char* key);

    /// One of a few values, which `from` knows by their names.
    template <typename Value>
    [[nodiscard]] Value one(const char* key, std::optional<Value> (*from)(std::string_view), Value otherwise) {
        const std::string name = text(key, "");
        const std::optional<Value> value = from(name);
        if (!value && !name.empty()) {
            damaged_.push_back(key);
        }
        return value.value_or(otherwise);
    }

    static std::string encode(const DeviceChoice& choice);

private:
    const QSettings& store_;
    std::vector<const char*> damaged_;
};

} // namespace varnic
