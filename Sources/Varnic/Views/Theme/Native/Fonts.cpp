#include "Varnic/Views/Theme/Native/Fonts.h"

#include <QDir>
#include <QFont>
#include <QFontDatabase>
#include <QStringList>

#include <utility>

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
    standIns(QStringLiteral("Inter"), {"Varnic Figures", "Noto Sans", "DejaVu Sans", "sans-serif"});
    standIns(QStringLiteral("JetBrains Mono"), {"Noto Sans Mono", "DejaVu Sans Mono", "monospace"});
}

std::vector<std::string> missingFontPackages() {
    const QStringList installed = QFontDatabase::families();
    std::vector<std::string> packages;
    for (const auto& [family, package] : {std::pair("Inter", "fonts-inter"), std::pair("Vollkorn", "fonts-vollkorn"),
                                          std::pair("JetBrains Mono", "fonts-jetbrains-mono"),
                                          std::pair("Noto Color Emoji", "fonts-noto-color-emoji")}) {
        if (!installed.contains(QLatin1String(family))) {
            packages.emplace_back(package);
        }
    }
    return packages;
}

} // namespace varnic
