#pragma once

#include "Varnic/AppModel/AppModel.h"
#include "Varnic/LoopExecutor.h"
#include "Varnic/SerialQueue.h"
#include "VarnicCore/Library/RepeatedSearch.h"

#include <QObject>
#include <QProperty>
#include <QTimer>

#include <memory>
#include <stop_token>
#include <string>

namespace varnic {

/// Searches the notes of the model for its query on a thread of its own, and follows both. What is being searched for
/// gives way to a newer query at once; changed notes are searched again after a moment, when what is under way is done.
/// The model must outlive it. Main thread.
class LibrarySearch : public QObject {
    Q_OBJECT

public:
    explicit LibrarySearch(AppModel& model, QObject* parent = nullptr);
    LibrarySearch(const LibrarySearch&) = delete;
    LibrarySearch& operator=(const LibrarySearch&) = delete;
    /// Does not wait for the end of a search, but for the note that is being read.
    ~LibrarySearch() override;

    /// What was found last: for an older query while a new one has found nothing yet, and not all where the search
    /// still runs. Never null; whoever keeps it keeps the notes as they were searched.
    [[nodiscard]] const std::shared_ptr<const FoundNotes>& found() const { return found_; }

    /// Whether `found` is not yet what the query finds.
    [[nodiscard]] bool isRunning() const { return isRunning_; }

Q_SIGNALS:
    /// There are new results, or `isRunning` has changed.
    void changed();

private:
    void followQuery();
    void followNotes();
    void start(bool isNewQuery);
    void take(FoundNotes found, bool isWhole);

    AppModel& model_;
    std::shared_ptr<const FoundNotes> found_;
    bool isRunning_ = false;
    /// Notes have changed since the running search began.
    bool isStale_ = false;
    QTimer refreshTimer_;
    QPropertyNotifier queryWatcher_;
    std::stop_source stop_;
    /// Used on the queue.
    RepeatedSearch search_;
    LoopExecutor loop_;
    /// Last, so that its work ends before what it uses does.
    SerialQueue queue_;
};

} // namespace varnic
