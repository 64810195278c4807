#pragma once

#include "VarnicCore/Export/MarkdownFile.h"
#include "VarnicCore/Models/Block.h"
#include "VarnicCore/Models/Date.h"
#include "VarnicCore/Models/Region.h"

#include <filesystem>
#include <string>
#include <vector>

namespace varnic {

/// What a Markdown file on disk makes a note of.
struct MarkdownNote {
    /// That of the text, else the file's name.
    std::string title;
    /// That of the text, else when the file was last written.
    Date created;
    std::vector<Block> blocks;
    MarkdownFile::Simplified simplified;

    /// Whether a file is meant to be Markdown, by its name.
    static bool isNamedSo(const std::filesystem::path& file);

    /// Throws std::runtime_error with a sentence where the file can't be read or is no UTF-8 text. Any thread.
    static MarkdownNote read(const std::filesystem::path& file, const Region& region);

    /// What notes could not hold, in words: "2 lines of code have lost their indentation".
    static std::string described(const MarkdownFile::Simplified& simplified);
};

} // namespace varnic
