#pragma once

#include "VarnicPlatform/Desktop/FolderWatch.h"

#include <QSocketNotifier>
#include <QTimer>

#include <filesystem>
#include <functional>
#include <optional>
#include <set>
#include <string>

namespace varnic {

/// Tells once a folder has come to rest which of its files have changed. Main thread.
class LibraryWatch {
public:
    /// The names of files; nothing where any may have changed.
    using Names = std::optional<std::set<std::string>>;

    LibraryWatch(const std::filesystem::path& folder, std::function<void(Names)> changed);

private:
    void collect();

    FolderWatch watch_;
    QSocketNotifier notifier_;
    /// News gathered until nothing has happened for a moment.
    Names names_ = Names(std::in_place);
    QTimer rest_;
};

} // namespace varnic
