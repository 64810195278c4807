#include "Varnic/AppModel/LibrarySearch.h"

#include <chrono>
#include <utility>

namespace varnic {

namespace {

using namespace std::chrono_literals;

/// How long changes of the notes may be missing from the results.
constexpr auto refreshDelay = 250ms;

} // namespace

LibrarySearch::LibrarySearch(AppModel& model, QObject* parent)
    : QObject(parent), model_(model), found_(std::make_shared<const FoundNotes>(SearchTerms(""))) {
    refreshTimer_.setSingleShot(true);
    refreshTimer_.setInterval(refreshDelay);
    connect(&refreshTimer_, &QTimer::timeout, this, [this] { start(false); });
    connect(&model, &AppModel::notesChanged, this, &LibrarySearch::followNotes);
    queryWatcher_ = model.query.addNotifier([this] { followQuery(); });
    followQuery();
}

LibrarySearch::~LibrarySearch() {
    stop_.request_stop();
}

void LibrarySearch::followQuery() {
    stop_.request_stop();
    start(true);
}

void LibrarySearch::followNotes() {
    if (model_.query.value().empty()) {
        return; // which finds nothing in any notes
    }
    if (isRunning_) {
        isStale_ = true;
    } else if (!refreshTimer_.isActive()) {
        refreshTimer_.start();
    }
}

void LibrarySearch::start(bool isNewQuery) {
    refreshTimer_.stop();
    isStale_ = false;
    stop_ = std::stop_source();
    isRunning_ = true;
    queue_.async(
        [this, query = model_.query.value(), notes = model_.notes().all(), stop = stop_.get_token(), isNewQuery] {
            // A search that has given way may have results on their way to the main thread.
            const auto tell = [this, stop](FoundNotes found, bool isWhole) {
                loop_.post([this, stop, isWhole, found = std::move(found)]() mutable {
                    if (!stop.stop_requested()) {
                        take(std::move(found), isWhole);
                    }
                });
            };
            RepeatedSearch::Preview preview;
            if (isNewQuery) {
                preview = [&tell](FoundNotes found) { tell(std::move(found), false); };
            }
            if (auto found = search_.search(query, notes, stop, preview)) {
                tell(std::move(*found), true);
            }
        });
    Q_EMIT changed();
}

void LibrarySearch::take(FoundNotes found, bool isWhole) {
    found_ = std::make_shared<const FoundNotes>(std::move(found));
    isRunning_ = !isWhole;
    if (isWhole && isStale_) {
        refreshTimer_.start();
    }
    Q_EMIT changed();
}

} // namespace varnic
