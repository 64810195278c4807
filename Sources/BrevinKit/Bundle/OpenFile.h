#pragma once

#include <filesystem>
#include <string_view>

#include <sys/types.h>

namespace brevin {

/// Throws std::runtime_error with the system’s reason in errno as a sentence.
[[noreturn]] void throwErrno();

/// A file of the system, closed with the object. All throw as `throwErrno`. One thread.
class OpenFile {
public:
    /// `flags` are those of open(2); `mode` is for a new file.
    explicit OpenFile(const std::filesystem::path& file, int flags, mode_t mode = 0600);
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;
    ~OpenFile();

    /// All of the bytes.
    void write(std::string_view bytes) const;

    [[nodiscard]] int number() const { return number_; }

private:
    int number_;
};

} // namespace brevin
