#pragma once

#include <QQuickWindow>
#include <QtQmlIntegration>

namespace varnic {

/// A small window that floats over all others and never takes the keyboard from the call. It begins centred below the
/// top of the screen and from then on stays where the user drags it. Where windows can't place themselves, as on
/// Wayland, the desktop places it.
class PillWindow : public QQuickWindow {
    Q_OBJECT
    QML_ELEMENT

public:
    explicit PillWindow(QWindow* parent = nullptr);

    /// Lets the user drag the window; to be called while a button is down.
    Q_INVOKABLE void move();
};

} // namespace varnic
