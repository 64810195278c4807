#include "VarnicCore/Files/LibraryError.h"

#include <fmt/format.h>

#include <cerrno>
#include <string>

namespace varnic {

namespace {

std::string reason(std::error_code code) {
    switch (code.value()) {
    case ENOSPC:
        return "the disk is full";
    case EDQUOT:
        return "your share of the disk is used up";
    case EFBIG:
        return "the file is too large";
    case EACCES:
    case EPERM:
        return "permission is missing";
    case EROFS:
        return "the disk is read-only";
    case ENOENT:
        return "there is no such file or folder";
    case ENOTDIR:
        return "a file stands where a folder should be";
    case EISDIR:
        return "a folder stands where a file should be";
    case EEXIST:
        return "another one stands in its place";
    case ENODEV:
        return "its disk is gone";
    case ENOTCONN:
    case ESTALE:
        return "the connection to its disk is lost";
    case ELOOP:
        return "links lead in a circle";
    case EIO:
        return "the disk is faulty";
    default:
        return code.message();
    }
}

} // namespace

LibraryError::LibraryError(std::string_view action, const std::filesystem::path& path, std::error_code code)
    : std::runtime_error(fmt::format("“{}” couldn’t be {}: {}.", path.string(), action, reason(code))), code_(code) {}

LibraryError LibraryError::fromErrno(std::string_view action, const std::filesystem::path& path) {
    return {action, path, {errno, std::generic_category()}};
}

} // namespace varnic
