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
        /// Show what an address names.
        openAddress,
        /// Show the list of all notes.
        openLibrary,
        newNote,
        /// Start a recording; show the window where one runs.
        recordCall,
        toggleRecording,
        /// Start without a window; nothing for a program that runs already.
        background
    };

    Kind kind = Kind::activate;
    /// Absolute paths.
    std::vector<std::filesystem::path> files;
    /// The right to come to the front, which the program that was clicked hands on; may be empty.
    std::string activationToken;
    /// As it was given, right or wrong; see NoteAddress.
    std::string address;

    bool operator==(const Request&) const = default;
};

} // namespace varnic
