#include <QGuiApplication>
#include <QtQml/QQmlExtensionPlugin>

#include <gmock/gmock.h>

Q_IMPORT_QML_PLUGIN(Varnic_ThemePlugin)
Q_IMPORT_QML_PLUGIN(Varnic_Theme_NativePlugin)
Q_IMPORT_QML_PLUGIN(Varnic_UpdatePlugin)

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    // No screen is needed, and a picture has the same size everywhere.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_FONT_DPI", "96");
    const QGuiApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
