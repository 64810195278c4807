#pragma once

#include <QQuickItem>
#include <QtQmlIntegration>

namespace varnic {

/// Places its visible children from left to right, each at its own size, and starts a line where the next would not
/// fit. Without a width of its own its lines are 600 points long. Children without a size take no place.
class FlowLayout : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    /// Points between neighbours and between lines.
    Q_PROPERTY(qreal spacing READ spacing WRITE setSpacing NOTIFY spacingChanged)

public:
    explicit FlowLayout(QQuickItem* parent = nullptr);

    [[nodiscard]] qreal spacing() const { return spacing_; }

    void setSpacing(qreal spacing);

Q_SIGNALS:
    void spacingChanged();

protected:
    void itemChange(ItemChange change, const ItemChangeData& data) override;
    void geometryChange(const QRectF& now, const QRectF& before) override;
    void componentComplete() override;
    void updatePolish() override;

private:
    qreal spacing_ = 0;
};

} // namespace varnic
