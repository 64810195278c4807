#pragma once

#include <QObject>
#include <QRect>
#include <QSettings>
#include <QWindow>

#include <vector>

namespace varnic {

/// Keeps the place and size of a window beyond the program's end. Main thread; must not outlive the window and the
/// store.
class WindowPlace : public QObject {
    Q_OBJECT

public:
    /// Puts the window where it was, before it is shown.
    WindowPlace(QWindow& window, QSettings& store, QObject* parent = nullptr);

    void save();

    /// The rectangle to show a window in that was last at `saved`: there, if enough of its title is on one of the
    /// screens to get hold of it, and else in the middle of the first one; no larger than the screen. Pure.
    static QRect fit(const QRect& saved, const std::vector<QRect>& screens);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWindow& window_;
    QSettings& store_;
    /// The place while the window was not maximised.
    QRect normal_;
};

} // namespace varnic
