#pragma once

#include <QObject>
#include <QRect>
#include <QSettings>
#include <QTimer>
#include <QWindow>

#include <vector>

namespace varnic {

/// Keeps the place and size of a window beyond the program's end. Main thread; must not outlive the window and the
/// store.
class WindowPlace : public QObject {
    Q_OBJECT

public:
    /// Puts the window where it was, before it is shown; one that is new, in the middle of the screen.
    WindowPlace(QWindow& window, QSettings& store, QObject* parent = nullptr);
    ~WindowPlace() override;

    void save();

    /// The rectangle to show a window in that was last at `saved`: there, if enough of its title is on one of the
    /// screens to get hold of it, and else in the middle of the first one; no larger than the screen. Pure.
    static QRect fit(const QRect& saved, const std::vector<QRect>& screens);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void takePlace();

    QWindow& window_;
    QSettings& store_;
    /// The place while the window was not maximised.
    QRect normal_;
    QTimer settling_;
};

} // namespace varnic
