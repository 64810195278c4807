#include "Varnic/Views/FakePortal.h"
#include "Varnic/Views/Theme/Native/Fonts.h"

#include <QQmlEngine>
#include <QtQuickTest>

#include <memory>

/// What the QML tests need from C++.
class Setup : public QObject {
    Q_OBJECT

public Q_SLOTS:

    void applicationAvailable() { // NOLINT(readability-make-member-function-const): called by name
        varnic::prepareFonts();
        portal_ = std::make_unique<FakePortal>();
        portal_->changeNumber("org.freedesktop.appearance", "color-scheme", 2);
        qmlRegisterSingletonInstance("Varnic.Tests", 1, 0, "Portal", portal_.get());
    }

    void qmlEngineAvailable(QQmlEngine* engine) { // NOLINT(readability-convert-member-functions-to-static): the same
        engine->addImportPath("qrc:/qt/qml");
    }

    void cleanupTestCase() { portal_.reset(); }

private:
    std::unique_ptr<FakePortal> portal_;
};

QUICK_TEST_MAIN_WITH_SETUP(views, Setup)

#include "main.moc"
