#pragma once

#include <string>
#include <string_view>

struct archive;

namespace varnic {

/// Packs files into a zip archive in memory. The same files give the same bytes. One thread.
class ZipArchive {
public:
    ZipArchive();
    ZipArchive(const ZipArchive&) = delete;
    ZipArchive& operator=(const ZipArchive&) = delete;
    ~ZipArchive();

    /// Adds a file. Throws std::runtime_error where that fails, as do the constructor and `finish`.
    void add(const char* name, std::string_view bytes);

    /// The archive's bytes; nothing can be added afterwards.
    std::string finish();

private:
    void check(int result) const;

    std::string bytes_;
    archive* archive_;
};

} // namespace varnic
