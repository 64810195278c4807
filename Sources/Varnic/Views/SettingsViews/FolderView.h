#pragma once

#include "Varnic/AppModel/AppModel.h"

#include <filesystem>

namespace varnic {

/// Shows a folder, which is made if it isn't there, in the desktop's file manager. A toast where there is none. Main
/// thread.
QCoro::Task<> showFolder(AppModel& model, std::filesystem::path folder);

} // namespace varnic
