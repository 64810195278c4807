#include "VarnicCLI/Files.h"

#include <fmt/format.h>

#include <chrono>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>

namespace varnic::cli {

namespace fs = std::filesystem;

std::string readFile(const fs::path& file) {
    if (file == "-") {
        return {std::istreambuf_iterator<char>(std::cin), {}};
    }
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

void writeFile(const fs::path& file, std::string_view text) {
    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    stream.write(text.data(), static_cast<std::streamsize>(text.size()));
    stream.close();
    if (!stream) {
        throw std::runtime_error(fmt::format("“{}” can’t be written.", file.string()));
    }
}

Date modifiedAt(const fs::path& file) {
    return std::chrono::floor<std::chrono::milliseconds>(std::chrono::file_clock::to_sys(fs::last_write_time(file)));
}

} // namespace varnic::cli
