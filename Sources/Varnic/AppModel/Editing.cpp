#include "Varnic/AppModel/AppModel.h"

#include "Varnic/AppModel/LibraryWatch.h"
#include "Varnic/AppModel/SettingsFile.h"
#include "VarnicCore/Editor/NoteEditor.h"

#include <QPointer>
#include <QTimer>

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

std::optional<std::string> problemText(std::size_t unreadable, bool isLibraryLost) {
    if (isLibraryLost) {
        return SettingsFile::libraryLost;
    }
    if (unreadable == 0) {
        return std::nullopt;
    }
    return unreadable == 1 ? "1 note file couldn’t be read and was left as is."
                           : fmt::format("{} note files couldn’t be read and were left as is.", unreadable);
}

} // namespace

QCoro::Task<> AppModel::load() {
    const QPointer self(this);
    isRecoveryDue_ = true;
    co_await readLibrary();
    if (self) {
        const Recovered recovered = co_await recoverRecordings();
        if (self && !recovered.problem) {
            isRecoveryDue_ = false;
        }
    }
}

QCoro::Task<> AppModel::readLibrary() {
    const QPointer self(this);
    if (!isDemo) {
        // Before the notes are read, so that no change in between is missed.
        watch_ = std::make_unique<LibraryWatch>(
            store_.notesFolder(), [this](LibraryWatch::Names names) { store_.check(std::move(names), onMain()); });
    }
    if (isRead_) {
        // What is in memory may be newer than what is on disk.
        store_.check(std::nullopt, onMain());
        co_return;
    }
    const std::filesystem::path library = store_.root();
    LibraryQueue::Contents contents = co_await store_.load(currentDate());
    if (!self || library != store_.root()) { // another may have taken its place
        co_return;
    }
    isRead_ = !contents.problem;
    showUnreadable(std::move(contents.problem));
    if (!isRead_) {
        co_return;
    }
    // What was made while the library was being read stays.
    std::erase_if(contents.notes, [this](const Note& loaded) { return note(loaded.id) != nullptr; });
    for (Note& loaded : contents.notes) {
        notes_.push_back(std::move(loaded));
    }
    loadProblem = problemText(contents.unreadable, settings.isLibraryLost.value());
    Q_EMIT notesChanged();
    if (!selection.value()) {
        selectFirstIfNeeded();
    }
}

void AppModel::update(Uuid id, bool immediately, const std::function<void(Note&)>& change) {
    const SharedNote before = notes_.find(id);
    if (!before) {
        return;
    }
    Note changed = *before;
    change(changed);
    if (changed == *before) {
        return;
    }
    notes_.replace(std::move(changed));
    if (!isDemo && !unsaved_.contains(id)) {
        unsaved_[id].base = before;
    }
    Q_EMIT notesChanged({{id}});
    scheduleSave(id, immediately);
}

void AppModel::scheduleSave(Uuid id, bool immediately, SerialQueue::Work whenSaved) {
    if (isDemo) {
        return;
    }
    unsaved_[id].edit = ++edits_;
    if (immediately) {
        saveTasks_.erase(id);
        saveNow(id, std::move(whenSaved));
        return;
    }
    auto& timer = saveTasks_[id];
    if (timer) {
        timer->start(saveDelay);
        return;
    }
    timer = std::make_unique<QTimer>();
    timer->setSingleShot(true);
    connect(timer.get(), &QTimer::timeout, this, [this, id] {
        // The timer that calls here must not end before the call does.
        saveTasks_.extract(id).mapped().release()->deleteLater();
        saveNow(id);
    });
    timer->start(saveDelay);
}

void AppModel::saveNow(Uuid id, SerialQueue::Work whenSaved) {
    const SharedNote stored = notes_.find(id);
    if (isDemo || !stored) {
        return;
    }
    const Unsaved& unsaved = unsaved_.try_emplace(id, Unsaved{edits_ + 1}).first->second;
    const std::uint64_t edit = unsaved.edit;
    edits_ = std::max(edits_, edit);
    const auto done = std::make_shared<SerialQueue::Work>(std::move(whenSaved));
    const auto whenDone = [this, id, edit, title = stored->displayTitle(), done](const LibraryQueue::Saved& saved) {
        if (!saved.problem && *done) {
            (*done)();
        }
        loop_.post([this, id, edit, title, saved] { takeSaved(id, edit, title, saved); });
    };
    store_.save(stored, unsaved.base, whenDone);
}

