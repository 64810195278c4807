#pragma once

#include "VarnicCore/Library/LibraryStore.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <stdexcept>
#include <string>

namespace varnic {

/// A library in a new folder, removed at the end.
class TemporaryLibrary {
public:
    TemporaryLibrary() : folder_(makeFolder()), store(folder_ / "Library") {}

    TemporaryLibrary(const TemporaryLibrary&) = delete;
    TemporaryLibrary& operator=(const TemporaryLibrary&) = delete;

    ~TemporaryLibrary() {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }

    [[nodiscard]] const std::filesystem::path& folder() const { return folder_; }

    static void write(const std::filesystem::path& file, const std::string& bytes) {
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << bytes;
    }

    static std::string read(const std::filesystem::path& file) {
        std::ifstream stream(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    /// The names of what lies directly in a folder.
    static std::set<std::string> names(const std::filesystem::path& folder) {
        std::set<std::string> found;
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            found.insert(entry.path().filename());
        }
        return found;
    }

private:
    static std::filesystem::path makeFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "varnic-library-XXXXXX").string();
        if (::mkdtemp(pattern.data()) == nullptr) {
            throw std::runtime_error("cannot make " + pattern);
        }
        return pattern;
    }

    std::filesystem::path folder_;

public:
    LibraryStore store;
};

} // namespace varnic
