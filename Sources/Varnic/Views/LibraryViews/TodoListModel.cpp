#include "Varnic/Views/LibraryViews/TodoListModel.h"

#include "Varnic/Views/Context/ViewContext.h"

#include <algorithm>
#include <iterator>
#include <unordered_map>

namespace varnic {

namespace {

TodoRow headerOf(const Note& note) {
    return {.id = note.id,
            .note = note.id,
            .isHeader = true,
            .text = QString::fromStdString(note.displayTitle()).simplified(),
            .created = note.created};
}

TodoRow rowOf(const OpenTodo& todo, const Note& note, const AppModel& model) {
    TodoRow row{.id = todo.id(),
                .note = todo.noteID,
                .text = QString::fromStdString(todo.block.text),
                .due = QString::fromStdString(todo.block.due.value_or("")),
                .dueDate = todo.dueDate,
                .created = note.created};
    if (const auto owner = todo.block.owner) {
        const std::string& yourName = model.settings.yourName.value();
        const std::string you = yourName.empty() ? std::string(label(Speaker::you)) : yourName;
        row.isYours = *owner == Speaker::you;
        row.ownerName = QString::fromStdString((note.call ? *note.call : CallRecord()).name(*owner, you));
    }
    return row;
}

/// By note, in the order in which the notes come first.
std::vector<TodoRow> grouped(const AppModel& model) {
    std::vector<std::vector<TodoRow>> groups;
    std::unordered_map<Uuid, std::size_t> places;
    for (const OpenTodo& todo : model.openTodos()) {
        const Note& note = *model.note(todo.noteID);
        const auto [place, isFirst] = places.try_emplace(todo.noteID, groups.size());
        if (isFirst) {
            groups.push_back({headerOf(note)});
        }
        groups[place->second].push_back(rowOf(todo, note, model));
    }
    std::vector<TodoRow> rows;
    for (auto& group : groups) {
        std::ranges::move(group, std::back_inserter(rows));
    }
    return rows;
}

/// Whether both stand in the same place of the list.
bool staysAt(const TodoRow& before, const TodoRow& fresh) {
    return before.id == fresh.id && before.dueDate == fresh.dueDate && before.created == fresh.created;
}

} // namespace

void TodoListModel::componentComplete() {
    setModel(ViewContext::of(this).model);
}

void TodoListModel::setModel(AppModel& model) {
    model_ = &model;
    connect(&model, &AppModel::notesChanged, this, &TodoListModel::take);
    refresh();
}

void TodoListModel::refresh() {
    const int before = count();
    setRows(grouped(*model_));
    if (count() != before) {
        Q_EMIT countChanged();
    }
}

void TodoListModel::take(const ChangedNotes& changed) {
    if (!changed || !std::ranges::all_of(*changed, [this](const Uuid& id) { return changeInPlace(id); })) {
        refresh();
    }
}

/// Whether the note's rows stay where they are, or there are none; if so, they are up to date.
bool TodoListModel::changeInPlace(const Uuid& id) {
    const auto begin = std::ranges::find(rows(), id, &TodoRow::id);
    const auto end = std::find_if(begin, rows().end(), [&id](const TodoRow& row) { return row.note != id; });
    std::vector<TodoRow> fresh;
    if (const Note* note = model_->note(id)) {
        for (const OpenTodo& todo : Todos::of(*note, model_->region)) {
            if (fresh.empty()) {
                fresh.push_back(headerOf(*note));
            }
            fresh.push_back(rowOf(todo, *note, *model_));
        }
    }
    if (!std::equal(begin, end, fresh.begin(), fresh.end(), staysAt)) {
        return false;
    }
    const auto first = static_cast<std::size_t>(begin - rows().begin());
    for (std::size_t i = 0; i < fresh.size(); ++i) {
        changeRow(first + i, std::move(fresh[i]));
    }
    return true;
}

QVariant TodoListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const TodoRow& row = rows()[static_cast<std::size_t>(index.row())];
    switch (role) {
    case isHeader:
        return row.isHeader;
    case noteId:
        return QString::fromStdString(row.note.text());
    case blockId:
        return row.isHeader ? QString() : QString::fromStdString(row.id.text());
    case text:
        return row.text;
    case ownerName:
        return row.ownerName;
    case isYours:
        return row.isYours;
    case due:
        return row.due;
    default:
        return {};
    }
}

QHash<int, QByteArray> TodoListModel::roleNames() const {
    return {{isHeader, "isHeader"},   {noteId, "noteId"},   {blockId, "blockId"}, {text, "text"},
            {ownerName, "ownerName"}, {isYours, "isYours"}, {due, "due"}};
}

} // namespace varnic
