#include "Varnic/Views/Theme/Native/Symbol.h"

#include "Varnic/Views/Theme/Native/SymbolTable.h"

#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

#include <cmath>

namespace varnic {

namespace {

/// The drawings leave a margin of two twenty-fourths around themselves.
constexpr qreal squareOfType = 1.3;

/// The width of a stroke in a drawing 24 wide.
qreal strokeWidth(int weight) {
    if (weight >= QFont::Bold) {
        return 2.6;
    }
    if (weight >= QFont::DemiBold) {
        return 2.2;
    }
    return weight >= QFont::Medium ? 1.8 : 1.5;
}

QByteArray drawing(const SymbolDrawing& symbol, const QColor& color, int weight) {
    QFile file(QStringLiteral(":/varnic/symbols/%1.svg")
                   .arg(QLatin1StringView(symbol.file.data(), static_cast<qsizetype>(symbol.file.size()))));
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    QByteArray text = file.readAll();
    if (symbol.filled) {
        text.replace("fill=\"none\"", "fill=\"currentColor\"");
    }
    text.replace("stroke-width=\"2\"", "stroke-width=\"" + QByteArray::number(strokeWidth(weight)) + '"');
    return text.replace("currentColor", color.name().toLatin1());
}

} // namespace

Symbol::Symbol(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setAntialiasing(true);
    connect(this, &Symbol::changed, this, &Symbol::refresh);
    refresh();
}

void Symbol::refresh() {
    const qreal side = std::round(size_ * squareOfType);
    setImplicitSize(side, side);
    update();
}

void Symbol::paint(QPainter* painter) {
    const SymbolDrawing* const symbol = findSymbol(name_.toStdString());
    if (symbol == nullptr) {
        return;
    }
    QSvgRenderer renderer(drawing(*symbol, color_, weight_));
    const qreal side = std::min(width(), height());
    painter->setOpacity(static_cast<qreal>(color_.alphaF()));
    painter->translate(width() / 2, height() / 2);
    painter->rotate(turn_);
    renderer.render(painter, QRectF(-side / 2, -side / 2, side, side));
}

} // namespace varnic
