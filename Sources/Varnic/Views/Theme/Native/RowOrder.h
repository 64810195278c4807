#pragma once

#include <QPointer>
#include <QQuickItem>
#include <QQuickWindow>
#include <QtQmlIntegration>

namespace varnic {

/// Keeps what a list shows in the order in which it stands there, for assistive programs and for the Tab key: a list
/// by itself leaves its rows in the order in which they were made, and its footer before them. It looks once a picture.
/// Main thread.
class RowOrder : public QObject {
    Q_OBJECT
    QML_ELEMENT
    /// A ListView.
    Q_PROPERTY(QQuickItem* listView READ listView WRITE setListView NOTIFY listViewChanged REQUIRED)

public:
    using QObject::QObject;

    [[nodiscard]] QQuickItem* listView() const { return list_; }

    void setListView(QQuickItem* list);

Q_SIGNALS:
    void listViewChanged();

private:
    void follow(QQuickWindow* window);
    void sort();

    QPointer<QQuickItem> list_;
    QMetaObject::Connection pictures_;
};

} // namespace varnic
