#pragma once

#include "VarnicCore/Models/Uuid.h"

#include <filesystem>
#include <system_error>

namespace varnic {

/// A fresh folder that lives as long as the object.
class TemporaryFolder {
public:
    TemporaryFolder() { std::filesystem::create_directory(path_); }

    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_ = std::filesystem::temp_directory_path() / ("varnic-" + Uuid::random().text());
};

} // namespace varnic
