#pragma once

#include "Varnic/Views/Ink/InkHistory.h"
#include "Varnic/Views/Ink/InkStrip.h"

#include <QPointF>
#include <QPointer>
#include <QQuickPaintedItem>
#include <QString>

namespace varnic {

/// The ink of a running call: a line that grows at its head while the paper moves on to the left.
class InkTrail : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(varnic::InkHistory* history READ history WRITE setHistory NOTIFY historyChanged REQUIRED)
    /// Whether the line ends where a nib has room beside it; else it begins at the left edge.
    Q_PROPERTY(bool showNib READ showNib WRITE setShowNib NOTIFY lookChanged)
    /// How far full level swings, in points.
    Q_PROPERTY(double amplitude READ amplitude WRITE setAmplitude NOTIFY lookChanged)
    Q_PROPERTY(QColor quiet READ quiet WRITE setQuiet NOTIFY lookChanged)
    Q_PROPERTY(QColor you READ you WRITE setYou NOTIFY lookChanged)
    Q_PROPERTY(QColor them READ them WRITE setThem NOTIFY lookChanged)
    /// Where the pen is.
    Q_PROPERTY(QPointF head READ head NOTIFY headChanged)
    /// Which side is the louder one there.
    Q_PROPERTY(varnic::InkTrail::Leader leader READ leader NOTIFY headChanged)
    /// The same in words.
    Q_PROPERTY(QString speaking READ speaking NOTIFY headChanged)

public:
    enum Leader { Quiet, You, Them };
    Q_ENUM(Leader)

    explicit InkTrail(QQuickItem* parent = nullptr);

    [[nodiscard]] InkHistory* history() const { return history_; }

    void setHistory(InkHistory* history);

    [[nodiscard]] bool showNib() const { return showNib_; }

    void setShowNib(bool show) { change(showNib_, show); }

    [[nodiscard]] double amplitude() const { return amplitude_; }

    void setAmplitude(double points) { change(amplitude_, points); }

    [[nodiscard]] QColor quiet() const { return colors_.quiet; }

    void setQuiet(const QColor& color) { change(colors_.quiet, color); }

    [[nodiscard]] QColor you() const { return colors_.you; }

    void setYou(const QColor& color) { change(colors_.you, color); }

    [[nodiscard]] QColor them() const { return colors_.them; }

    void setThem(const QColor& color) { change(colors_.them, color); }

    [[nodiscard]] QPointF head() const { return head_; }

    [[nodiscard]] Leader leader() const { return leader_; }

    [[nodiscard]] QString speaking() const;

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void historyChanged();
    void lookChanged();
    void headChanged();

protected:
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;

private:
    template <typename Value>
    void change(Value& field, const Value& value) {
        if (field != value) {
            field = value;
            Q_EMIT lookChanged();
            follow();
        }
    }

    void follow();
    [[nodiscard]] InkStrip::Setting setting() const;
    [[nodiscard]] double usable() const;
    [[nodiscard]] double left() const;

    QPointer<InkHistory> history_;
    bool showNib_ = false;
    double amplitude_ = 0;
    InkColors colors_;
    QPointF head_;
    Leader leader_ = Quiet;
    InkStrip strip_;
};

} // namespace varnic
