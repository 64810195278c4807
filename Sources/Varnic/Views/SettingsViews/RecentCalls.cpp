#include "Varnic/Views/SettingsViews/RecentCalls.h"

#include "Varnic/Views/Context/ViewContext.h"
#include "VarnicCore/Models/Date.h"
#include "VarnicCore/Models/RelativeDate.h"

#include <algorithm>

namespace varnic {

namespace {

constexpr std::size_t shownCalls = 3;

} // namespace

std::vector<RecentCall> RecentCall::of(const AppModel& model) {
    std::vector<const Note*> calls;
    for (const Note& note : model.notes()) {
        if (note.call && note.id != model.liveNoteID()) {
            calls.push_back(&note);
        }
    }
    const auto newest = calls.begin() + static_cast<std::ptrdiff_t>(std::min(calls.size(), shownCalls));
    std::ranges::partial_sort(calls, newest, std::greater(), [](const Note* note) { return note->created; });
    std::vector<RecentCall> recent;
    for (auto call = calls.begin(); call != newest; ++call) {
        recent.push_back({.id = (*call)->id,
                          .title = QString::fromStdString((*call)->title),
                          .date = QString::fromStdString(relativeDate((*call)->created, currentDate(), model.region))});
    }
    return recent;
}

void RecentCall::open(AppModel& model, const Uuid& id) {
    model.query = std::string();
    if (model.section.value() != LibrarySection::calls) {
        model.section = LibrarySection::all;
    }
    model.selection = id;
    model.desktop.activate();
}

void RecentCalls::componentComplete() {
    model_ = &ViewContext::of(this).model;
    connect(model_, &AppModel::notesChanged, this, &RecentCalls::refresh);
    refresh();
}

void RecentCalls::refresh() {
    setRows(RecentCall::of(*model_));
}

void RecentCalls::open(int row) {
    RecentCall::open(*model_, rows().at(static_cast<std::size_t>(row)).id);
}

QVariant RecentCalls::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const RecentCall& row = rows()[static_cast<std::size_t>(index.row())];
    switch (role) {
    case title:
        return row.title;
    case date:
        return row.date;
    default:
        return {};
    }
}

QHash<int, QByteArray> RecentCalls::roleNames() const {
    return {{title, "title"}, {date, "date"}};
}

} // namespace varnic
