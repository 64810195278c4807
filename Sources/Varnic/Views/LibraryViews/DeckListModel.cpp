#include "Varnic/Views/LibraryViews/DeckListModel.h"

#include "Varnic/Views/Context/ViewContext.h"
#include "Varnic/Views/LibraryViews/NoteSummary.h"

#include <algorithm>
#include <chrono>
#include <iterator>

namespace varnic {

namespace {

using namespace std::chrono_literals;

/// How often it is looked whether cards have come due.
constexpr auto dueInterval = 1min;

DeckRow rowOf(const Flashcards::Deck& deck) {
    return {.id = deck.noteID, .title = deck.title, .total = deck.total, .due = deck.due};
}

} // namespace

void DeckListModel::componentComplete() {
    setModel(ViewContext::of(this).model);
}

void DeckListModel::setModel(AppModel& model) {
    model_ = &model;
    connect(&model, &AppModel::notesChanged, this, [this] { refresh(); });
    connect(&dueTimer_, &QTimer::timeout, this, &DeckListModel::refresh);
    dueTimer_.setTimerType(Qt::VeryCoarseTimer);
    dueTimer_.start(dueInterval);
    refresh();
}

void DeckListModel::refresh() {
    const int before = count();
    const auto& decks = model_->decks();
    std::vector<DeckRow> rows;
    rows.reserve(decks.size());
    std::ranges::transform(decks, std::back_inserter(rows), rowOf);
    setRows(rows);
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
        return QString::fromStdString(row.title).simplified();
    case total:
        return NoteSummaries::counted(static_cast<std::size_t>(row.total), "card");
    case due:
        return row.due == 0 ? QString() : QString::number(row.due) + " due";
    case studyText:
        return row.due == 0 ? QString() : "Study " + QString::number(row.due);
    default:
        return {};
    }
}

QHash<int, QByteArray> DeckListModel::roleNames() const {
    return {{noteId, "noteId"}, {title, "title"}, {total, "total"}, {due, "due"}, {studyText, "studyText"}};
}

} // namespace varnic
