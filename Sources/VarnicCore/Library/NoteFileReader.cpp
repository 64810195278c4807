#include "VarnicCore/Library/NoteFileReader.h"

#include "VarnicCore/Files/FileDescriptor.h"
#include "VarnicCore/Files/LibraryError.h"
#include "VarnicCore/Library/JsonParsing.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <functional>
#include <optional>

namespace varnic {

namespace {

/// Reads up to `size` bytes; less at the end of the file. Nothing on failure, with the reason in errno.
std::optional<std::size_t> readBytes(const FileDescriptor& descriptor, char* bytes, std::size_t size) {
    std::size_t done = 0;
    while (done < size) {
        const ssize_t count = ::read(descriptor.number(), bytes + done, size - done);
        if (count == 0) {
            break;
        }
        if (count < 0 && errno != EINTR) {
            return std::nullopt;
        }
        done += count < 0 ? 0 : static_cast<std::size_t>(count);
    }
    return done;
}

/// The size of a regular file. Nothing on failure, with the reason in errno.
std::optional<std::size_t> regularSize(const FileDescriptor& descriptor) {
    struct stat status{};
    if (!descriptor.isOpen() || ::fstat(descriptor.number(), &status) != 0) {
        return std::nullopt;
    }
    if (!S_ISREG(status.st_mode)) {
        errno = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
        return std::nullopt;
    }
    if (static_cast<std::uint64_t>(status.st_size) > simdjson::SIMDJSON_MAXSIZE_BYTES) {
        errno = EFBIG;
        return std::nullopt;
    }
    return static_cast<std::size_t>(status.st_size);
}

} // namespace

std::uint64_t fingerprintOf(std::string_view bytes) {
    return std::hash<std::string_view>()(bytes);
}

Note NoteFileReader::read(const std::filesystem::path& file, Date now) {
    // O_NONBLOCK: opening a named pipe would wait for its writer.
    const FileDescriptor descriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    const auto size = regularSize(descriptor);
    if (!size) {
        throw LibraryError::fromErrno("read", file);
    }
    try {
        reserve(*size);
    } catch (const std::bad_alloc&) {
        throw LibraryError("read", file, std::make_error_code(std::errc::not_enough_memory));
    }
    const auto count = readBytes(descriptor, buffer_.get(), *size);
    if (!count) {
        throw LibraryError::fromErrno("read", file);
    }
    fingerprint_ = fingerprintOf({buffer_.get(), *count});
    return JsonParsing::readNote(JsonParsing::parsePadded(parser_, buffer_.get(), *count), now);
}

void NoteFileReader::reserve(std::size_t size) {
    if (buffer_ && size <= capacity_) {
        return;
    }
    capacity_ = std::max(size, 2 * capacity_);
    buffer_.reset();
    buffer_ = std::make_unique_for_overwrite<char[]>(capacity_ + simdjson::SIMDJSON_PADDING);
}

} // namespace varnic
