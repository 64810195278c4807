#pragma once

#include <filesystem>
#include <string>
#include <string_view>

/// Whole files of the user's, outside the library. All throw std::runtime_error with a sentence that names the file.
namespace varnic::cli {

/// The bytes of a regular file; "-" reads standard input.
std::string readFile(const std::filesystem::path& file);

/// Writes the bytes in place of what the file held, all or nothing. A device or a pipe is written to as it is.
void writeFile(const std::filesystem::path& file, std::string_view bytes);

} // namespace varnic::cli
