#pragma once

#include "Varnic/AppModel/AppModel.h"
#include "Varnic/Views/LibraryViews/RowModel.h"

#include <QQmlParserStatus>
#include <QString>
#include <QTimer>
#include <QtQmlIntegration>

namespace varnic {

/// The cards of one note.
struct DeckRow {
    Uuid id;
    QString title;
    /// "12 cards".
    QString total;
    /// "3 due"; empty when none is.
    QString due;

    bool operator==(const DeckRow&) const = default;
};

/// The decks of the library, the most due first. Main thread.
class DeckListModel : public RowModel<DeckRow>, public QQmlParserStatus {
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    QML_ELEMENT
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    enum Role { noteId = Qt::UserRole, title, total, due };

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
