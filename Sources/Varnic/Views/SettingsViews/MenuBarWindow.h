#pragma once

#include <QQuickWindow>
#include <QRect>
#include <QtQmlIntegration>

#include <functional>

namespace varnic {

/// What opens beside the tray icon. It goes when the user turns to something else. Main thread.
class MenuBarWindow : public QQuickWindow {
    Q_OBJECT
    QML_ELEMENT

public:
    explicit MenuBarWindow(QWindow* parent = nullptr);

    /// What the view has the program do.
    std::function<void()> openProgram = [] {};
    std::function<void()> quitProgram = [] {};

    /// Shows it beside the icon, or hides it.
    void toggleAt(const QRect& icon);

    Q_INVOKABLE void openVarnic();
    Q_INVOKABLE void quit();

    /// The place of a window of this size that belongs to the icon: beside it on its screen, on the side where there is
    /// room, and wholly on the screen. Pure.
    static QRect place(const QRect& icon, const QSize& size, const QRect& screen);

Q_SIGNALS:
    void aboutToShow();

protected:
    void focusOutEvent(QFocusEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void takePlace();

    QRect icon_;
};

} // namespace varnic
