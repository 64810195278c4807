#include "Varnic/AppModel/ScratchModel.h"
#include "Varnic/Shell/AppDelegate.h"
#include "Varnic/Views/Context/ViewContext.h"
#include "Varnic/Views/ItemTree.h"
#include "Varnic/Views/SettingsViews/SettingsWindow.h"

#include <QAccessible>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QTest>

#include <gmock/gmock.h>

#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace varnic {
namespace {

using testing::HasSubstr;
using testing::Not;

class SettingsWindowTest : public testing::Test {
protected:
    void SetUp() override {
        shell.emplace(*model);
        engine = std::make_unique<QQmlEngine>();
        engine->addImportPath("qrc:/qt/qml");
        ViewContext{.model = *model, .shell = &*shell}.giveTo(*engine);
        QQmlComponent component(engine.get(), QUrl("qrc:/qt/qml/Varnic/SettingsViews/Settings.qml"));
        window.reset(qobject_cast<SettingsWindow*>(component.create()));
        ASSERT_NE(window, nullptr) << component.errorString().toStdString();
    }

    /// All items that show, tab for tab, with every provider of summaries.
    void visitAll(const std::function<void(QQuickItem*)>& look) {
        for (const auto provider : allAIProviderKinds) {
            AISettings ai;
            ai.enabled = true;
            ai.provider = provider;
            model->settings.ai = ai;
            for (const auto tab : {SettingsWindow::General, SettingsWindow::Recording, SettingsWindow::Summaries,
                                   SettingsWindow::About}) {
                window->setTab(tab);
                QCoreApplication::processEvents();
                visitShown(window->contentItem(), look);
            }
        }
    }

    ScratchModel model;
    std::optional<AppDelegate> shell;
    std::unique_ptr<QQmlEngine> engine;
    std::unique_ptr<SettingsWindow> window;
};

TEST_F(SettingsWindowTest, open_showsTheTabOfTheRow) {
    for (const auto& [row, tab] : {std::pair(SettingsRow::hotkey, SettingsWindow::General),
                                   std::pair(SettingsRow::speech, SettingsWindow::Recording),
                                   std::pair(SettingsRow::summaries, SettingsWindow::Summaries),
                                   std::pair(SettingsRow::updates, SettingsWindow::About)}) {
        window->open(row);
        EXPECT_EQ(window->tab(), tab);
        EXPECT_EQ(window->row(), static_cast<SettingsWindow::Row>(row));
        window->close();
        EXPECT_EQ(window->row(), SettingsWindow::None);
    }
    window->open(SettingsRow::beginning);
    EXPECT_EQ(window->tab(), SettingsWindow::About) << "as it was last";
}

TEST_F(SettingsWindowTest, keys_goThroughTheTabs) {
    window->open(SettingsRow::hotkey);
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    QTest::keyClick(window.get(), Qt::Key_PageDown, Qt::ControlModifier);
    EXPECT_EQ(window->tab(), SettingsWindow::Recording);
    QTest::keyClick(window.get(), Qt::Key_PageUp, Qt::ControlModifier);
    QTest::keyClick(window.get(), Qt::Key_PageUp, Qt::ControlModifier);
    EXPECT_EQ(window->tab(), SettingsWindow::About);
}

TEST_F(SettingsWindowTest, markedRow_hasTheKeyboardAndIsInView) {
    window->open(SettingsRow::library);
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    EXPECT_TRUE(waitUntil([this] {
        const QQuickItem* at = window->activeFocusItem();
        return at != nullptr && at->property("text").toString().contains("Import");
    }));
    // Also once the rows above have their heights.
    EXPECT_TRUE(waitUntil([this] {
        const QQuickItem* at = window->activeFocusItem();
        return QRectF(QPointF(), window->size()).contains(at->mapRectToScene(at->boundingRect()));
    }));
}

TEST_F(SettingsWindowTest, texts_areInTheWordsOfThisDesktop) {
    window->open(SettingsRow::beginning);
    int texts = 0;
    visitAll([&texts](const QQuickItem* item) {
        const std::string text = item->property("text").toString().toStdString();
        texts += text.empty() ? 0 : 1;
        for (const char* word : {"Mac", "Finder", "Keychain", "Apple", "menu-bar"}) {
            EXPECT_THAT(text, Not(HasSubstr(word)));
        }
    });
    EXPECT_GT(texts, 60);
}

TEST_F(SettingsWindowTest, whatTheKeyboardReaches_isToldByName) {
    window->open(SettingsRow::beginning);
    int stops = 0;
    visitAll([&stops](QQuickItem* item) {
        if (!item->activeFocusOnTab() || !item->isEnabled()) {
            return;
        }
        ++stops;
        QAccessibleInterface* const told = QAccessible::queryAccessibleInterface(item);
        ASSERT_NE(told, nullptr) << item->metaObject()->className();
        // A button without another name is told by its text where an assistive program listens. Of a field for secrets
        // Qt tells no name.
        EXPECT_FALSE(
            (told->text(QAccessible::Name) + told->text(QAccessible::Description) + item->property("text").toString())
                .isEmpty())
            << item->metaObject()->className();
    });
    EXPECT_GT(stops, 30);
}

} // namespace
} // namespace varnic
