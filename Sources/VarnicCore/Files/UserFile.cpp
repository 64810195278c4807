#include "VarnicCore/Files/UserFile.h"

#include <fmt/format.h>

#include <chrono>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace varnic {

namespace fs = std::filesystem;

std::string UserFile::read(const fs::path& file) {
    std::error_code error;
    if (!fs::exists(file, error)) {
        throw std::runtime_error(fmt::format("There is no “{}”.", file.string()));
    }
    std::ifstream stream(file, std::ios::binary);
    // A folder opens but does not read, and a pipe might never end.
    std::string bytes;
    if (fs::is_regular_file(file, error)) {
        bytes.assign(std::istreambuf_iterator<char>(stream), {});
    } else {
        stream.setstate(std::ios::failbit);
    }
    if (!stream) {
        throw std::runtime_error(fmt::format("“{}” can’t be read.", file.string()));
    }
    return bytes;
}

Date UserFile::modifiedAt(const fs::path& file) {
    return std::chrono::floor<std::chrono::milliseconds>(std::chrono::file_clock::to_sys(fs::last_write_time(file)));
}

} // namespace varnic
