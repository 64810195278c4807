#pragma once

#include "Varnic/Views/BlockEditor/TableCells.h"
#include "Varnic/Views/Note/NoteModel.h"
#include "Varnic/Views/Rows/RowModel.h"
#include "VarnicCore/Editor/NoteHistory.h"

#include <QPointer>

#include <functional>
#include <optional>

namespace varnic {

/// A block as it is shown.
struct BlockRow : Block {
    /// What to call its owner; empty where it has none.
    std::string ownerName;

    bool operator==(const BlockRow&) const = default;
};

/// A field among a note's blocks in which one types.
struct FieldKey {
    Uuid block;
    /// 0 for a text and for a card's question, 1 for its answer; of a table, the cell, counted row by row where all
    /// rows are as long as the longest.
    int part = 0;

    bool operator==(const FieldKey&) const = default;
};

/// The blocks of a note, in order, and what can be done with them. All edits can be undone. Main thread.
class BlocksModel : public RowModel<BlockRow>, public QQmlParserStatus {
    Q_OBJECT
    QML_ELEMENT
    Q_INTERFACES(QQmlParserStatus)
    Q_PROPERTY(varnic::NoteModel* note MEMBER note_ REQUIRED)
    /// Names and symbols of the kinds that a block can be turned into.
    Q_PROPERTY(QStringList kindTitles READ kindTitles CONSTANT)
    Q_PROPERTY(QStringList kindSymbols READ kindSymbols CONSTANT)
    /// The kinds that the bar under the note adds, as indexes of these names.
    Q_PROPERTY(QList<int> addable READ addable CONSTANT)

public:
    enum Role {
        blockId = Qt::UserRole,
        kind,
        kindTitle,
        /// What stands in an empty block.
        placeholder,
        words,
        isDone,
        isYours,
        /// Whose it is; empty where nobody's.
        ownerName,
        due,
        back,
        /// Of a card, its box and when it is due.
        cardText,
        /// Of a table.
        cells,
        /// It is written from right to left.
        isRightToLeft
    };

    using RowModel<BlockRow>::RowModel;

    void classBegin() override {}

    void componentComplete() override;

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    [[nodiscard]] static QStringList kindTitles();
    [[nodiscard]] static QStringList kindSymbols();
    [[nodiscard]] static QList<int> addable();

    /// Not while the program ends.
    [[nodiscard]] bool hasApp() const { return note_->app() != nullptr; }

    [[nodiscard]] AppModel& app() const { return *note_->app(); }

    [[nodiscard]] const Note& note() const { return note_->note(); }

    /// -1 for a block that is not there.
    [[nodiscard]] int rowOf(const Uuid& block) const;
    /// Null for a block that is not there.
    [[nodiscard]] const Block* block(const Uuid& id) const;
    /// Of a table's longest row; 0 for what is none.
    [[nodiscard]] static int columnsOf(const Block& table);

    using Change = std::function<std::optional<TextPlace>(Note&, Date)>;

    /// Changes the note; gives what the change gives. With `caret`, where the caret was before.
    std::optional<TextPlace> edit(EditKind kind, std::optional<TextPlace> caret, const Change& change);
    std::optional<TextPlace> undo();
    std::optional<TextPlace> redo();
    /// The text of a field is this now. Gives where to go where a typed shortcut has turned the block into something in
    /// which typing goes on elsewhere.
    std::optional<FieldKey> type(const FieldKey& field, const std::string& text, std::optional<TextPlace> before,
                                 std::optional<TextPlace> after);

    /// Ticks a to-do, or takes the tick away.
    Q_INVOKABLE void toggle(int row);
    Q_INVOKABLE void turnInto(int row, int kind);
    Q_INVOKABLE void moveBy(int row, int offset);
    /// Removes the block; the focus goes to the block after.
    Q_INVOKABLE void remove(int row);
    /// Adds an empty block at the end, which takes the focus.
    Q_INVOKABLE void add(int kind);
    /// Rows and columns of a table, from 0. Adding goes to the end.
    Q_INVOKABLE void addRow(int row);
    Q_INVOKABLE void addColumn(int row);
    Q_INVOKABLE void removeRow(int row, int tableRow);
    Q_INVOKABLE void removeColumn(int row, int column);

private:
    void readBlocks();
    [[nodiscard]] Uuid idAt(int row) const;
    void editBlock(int row, const std::function<void(const Uuid&, Note&, Date)>& change);
    [[nodiscard]] QString lineOfCard(const Block& block) const;
    std::optional<FieldKey> takeShortcut(const Uuid& id, std::optional<TextPlace> caret);

    QPointer<NoteModel> note_;
};

} // namespace varnic
