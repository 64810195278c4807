#pragma once

#include "Varnic/Views/Context/ViewContext.h"
#include "Varnic/Views/Program/WindowPlace.h"

#include <QQmlApplicationEngine>
#include <QQuickWindow>

#include <functional>
#include <memory>

namespace varnic {

/// The program's window and the QML engine behind all its windows. Main thread; must not outlive what its views show.
class MainWindow {
public:
    /// Makes the window without showing it. Throws std::runtime_error when its QML cannot be loaded.
    explicit MainWindow(const ViewContext& context);

    /// Shows the window, or brings it to the front.
    void activate();

    /// Does the work once the window's first picture is on the screen, or after half a second where none is drawn since
    /// nobody could see it.
    void afterFirstPicture(std::function<void()> work);

    [[nodiscard]] bool isInFront() const { return window_->isActive(); }

    [[nodiscard]] bool isVisible() const { return window_->isVisible(); }

    [[nodiscard]] QQuickWindow& window() const { return *window_; }

    [[nodiscard]] QQmlEngine& engine() { return engine_; }

private:
    QQmlApplicationEngine engine_;
    QQuickWindow* window_ = nullptr;
    std::unique_ptr<WindowPlace> place_;
};

} // namespace varnic
