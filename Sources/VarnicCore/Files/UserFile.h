#pragma once

#include "VarnicCore/Models/Date.h"

#include <filesystem>
#include <string>

/// Whole files of the user's, outside the library. Both throw std::runtime_error with a sentence that names the file.
/// Any thread.
namespace varnic::UserFile {

/// The bytes of a regular file.
std::string read(const std::filesystem::path& file);

/// When it was last written.
Date modifiedAt(const std::filesystem::path& file);

} // namespace varnic::UserFile
