#pragma once

#include <QColor>
#include <QQuickPaintedItem>
#include <QtQmlIntegration>

namespace varnic {

/// The nib as a hand holds it: leaning to the right, its tip near the lower left. Drawn leaning rather than turned by
/// the scene, which leaves jagged edges.
class WritingNib : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor color MEMBER color_ NOTIFY changed)
    /// The colour of what it stands on.
    Q_PROPERTY(QColor paper MEMBER paper_ NOTIFY changed)

public:
    explicit WritingNib(QQuickItem* parent = nullptr);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void changed();

private:
    QColor color_;
    QColor paper_;
};

} // namespace varnic
