#pragma once

#include "VarnicCore/Models/Note.h"

#include <simdjson.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string_view>

namespace varnic {

/// Tells the contents of two note files apart.
std::uint64_t fingerprintOf(std::string_view bytes);

/// Reads note files one after the other, keeping its parser and buffer from file to file. One thread at a time.
class NoteFileReader {
public:
    /// Reads a note (see decodeNote). Never waits: what is no regular file is refused. Throws DecodeError or
    /// LibraryError.
    Note read(const std::filesystem::path& file, Date now);

    /// Of the file that was read last.
    [[nodiscard]] std::uint64_t fingerprint() const { return fingerprint_; }

private:
    void reserve(std::size_t size);

    simdjson::dom::parser parser_;
    std::unique_ptr<char[]> buffer_;
    std::size_t capacity_ = 0;
    std::uint64_t fingerprint_ = 0;
};

} // namespace varnic
