#include "Varnic/Views/LibraryViews/NoteListModel.h"

#include "Varnic/Recording/RecordingController.h"
#include "Varnic/Views/Context/ViewContext.h"
#include "Varnic/Views/Ink/CallInk.h"
#include "Varnic/Views/LibraryViews/ListKeys.h"

#include <algorithm>
#include <chrono>
#include <iterator>

namespace varnic {

namespace {

using namespace std::chrono_literals;

/// How often the calendar is looked at: timers stand still while the computer sleeps.
constexpr auto calendarInterval = 1min;

} // namespace

NoteListModel::NoteListModel(QObject* parent) : RowModel<NoteSummary>(parent) {
    for (const auto signal : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved}) {
        connect(this, signal, this, &NoteListModel::countChanged);
    }
    connect(this, &QAbstractItemModel::modelReset, this, &NoteListModel::countChanged);
    calendar_.setTimerType(Qt::VeryCoarseTimer);
    calendar_.setInterval(calendarInterval);
    connect(&calendar_, &QTimer::timeout, this, &NoteListModel::followCalendar);
}

void NoteListModel::componentComplete() {
    setModel(ViewContext::of(this).model);
}

void NoteListModel::setModel(AppModel& model) {
    model_ = &model;
    section_ = model.section.value();
    connect(&model, &AppModel::notesChanged, this, &NoteListModel::take);
    connect(&model.recorder(), &RecordingController::stateChanged, this, &NoteListModel::refresh);
    watchers_.push_back(model.processing.addNotifier([this] { refresh(); }));
    watchers_.push_back(model.section.addNotifier([this] { refresh(); }));
    watchers_.push_back(model.selection.addNotifier([this] { refreshCurrentRow(); }));
    resetRows(summaries());
    refreshCurrentRow();
    calendar_.start();
}

void NoteListModel::followCalendar() {
    if (model_->region.day(now()) != today_) {
        refresh();
    }
}

void NoteListModel::refresh() {
    if (section_ == model_->section.value()) {
        setRows(summaries());
    } else {
        section_ = model_->section.value();
        resetRows(summaries());
    }
    refreshCurrentRow();
}

void NoteListModel::take(const ChangedNotes& changed) {
    if (!changed || !std::ranges::all_of(*changed, [this](const Uuid& id) { return changeInPlace(id); })) {
        refresh();
    }
}

/// Whether the note stays where it is, or out of the list; if so, its row is up to date.
bool NoteListModel::changeInPlace(const Uuid& id) {
    const Note* note = model_->note(id);
    const bool isSelected = currentRow_ >= 0 && rows()[static_cast<std::size_t>(currentRow_)].id == id;
    const auto row =
        isSelected ? std::next(rows().begin(), currentRow_) : std::ranges::find(rows(), id, &NoteSummary::id);
    const bool shows = note != nullptr && model_->isVisible(*note);
    if (row == rows().end() || row->isLive || !shows) {
        return row == rows().end() && !shows;
    }
    const Date moment = now();
    if (row->isPinned != note->pinned || row->created != note->created || model_->region.day(moment) != today_) {
        return false;
    }
    changeRow(static_cast<std::size_t>(row - rows().begin()), summary(*note, moment));
    return true;
}

NoteSummary NoteListModel::summary(const Note& note, Date moment) {
    const auto& stages = model_->processing.value();
    const auto found = stages.find(note.id);
    NoteSummary made = NoteSummaries::of(note, found == stages.end() ? std::nullopt : std::optional(found->second));
    made.date = dateText(note, moment);
    return made;
}

std::vector<NoteSummary> NoteListModel::summaries() {
    const Date moment = now();
    if (const auto today = model_->region.day(moment); today != today_) {
        today_ = today;
        dates_.clear();
    }
    std::vector<NoteSummary> rows;
    if (const auto live = model_->liveNoteID()) {
        rows.push_back({.id = *live, .isLive = true});
    }
    for (const Note* note : model_->visibleNotes()) {
        rows.push_back(summary(*note, moment));
    }
    return rows;
}

/// Most dates stay what they were, and putting one in words takes as long as all the rest of a note.
QString NoteListModel::dateText(const Note& note, Date moment) {
    auto& known = dates_[note.id];
    if (known.text.isEmpty() || known.date != note.modified) {
        known = {note.modified, QString::fromStdString(NoteSummaries::relative(note.modified, moment, model_->region))};
    }
    return known.text;
}

void NoteListModel::refreshCurrentRow() {
    const auto& selected = model_->selection.value();
    const auto found = selected ? std::ranges::find(rows(), *selected, &NoteSummary::id) : rows().end();
    const int row = found == rows().end() ? -1 : static_cast<int>(found - rows().begin());
    if (std::exchange(currentRow_, row) != row) {
        Q_EMIT currentRowChanged();
    }
}

void NoteListModel::select(int row) {
    if (row >= 0 && row < count()) {
        model_->selection = rows()[static_cast<std::size_t>(row)].id;
    }
}

bool NoteListModel::moveByKey(int key, int rowsOnPage) {
    const auto row = ListKeys::rowAfter(key, currentRow_, count(), rowsOnPage);
    if (row) {
        select(*row);
    }
    return row.has_value();
}

QString NoteListModel::currentId() const {
    const bool isNote = currentRow_ >= 0 && !rows()[static_cast<std::size_t>(currentRow_)].isLive;
    return isNote ? QString::fromStdString(rows()[static_cast<std::size_t>(currentRow_)].id.text()) : QString();
}

QVariant NoteListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const NoteSummary& row = rows()[static_cast<std::size_t>(index.row())];
    switch (role) {
    case noteId:
        return QString::fromStdString(row.id.text());
    case title:
        return row.title;
    case date:
        return row.date;
    case preview:
        return row.preview;
    case cards:
        return row.cards;
    case todos:
        return row.todos;
    case length:
        return row.length;
    case stage:
        return row.stage;
    case isCall:
        return row.isCall;
    case isPinned:
        return row.isPinned;
    case hasTranscript:
        return row.lines > 0;
    case ink: {
        const Note* note = model_->note(row.id);
        return QVariant::fromValue(note != nullptr && note->call ? CallInk(*note->call) : CallInk());
    }
    case isLive:
        return row.isLive;
    case spoken:
        return row.spoken();
    default:
        return {};
    }
}

QHash<int, QByteArray> NoteListModel::roleNames() const {
    return {{noteId, "noteId"},
            {title, "title"},
            {date, "date"},
            {preview, "preview"},
            {cards, "cards"},
            {todos, "todos"},
            {length, "length"},
            {stage, "stage"},
            {isCall, "isCall"},
            {isPinned, "isPinned"},
            {hasTranscript, "hasTranscript"},
            {isLive, "isLive"},
            {ink, "ink"},
            {spoken, "spoken"}};
}

} // namespace varnic
