#include "Varnic/AppModel/LibraryWatch.h"

#include <chrono>
#include <utility>

namespace varnic {

namespace {

using namespace std::chrono_literals;

/// A file synchroniser removes and makes files in quick succession; the states in between are of no interest.
constexpr auto restTime = 200ms;
/// Nothing reports that a folder which was gone has come back.
constexpr auto searchInterval = 1s;

} // namespace

LibraryWatch::LibraryWatch(const std::filesystem::path& folder, std::function<void(Names)> changed) : folder_(folder) {
    rest_.setSingleShot(true);
    rest_.setInterval(restTime);
    QObject::connect(&rest_, &QTimer::timeout,
                     [this, changed = std::move(changed)] { changed(std::exchange(names_, Names(std::in_place))); });
    search_.setInterval(searchInterval);
    QObject::connect(&search_, &QTimer::timeout, [this] { search(); });
    if (!begin()) {
        search_.start();
    }
}

/// Whether the folder is watched from here on.
bool LibraryWatch::begin() {
    watch_.emplace(folder_);
    if (watch_->descriptor() < 0) {
        return false;
    }
    notifier_ = std::make_unique<QSocketNotifier>(watch_->descriptor(), QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, [this] { collect(); });
    return true;
}

void LibraryWatch::search() {
    if (begin()) {
        search_.stop();
        names_.reset();
        rest_.start();
    }
}

void LibraryWatch::collect() {
    Names news = watch_->news();
    if (!news || !names_) {
        names_.reset();
    } else {
        names_->merge(*news);
    }
    if (watch_->isOver()) {
        // What calls here must not end before the call does.
        notifier_->setEnabled(false);
        notifier_.release()->deleteLater();
        if (!begin()) {
            search_.start();
        }
        names_.reset();
    }
    // Started, but never restarted: under constant writing it would never fire.
    if (!rest_.isActive()) {
        rest_.start();
    }
}

} // namespace varnic
