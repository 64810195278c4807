#include "Varnic/Views/LibraryViews/DeckListModel.h"

#include "Varnic/Views/Context/ViewModel.h"
#include "Varnic/Views/LibraryViews/NoteSummary.h"

#include <chrono>

namespace varnic {

namespace {

using namespace std::chrono_literals;

/// How often it is looked whether cards have come due.
constexpr auto dueInterval = 1min;

DeckRow rowOf(const Flashcards::Deck& deck) {
    return {.id = deck.noteID,
            .title = QString::fromStdString(deck.title).simplified(),
            .total = NoteSummaries::counted(static_cast<std::size_t>(deck.total), "card"),
            .due = deck.due == 0 ? QString() : QString::number(deck.due) + " due"};
}

} // namespace

void DeckListModel::componentComplete() {
    setModel(appModel(*qmlEngine(this)));
}

void DeckListModel::setModel(AppModel& model) {
    model_ = &model;
    connect(&model, &AppModel::notesChanged, this, &DeckListModel::refresh);
    connect(&dueTimer_, &QTimer::timeout, this, &DeckListModel::refresh);
    dueTimer_.setTimerType(Qt::VeryCoarseTimer);
    dueTimer_.start(dueInterval);
    refresh();
}

void DeckListModel::refresh() {
    const int before = count();
    std::vector<DeckRow> rows;
    for (const Flashcards::Deck& deck : model_->decks()) {
        rows.push_back(rowOf(deck));
    }
    setRows(std::move(rows));
    if (count() != before) {
        Q_EMIT countChanged();
    }
}

QVariant DeckListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const DeckRow& row = rows()[static_cast<std::size_t>(index.row())];
    switch (role) {
    case noteId:
        return QString::fromStdString(row.id.text());
    case title:
        return row.title;
    case total:
        return row.total;
    case due:
        return row.due;
    default:
        return {};
    }
}

QHash<int, QByteArray> DeckListModel::roleNames() const {
    return {{noteId, "noteId"}, {title, "title"}, {total, "total"}, {due, "due"}};
}

} // namespace varnic
