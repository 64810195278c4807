#pragma once

#include "VarnicCore/Models/Speaker.h"

#include <filesystem>
#include <vector>

/// Which files of a call's audio folder are the recordings of its sides. Any thread.
namespace varnic::TrackFiles {

/// The files of a side among what lies in the folder: those named by it, whatever their form, since an imported
/// recording keeps its own. Where there are several, the forms that Varnic itself has written come first.
std::vector<std::filesystem::path> of(const std::vector<std::filesystem::path>& entries, Speaker speaker);

} // namespace varnic::TrackFiles
