#include "Varnic/Views/LibraryViews/SectionModel.h"

#include "Varnic/Shell/Menus.h"
#include "Varnic/Views/Context/ViewContext.h"
#include "Varnic/Views/LibraryViews/ListKeys.h"

#include <algorithm>
#include <chrono>

namespace varnic {

namespace {

using namespace std::chrono_literals;

/// Badges need not follow each letter that is typed.
constexpr auto badgeDelay = 100ms;
/// How often it is looked whether cards have come due.
constexpr auto dueInterval = 1min;

SectionRow row(LibrarySection section, const char* symbol, int number = 0) {
    const std::string_view name = title(section);
    return {.id = section,
            .title = QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())),
            .symbol = symbol,
            .badge = number == 0 ? QString() : QString::number(number)};
}

} // namespace

void SectionModel::componentComplete() {
    setModel(ViewContext::of(this).model);
}

void SectionModel::setModel(AppModel& model) {
    model_ = &model;
    sectionWatcher_ = model.section.addNotifier([this] { Q_EMIT currentRowChanged(); });
    badgeTimer_.setSingleShot(true);
    badgeTimer_.setInterval(badgeDelay);
    connect(&badgeTimer_, &QTimer::timeout, this, &SectionModel::refresh);
    connect(&model, &AppModel::notesChanged, this, [this] {
        if (!badgeTimer_.isActive()) {
            badgeTimer_.start();
        }
    });
    dueTimer_.setTimerType(Qt::VeryCoarseTimer);
    connect(&dueTimer_, &QTimer::timeout, this, &SectionModel::refresh);
    dueTimer_.start(dueInterval);
    refresh();
    Q_EMIT currentRowChanged();
}

void SectionModel::refresh() {
    setRows({row(LibrarySection::all, "book.closed"), row(LibrarySection::calls, "phone.arrow.down.left"),
             row(LibrarySection::todos, "checkmark.circle", static_cast<int>(model_->openTodos().size())),
             row(LibrarySection::cards, "rectangle.on.rectangle.angled", model_->dueCardCount())});
}

int SectionModel::currentRow() const {
    if (model_ == nullptr) {
        return -1;
    }
    const auto found = std::ranges::find(rows(), model_->section.value(), &SectionRow::id);
    return found == rows().end() ? -1 : static_cast<int>(found - rows().begin());
}

/// The note that is open stays open.
void SectionModel::select(int row) {
    if (row >= 0 && row < rowCount()) {
        model_->section = rows()[static_cast<std::size_t>(row)].id;
    }
}

bool SectionModel::moveByKey(int key) {
    const auto row = ListKeys::rowAfter(key, currentRow(), rowCount(), rowCount());
    if (row) {
        select(*row);
    }
    return row.has_value();
}

QVariant SectionModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const SectionRow& row = rows()[static_cast<std::size_t>(index.row())];
    switch (role) {
    case title:
        return row.title;
    case section:
        return static_cast<int>(row.id);
    case symbolName:
        return row.symbol;
    case badge:
        return row.badge;
    default:
        return {};
    }
}

QHash<int, QByteArray> SectionModel::roleNames() const {
    return {{title, "title"}, {section, "section"}, {symbolName, "symbolName"}, {badge, "badge"}};
}

} // namespace varnic
