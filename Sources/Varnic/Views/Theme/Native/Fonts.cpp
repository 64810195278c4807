#include "Varnic/Views/Theme/Native/Fonts.h"

#include <QDir>
#include <QFont>
#include <QFontDatabase>
#include <QStringList>

namespace varnic {

void prepareFonts() {
    // Made by cmake/figures.py.
    const QDir made(QStringLiteral(":/varnic/fonts"));
    for (const QString& font : made.entryList()) {
        QFontDatabase::addApplicationFont(made.filePath(font));
    }
    // Emoji come last: their font has digits of its own.
    const QString emoji = QStringLiteral("Noto Color Emoji");
    const auto standIns = [&](const QString& family, QStringList others) {
        QFont::insertSubstitutions(family, others << emoji);
    };
    standIns(QStringLiteral("Varnic Serif"), {"Vollkorn", "Source Serif 4", "Noto Serif", "DejaVu Serif", "serif"});
    standIns(QStringLiteral("Varnic Figures"), {"Inter", "Noto Sans", "DejaVu Sans", "sans-serif"});
    standIns(QStringLiteral("Inter"), {"Noto Sans", "DejaVu Sans", "sans-serif"});
    standIns(QStringLiteral("JetBrains Mono"), {"Noto Sans Mono", "DejaVu Sans Mono", "monospace"});
}

} // namespace varnic
