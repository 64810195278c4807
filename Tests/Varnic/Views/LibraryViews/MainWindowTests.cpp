#include "Varnic/AppModel/ScratchModel.h"
#include "Varnic/Views/Program/MainWindow.h"

#include <QAccessible>
#include <QQuickItem>
#include <QTest>

#include <gmock/gmock.h>

#include <algorithm>
#include <optional>

namespace varnic {
namespace {

/// The main window on a library of its own.
class MainWindowTest : public testing::Test {
protected:
    void open() {
        model_.load();
        main_.emplace(*model_, [this] { ++quits_; });
        main_->activate();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&main_->window()));
    }

    /// The item of that kind that shows, or null.
    QQuickItem* shown(const char* type) {
        const auto items = main_->window().contentItem()->findChildren<QQuickItem*>();
        const auto found = std::ranges::find_if(items, [type](const QQuickItem* item) {
            return item->isVisible() && QString(item->metaObject()->className()).startsWith(QString(type) + "_");
        });
        return found == items.end() ? nullptr : *found;
    }

    void press(int key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(&main_->window(), static_cast<Qt::Key>(key), modifiers);
    }

    ScratchModel model_;
    std::optional<MainWindow> main_;
    int quits_ = 0;
};

TEST_F(MainWindowTest, empty_library_says_what_to_do) {
    open();
    EXPECT_NE(shown("EmptyList"), nullptr);
    press(Qt::Key_N, Qt::ControlModifier);
    EXPECT_EQ(model_->notes().size(), 1U);
    EXPECT_TRUE(waitUntil([this] { return shown("EmptyList") == nullptr; }));
}

TEST_F(MainWindowTest, search_replaces_any_list_and_gives_it_back) {
    model_->newNote("Budget");
    open();
    for (const auto section : {LibrarySection::all, LibrarySection::todos, LibrarySection::cards}) {
        model_->section = section;
        EXPECT_EQ(shown("SearchResultsList"), nullptr);
        press(Qt::Key_F, Qt::ControlModifier);
        for (const int key : {Qt::Key_B, Qt::Key_U}) {
            press(key);
        }
        EXPECT_EQ(model_->query.value(), "bu");
        EXPECT_NE(shown("SearchResultsList"), nullptr);
        press(Qt::Key_Escape);
        EXPECT_EQ(model_->query.value(), "");
        EXPECT_TRUE(waitUntil([this] { return shown("SearchResultsList") == nullptr; }));
    }
}

TEST_F(MainWindowTest, arrows_select_and_delete_deletes) {
    const Uuid old = model_->newNote("Old");
    model_->update(old, false, [](Note& note) { note.created -= std::chrono::hours(1); });
    const Uuid fresh = model_->newNote("New");
    open();
    auto* const list = shown("NoteList");
    ASSERT_NE(list, nullptr);
    list->forceActiveFocus();
    ASSERT_EQ(model_->selection.value(), fresh);
    press(Qt::Key_Down);
    EXPECT_EQ(model_->selection.value(), old);
    press(Qt::Key_Delete);
    EXPECT_EQ(model_->note(old), nullptr);
    EXPECT_EQ(model_->selection.value(), fresh);
    EXPECT_NE(shown("ToastView"), nullptr);
}

TEST_F(MainWindowTest, shortcuts_of_the_menus_work) {
    open();
    press(Qt::Key_4, Qt::ControlModifier);
    EXPECT_EQ(model_->section.value(), LibrarySection::todos);
    press(Qt::Key_Q, Qt::ControlModifier);
    EXPECT_TRUE(waitUntil([this] { return quits_ == 1; }));
    press(Qt::Key_W, Qt::ControlModifier);
    EXPECT_TRUE(waitUntil([this] { return !main_->isVisible(); }));
}

TEST_F(MainWindowTest, every_control_has_a_name) {
    model_->newNote("Plan", {Block{.kind = BlockKind::todo, .text = "Write"}});
    open();
    for (const auto section : {LibrarySection::all, LibrarySection::todos}) {
        model_->section = section;
        for (const QQuickItem* item : main_->window().contentItem()->findChildren<QQuickItem*>()) {
            if (item->isVisible() && item->activeFocusOnTab()) {
                QAccessibleInterface* told = QAccessible::queryAccessibleInterface(const_cast<QQuickItem*>(item));
                ASSERT_NE(told, nullptr) << item->metaObject()->className();
                EXPECT_NE(told->text(QAccessible::Name), "") << item->metaObject()->className();
            }
        }
    }
}

} // namespace
} // namespace varnic
