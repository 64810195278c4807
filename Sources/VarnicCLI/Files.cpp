#include "VarnicCLI/Files.h"

#include "VarnicCore/Files/AtomicWrite.h"
#include "VarnicCore/Files/UserFile.h"

#include <fmt/format.h>

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
    return UserFile::read(file);
}

namespace {

/// Whether the path leads to a file that another can be put in place of; a device or a pipe takes bytes as they come,
/// and below /dev even what is a file may be one that a shell has open.
bool isReplaceable(const fs::path& file) {
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    return (!fs::exists(status) || fs::is_regular_file(status)) &&
           !file.lexically_normal().string().starts_with("/dev/");
}

void writeInPlace(const fs::path& file, std::string_view bytes) {
    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    stream.close();
    if (!stream) {
        throw std::runtime_error(fmt::format("“{}” can’t be written.", file.string()));
    }
}

/// The file that the path leads to, past symbolic links, which stay.
fs::path target(const fs::path& file) {
    std::error_code error;
    fs::path resolved = fs::weakly_canonical(file, error);
    return error ? file : resolved;
}

} // namespace

void writeFile(const fs::path& file, std::string_view bytes) {
    if (isReplaceable(file)) {
        AtomicWrite::replace(target(file), bytes, AtomicWrite::Readers::asUsual);
    } else {
        writeInPlace(file, bytes);
    }
}

} // namespace varnic::cli
