#pragma once

#include "VarnicCore/Library/LibraryStore.h"
#include "VarnicCore/TemporaryFolder.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

namespace varnic {

/// A library in a new folder, removed at the end.
class TemporaryLibrary {
public:
    TemporaryLibrary() : store(folder() / "Library") {}

    [[nodiscard]] const std::filesystem::path& folder() const { return folder_.path(); }

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
    TemporaryFolder folder_;

public:
    LibraryStore store;
};

} // namespace varnic
