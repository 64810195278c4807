#pragma once

#include "Varnic/Views/Note/NoteModel.h"
#include "Varnic/Views/Rows/RowModel.h"

#include <QPointer>

namespace varnic {

/// One turn of a transcript as it is shown.
struct TurnRow : Segment {
    /// The speaker's.
    std::string name;
    /// The player is in this turn.
    bool isCurrent = false;

    bool operator==(const TurnRow&) const = default;
};

/// The turns of a call that hold what is filtered for, and where the player is in them. Main thread.
class TranscriptModel : public RowModel<TurnRow>, public QQmlParserStatus {
    Q_OBJECT
    QML_ELEMENT
    Q_INTERFACES(QQmlParserStatus)
    Q_PROPERTY(varnic::NoteModel* note MEMBER note_ NOTIFY changed REQUIRED)
    /// What a turn must hold; case, accents and width do not count.
    Q_PROPERTY(QString filter READ filter WRITE setFilter NOTIFY changed)
    /// Where the player is, in seconds.
    Q_PROPERTY(double time READ time WRITE setTime NOTIFY positionChanged)
    Q_PROPERTY(bool playing READ playing WRITE setPlaying NOTIFY positionChanged)
    Q_PROPERTY(QString countText READ countText NOTIFY changed)
    /// What stands in place of turns where there are none; else empty.
    Q_PROPERTY(QString placeholder READ placeholder NOTIFY changed)
    /// The row that the player is at, to be kept in sight; -1 while it does not play.
    Q_PROPERTY(int followedRow READ followedRow NOTIFY followedRowChanged)
    /// How much of the followed row's words comes before what is being said, 0 to 1.
    Q_PROPERTY(double followedPart READ followedPart NOTIFY followedPartChanged)

public:
    enum Role { isYou = Qt::UserRole, name, start, stamp, words, isCurrent };

    using RowModel<TurnRow>::RowModel;

    void classBegin() override {}

    void componentComplete() override;

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    [[nodiscard]] QString filter() const { return filter_; }

    void setFilter(const QString& filter);

    [[nodiscard]] double time() const { return time_; }

    void setTime(double time);

    [[nodiscard]] bool playing() const { return playing_; }

    void setPlaying(bool playing);
    [[nodiscard]] QString countText() const;
    [[nodiscard]] QString placeholder() const;

    [[nodiscard]] int followedRow() const { return followedRow_; }

    [[nodiscard]] double followedPart() const { return followedPart_; }

    /// The last row that has begun at a moment, in seconds; -1 before the first.
    Q_INVOKABLE int rowAt(double time) const;

    /// How much of a row's words comes before those that the player is at, 0 to 1.
    Q_INVOKABLE double playedPart(int row) const { return partAt(time_, row); }

    /// How much of a shown row's words comes before the first that is filtered for, 0 to 1.
    Q_INVOKABLE double foundPart(int row) const;

    /// How far below the middle of a turn the middle of the view belongs, both of these heights: nowhere but in the
    /// middle where all of the turn is in sight then, else at the words behind a part of it.
    Q_INVOKABLE static double fromMiddle(double part, double turnHeight, double viewHeight);

Q_SIGNALS:
    void changed();
    void positionChanged();
    void followedRowChanged();
    /// Within the same row.
    void followedPartChanged();
    /// There are rows with what is filtered for now.
    void found();

private:
    struct Turn {
        TurnRow row;
        std::string folded;
    };

    void readTurns();
    void show();
    void markPosition();
    [[nodiscard]] bool playerIsIn(const TurnRow& row) const;
    [[nodiscard]] const Turn& turnOf(int row) const;
    [[nodiscard]] double partAt(double time, int row) const;

    QPointer<NoteModel> note_;
    QString filter_;
    double time_ = 0;
    bool playing_ = false;
    int followedRow_ = -1;
    double followedPart_ = 0;
    /// All turns of the call.
    std::vector<Turn> turns_;
    /// The lines of which they are made.
    std::vector<Segment> lines_;
    std::vector<QPropertyNotifier> watchers_;
};

} // namespace varnic
