#pragma once

#include <QObject>

namespace varnic {

/// Lets shortcuts work while the keyboard is in a text that can only be read: Qt Quick's TextEdit claims every key for
/// itself there, so that a click into such a text would take all shortcuts away. It keeps the two that it answers, copy
/// and select all. What is typed into keeps the keys that it edits with, undo among them. Main thread.
class ReadOnlyTextKeys : public QObject {
    Q_OBJECT

public:
    /// Works from now on for all windows of the application, which must exist.
    explicit ReadOnlyTextKeys(QObject* parent = nullptr);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

} // namespace varnic
