#include "Varnic/Views/LibraryViews/SearchResultsModel.h"

#include "Varnic/Views/Context/ViewContext.h"
#include "Varnic/Views/Theme/Native/Highlighted.h"
#include "VarnicCore/Models/Clock.h"

#include <algorithm>
#include <utility>

namespace varnic {

namespace {

QString titleOf(const Note& note) {
    return QString::fromStdString(note.displayTitle()).simplified();
}

} // namespace

void SearchResultsModel::componentComplete() {
    setModel(ViewContext::of(this).model);
}

void SearchResultsModel::setModel(AppModel& model) {
    search_ = std::make_unique<LibrarySearch>(model);
    connect(search_.get(), &LibrarySearch::changed, this, &SearchResultsModel::take);
    take();
}

void SearchResultsModel::take() {
    const auto& found = search_->found();
    if (!found_ || found_->terms.all() != found->terms.all() || found_->notes != found->notes) {
        show(found);
    }
    if (std::exchange(isSearching_, search_->isRunning()) != isSearching_) {
        Q_EMIT isSearchingChanged();
    }
}

void SearchResultsModel::show(std::shared_ptr<const FoundNotes> found) {
    const std::size_t before = rowCount_;
    beginResetModel();
    lastHit_.reset();
    hits_.clear(); // which points into what was found before
    found_ = std::move(found);
    firstRows_.clear();
    rowCount_ = 0;
    for (const FoundNote& one : found_->notes) {
        firstRows_.push_back(rowCount_);
        rowCount_ += one.hits + 1;
    }
    endResetModel();
    if (rowCount_ > 0 || before > 0) {
        Q_EMIT countChanged();
    }
}

std::size_t SearchResultsModel::placeOf(std::size_t row) const {
    return static_cast<std::size_t>(std::ranges::upper_bound(firstRows_, row) - firstRows_.begin()) - 1;
}

const SearchHit* SearchResultsModel::hitAt(std::size_t row) const {
    const std::size_t place = placeOf(row);
    if (row == firstRows_[place]) {
        return nullptr;
    }
    if (!lastHit_ || lastHit_->row != row) {
        NoteHits& hits = hits_.try_emplace(place, *found_->notes[place].note, found_->terms).first->second;
        lastHit_ = {row, hits.hit(row - firstRows_[place] - 1)};
    }
    return &lastHit_->hit;
}

int SearchResultsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant SearchResultsModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const auto row = static_cast<std::size_t>(index.row());
    const Note& note = *found_->notes[placeOf(row)].note;
    const SearchHit* hit = hitAt(row);
    switch (role) {
    case isHeader:
        return hit == nullptr;
    case noteId:
        return QString::fromStdString(note.id.text());
    case text:
        return hit == nullptr ? titleOf(note) : QString::fromStdString(hit->snippet);
    case markedText:
        return hit == nullptr ? titleOf(note).toHtmlEscaped() : highlighted(hit->snippet, hit->highlights);
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
