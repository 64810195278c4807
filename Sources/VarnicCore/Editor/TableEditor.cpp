#include "VarnicCore/Editor/BlockAccess.h"
#include "VarnicCore/Editor/NoteEditor.h"

#include <utility>

namespace varnic::NoteEditor {

namespace {

using Rows = std::vector<std::vector<std::string>>;

/// Runs a change on the rows of a block if the test of its present rows allows it.
void updateRows(Uuid table, Note& note, Date now, const std::function<bool(const Rows&)>& allowed,
                const std::function<void(Rows&)>& change) {
    const auto block = findBlock(note, table);
    if (block != note.blocks.end() && allowed(block->rows)) {
        update(table, note, now, [&change](Block& changed) { change(changed.rows); });
    }
}

bool always(const Rows& /*rows*/) {
    return true;
}

} // namespace

void setCell(Uuid table, std::size_t row, std::size_t column, std::string text, Note& note, Date now) {
    updateRows(
        table, note, now, [&](const Rows& rows) { return row < rows.size() && column < rows[row].size(); },
        [&](Rows& rows) { rows[row][column] = std::move(text); });
}

void addRow(Uuid table, Note& note, Date now) {
    updateRows(table, note, now, always,
               [](Rows& rows) { rows.emplace_back(rows.empty() ? 2 : std::max<std::size_t>(rows.front().size(), 1)); });
}

void addColumn(Uuid table, Note& note, Date now) {
    updateRows(table, note, now, always, [](Rows& rows) {
        for (auto& row : rows) {
            row.emplace_back();
        }
    });
}

void removeRow(std::size_t index, Uuid table, Note& note, Date now) {
    updateRows(
        table, note, now, [index](const Rows& rows) { return index < rows.size() && rows.size() > 1; },
        [index](Rows& rows) { rows.erase(rows.begin() + static_cast<std::ptrdiff_t>(index)); });
}

void removeColumn(std::size_t index, Uuid table, Note& note, Date now) {
    updateRows(
        table, note, now,
        [index](const Rows& rows) {
            return !rows.empty() && rows.front().size() >= 2 &&
                   std::ranges::any_of(rows, [index](const auto& row) { return index < row.size(); });
        },
        [index](Rows& rows) {
            for (auto& row : rows) {
                if (index < row.size()) {
                    row.erase(row.begin() + static_cast<std::ptrdiff_t>(index));
                }
            }
        });
}

} // namespace varnic::NoteEditor
