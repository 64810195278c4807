#pragma once

#include <filesystem>
#include <stdexcept>
#include <string_view>
#include <system_error>

namespace varnic {

/// Why something could not be done to the library on disk; `what()` is the user's sentence.
class LibraryError : public std::runtime_error {
public:
    /// `action` is what could not be done to the file or folder, such as "written".
    LibraryError(std::string_view action, const std::filesystem::path& path, std::error_code code);

    /// The same with the code in errno.
    static LibraryError fromErrno(std::string_view action, const std::filesystem::path& path);

    /// The system's reason.
    [[nodiscard]] std::error_code code() const { return code_; }

private:
    std::error_code code_;
};

} // namespace varnic
