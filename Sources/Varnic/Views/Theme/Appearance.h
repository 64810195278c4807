#pragma once

#include <QObject>
#include <QtQmlIntegration>

namespace varnic {

/// How the desktop wants programs to look, followed while the program runs. Main thread.
class Appearance : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool dark READ dark NOTIFY darkChanged)
    Q_PROPERTY(bool reduceMotion READ reduceMotion NOTIFY reduceMotionChanged)

public:
    explicit Appearance(QObject* parent = nullptr);

    [[nodiscard]] bool dark() const { return dark_; }

    /// Whether things should stay where they are rather than move.
    [[nodiscard]] bool reduceMotion() const { return reduceMotion_; }

Q_SIGNALS:
    void darkChanged();
    void reduceMotionChanged();

private:
    bool dark_ = false;
    bool reduceMotion_ = false;
};

} // namespace varnic
