#pragma once

#include <QColor>
#include <QQuickPaintedItem>
#include <QtQmlIntegration>

namespace varnic {

/// The soft shadow of a rounded rectangle, painted so that it shows under every scene graph. The item has the size of
/// what casts it plus `blur` on each side, and is to be placed so, moved down by the light's offset.
class Shadow : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    /// The corners of what casts it, in points.
    Q_PROPERTY(qreal radius MEMBER radius_ NOTIFY changed)
    /// How far the shadow reaches beyond the shape, in points.
    Q_PROPERTY(qreal blur MEMBER blur_ NOTIFY changed)
    Q_PROPERTY(QColor color MEMBER color_ NOTIFY changed)

public:
    explicit Shadow(QQuickItem* parent = nullptr);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void changed();

private:
    qreal radius_ = 0;
    qreal blur_ = 14;
    QColor color_ = QColor::fromRgbF(0, 0, 0, 0.12F);
};

} // namespace varnic
