#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace varnic {

/// What a start of the program, or another program, asks of the one that runs.
struct Request {
    enum class Kind {
        /// Show the window.
        activate,
        importFiles,
        toggleRecording,
        /// Start without a window; nothing for a program that runs already.
        background
    };

    Kind kind = Kind::activate;
    /// Absolute paths.
    std::vector<std::filesystem::path> files;
    /// The right to come to the front, which the program that was clicked hands on; may be empty.
    std::string activationToken;

    bool operator==(const Request&) const = default;
};

} // namespace varnic
