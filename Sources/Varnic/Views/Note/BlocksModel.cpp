#include "Varnic/Views/Note/BlocksModel.h"

#include "VarnicCore/Models/RelativeDate.h"

#include <fmt/format.h>

#include <algorithm>

namespace varnic {

namespace {

QString text(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

int columnsOf(const Block& table) {
    std::size_t columns = 0;
    for (const auto& row : table.rows) {
        columns = std::max(columns, row.size());
    }
    return static_cast<int>(columns);
}

/// The cells row by row, all rows as long as the longest.
QStringList cellsOf(const Block& table) {
    QStringList cells;
    for (const auto& row : table.rows) {
        for (const std::string& cell : row) {
            cells << text(cell);
        }
        cells.resize(cells.size() + columnsOf(table) - std::ssize(row));
    }
    return cells;
}

} // namespace

void BlocksModel::componentComplete() {
    connect(note_, &NoteModel::changed, this, &BlocksModel::readBlocks);
    readBlocks();
}

void BlocksModel::readBlocks() {
    if (note_->app() == nullptr) {
        return;
    }
    std::vector<BlockRow> blocks;
    for (const Block& block : note_->note().blocks) {
        blocks.push_back({block, block.owner ? note_->name(*block.owner) : std::string()});
    }
    setRows(std::move(blocks));
}

void BlocksModel::toggle(int row) {
    note_->app()->toggleTodo(note_->id(), rows().at(static_cast<std::size_t>(row)).id);
}

QString BlocksModel::lineOfCard(const Block& block) const {
    if (!block.card) {
        return {};
    }
    std::string told = fmt::format("Box {}", block.card->box);
    if (block.card->due) {
        told += " · " + relativeDate(*block.card->due, currentDate(), note_->app()->region);
    }
    return text(told);
}

QVariant BlocksModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const BlockRow& block = rows()[static_cast<std::size_t>(index.row())];
    switch (role) {
    case kind:
        return text(rawValue(block.kind));
    case kindTitle:
        return text(title(block.kind));
    case words:
        return text(block.text);
    case isDone:
        return block.done;
    case isYours:
        return block.owner == Speaker::you;
    case ownerName:
        return text(block.ownerName);
    case due:
        return text(block.due.value_or(""));
    case back:
        return text(block.back);
    case cardText:
        return lineOfCard(block);
    case cells:
        return cellsOf(block);
    case columns:
        return columnsOf(block);
    default:
        return {};
    }
}

QHash<int, QByteArray> BlocksModel::roleNames() const {
    return {{kind, "kind"},         {kindTitle, "kindTitle"}, {words, "words"},    {isDone, "isDone"},
            {isYours, "isYours"},   {ownerName, "ownerName"}, {due, "due"},        {back, "back"},
            {cardText, "cardText"}, {cells, "cells"},         {columns, "columns"}};
}

} // namespace varnic
