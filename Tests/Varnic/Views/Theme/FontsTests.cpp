#include <QFont>
#include <QFontDatabase>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QImage>
#include <QPainter>
#include <QStringList>
#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

namespace varnic {
namespace {

QFont font(const char* family, int weight = QFont::Normal, bool italic = false) {
    QFont font(QString::fromLatin1(family));
    font.setPixelSize(60);
    font.setWeight(static_cast<QFont::Weight>(weight));
    font.setItalic(italic);
    return font;
}

/// The first and the last row that a text inks.
std::pair<int, int> inkedRows(const QFont& font, const QString& text) {
    QImage page(120, 120, QImage::Format_Grayscale8);
    page.fill(Qt::white);
    QPainter painter(&page);
    painter.setFont(font);
    painter.drawText(20, 80, text);
    painter.end();
    std::pair rows{page.height(), -1};
    for (int y = 0; y < page.height(); ++y) {
        for (int x = 0; x < page.width(); ++x) {
            if (qGray(page.pixel(x, y)) < 128) {
                rows = {std::min(rows.first, y), y};
            }
        }
    }
    return rows;
}

TEST(Fonts, families_areInstalled) {
    const QStringList installed = QFontDatabase::families();
    for (const char* family : {"Vollkorn", "Inter", "JetBrains Mono", "Noto Color Emoji"}) {
        EXPECT_TRUE(installed.contains(QLatin1String(family))) << family;
    }
}

TEST(Fonts, serif_digitsAreAsHighAsEachOther) {
    for (const QFont& serif :
         {font("Varnic Serif"), font("Varnic Serif", QFont::DemiBold), font("Varnic Serif", QFont::Normal, true)}) {
        const QFontInfo info(serif);
        EXPECT_EQ(info.family(), "Varnic Serif");
        EXPECT_EQ(info.weight(), serif.weight());
        EXPECT_EQ(info.italic(), serif.italic());
        const auto [top, bottom] = inkedRows(serif, "0");
        for (const QChar digit : QString("123456789")) {
            const auto rows = inkedRows(serif, digit);
            EXPECT_NEAR(rows.first, top, 4) << digit.toLatin1();
            EXPECT_NEAR(rows.second, bottom, 4) << digit.toLatin1();
        }
        EXPECT_NEAR(inkedRows(serif, "H").first, top, 3) << "as high as capitals";
    }
}

TEST(Fonts, figures_digitsAreAsWideAsEachOther) {
    for (const int weight : {QFont::Normal, QFont::Medium, QFont::DemiBold}) {
        const QFont figures = font("Varnic Figures", weight);
        EXPECT_EQ(QFontInfo(figures).family(), "Varnic Figures");
        EXPECT_EQ(QFontInfo(figures).weight(), weight);
        const QFontMetricsF metrics(figures);
        for (const QChar digit : QString("123456789")) {
            EXPECT_NEAR(metrics.horizontalAdvance(digit), metrics.horizontalAdvance('0'), 0.1) << digit.toLatin1();
        }
        EXPECT_EQ(metrics.horizontalAdvance("Ag"), QFontMetricsF(font("Inter", weight)).horizontalAdvance("Ag"));
    }
}

} // namespace
} // namespace varnic
