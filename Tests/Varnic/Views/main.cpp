#include <QQmlEngine>
#include <QtQuickTest>

/// What the QML tests need from C++.
class Setup : public QObject {
    Q_OBJECT

public Q_SLOTS:
    // NOLINTNEXTLINE(readability-convert-member-functions-to-static): called by name
    void qmlEngineAvailable(QQmlEngine* engine) { engine->addImportPath("qrc:/qt/qml"); }
};

QUICK_TEST_MAIN_WITH_SETUP(views, Setup)

#include "main.moc"
