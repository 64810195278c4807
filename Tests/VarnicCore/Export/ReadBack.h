#pragma once

#include "VarnicCore/TemporaryFolder.h"

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>

/// Exported files as other programs see them.
namespace varnic::ReadBack {

struct ClosePipe {
    void operator()(std::FILE* pipe) const { ::pclose(pipe); }
};

/// What a shell command prints. Throws std::runtime_error with it where the command fails.
inline std::string outputOf(const std::string& command) {
    std::unique_ptr<std::FILE, ClosePipe> pipe(::popen((command + " 2>&1").c_str(), "r"));
    std::string output;
    std::array<char, 4096> buffer{};
    while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), pipe.get())) {
        output.append(buffer.data(), count);
    }
    if (::pclose(pipe.release()) != 0) {
        throw std::runtime_error(command + ": " + output);
    }
    return output;
}

/// The bytes in a file of a folder of its own.
class File {
public:
    File(const std::string& bytes, const std::string& name) : path_(folder_.path() / name) {
        std::ofstream(path_, std::ios::binary) << bytes;
    }

    /// What a program prints about the file; "FILE" stands for it in the command.
    [[nodiscard]] std::string seenBy(std::string command) const {
        return outputOf(command.replace(command.find("FILE"), 4, "'" + path_.string() + "'"));
    }

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

private:
    TemporaryFolder folder_;
    std::filesystem::path path_;
};

inline std::string bytesOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// Text without the blanks and newlines that a page's layout adds.
inline std::string squeezed(const std::string& text) {
    std::string result;
    for (const char c : text) {
        if (c != ' ' && c != '\n' && c != '\f' && c != '\r' && c != '\t') {
            result += c;
        }
    }
    return result;
}

} // namespace varnic::ReadBack
