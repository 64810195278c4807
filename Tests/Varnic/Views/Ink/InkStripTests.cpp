#include "Varnic/Views/Ink/CallInk.h"
#include "Varnic/Views/Ink/InkStrip.h"

#include <QPainter>
#include <gmock/gmock.h>

#include <cmath>

namespace varnic {
namespace {

InkSample sample(int index) {
    return {.you = std::abs(std::sin(static_cast<float>(index) / 9)) * 0.8F,
            .them = index % 60 < 20 ? 0.0F : std::abs(std::cos(static_cast<float>(index) / 13)) * 0.7F};
}

InkStrip::Setting setting(double scale) {
    return {.width = 200, .height = 60, .amplitude = 20, .scale = scale, .colors = {Qt::gray, Qt::blue, Qt::red}};
}

QImage seen(const InkStrip& strip, const InkHistory& history, double scale) {
    QImage image(QSize(200, 60) * scale, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    strip.paint(painter, static_cast<double>(history.end() - 1) * InkStrip::step - 180);
    return image;
}

/// The greatest difference of any pixel's alpha, from a column on.
int difference(const QImage& one, const QImage& other, int from = 0) {
    int worst = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = from; x < one.width(); ++x) {
            worst = std::max(worst, std::abs(qAlpha(one.pixel(x, y)) - qAlpha(other.pixel(x, y))));
        }
    }
    return worst;
}

TEST(InkStrip, write_pieceByPieceLooksLikeAllAtOnce) {
    // A step is a whole number of pixels then, so that both strips lie on the same ones.
    constexpr double scale = 5;
    InkHistory history;
    history.begin({});
    InkStrip growing;
    // More than the history remembers, and many times what a strip has room for.
    for (int i = 0; i < 1500; ++i) {
        history.append(sample(i));
        growing.write(history, setting(scale));
        if (i % 97 == 0) {
            InkStrip fresh;
            fresh.write(history, setting(scale));
            EXPECT_LE(difference(seen(growing, history, scale), seen(fresh, history, scale), 100), 2) << i;
        }
    }
}

TEST(InkStrip, write_beginsAnewWithOtherColoursSizesAndLines) {
    InkHistory history;
    history.begin(std::vector<InkSample>(100, InkSample{0.5F, 0}));
    InkStrip strip;
    strip.write(history, setting(1));
    const QImage before = seen(strip, history, 1);

    InkStrip::Setting red = setting(1);
    red.colors.you = Qt::red;
    strip.write(history, red);
    const QImage after = seen(strip, history, 1);
    EXPECT_NE(before, after);
    EXPECT_EQ(difference(before, after), 0);

    history.begin({});
    strip.write(history, red);
    EXPECT_EQ(qAlpha(seen(strip, history, 1).pixel(150, 30)), 0);
}

TEST(CallInk, momentsStayWithinTheCall) {
    const CallInk ink(CallRecord{.duration = 200});
    EXPECT_EQ(ink.timeAt(50, 100), 100);
    EXPECT_EQ(ink.timeAt(-5, 100), 0);
    EXPECT_EQ(ink.timeAt(150, 100), 200);
    EXPECT_EQ(ink.timeAt(50, 0), 0);
    EXPECT_EQ(ink.xOf(100, 300), 150);
    EXPECT_EQ(ink.step(198, 5), 200);
    EXPECT_EQ(ink.step(3, -5), 0);
    EXPECT_EQ(ink.stamp(125), "2:05");
}

TEST(CallInk, aCallOfUnknownLengthIsAsLongAsItsLines) {
    EXPECT_EQ(CallInk(CallRecord{.segments = {Segment(Speaker::you, 0, 12, "Hello")}}).duration(), 12);
    const CallInk empty{CallRecord()};
    EXPECT_EQ(empty.duration(), 0);
    EXPECT_EQ(empty.xOf(3, 100), 0);
    EXPECT_TRUE(empty.levels(50).empty());
}

TEST(CallInk, levels_leaveRoomAboveFullSpeech) {
    const auto levels = CallInk(CallRecord{.duration = 4, .segments = {Segment(Speaker::them, 0, 2, "Hi")}}).levels(4);
    ASSERT_EQ(levels.size(), 4);
    EXPECT_EQ(levels[0], (InkPen::Levels{0, 0.85}));
    EXPECT_EQ(levels[3], (InkPen::Levels{0, 0}));
}

} // namespace
} // namespace varnic
