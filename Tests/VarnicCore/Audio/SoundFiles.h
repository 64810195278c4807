#pragma once

#include "VarnicCore/TemporaryFolder.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

namespace varnic {

/// A folder of a test's own that goes with it, and sound files made in it by the ffmpeg program.
class SoundFiles {
public:
    [[nodiscard]] std::filesystem::path path(const std::string& name) const { return folder_.path() / name; }

    /// Runs ffmpeg in the folder; `arguments` name the inputs and the encoding, `name` the file made.
    std::filesystem::path make(const std::string& name, const std::string& arguments) const {
        run("ffmpeg -v error -y " + arguments + " '" + name + "'");
        return path(name);
    }

    /// `seconds` of a tone at 48 kHz that begins with its peak, so that its first sample shows where it is.
    std::filesystem::path tone(const std::string& name, double seconds, const std::string& encoding = "") const {
        return make(name, "-f lavfi -i \"aevalsrc=0.5*cos(2*PI*1000*t):s=48000:d=" + std::to_string(seconds) + "\" " +
                              encoding);
    }

    void run(const std::string& command) const {
        if (std::system(("cd '" + folder_.path().string() + "' && " + command).c_str()) != 0) {
            throw std::runtime_error("failed: " + command);
        }
    }

    std::filesystem::path write(const std::string& name, const std::string& bytes) const {
        std::ofstream(path(name), std::ios::binary) << bytes;
        return path(name);
    }

    /// What a command prints, run in the folder.
    [[nodiscard]] std::string output(const std::string& command) const {
        run(command + " > output.txt");
        return bytesOf(path("output.txt"));
    }

    [[nodiscard]] static std::string bytesOf(const std::filesystem::path& file) {
        std::ifstream in(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

private:
    TemporaryFolder folder_;
};

} // namespace varnic
