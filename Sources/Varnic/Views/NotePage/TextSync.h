#pragma once

#include <QObject>
#include <QPointer>
#include <QQuickTextDocument>
#include <QString>
#include <QtQmlIntegration>

namespace varnic {

/// Keeps a text editor and a stored text the same, both ways. What changes elsewhere while somebody types is put in
/// around the cursor, which stays where it is. Main thread.
class TextSync : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QQuickTextDocument* document READ document WRITE setDocument NOTIFY documentChanged REQUIRED)
    /// The stored text.
    Q_PROPERTY(QString value READ value WRITE setValue NOTIFY valueChanged REQUIRED)

public:
    using QObject::QObject;

    [[nodiscard]] QQuickTextDocument* document() const { return document_; }

    void setDocument(QQuickTextDocument* document);

    [[nodiscard]] QString value() const { return value_; }

    void setValue(const QString& value);

Q_SIGNALS:
    void documentChanged();
    void valueChanged();
    /// The user has made the text this.
    void edited(const QString& text);

private:
    void show();
    void takeTyped();

    QPointer<QQuickTextDocument> document_;
    QString value_;
    bool isShowing_ = false;
};

} // namespace varnic
