#pragma once

#include "Varnic/Views/Note/NoteModel.h"
#include "Varnic/Views/Rows/RowModel.h"

#include <QPointer>

namespace varnic {

/// A block as it is shown.
struct BlockRow : Block {
    /// What to call its owner; empty where it has none.
    std::string ownerName;

    bool operator==(const BlockRow&) const = default;
};

/// The blocks of a note, in order, to be read. Main thread.
class BlocksModel : public RowModel<BlockRow>, public QQmlParserStatus {
    Q_OBJECT
    QML_ELEMENT
    Q_INTERFACES(QQmlParserStatus)
    Q_PROPERTY(varnic::NoteModel* note MEMBER note_ REQUIRED)

public:
    enum Role {
        kind = Qt::UserRole,
        kindTitle,
        words,
        isDone,
        isYours,
        /// Whose it is; empty where nobody's.
        ownerName,
        due,
        back,
        /// Of a card, its box and when it is due.
        cardText,
        /// Of a table, row by row; all rows are as long as the longest.
        cells,
        columns
    };

    using RowModel<BlockRow>::RowModel;

    void classBegin() override {}

    void componentComplete() override;

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    /// Ticks a to-do, or takes the tick away.
    Q_INVOKABLE void toggle(int row);

private:
    void readBlocks();
    [[nodiscard]] QString lineOfCard(const Block& block) const;

    QPointer<NoteModel> note_;
};

} // namespace varnic
