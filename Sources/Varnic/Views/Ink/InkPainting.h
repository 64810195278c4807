#pragma once

#include "VarnicCore/Ink/InkPen.h"

#include <QColor>

class QPainter;

namespace varnic {

/// What the pen writes with.
struct InkColors {
    QColor quiet;
    QColor you;
    QColor them;

    [[nodiscard]] QColor of(InkPen::Ink ink) const;

    bool operator==(const InkColors&) const = default;
};

/// Readies a painter of an image for pieces of ink. They replace what lies under them, so that no dots show where the
/// round ends of pale pieces overlap.
void prepareForInk(QPainter& painter);

/// Strokes one piece.
void stroke(QPainter& painter, const InkPen::Piece& piece, const InkColors& colors);

} // namespace varnic
