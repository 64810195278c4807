#pragma once

#include "Varnic/Views/LiveView/Compositor.h"

#include <QPoint>
#include <QQuickWindow>
#include <QtQmlIntegration>

#include <optional>

namespace varnic {

/// A small window that floats over all others, on every workspace, and never takes the keyboard from the call. It
/// begins centred below the top of the screen and from then on stays where the user drags it.
class PillWindow : public QQuickWindow {
    Q_OBJECT
    QML_ELEMENT
    /// What is left transparent shows what lies behind; else the window is cut to the pill's outline.
    Q_PROPERTY(bool isTranslucent READ isTranslucent NOTIFY translucencyChanged)

public:
    explicit PillWindow(QWindow* parent = nullptr);

    [[nodiscard]] bool isTranslucent() const { return compositor_.isOn(); }

    /// Whether the user has chosen its place.
    [[nodiscard]] bool wasDragged() const { return wasDragged_; }

    /// Has the window follow the pointer, by the point of it that lies below, until the button is released.
    Q_INVOKABLE void follow(const QPointF& point);

Q_SIGNALS:
    void translucencyChanged();

protected:
    bool event(QEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void putInPlace();
    void cut();

    Compositor compositor_;
    std::optional<QPoint> grip_;
    bool wasDragged_ = false;
};

} // namespace varnic
