#include "Varnic/Views/BlockEditor/BlocksModel.h"

#include "VarnicCore/Editor/NoteEditor.h"
#include "VarnicCore/Models/RelativeDate.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace varnic {

namespace {

QString text(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

TableWords cellsOf(const Block& table) {
    const int columns = BlocksModel::columnsOf(table);
    QStringList cells;
    for (const auto& row : table.rows) {
        for (const std::string& cell : row) {
            cells << text(cell);
        }
        cells.resize(cells.size() + columns - std::ssize(row));
    }
    return {cells, columns};
}

const char* placeholderOf(BlockKind kind) {
    switch (kind) {
    case BlockKind::paragraph:
        return "Write, or type # heading · [] to-do · - list · question :: answer";
    case BlockKind::heading:
        return "Heading";
    case BlockKind::subheading:
        return "Subheading";
    case BlockKind::todo:
        return "To-do";
    case BlockKind::bullet:
        return "List item";
    case BlockKind::quote:
        return "Quote";
    default:
        return "";
    }
}

/// By the first strong letter.
bool isWrittenRightToLeft(const Block& block) {
    return block.kind == BlockKind::table ? cellsOf(block).cells().join(' ').isRightToLeft()
                                          : text(block.text + ' ' + block.back).isRightToLeft();
}

/// Whether its text is a typed shortcut.
bool isShortcut(const Block& block) {
    Note trial(currentDate());
    trial.blocks = {block};
    return NoteEditor::applyShortcut(block.id, trial, currentDate());
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
    const auto shown = [this](const Block& block) {
        return BlockRow{block, block.owner ? note_->name(*block.owner) : std::string()};
    };
    // An owner's name may have changed, too.
    const auto isShown = [](const BlockRow& row, const Block& block) {
        return !block.owner && static_cast<const Block&>(row) == block;
    };
    takeOver(note_->note().blocks, shown, isShown);
}

int BlocksModel::rowOf(const Uuid& block) const {
    const auto found = std::ranges::find(rows(), block, &BlockRow::id);
    return found == rows().end() ? -1 : static_cast<int>(found - rows().begin());
}

const Block* BlocksModel::block(const Uuid& id) const {
    const auto found = std::ranges::find(rows(), id, &BlockRow::id);
    return found == rows().end() ? nullptr : &*found;
}

int BlocksModel::columnsOf(const Block& table) {
    std::size_t columns = 0;
    for (const auto& row : table.rows) {
        columns = std::max(columns, row.size());
    }
    return static_cast<int>(columns);
}

Uuid BlocksModel::idAt(int row) const {
    return rows().at(static_cast<std::size_t>(row)).id;
}

std::optional<TextPlace> BlocksModel::edit(EditKind step, std::optional<TextPlace> caret, const Change& change) {
    return app().edit(note_->id(), {.kind = step, .caret = caret},
                      [&change](Note& note) { return change(note, currentDate()); });
}

std::optional<TextPlace> BlocksModel::undo() {
    return app().undo(note_->id());
}

std::optional<TextPlace> BlocksModel::redo() {
    return app().redo(note_->id());
}

std::optional<FieldKey> BlocksModel::type(const FieldKey& field, const std::string& text,
                                          std::optional<TextPlace> before, std::optional<TextPlace> after) {
    const Block* const typed = block(field.block);
    if (typed == nullptr) {
        return std::nullopt;
    }
    const BlockKind typedKind = typed->kind;
    const bool wasShortcut = isShortcut(*typed);
    const auto width = static_cast<std::size_t>(std::max(1, columnsOf(*typed)));
    edit(EditKind::typing, before, [&](Note& note, Date now) {
        NoteEditor::update(field.block, note, now, [&](Block& changed) {
            if (typedKind == BlockKind::table) {
                std::vector<std::string>& row = changed.rows.at(static_cast<std::size_t>(field.part) / width);
                row.resize(std::max(row.size(), width)); // as it is shown
                row.at(static_cast<std::size_t>(field.part) % width) = text;
            } else {
                (typedKind == BlockKind::flashcard && field.part == 1 ? changed.back : changed.text) = text;
            }
        });
        return after;
    });
    // One that has been undone is left alone.
    return wasShortcut ? std::nullopt : takeShortcut(field.block, after);
}

/// An edit of its own, so that undoing it leaves what was typed.
std::optional<FieldKey> BlocksModel::takeShortcut(const Uuid& id, std::optional<TextPlace> caret) {
    const Block* const typed = block(id);
    if (typed == nullptr || !isShortcut(*typed)) {
        return std::nullopt;
    }
    std::optional<FieldKey> next;
    edit(EditKind::structure, caret, [&](Note& note, Date now) -> std::optional<TextPlace> {
        NoteEditor::applyShortcut(id, note, now);
        const auto made = std::ranges::find(note.blocks, id, &Block::id);
        if (made == note.blocks.end()) {
            return std::nullopt;
        }
        if (made->kind == BlockKind::flashcard) {
            next = FieldKey{.block = id, .part = 1};
        } else if (made->kind == BlockKind::divider) {
            if (const auto after = std::next(made); after != note.blocks.end()) {
                next = FieldKey{.block = after->id};
            } else {
                next = FieldKey{.block = note.blocks.emplace_back().id};
            }
        }
        return next ? std::optional(TextPlace{.block = next->block}) : std::nullopt;
    });
    return next;
}

void BlocksModel::editBlock(int row, const std::function<void(const Uuid&, Note&, Date)>& change) {
    const TextPlace place{.block = idAt(row)};
    edit(EditKind::structure, place, [&](Note& note, Date now) -> std::optional<TextPlace> {
        change(place.block, note, now);
        return place;
    });
}

void BlocksModel::toggle(int row) {
    app().toggleTodo(note_->id(), idAt(row));
}

void BlocksModel::turnInto(int row, int wanted) {
    editBlock(row, [wanted](const Uuid& id, Note& note, Date now) {
        NoteEditor::setKind(allBlockKinds.at(static_cast<std::size_t>(wanted)), id, note, now);
    });
    app().focusBlock = idAt(row);
}

void BlocksModel::moveBy(int row, int offset) {
    const Uuid moved = idAt(row);
    editBlock(row, [offset](const Uuid& id, Note& note, Date now) { NoteEditor::move(id, offset, note, now); });
    app().focusBlock = moved;
}

void BlocksModel::remove(int row) {
    std::optional<Uuid> next;
    editBlock(row, [&next](const Uuid& id, Note& note, Date now) {
        const auto removed = std::ranges::find(note.blocks, id, &Block::id);
        if (removed != note.blocks.end() && std::next(removed) != note.blocks.end()) {
            next = std::next(removed)->id;
        }
        const std::optional<Uuid> before = NoteEditor::remove(id, note, now);
        next = next ? next : before;
    });
    app().focusBlock = next;
}

void BlocksModel::add(int wanted) {
    Block added;
    switch (allBlockKinds.at(static_cast<std::size_t>(wanted))) {
    case BlockKind::flashcard:
        added = Block::flashcard({}, {});
        break;
    case BlockKind::table:
        added = Block::table({{"", ""}, {"", ""}});
        break;
    default:
        added.kind = allBlockKinds.at(static_cast<std::size_t>(wanted));
    }
    edit(EditKind::structure, std::nullopt, [&added](Note& note, Date now) -> std::optional<TextPlace> {
        NoteEditor::insert(added, std::nullopt, note, now);
        return TextPlace{.block = added.id};
    });
    app().focusBlock = added.id;
}

void BlocksModel::addRow(int row) {
    editBlock(row, [](const Uuid& id, Note& note, Date now) { NoteEditor::addRow(id, note, now); });
}

void BlocksModel::addColumn(int row) {
    editBlock(row, [](const Uuid& id, Note& note, Date now) { NoteEditor::addColumn(id, note, now); });
}

void BlocksModel::removeRow(int row, int tableRow) {
    editBlock(row, [tableRow](const Uuid& id, Note& note, Date now) {
        NoteEditor::removeRow(static_cast<std::size_t>(tableRow), id, note, now);
    });
}

void BlocksModel::removeColumn(int row, int column) {
    editBlock(row, [column](const Uuid& id, Note& note, Date now) {
        NoteEditor::removeColumn(static_cast<std::size_t>(column), id, note, now);
    });
}

QStringList BlocksModel::kindTitles() {
    QStringList titles;
    for (const BlockKind each : allBlockKinds) {
        titles << text(varnic::title(each));
    }
    return titles;
}

QStringList BlocksModel::kindSymbols() {
    QStringList symbols;
    for (const BlockKind each : allBlockKinds) {
        symbols << text(symbol(each));
    }
    return symbols;
}

QList<int> BlocksModel::addable() {
    QList<int> kinds;
    for (const BlockKind each : {BlockKind::heading, BlockKind::todo, BlockKind::bullet, BlockKind::table,
                                 BlockKind::flashcard, BlockKind::divider}) {
        kinds << static_cast<int>(each);
    }
    return kinds;
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
    case blockId:
        return text(block.id.text());
    case kind:
        return text(rawValue(block.kind));
    case kindTitle:
        return text(title(block.kind));
    case placeholder:
        return placeholderOf(block.kind);
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
        return QVariant::fromValue(cellsOf(block));
    case isRightToLeft:
        return isWrittenRightToLeft(block);
    default:
        return {};
    }
}

QHash<int, QByteArray> BlocksModel::roleNames() const {
    return {{blockId, "blockId"},
            {kind, "kind"},
            {kindTitle, "kindTitle"},
            {placeholder, "placeholder"},
            {words, "words"},
            {isDone, "isDone"},
            {isYours, "isYours"},
            {ownerName, "ownerName"},
            {due, "due"},
            {back, "back"},
            {cardText, "cardText"},
            {cells, "cells"},
            {isRightToLeft, "isRightToLeft"}};
}

} // namespace varnic
