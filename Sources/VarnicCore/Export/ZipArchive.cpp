#include "VarnicCore/Export/ZipArchive.h"

#include <archive.h>
#include <archive_entry.h>
#include <fmt/format.h>

#include <cerrno>
#include <cstdint>
#include <memory>
#include <new>
#include <stdexcept>
#include <utility>

namespace varnic {

namespace {

/// The library's writer into a string.
la_ssize_t append(archive* archive, void* string, const void* data, std::size_t length) {
    try {
        static_cast<std::string*>(string)->append(static_cast<const char*>(data), length);
        return static_cast<la_ssize_t>(length);
    } catch (const std::bad_alloc&) {
        archive_set_error(archive, ENOMEM, "out of memory");
        return -1;
    }
}

struct FreeEntry {
    void operator()(archive_entry* entry) const { archive_entry_free(entry); }
};

} // namespace

ZipArchive::ZipArchive() : archive_(archive_write_new()) {
    if (archive_ == nullptr) {
        throw std::bad_alloc();
    }
    check(archive_write_set_format_zip(archive_));
    check(archive_write_set_bytes_in_last_block(archive_, 1));
    check(archive_write_open(archive_, &bytes_, nullptr, append, nullptr));
}

ZipArchive::~ZipArchive() {
    archive_write_free(archive_);
}

void ZipArchive::add(const char* name, std::string_view bytes) {
    constexpr int ordinaryFile = 0644;
    // Without a time, the entry gets the earliest one that the format can hold.
    const std::unique_ptr<archive_entry, FreeEntry> entry(archive_entry_new2(archive_));
    archive_entry_set_pathname(entry.get(), name);
    archive_entry_set_filetype(entry.get(), AE_IFREG);
    archive_entry_set_perm(entry.get(), ordinaryFile);
    archive_entry_set_size(entry.get(), static_cast<std::int64_t>(bytes.size()));
    check(archive_write_header(archive_, entry.get()));
    if (archive_write_data(archive_, bytes.data(), bytes.size()) < 0) {
        check(ARCHIVE_FATAL);
    }
}

std::string ZipArchive::finish() {
    check(archive_write_close(archive_));
    return std::move(bytes_);
}

void ZipArchive::check(int result) const {
    if (result < ARCHIVE_OK) {
        const char* const reason = archive_error_string(archive_);
        throw std::runtime_error(
            fmt::format("The file couldn’t be put together: {}.", reason != nullptr ? reason : "out of memory"));
    }
}

} // namespace varnic
