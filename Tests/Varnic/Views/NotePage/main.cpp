#include "Varnic/Views/Theme/Native/Fonts.h"

#include <QGuiApplication>
#include <QtQml/QQmlExtensionPlugin>

#include <gmock/gmock.h>

Q_IMPORT_QML_PLUGIN(Varnic_ThemePlugin)
Q_IMPORT_QML_PLUGIN(Varnic_Theme_NativePlugin)
Q_IMPORT_QML_PLUGIN(Varnic_InkPlugin)
Q_IMPORT_QML_PLUGIN(Varnic_LiveViewPlugin)
Q_IMPORT_QML_PLUGIN(Varnic_NotePlugin)
Q_IMPORT_QML_PLUGIN(Varnic_NotePagePlugin)

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    // No screen is needed, and a picture has the same size everywhere.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_FONT_DPI", "96");
    const QGuiApplication application(argc, argv);
    varnic::prepareFonts();
    return RUN_ALL_TESTS();
}
