#include "Varnic/AppModel/AppModel.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>

namespace varnic {

namespace {

using namespace std::chrono_literals;

/// How long the user must pause before an edit is saved.
constexpr auto saveDelay = 500ms;
constexpr auto toastTime = 2200ms;
constexpr auto undoTime = 5000ms;

std::optional<std::string> problemText(std::size_t unreadable) {
    if (unreadable == 0) {
        return std::nullopt;
    }
    return unreadable == 1 ? "1 note file couldn’t be read and was left as is."
                           : fmt::format("{} note files couldn’t be read and were left as is.", unreadable);
}

} // namespace

QCoro::Task<> AppModel::load() {
    LibraryQueue::Contents contents = co_await store_.load(currentDate());
    // What was made while the library was being read stays.
    std::erase_if(contents.notes, [this](const Note& loaded) { return note(loaded.id) != nullptr; });
    std::ranges::move(contents.notes, std::back_inserter(notes_));
    loadProblem = problemText(contents.unreadable);
    Q_EMIT notesChanged();
    if (!selection.value()) {
        selectFirstIfNeeded();
    }
    co_await recoverRecordings();
}

void AppModel::update(Uuid id, bool immediately, const std::function<void(Note&)>& change) {
    Note* stored = find(id);
    if (stored == nullptr) {
        return;
    }
    Note changed = *stored;
    change(changed);
    if (changed == *stored) {
        return;
    }
    *stored = std::move(changed);
    Q_EMIT notesChanged();
    scheduleSave(id, immediately);
}

void AppModel::scheduleSave(Uuid id, bool immediately) {
    saveTasks_.erase(id);
    if (isDemo) {
        return;
    }
    if (immediately) {
        saveNow(id);
        return;
    }
    auto timer = std::make_unique<QTimer>();
    timer->setSingleShot(true);
    connect(timer.get(), &QTimer::timeout, this, [this, id] {
        // The timer that calls here must not end before the call does.
        saveTasks_.extract(id).mapped().release()->deleteLater();
        saveNow(id);
    });
    timer->start(saveDelay);
    saveTasks_[id] = std::move(timer);
}

void AppModel::saveNow(Uuid id, SerialQueue::Work whenSaved) {
    const Note* stored = note(id);
    if (isDemo || stored == nullptr) {
        return;
    }
    const auto failed = [this](const Note& note) {
        QMetaObject::invokeMethod(
            this,
            [this, title = note.displayTitle()] {
                flash({.text = fmt::format("Couldn’t save “{}”", title), .symbol = "exclamationmark.triangle"});
            },
            Qt::QueuedConnection);
    };
    store_.save(*stored, failed, std::move(whenSaved));
}

void AppModel::flushSaves() {
    for (const auto& [id, task] : std::exchange(saveTasks_, {})) {
        saveNow(id);
    }
    store_.flush();
}

Uuid AppModel::newNote(std::string title, std::vector<Block> blocks) {
    const Note fresh(Uuid::random(), std::move(title), currentDate(), std::move(blocks));
    notes_.insert(notes_.begin(), fresh);
    Q_EMIT notesChanged();
    if (section.value() != LibrarySection::all) {
        section = LibrarySection::notes;
    }
    query = std::string();
    selection = fresh.id;
    focusBlock = fresh.blocks.front().id;
    scheduleSave(fresh.id, true);
    return fresh.id;
}

void AppModel::remove(Uuid id) {
    const Note* stored = note(id);
    if (stored == nullptr || id == liveNoteID()) {
        return;
    }
    std::optional<Uuid> next = selection.value();
    if (next == id) {
        const auto visible = visibleNotes();
        const auto place = std::ranges::find(visible, stored);
        next = std::nullopt;
        if (place != visible.end() && std::next(place) != visible.end()) {
            next = (*std::next(place))->id;
        } else if (place != visible.end() && place != visible.begin()) {
            next = (*std::prev(place))->id;
        }
    }
    saveTasks_.erase(id);
    Note removed = *stored;
    if (!isDemo) {
        // As it stands now, so that bringing it back brings the last edits back.
        saveNow(id);
        store_.remove(id);
    }
    std::erase_if(notes_, [id](const Note& other) { return other.id == id; });
    Q_EMIT notesChanged();
    selection = next;
    flash({.text = fmt::format("Deleted “{}”", removed.displayTitle()),
           .symbol = "trash",
           .undo = [this, removed = std::move(removed)] { restore(removed); }});
}

QCoro::Task<> AppModel::restore(Note note) {
    if (!isDemo) {
        note = (co_await store_.restore(note.id, currentDate())).value_or(note);
    }
    const Uuid id = note.id;
    if (find(id) == nullptr) {
        notes_.push_back(std::move(note));
        Q_EMIT notesChanged();
    }
    selection = id;
}

void AppModel::flash(ToastMessage message) {
    const Uuid id = message.id;
    const auto time = message.undo ? undoTime : toastTime;
    toast = std::move(message);
    QTimer::singleShot(time, this, [this, id] {
        if (toast.value() && toast.value()->id == id) {
            toast = std::nullopt;
        }
    });
}

void AppModel::selectFirstIfNeeded() {
    const auto visible = visibleNotes();
    const auto& selected = selection.value();
    if (!selected || std::ranges::none_of(visible, [&](const Note* note) { return note->id == *selected; })) {
        selection = visible.empty() ? std::nullopt : std::optional(visible.front()->id);
    }
}

void AppModel::togglePin(Uuid id) {
    update(id, true, [](Note& note) { note.pinned = !note.pinned; });
}

void AppModel::toggleTodo(Uuid note, Uuid block) {
    update(note, true, [block](Note& edited) {
        NoteEditor::update(block, edited, currentDate(), [](Block& todo) { todo.done = !todo.done; });
    });
}

void AppModel::grade(Uuid note, Uuid card, Flashcards::Grade grade) {
    update(note, true, [&](Note& edited) {
        NoteEditor::update(card, edited, currentDate(), [&](Block& block) {
            block.card = Flashcards::grade(block.card, grade, currentDate(), region);
        });
    });
}

void AppModel::renameThem(Uuid id, std::string name) {
    update(id, false, [&name](Note& note) {
        if (note.call) {
            note.call->themName = std::move(name);
        }
    });
}

} // namespace varnic