void AppModel::takeSaved(Uuid id, std::uint64_t edit, const std::string& title, const LibraryQueue::Saved& saved) {
    const auto unsaved = unsaved_.find(id);
    if (saved.problem) {
        saveProblem_ = *saved.problem;
        if (unsaved != unsaved_.end()) {
            unsaved->second.isSpared = saved.isSpared;
        }
        // Whether it is the whole library that is out of reach.
        store_.check(LibraryWatch::Names(std::in_place), onMain());
        flash({.text = fmt::format("Couldn’t save “{}”", title), .symbol = warningSymbol});
        return;
    }
    if (unsaved != unsaved_.end() && unsaved->second.edit == edit) {
        unsaved_.erase(unsaved);
    }
    if (saved.otherCopy) {
        notes_.push_back(*saved.otherCopy);
        Q_EMIT notesChanged({{saved.otherCopy->id}});
        flash({.text = fmt::format("“{}” was changed elsewhere too — both are kept", title), .symbol = "doc.on.doc"});
    }
}

void AppModel::flushSaves() {
    const auto settle = [this] {
        store_.flush();
        // How the saves went, which the queue has reported by now.
        loop_.runPending();
    };
    settle();
    saveUnsaved();
    settle();
}

std::vector<Uuid> AppModel::unsavedNotes() const {
    std::vector<Uuid> ids;
    for (const auto& [id, unsaved] : unsaved_) {
        if (note(id) != nullptr) {
            ids.push_back(id);
        }
    }
    return ids;
}

void AppModel::saveUnsaved() {
    saveTasks_.clear();
    for (const Uuid& id : unsavedNotes()) {
        saveNow(id);
    }
}

Uuid AppModel::newNote(std::string title, std::vector<Block> blocks, Date created) {
    const Note fresh(Uuid::random(), std::move(title), created, std::move(blocks));
    notes_.insert(notes_.begin(), fresh);
    Q_EMIT notesChanged({{fresh.id}});
    if (section.value() != LibrarySection::all) {
        section = LibrarySection::notes;
    }
    query = std::string();
    selection = fresh.id;
    focusBlock = fresh.blocks.front().id;
    scheduleSave(fresh.id, true);
    return fresh.id;
}

std::optional<Uuid> AppModel::selectionWithout(Uuid id) const {
    if (selection.value() != id) {
        return selection.value();
    }
    const auto visible = visibleNotes();
    const auto place = std::ranges::find(visible, id, &Note::id);
    if (place != visible.end() && std::next(place) != visible.end()) {
        return (*std::next(place))->id;
    }
    return place != visible.end() && place != visible.begin() ? std::optional((*std::prev(place))->id) : std::nullopt;
}

/// Takes the note out of the list; the caller announces it.
void AppModel::forget(Uuid id) {
    const std::optional<Uuid> next = selectionWithout(id);
    notes_.erase(id);
    saveTasks_.erase(id);
    unsaved_.erase(id);
    histories_.erase(id);
    selection = next;
}

void AppModel::remove(Uuid id) {
    const SharedNote removed = notes_.find(id);
    if (!removed || id == liveNoteID()) {
        return;
    }
    if (!isDemo) {
        if (unsaved_.contains(id)) {
            // As it stands now, so that bringing it back brings the last edits back.
            saveNow(id);
        }
        store_.remove(id);
    }
    forget(id);
    Q_EMIT notesChanged({{id}});
    flash({.text = fmt::format("Deleted “{}”", removed->displayTitle()), .symbol = "trash", .undo = [this, removed] {
               restore(*removed);
           }});
}

QCoro::Task<> AppModel::restore(Note note) {
    const QPointer self(this);
    std::optional<Note> stored;
    if (!isDemo) {
        stored = co_await store_.restore(note.id, currentDate());
    }
    if (!self) {
        co_return;
    }
    const Uuid id = note.id;
    if (!notes_.find(id)) {
        const bool isOnDisk = stored.has_value();
        notes_.push_back(isOnDisk ? std::move(*stored) : std::move(note));
        Q_EMIT notesChanged({{id}});
        if (!isOnDisk) {
            saveNow(id);
        }
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
    edit(note, {.saveNow = true}, [block](Note& edited) -> std::optional<TextPlace> {
        NoteEditor::update(block, edited, currentDate(), [](Block& todo) { todo.done = !todo.done; });
        return std::nullopt;
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
    update(id, false, [&name](Note& note) { NoteEditor::renameThem(std::move(name), note); });
}

} // namespace varnic
