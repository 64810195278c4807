#include "Varnic/Views/Theme/Native/Fonts.h"

#include <QFont>
#include <QStringList>

namespace varnic {

void prepareFonts() {
    // Emoji come last: their font has digits of its own.
    const QString emoji = QStringLiteral("Noto Color Emoji");
    const auto standIns = [&](const QString& family, QStringList others) {
        QFont::insertSubstitutions(family, others << emoji);
    };
    standIns(QStringLiteral("Vollkorn"), {"Source Serif 4", "Noto Serif", "DejaVu Serif", "serif"});
    standIns(QStringLiteral("Inter"), {"Noto Sans", "DejaVu Sans", "sans-serif"});
    standIns(QStringLiteral("JetBrains Mono"), {"Noto Sans Mono", "DejaVu Sans Mono", "monospace"});
}

} // namespace varnic
