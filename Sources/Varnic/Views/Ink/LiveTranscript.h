#pragma once

#include "Varnic/Views/Ink/FreshInk.h"
#include "VarnicCore/Models/Segment.h"

#include <QAbstractListModel>
#include <QStringList>
#include <QTimer>
#include <QtQmlIntegration>

#include <map>
#include <memory>
#include <vector>

namespace varnic {

/// The turns of a running call. A row that grows is changed in place, and only the words that are new to the reader
/// count as fresh, for as long as their ink takes to dry. Main thread.
class LiveTranscript : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the running call")
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    enum Role {
        /// "You" or "Them".
        NameRole = Qt::UserRole,
        IsYouRole,
        /// When the turn began, as text.
        StampRole,
        SpokenRole,
        /// How much of `spoken` is final, in characters.
        FirmRole,
        /// The FreshInk of the row.
        FreshRole,
        /// Who, when and what, for those who listen.
        LabelRole
    };

    explicit LiveTranscript(QObject* parent = nullptr);

    /// Shows the final and the unfinished lines.
    void show(const std::vector<Segment>& committed, const std::map<Speaker, std::vector<Segment>>& unfinished);

    [[nodiscard]] int count() const { return static_cast<int>(rows_.size()); }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void countChanged();

private:
    struct Row {
        Speaker speaker = Speaker::you;
        double start = 0;
        QString text;
        int firm = 0;

        bool operator==(const Row&) const = default;
    };

    struct ShownRow {
        Row row;
        std::unique_ptr<FreshInk> fresh;
    };

    static std::vector<Row> turns(const std::vector<Segment>& committed,
                                  const std::map<Speaker, std::vector<Segment>>& unfinished);
    void replace(std::vector<Row> rows);
    void insert(int at, std::vector<Row> rows);
    void remove(int from, int count);
    void findFreshWords();
    void dry();

    std::vector<ShownRow> rows_;
    /// All words of each side so far.
    std::map<Speaker, QStringList> read_;
    QTimer drying_;
};

} // namespace varnic
