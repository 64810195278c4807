#include "Varnic/Views/LibraryViews/SearchResultsModel.h"

#include "Varnic/Views/Context/ViewModel.h"
#include "Varnic/Views/Theme/Native/Highlighted.h"
#include "VarnicCore/Models/Clock.h"

#include <algorithm>
#include <chrono>
#include <iterator>

namespace varnic {

namespace {

using namespace std::chrono_literals;

/// How long what has changed in the notes may go unseen in the results.
constexpr auto refreshDelay = 250ms;

} // namespace

void SearchResultsModel::componentComplete() {
    setModel(appModel(*qmlEngine(this)));
}

void SearchResultsModel::setModel(AppModel& model) {
    model_ = &model;
    timer_.setSingleShot(true);
    connect(&timer_, &QTimer::timeout, this, &SearchResultsModel::search);
    connect(&model, &AppModel::notesChanged, this, [this] {
        if (!timer_.isActive()) {
            timer_.start(refreshDelay);
        }
    });
    // Keys that were pressed during a long search make one search together.
    watchers_.push_back(model.query.addNotifier([this] { timer_.start(0); }));
    search();
}

void SearchResultsModel::search() {
    std::vector<Result> fresh;
    std::size_t row = 0;
    for (NoteMatch& match : model_->searchResults()) {
        fresh.push_back({match.note->id, QString::fromStdString(match.note->displayTitle()).simplified(),
                         std::move(match.hits), row});
        row += fresh.back().hits->size() + 1;
    }
    const auto isSame = [](const Result& a, const Result& b) {
        return a.note == b.note && a.title == b.title && a.hits == b.hits;
    };
    if (std::ranges::equal(fresh, results_, isSame)) {
        return;
    }
    beginResetModel();
    results_ = std::move(fresh);
    rowCount_ = row;
    endResetModel();
    Q_EMIT countChanged();
}

const SearchResultsModel::Result& SearchResultsModel::resultAt(std::size_t row) const {
    return *std::prev(std::ranges::upper_bound(results_, row, {}, &Result::firstRow));
}

const SearchHit* SearchResultsModel::hitAt(const Result& result, std::size_t row) {
    return row == result.firstRow ? nullptr : &(*result.hits)[row - result.firstRow - 1];
}

int SearchResultsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant SearchResultsModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const auto row = static_cast<std::size_t>(index.row());
    const Result& result = resultAt(row);
    const SearchHit* hit = hitAt(result, row);
    switch (role) {
    case isHeader:
        return hit == nullptr;
    case noteId:
        return QString::fromStdString(result.note.text());
    case text:
        return hit == nullptr ? result.title : QString::fromStdString(hit->snippet);
    case markedText:
        return hit == nullptr ? result.title.toHtmlEscaped() : highlighted(hit->snippet, hit->highlights);
    case stamp:
        return hit != nullptr && hit->time ? QString::fromStdString(Clock::stamp(*hit->time)) : QString();
    case time:
        return hit != nullptr ? hit->time.value_or(-1) : -1;
    default:
        return {};
    }
}

QHash<int, QByteArray> SearchResultsModel::roleNames() const {
    return {{isHeader, "isHeader"},     {noteId, "noteId"}, {text, "text"},
            {markedText, "markedText"}, {stamp, "stamp"},   {time, "time"}};
}

} // namespace varnic
