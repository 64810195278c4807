#pragma once

#include "VarnicCore/Files/FileDescriptor.h"
#include "VarnicCore/Models/Date.h"
#include "VarnicCore/Models/Speaker.h"
#include "VarnicCore/Models/Uuid.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace varnic {

/// What is known of a recording while it runs. It stands, with the process's id, as "recording.json" in the call's
/// audio folder until the note is saved.
struct RecordingMark {
    Uuid id;
    Date startedAt;
    std::string source;
    std::vector<Speaker> sides;

    bool operator==(const RecordingMark&) const = default;
};

/// The file of a mark, locked as long as the object lives: that tells the recording of a living process from one
/// that died. Without `remove` the file outlives the object, as it does after a crash. One thread at a time.
class RecordingMarkFile {
public:
    /// Puts a locked mark in the folder, atomically, and makes the folder where it is missing; do it before there is
    /// a track. Throws LibraryError, also when another process holds the folder's mark.
    static RecordingMarkFile create(const std::filesystem::path& folder, const RecordingMark& mark);

    /// Removes a folder whose process died before its mark stood. One that holds anything else stays.
    static void removeUnborn(const std::filesystem::path& folder);

    /// Takes the mark of a folder over, whatever it holds; nothing where there is none or another process lives that
    /// holds it.
    static std::optional<RecordingMarkFile> adopt(const std::filesystem::path& folder);

    static bool isIn(const std::filesystem::path& folder);

    /// What the file holds; nothing where that is damaged.
    [[nodiscard]] std::optional<RecordingMark> read() const;

    /// Removes the file: the recording's note is saved. Before a recording is thrown away remove its folder instead.
    void remove();

private:
    RecordingMarkFile(std::filesystem::path file, FileDescriptor descriptor);

    static RecordingMarkFile place(const std::filesystem::path& folder, const RecordingMark& mark);

    std::filesystem::path file_;
    FileDescriptor descriptor_;
};

} // namespace varnic
