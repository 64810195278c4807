#pragma once

#include <QObject>
#include <QPointer>
#include <QQuickItem>
#include <QString>
#include <QTextDocument>
#include <QtQmlIntegration>

namespace varnic {

/// Keeps a text editor and a stored text the same, both ways. What changes elsewhere while somebody types is put in
/// around the cursor, which stays where it is. Main thread.
class TextSync : public QObject {
    Q_OBJECT
    QML_ELEMENT
    /// A TextEdit.
    Q_PROPERTY(QQuickItem* editor READ editor WRITE setEditor NOTIFY editorChanged REQUIRED)
    /// Whether the text may have several lines; those that are pasted become one where it may not.
    Q_PROPERTY(bool lineBreaks MEMBER lineBreaks_ NOTIFY lineBreaksChanged)
    /// The stored text.
    Q_PROPERTY(QString value READ value WRITE setValue NOTIFY valueChanged REQUIRED)

public:
    using QObject::QObject;

    [[nodiscard]] QQuickItem* editor() const { return editor_; }

    void setEditor(QQuickItem* editor);

    [[nodiscard]] QString value() const { return value_; }

    void setValue(const QString& value);

Q_SIGNALS:
    void editorChanged();
    void lineBreaksChanged();
    void valueChanged();
    /// The user has made the text this.
    void edited(const QString& text);

private:
    void show();
    void takeTyped();

    QPointer<QQuickItem> editor_;
    QPointer<QTextDocument> document_;
    QString value_;
    bool lineBreaks_ = true;
    bool isShowing_ = false;
};

} // namespace varnic
