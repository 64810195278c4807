#pragma once

#include <QObject>
#include <QPointer>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTimer>
#include <QtQmlIntegration>

#include <vector>

namespace varnic {

/// Keeps the keyboard somewhere in a window at every moment. Where the control that has it goes away, is hidden or
/// disabled, and where a menu or sheet closes, Qt Quick leaves it to an enclosing scope, which answers no key. From
/// there it goes back to where it was: to the control itself as soon as that can be used again, else to what is left
/// near it, else to where it was before, but for controls with a true property `isPassedBy`. It never comes by itself
/// into a text that can be typed in, lest what was meant for another text lands there. What has the keyboard is
/// scrolled into sight. Main thread.
class FocusKeeper : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QQuickWindow* window READ window WRITE setWindow NOTIFY windowChanged)

public:
    explicit FocusKeeper(QObject* parent = nullptr);

    [[nodiscard]] QQuickWindow* window() const { return window_; }

    void setWindow(QQuickWindow* window);

    /// Leads the keyboard to where it was before it came into the group of controls that it is in. False where there is
    /// no such place.
    Q_INVOKABLE bool back();

Q_SIGNALS:
    void windowChanged();

private:
    /// Where the keyboard was, with the scopes around it from the inside out.
    struct Place {
        QPointer<QQuickItem> item;
        std::vector<QPointer<QQuickItem>> scopes;
    };

    void look();
    void remember(QQuickItem* item);
    void watch(QQuickItem* item);
    void restore();
    [[nodiscard]] static QQuickItem* nearest(const Place& place);

    QPointer<QQuickWindow> window_;
    /// The newest is the last.
    std::vector<Place> history_;
    /// Can't be used at the moment; what stands in for it gives the keyboard back.
    QPointer<QQuickItem> absent_;
    QPointer<QQuickItem> standIn_;
    /// Many changes are one, and are looked at when they are through.
    QTimer soon_;
    std::vector<QMetaObject::Connection> watched_;
};

} // namespace varnic
