#include "Varnic/Views/SettingsViews/FolderView.h"

#include "Varnic/Background.h"
#include "VarnicPlatform/Desktop/FileManager.h"

#include <QPointer>

#include <utility>

namespace varnic {

QCoro::Task<> showFolder(AppModel& model, std::filesystem::path folder) {
    const QPointer self(&model);
    const auto show = [folder = std::move(folder)] { return FileManager::showFolder(folder); };
    const bool isShown = co_await inBackground(show);
    if (self && !isShown) {
        self->flash({.text = "No file manager was found", .symbol = "exclamationmark.triangle"});
    }
}

} // namespace varnic
