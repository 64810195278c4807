#include "Varnic/Views/Theme/Native/Fonts.h"

#include <QApplication>

#include <gmock/gmock.h>

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    // No screen is needed, and a picture has the same size everywhere.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_FONT_DPI", "96");
    const QApplication application(argc, argv);
    varnic::prepareFonts();
    return RUN_ALL_TESTS();
}
