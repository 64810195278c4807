#include "Varnic/Views/Theme/Native/Fonts.h"

#include <QApplication>
#include <QQuickStyle>

#include <gmock/gmock.h>

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    const QApplication application(argc, argv);
    QQuickStyle::setStyle("Basic");
    varnic::prepareFonts();
    return RUN_ALL_TESTS();
}
