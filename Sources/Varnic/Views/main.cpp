#include "Varnic/AppModel/AppModel.h"
#include "Varnic/Views/ViewModel.h"

#include <QApplication>
#include <QQmlApplicationEngine>
#include <QQuickStyle>
#include <QtQml/QQmlExtensionPlugin>

Q_IMPORT_QML_PLUGIN(Varnic_ThemePlugin)
Q_IMPORT_QML_PLUGIN(Varnic_InkPlugin)
Q_IMPORT_QML_PLUGIN(Varnic_LiveViewPlugin)
Q_IMPORT_QML_PLUGIN(Varnic_NotePagePlugin)
Q_IMPORT_QML_PLUGIN(Varnic_LibraryViewsPlugin)

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QQuickStyle::setStyle("Basic");
    varnic::AppModel model(varnic::AppPlaces::fromEnvironment());
    model.load();
    QQmlApplicationEngine engine;
    engine.addImportPath("qrc:/qt/qml");
    varnic::setAppModel(engine, model);
    engine.load(QUrl("qrc:/qt/qml/Varnic/LibraryViews/Main.qml"));
    return engine.rootObjects().isEmpty() ? 1 : QApplication::exec();
}
