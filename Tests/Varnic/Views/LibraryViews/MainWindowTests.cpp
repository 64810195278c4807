#include "Varnic/AppModel/ScratchModel.h"
#include "Varnic/Shell/AppDelegate.h"
#include "Varnic/Views/ItemTree.h"
#include "Varnic/Views/Program/MainWindow.h"
#include "Varnic/Views/Program/QuitDialog.h"
#include "Varnic/Views/Theme/Native/AccessibleControl.h"

#include <QAccessible>
#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QQmlComponent>
#include <QQuickItem>
#include <QTest>

#include <gmock/gmock.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <vector>

namespace varnic {
namespace {

/// The main window on a library of its own.
class MainWindowTest : public testing::Test {
protected:
    void open(const char* list = "noteList") {
        shell.emplace(*model);
        shell->hooks.quit = [this] { ++quits; };
        shell->notifications().isWindowInFront = [] { return true; };
        mainWindow.emplace(ViewContext{.model = *model, .shell = &*shell});
        model->desktop.closeWindow = [this] { mainWindow->window().close(); };
        model.load();
        mainWindow->activate();
        // Lists and page follow the first picture.
        ASSERT_TRUE(waitUntil([&] { return shown(list) != nullptr; }));
    }

    [[nodiscard]] std::vector<QQuickItem*> shownItems() const {
        std::vector<QQuickItem*> items;
        visitShown(mainWindow->window().contentItem(), [&items](QQuickItem* item) { items.push_back(item); });
        return items;
    }

    /// The item of that name if it shows, else null.
    [[nodiscard]] QQuickItem* shown(const char* name) const {
        const auto items = shownItems();
        const auto found = std::ranges::find(items, QString(name), &QQuickItem::objectName);
        return found == items.end() ? nullptr : *found;
    }

    /// What a loader holds under that name, which a popup's own item has not; else null.
    [[nodiscard]] QObject* loaded(const char* name) const {
        for (const QQuickItem* item : shownItems()) {
            auto* const object = item->property("item").value<QObject*>();
            if (object != nullptr && object->objectName() == name) {
                return object;
            }
        }
        return nullptr;
    }

    void press(int key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(&mainWindow->window(), static_cast<Qt::Key>(key), modifiers);
    }

