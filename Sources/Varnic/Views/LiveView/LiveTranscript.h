#pragma once

#include "Varnic/Views/Ink/FreshInk.h"
#include "Varnic/Views/Rows/RowModel.h"
#include "VarnicCore/Models/Segment.h"

#include <QStringList>
#include <QTimer>
#include <QtQmlIntegration>

#include <map>
#include <vector>

namespace varnic {

/// One turn of a running call as it is shown.
struct LiveTurnRow {
    /// While a side speaks its lines come and go, and with them their ids; its turns can be counted.
    struct Id {
        Speaker speaker = Speaker::you;
        int number = 0;

        auto operator<=>(const Id&) const = default;
    };

    Id id;
    /// Seconds into the call.
    double start = 0;
    QString text;
    /// How much of the text is final, in characters.
    int firm = 0;

    bool operator==(const LiveTurnRow&) const = default;
};

/// The turns of a running call. A row that grows is changed in place, and only the words that are new to the reader
/// count as fresh, for as long as their ink takes to dry. Main thread.
class LiveTranscript : public RowModel<LiveTurnRow> {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the running call")
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    enum Role {
        /// "You" or "Them".
        name = Qt::UserRole,
        isYou,
        /// When the turn began, as text.
        stamp,
        words,
        /// How much of `words` is final, in characters.
        firm,
        /// The FreshInk of the row.
        fresh,
        /// Who, when and what, for those who listen.
        spoken
    };

    explicit LiveTranscript(QObject* parent = nullptr);

    /// Shows the final and the unfinished lines.
    void show(const std::vector<Segment>& committed, const std::map<Speaker, std::vector<Segment>>& unfinished);

    [[nodiscard]] int count() const { return rowCount(); }

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void countChanged();

private:
    /// Takes the ink off rows that have another text now: it says where in the text its words stand.
    void wipe(int firstRow, int lastRow);
    void findFreshWords();
    void dry();

    /// Also of rows that are gone, for a view may still be drawing with it; children of this.
    std::map<LiveTurnRow::Id, FreshInk*> inks_;
    /// All words of each side so far.
    std::map<Speaker, QStringList> read_;
    QTimer drying_;
};

} // namespace varnic
