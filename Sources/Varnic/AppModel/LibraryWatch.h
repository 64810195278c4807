#pragma once

#include "VarnicPlatform/Desktop/FolderWatch.h"

#include <QSocketNotifier>
#include <QTimer>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>

namespace varnic {

/// Reports, once a folder has come to rest, which of its files have changed, also when it has been replaced by another
/// one or comes back. Main thread.
class LibraryWatch {
public:
    /// The names of files; nothing where any may have changed.
    using Names = std::optional<std::set<std::string>>;

    LibraryWatch(const std::filesystem::path& folder, std::function<void(Names)> changed);

private:
    [[nodiscard]] bool begin();
    void search();
    void collect();

    const std::filesystem::path folder_;
    std::optional<FolderWatch> watch_;
    std::unique_ptr<QSocketNotifier> notifier_;
    /// Changed files, gathered until `rest_` fires.
    Names names_ = Names(std::in_place);
    QTimer rest_;
    /// Looks for a folder that is gone.
    QTimer search_;
};

} // namespace varnic
