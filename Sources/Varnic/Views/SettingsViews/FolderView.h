#pragma once

#include "Varnic/AppModel/AppModel.h"

#include <filesystem>

namespace varnic {

/// Shows a folder in the desktop's file manager; a toast where there is none. Main thread.
QCoro::Task<> showFolder(AppModel& model, std::filesystem::path folder);

} // namespace varnic
