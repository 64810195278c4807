#include "Varnic/AppModel/LibraryWatch.h"

#include <chrono>
#include <utility>

namespace varnic {

namespace {

using namespace std::chrono_literals;

/// A file synchroniser removes and makes files in quick succession; what stands in between is of no interest.
constexpr auto restTime = 200ms;

} // namespace

LibraryWatch::LibraryWatch(const std::filesystem::path& folder, std::function<void(Names)> changed)
    : watch_(folder), notifier_(QSocketNotifier::Read) {
    rest_.setSingleShot(true);
    rest_.setInterval(restTime);
    QObject::connect(&rest_, &QTimer::timeout,
                     [this, changed = std::move(changed)] { changed(std::exchange(names_, Names(std::in_place))); });
    if (watch_.descriptor() >= 0) {
        QObject::connect(&notifier_, &QSocketNotifier::activated, [this] { collect(); });
        notifier_.setSocket(watch_.descriptor());
        notifier_.setEnabled(true);
    }
}

void LibraryWatch::collect() {
    Names news = watch_.news();
    if (!news || !names_) {
        names_.reset();
    } else {
        names_->merge(*news);
    }
    // Started but not started anew: under constant writing the news would never come.
    if (!rest_.isActive()) {
        rest_.start();
    }
}

} // namespace varnic
