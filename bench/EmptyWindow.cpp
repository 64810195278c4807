#include <QApplication>
#include <QQmlApplicationEngine>

/// A window with nothing in it, which first_frame.py measures the program against.
int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QQmlApplicationEngine engine;
    engine.loadData("import QtQuick\nWindow { visible: true; width: 1240; height: 800 }");
    return QApplication::exec();
}