    ScratchModel model;
    std::optional<AppDelegate> shell;
    std::optional<MainWindow> mainWindow;
    int quits = 0;
};

TEST_F(MainWindowTest, empty_library_says_what_to_do) {
    open();
    EXPECT_NE(shown("emptyList"), nullptr);
    press(Qt::Key_N, Qt::ControlModifier);
    EXPECT_EQ(model->notes().size(), 1U);
    EXPECT_TRUE(waitUntil([this] { return shown("emptyList") == nullptr; }));
}

TEST_F(MainWindowTest, search_replaces_any_list_and_gives_it_back) {
    model->newNote("Budget");
    open();
    for (const auto section : {LibrarySection::all, LibrarySection::todos, LibrarySection::cards}) {
        model->section = section;
        EXPECT_EQ(shown("searchResults"), nullptr);
        press(Qt::Key_F, Qt::ControlModifier);
        for (const int key : {Qt::Key_B, Qt::Key_U}) {
            press(key);
        }
        EXPECT_EQ(model->query.value(), "bu");
        EXPECT_NE(shown("searchResults"), nullptr);
        press(Qt::Key_Escape);
        EXPECT_EQ(model->query.value(), "");
        EXPECT_TRUE(waitUntil([this] { return shown("searchResults") == nullptr; }));
    }
}

TEST_F(MainWindowTest, keys_count_while_the_card_comes_in) {
    const auto deck = model->newNote("Capitals", {Block::flashcard("France", "Paris")});
    open();
    model->studyDeck = deck;
    QObject* const sheet = loaded("studySheet");
    ASSERT_NE(sheet, nullptr);
    QQuickItem* const card = mainWindow->window().activeFocusItem();
    press(Qt::Key_Tab);
    ASSERT_FALSE(sheet->property("opened").toBool());
    ASSERT_TRUE(waitUntil([&] { return sheet->property("opened").toBool(); }));
    EXPECT_NE(mainWindow->window().activeFocusItem(), card);
}

TEST_F(MainWindowTest, arrows_go_from_the_search_into_the_results_and_back) {
    model->newNote("Budget");
    open();
    press(Qt::Key_F, Qt::ControlModifier);
    press(Qt::Key_X);
    press(Qt::Key_Down); // there is nothing to go to
    press(Qt::Key_Backspace);
    press(Qt::Key_B);
    EXPECT_EQ(model->query.value(), "b");
    auto* const results = shown("searchResults");
    ASSERT_NE(results, nullptr);
    ASSERT_TRUE(waitUntil([&] { return !results->property("isEmpty").toBool(); }));
    model->selection = std::nullopt;
    press(Qt::Key_Down);
    EXPECT_TRUE(results->hasActiveFocus());
    press(Qt::Key_Down);
    press(Qt::Key_Up);
    EXPECT_TRUE(results->hasActiveFocus());
    press(Qt::Key_Return);
    EXPECT_EQ(model->selection.value(), model->notes().front().id);
    press(Qt::Key_Up);
    press(Qt::Key_U);
    EXPECT_EQ(model->query.value(), "bu");
}

TEST_F(MainWindowTest, deck_is_studied_by_keys) {
    const Uuid id =
        model->newNote("Capitals", {Block::flashcard("Peru?", "Lima"), Block::flashcard("Cuba?", "Havana")});
    model->section = LibrarySection::cards;
    open("deckList");
    const auto box = [&](std::size_t card) { return model->note(id)->blocks[card].card->box; };
    shown("deckList")->forceActiveFocus();
    press(Qt::Key_Space);
    ASSERT_TRUE(waitUntil([this] { return shown("studyCard") != nullptr; }));
    EXPECT_EQ(QAccessible::queryAccessibleInterface(shown("studyCard"))->role(), QAccessible::Button);
    press(Qt::Key_2);
    EXPECT_EQ(box(0), 1);
    press(Qt::Key_Space);
    ASSERT_TRUE(waitUntil([this] { return shown("answerFace") != nullptr; }));
    press(Qt::Key_2);
    EXPECT_EQ(box(0), 2);
    ASSERT_TRUE(waitUntil([this] { return shown("answerFace") == nullptr; }));
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(box(0), 1);
    press(Qt::Key_3);
    EXPECT_EQ(box(0), 3);
    press(Qt::Key_Space);
    press(Qt::Key_3);
    EXPECT_EQ(box(1), 3);
    EXPECT_TRUE(waitUntil([this] { return shown("studyCard") == nullptr; }));
    press(Qt::Key_Escape);
    EXPECT_EQ(model->studyDeck.value(), std::nullopt);
}

TEST_F(MainWindowTest, title_over_todos_is_a_button_that_opens_the_note) {
    const Uuid id = model->newNote("Plan", {Block{.kind = BlockKind::todo, .text = "Write"}});
    model->newNote("Other");
    model->section = LibrarySection::todos;
    open("todoList");
    const auto items = shownItems();
    const auto button = std::ranges::find_if(items, [](QQuickItem* item) {
        QAccessibleInterface* const told = QAccessible::queryAccessibleInterface(item);
        return told != nullptr && told->role() == QAccessible::Button && item->property("text") == "Plan";
    });
    ASSERT_NE(button, items.end());
    ASSERT_NE(model->selection.value(), id);
    QAccessible::queryAccessibleInterface(*button)->actionInterface()->doAction(
        QAccessibleActionInterface::pressAction());
    EXPECT_EQ(model->selection.value(), id);
}

/// It takes its words along, but no more orders.
TEST_F(MainWindowTest, notice_leaves_the_screen_as_it_was) {
    open();
    int undone = 0;
    model->flash({.text = "Deleted “Plan”", .symbol = "trash", .undo = [&undone] { ++undone; }});
    ASSERT_TRUE(waitUntil([this] { return shown("toast") != nullptr && shown("toast")->opacity() == 1; }));
    model->toast = std::nullopt;
    auto* const toast = shown("toast");
    ASSERT_NE(toast, nullptr);
    const qreal width = toast->implicitWidth();
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(undone, 0);
    EXPECT_EQ(toast->property("text"), "Deleted “Plan”");
    EXPECT_EQ(toast->implicitWidth(), width);
    EXPECT_TRUE(waitUntil([this] { return shown("toast") == nullptr; }));
    model->flash({.text = "Saved", .symbol = "checkmark"});
    EXPECT_TRUE(waitUntil([&] { return shown("toast") == toast && toast->opacity() == 1; }));
    EXPECT_EQ(toast->property("text"), "Saved");
}

TEST_F(MainWindowTest, notice_that_is_gone_does_not_come_into_a_later_window) {
    open();
    model->flash({.text = "Saved", .symbol = "checkmark"});
    ASSERT_TRUE(waitUntil([this] { return shown("toast") != nullptr; }));
    model->toast = std::nullopt;
    QQmlComponent component(&mainWindow->engine(), QUrl("qrc:/qt/qml/Varnic/LibraryViews/ToastPlace.qml"));
    const std::unique_ptr<QObject> made(component.create());
    auto* const place = qobject_cast<QQuickItem*>(made.get());
    ASSERT_NE(place, nullptr);
    const auto motions = place->childItems().front()->childItems().front()->children();
    const auto runs = [](const QObject* motion) { return motion->property("running").toBool(); };
    EXPECT_TRUE(std::ranges::any_of(motions, [](const QObject* one) { return one->property("running").isValid(); }));
    EXPECT_TRUE(std::ranges::none_of(motions, runs));
}

TEST_F(MainWindowTest, arrows_select_and_delete_deletes) {
    const Uuid old = model->newNote("Old");
    model->update(old, false, [](Note& note) { note.created -= std::chrono::hours(1); });
    const Uuid fresh = model->newNote("New");
    open();
    auto* const list = shown("noteList");
    ASSERT_NE(list, nullptr);
    list->forceActiveFocus();
    ASSERT_EQ(model->selection.value(), fresh);
    press(Qt::Key_Down);
    EXPECT_EQ(model->selection.value(), old);
    press(Qt::Key_Delete);
    EXPECT_EQ(model->note(old), nullptr);
    EXPECT_EQ(model->selection.value(), fresh);
    EXPECT_NE(shown("toast"), nullptr);
}

TEST_F(MainWindowTest, shortcuts_of_the_menus_work) {
    open();
    press(Qt::Key_4, Qt::ControlModifier);
    EXPECT_EQ(model->section.value(), LibrarySection::todos);
    press(Qt::Key_Q, Qt::ControlModifier);
    EXPECT_TRUE(waitUntil([this] { return quits == 1; }));
    press(Qt::Key_W, Qt::ControlModifier);
    EXPECT_TRUE(waitUntil([this] { return !mainWindow->isVisible(); }));
}

TEST_F(MainWindowTest, main_menu_opens_by_key_and_performs) {
    open();
    press(Qt::Key_F10);
    ASSERT_TRUE(waitUntil([this] { return shown("menuEntry") != nullptr; }));
    EXPECT_EQ(shown("menuEntry")->property("text"), "New Note");
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_EQ(model->notes().size(), 1U);
}

TEST_F(MainWindowTest, dividers_move_by_key) {
    open();
    auto* const divider = shown("sidebarDivider");
    ASSERT_NE(divider, nullptr);
    divider->forceActiveFocus();
    const qreal before = divider->x();
    press(Qt::Key_Right);
    press(Qt::Key_Right);
    press(Qt::Key_Left);
    EXPECT_TRUE(waitUntil([&] { return divider->x() == before + 10; }));
}

TEST_F(MainWindowTest, unreadable_library_is_not_shown_as_an_empty_one_and_can_be_tried_again) {
    model->newNote("Plan");
    model.restart();
    model.takeNotesAway();
    open();
    auto* const button = shown("tryAgain");
    ASSERT_NE(button, nullptr);
    EXPECT_EQ(shown("emptyList"), nullptr);
    model.putNotesBack();
    button->forceActiveFocus();
    press(Qt::Key_Space);
    EXPECT_TRUE(waitUntil([this] { return shown("tryAgain") == nullptr; }));
    EXPECT_EQ(model->notes().size(), 1U);
}

/// Answers with a button, or by closing the question, as Escape does.
TEST_F(MainWindowTest, question_at_the_end_takes_each_answer) {
    open();
    const QuitQuestion question{.title = "Couldn’t save “<b>Plan</b>”", .detail = "The disk is full."};
    std::vector<QuitQuestion::Choice> choices(QuitQuestion::choices.begin(), QuitQuestion::choices.end());
    choices.push_back({QuitQuestion::Answer::stay, ""});
    for (const QuitQuestion::Choice& choice : choices) {
        auto asking = QuitDialog::ask(&mainWindow->window(), question);
        auto* const dialog = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        EXPECT_EQ(dialog->text().toStdString(), question.title);
        const auto buttons = dialog->buttons();
        const auto button = std::ranges::find(buttons, QString(choice.text), &QAbstractButton::text);
        if (button == buttons.end()) {
            QTest::keyClick(dialog, Qt::Key_Escape);
        } else {
            (*button)->click();
        }
        EXPECT_EQ(QCoro::waitFor(asking), choice.answer) << choice.text;
    }
}

/// What assistive programs are told of an item and of all that it lies in.
QString toldAround(QQuickItem* item) {
    QString result;
    for (; item != nullptr; item = item->parentItem()) {
        if (QAccessibleInterface* const told = QAccessible::queryAccessibleInterface(item)) {
            result += told->text(QAccessible::Name) + '\n' + told->text(QAccessible::Description) + '\n';
            // What stands in place of a text that is still to be typed is told by that text's name.
            if (told->role() == QAccessible::EditableText) {
                result += item->property("placeholderText").toString() + item->property("placeholder").toString();
            }
        }
    }
    return result;
}

TEST_F(MainWindowTest, every_text_that_shows_is_told) {
    prepareAccessibility();
    CallRecord call;
    call.duration = 60;
    call.segments = {Segment(Speaker::them, 1, 2, "Hello")};
    call.problem = "Nobody was heard.";
    const std::vector<Block> blocks = {
        {.kind = BlockKind::heading, .text = "Aims"},
        {.kind = BlockKind::todo, .text = "Write", .owner = Speaker::them, .due = "tomorrow"},
        Block::flashcard("Why?", "Because"),
        Block::table({{"Who", "When"}, {"Ann", "Monday"}})};
    const Uuid note = model->newNote("Plan", blocks);
    open();
    const auto look = [this](const char* where) {
        for (QQuickItem* item : shownItems()) {
            const QString text = item->property("text").toString();
            // A single character is a mark, such as the "Q" of a question; these two are told in longer words.
            if (item->inherits("QQuickText") && text.size() > 1 && text != "Add their name" && text != "0% you") {
                EXPECT_TRUE(toldAround(item).contains(text, Qt::CaseInsensitive))
                    << where << ": " << text.toStdString();
            }
        }
    };
    for (const auto section : allLibrarySections) {
        model->section = section;
        look("a section");
    }
    model->query = "zzz";
    look("a search");
    model->query = "";
    model->update(note, false, [&](Note& changed) { changed.call = call; });
    look("a call");
    model->showTranscript = true;
    look("a transcript");
    model->showConsent = true;
    look("the reminder");
    model->showConsent = false;
    model->showSetup = true;
    look("the set-up");
    model->showSetup = false;
    model->remove(note);
    look("a toast");
}

} // namespace
} // namespace varnic
