#include "Varnic/Views/LibraryViews/TodoListModel.h"

#include "Varnic/Views/Context/ViewModel.h"

#include <algorithm>
#include <iterator>

namespace varnic {

namespace {

TodoRow rowOf(const OpenTodo& todo, const AppModel& model) {
    TodoRow row{.id = todo.id(),
                .note = todo.noteID,
                .text = QString::fromStdString(todo.block.text),
                .due = QString::fromStdString(todo.block.due.value_or(""))};
    if (const auto owner = todo.block.owner) {
        const Note* note = model.note(todo.noteID);
        const std::string& yourName = model.settings.yourName.value();
        const std::string you = yourName.empty() ? std::string(label(Speaker::you)) : yourName;
        row.isYours = *owner == Speaker::you;
        row.ownerName =
            QString::fromStdString((note != nullptr && note->call ? *note->call : CallRecord()).name(*owner, you));
    }
    return row;
}

/// By note, in the order in which the notes come first.
std::vector<TodoRow> grouped(const AppModel& model) {
    std::vector<std::vector<TodoRow>> groups;
    for (const OpenTodo& todo : model.openTodos()) {
        auto group = std::ranges::find_if(groups, [&](const auto& rows) { return rows.front().id == todo.noteID; });
        if (group == groups.end()) {
            TodoRow header{.id = todo.noteID,
                           .note = todo.noteID,
                           .isHeader = true,
                           .text = QString::fromStdString(todo.noteTitle).simplified()};
            group = groups.insert(groups.end(), {std::move(header)});
        }
        group->push_back(rowOf(todo, model));
    }
    std::vector<TodoRow> rows;
    for (auto& group : groups) {
        std::ranges::move(group, std::back_inserter(rows));
    }
    return rows;
}

} // namespace

void TodoListModel::componentComplete() {
    setModel(appModel(*qmlEngine(this)));
}

void TodoListModel::setModel(AppModel& model) {
    model_ = &model;
    connect(&model, &AppModel::notesChanged, this, &TodoListModel::refresh);
    refresh();
}

void TodoListModel::refresh() {
    const int before = count();
    setRows(grouped(*model_));
    if (count() != before) {
        Q_EMIT countChanged();
    }
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
