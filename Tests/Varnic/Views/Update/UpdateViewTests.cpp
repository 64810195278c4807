#include "BrevinKit/TestBundle.h"
#include "BrevinKit/Updater/Updater.h"
#include "BrevinKit/UpdaterHost.h"
#include "HTTP/Client.h"
#include "HTTP/LocalServer.h"
#include "Varnic/AppModel/ScratchModel.h"
#include "Varnic/Views/Context/ViewContext.h"
#include "Varnic/Views/ItemTree.h"
#include "Varnic/Views/Update/UpdateModel.h"
#include "VarnicCore/TemporaryFolder.h"

#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QSignalSpy>
#include <QTest>
#include <gmock/gmock.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

namespace varnic {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// The window of Tiny 0.1.0, whose publisher has 0.1.1.
class UpdateViewTests : public testing::Test {
protected:
    UpdateViewTests() {
        ::setenv("SSL_CERT_FILE", server.certificate().c_str(), 1);
        const auto app = brevin::makeBundle(folder.path() / "new/Tiny.app", "0.1.1");
        brevin::Release::seal(app, key);
        brevin::Release::pack(app, folder.path() / "update.zip");
        feed = {.version = "0.1.1",
                .url = "https://example.org",
                .notes = "<b>Better</b>, and faster.",
                .download =
                    brevin::Release::describe(folder.path() / "update.zip", server.secureURL("held/update.zip"), key)};
        brevin::makeBundle(folder.path() / "Tiny.app", "0.1.0");
    }

    void TearDown() override { ::unsetenv("SSL_CERT_FILE"); }

    void show(bool isInPlace) {
        brevin::writeFile(folder.path() / "feed.json", feed.encode());
        const auto bundle = folder.path() / (isInPlace ? "Tiny.app" : "none/Tiny.app");
        updater =
            std::make_unique<brevin::Updater>(brevin::UpdaterConfiguration{.appName = "Tiny",
                                                                           .identifier = "app.brevin.Tiny",
                                                                           .currentVersion = "0.1.0",
                                                                           .feedURL = server.secureURL("feed.json"),
                                                                           .publicKey = key.publicKey(),
                                                                           .program = bundle / "Contents/bin/tiny",
                                                                           .bundle = bundle,
                                                                           .caches = folder.path() / "caches"},
                                              settings, host.host());
        updater->setAutomaticallyDownloads(false);
        view = std::make_unique<QQuickView>();
        view->engine()->addImportPath("qrc:/qt/qml");
        ViewContext{.model = *model, .updater = updater.get()}.giveTo(*view->engine());
        view->setSource(QUrl("qrc:/qt/qml/Varnic/Update/UpdateView.qml"));
        view->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(view.get()));
    }

    void settle() {
        ASSERT_TRUE(host.waitUntil([this] { return host.isIdle(); }));
    }

    UpdateModel& update() {
        return *view->engine()->singletonInstance<UpdateModel*>(qmlTypeId("Varnic.Update", 1, 0, "UpdateModel"));
    }

    /// What can be read, from top to bottom.
    [[nodiscard]] std::vector<std::string> texts() const {
        std::vector<std::string> found;
        visitShown(view->rootObject(), [&found](const QQuickItem* item) {
            if (item->inherits("QQuickText") && !item->property("text").toString().isEmpty()) {
                found.push_back(item->property("text").toString().toStdString());
            }
        });
        return found;
    }

    void pressReturn() { QTest::keyClick(view.get(), Qt::Key_Return); }

    ScratchModel model;
    TemporaryFolder folder;
    brevin::ReleaseKey key = brevin::ReleaseKey::generate();
    LocalServer server{"update_server.py", {folder.path().string()}};
    brevin::UpdateFeed feed;
    QSettings settings{QString::fromStdString(folder.path() / "settings.ini"), QSettings::IniFormat};
    brevin::UpdaterHost host;
    std::unique_ptr<brevin::Updater> updater;
    std::unique_ptr<QQuickView> view;
};

TEST_F(UpdateViewTests, aRelease_isOfferedDownloadedAndReady) {
    show(true);
    update().checkNow();
    EXPECT_THAT(texts(), ElementsAre("Checking for updates…"));
    settle();
    EXPECT_THAT(texts(), ElementsAre("Tiny 0.1.1 is available", "You have 0.1.0.", "<b>Better</b>, and faster.",
                                     "Later", "Download & Install"));
    EXPECT_EQ(update().status(), "0.1.1 is available.");
    pressReturn();
    EXPECT_THAT(texts(), ElementsAre("Downloading Tiny 0.1.1…", "Later"));
    EXPECT_TRUE(host.waitUntil([this] { return update().progress() > 0; }));
    http::send({.url = server.url("release")}, {});
    settle();
    EXPECT_THAT(texts(), ElementsAre("Tiny 0.1.1 is ready", "It installs automatically the next time you quit Tiny.",
                                     "<b>Better</b>, and faster.", "Later", "Restart Now"));
    EXPECT_EQ(update().status(), "0.1.1 installs when you quit.");
    pressReturn();
    EXPECT_EQ(host.terminations, 1);
}

TEST_F(UpdateViewTests, whatCannotBeInstalled_hasAPageAndAReason) {
    show(false);
    update().checkNow();
    settle();
    EXPECT_THAT(texts(), ElementsAre("Tiny 0.1.1 is available", "You have 0.1.0.", "<b>Better</b>, and faster.",
                                     "Move Tiny to a folder of your own to get updates automatically.", "Later",
                                     "Open Download Page"));
    pressReturn();
    EXPECT_THAT(host.urls, ElementsAre("https://example.org"));
}

TEST_F(UpdateViewTests, okCloses_andThePhaseStays) {
    feed.version = "0.1.0";
    show(true);
    QSignalSpy closed(view->rootObject(), SIGNAL(closed()));
    update().checkNow();
    settle();
    EXPECT_THAT(texts(), ElementsAre("You’re up to date", "Tiny 0.1.0 is the newest version.", "OK"));
    EXPECT_EQ(update().status(), "You’re up to date.");
    pressReturn();
    EXPECT_EQ(closed.count(), 1);
    EXPECT_EQ(update().phase(), UpdateModel::upToDate);
    brevin::writeFile(folder.path() / "feed.json", "<html>");
    update().checkNow();
    settle();
    EXPECT_THAT(texts(),
                ElementsAre("Update problem",
                            "Couldn’t check for updates. Check your internet connection and try again.", "OK"));
    updater->check(false);
    settle();
    EXPECT_EQ(closed.count(), 2) << "there is nothing left to say";
    EXPECT_THAT(texts(), IsEmpty());
}

TEST_F(UpdateViewTests, theSettings_seeAndSwitchWhatIsAutomatic) {
    show(true);
    EXPECT_TRUE(update().isOn());
    EXPECT_EQ(update().version(), "0.1.0");
    const QSignalSpy changed(&update(), &UpdateModel::automaticallyDownloadsChanged);
    update().setAutomaticallyDownloads(true);
    EXPECT_EQ(changed.count(), 1);
    EXPECT_TRUE(settings.value("BrevinAutoUpdate").toBool());
    UpdateModel none(nullptr);
    none.checkNow();
    none.act();
    EXPECT_FALSE(none.isOn() || none.automaticallyDownloads());
    EXPECT_EQ(none.status(), "");
}

} // namespace
} // namespace varnic
