#include "Varnic/Views/Theme/Native/NibMark.h"

#include <QImage>
#include <QPainter>
#include <gtest/gtest.h>

namespace varnic {
namespace {

/// The mark in black with red holes on transparent ground.
QImage mark(int size) {
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paintNib(painter, QRectF(0, 0, size, size), Qt::black, Qt::red);
    return image;
}

/// How many points of the row are the holes' colour.
double holeWidth(const QImage& image, int row) {
    double sum = 0;
    for (int x = 0; x < image.width(); ++x) {
        sum += image.pixelColor(x, row).red() / 255.0;
    }
    return sum;
}

TEST(NibMark, SlitIsAPointWideInTheSmallest) {
    // The slit of size 10 runs from 4.9 to 9.1; a 255th is lost where two pixels share it.
    const QImage image = mark(10);
    for (const int row : {6, 7, 8}) {
        EXPECT_GE(holeWidth(image, row), 1 - 1.5 / 255) << row;
    }
}

TEST(NibMark, TipIsAtTheBottomAndShouldersAtTheSides) {
    const QImage image = mark(100);
    EXPECT_EQ(image.pixelColor(50, 20).alpha(), 255);
    EXPECT_EQ(image.pixelColor(10, 38).alpha(), 255);
    EXPECT_EQ(image.pixelColor(90, 38).alpha(), 255);
    EXPECT_EQ(image.pixelColor(10, 5).alpha(), 0);
    EXPECT_EQ(image.pixelColor(30, 95).alpha(), 0);
    EXPECT_EQ(image.pixelColor(70, 95).alpha(), 0);
}

} // namespace
} // namespace varnic
