#pragma once

#include "Varnic/AppModel/AppModel.h"
#include "Varnic/Views/Rows/RowModel.h"

#include <QQmlParserStatus>
#include <QTimer>
#include <QtQmlIntegration>

#include <string>

namespace varnic {

/// The cards of one note.
struct DeckRow {
    Uuid id;
    std::string title;
    int total = 0;
    int due = 0;

    bool operator==(const DeckRow&) const = default;
};

/// The decks of the library, the most due first. Main thread.
class DeckListModel : public RowModel<DeckRow>, public QQmlParserStatus {
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    QML_ELEMENT
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    enum Role {
        noteId = Qt::UserRole,
        title,
        /// "12 cards".
        total,
        /// "3 due" and "Study 3"; empty when none is.
        due,
        studyText
    };

    using RowModel<DeckRow>::RowModel;

    /// For use without QML.
    void setModel(AppModel& model);

    [[nodiscard]] int count() const { return rowCount(); }

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    void classBegin() override {}

    void componentComplete() override;

Q_SIGNALS:
    void countChanged();

private:
    void refresh();

    AppModel* model_ = nullptr;
    QTimer dueTimer_;
};

} // namespace varnic
