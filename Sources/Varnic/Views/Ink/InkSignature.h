#pragma once

#include "Varnic/Views/Ink/CallInk.h"
#include "Varnic/Views/Ink/InkPainting.h"

#include <QQuickPaintedItem>

namespace varnic {

/// A finished call as one line of ink: the same one every time.
class InkSignature : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(varnic::CallInk call READ call WRITE setCall NOTIFY callChanged REQUIRED)
    Q_PROPERTY(QColor quiet READ quiet WRITE setQuiet NOTIFY lookChanged)
    Q_PROPERTY(QColor you READ you WRITE setYou NOTIFY lookChanged)
    Q_PROPERTY(QColor them READ them WRITE setThem NOTIFY lookChanged)

public:
    explicit InkSignature(QQuickItem* parent = nullptr);

    [[nodiscard]] CallInk call() const { return call_; }

    void setCall(const CallInk& call);

    [[nodiscard]] QColor quiet() const { return colors_.quiet; }

    void setQuiet(const QColor& color) { change(colors_.quiet, color); }

    [[nodiscard]] QColor you() const { return colors_.you; }

    void setYou(const QColor& color) { change(colors_.you, color); }

    [[nodiscard]] QColor them() const { return colors_.them; }

    void setThem(const QColor& color) { change(colors_.them, color); }

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void callChanged();
    void lookChanged();

private:
    void change(QColor& field, const QColor& color);

    CallInk call_;
    InkColors colors_;
};

} // namespace varnic
