#include <QGuiApplication>
#include <QtQml/QQmlExtensionPlugin>
#include <gmock/gmock.h>

Q_IMPORT_QML_PLUGIN(Varnic_ThemePlugin)
Q_IMPORT_QML_PLUGIN(Varnic_Theme_NativePlugin)
Q_IMPORT_QML_PLUGIN(Varnic_InkPlugin)
Q_IMPORT_QML_PLUGIN(Varnic_LiveViewPlugin)

/// Views need an application with a screen, if only one in memory.
int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    const QGuiApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
