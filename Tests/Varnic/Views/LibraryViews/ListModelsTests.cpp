#include "Varnic/AppModel/ScratchModel.h"
#include "Varnic/HandCapture.h"
#include "Varnic/Recording/RecordingController.h"
#include "Varnic/Views/LibraryViews/DeckListModel.h"
#include "Varnic/Views/LibraryViews/Library.h"
#include "Varnic/Views/LibraryViews/MainMenu.h"
#include "Varnic/Views/LibraryViews/NoteActions.h"
#include "Varnic/Views/LibraryViews/NoteListModel.h"
#include "Varnic/Views/LibraryViews/RecordAction.h"
#include "Varnic/Views/LibraryViews/SearchResultsModel.h"
#include "Varnic/Views/LibraryViews/SectionModel.h"
#include "Varnic/Views/LibraryViews/TodoListModel.h"
#include "VarnicCore/Library/NoteSearch.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>

namespace varnic {
namespace {

using testing::ElementsAre;

std::vector<std::string> column(const QAbstractListModel& rows, int role) {
    std::vector<std::string> values;
    for (int i = 0; i < rows.rowCount(); ++i) {
        values.push_back(rows.data(rows.index(i), role).toString().toStdString());
    }
    return values;
}

Block todo(const char* text) {
    return {.kind = BlockKind::todo, .text = text};
}

class ListModels : public testing::Test {
protected:
    Uuid add(std::string title, int minutesAgo, std::vector<Block> blocks = {}) {
        const Uuid id = model->newNote(std::move(title), std::move(blocks));
        model->update(id, false, [&](Note& note) { note.created -= std::chrono::minutes(minutesAgo); });
        return id;
    }

    void makeCall(Uuid id, std::vector<Segment> segments) {
        model->update(id, false, [&](Note& note) {
            note.call = CallRecord{.startedAt = note.created, .duration = 60, .segments = std::move(segments)};
        });
    }

    ScratchModel model;
};

TEST_F(ListModels, pinning_moves_one_row_and_the_selection_with_it) {
    add("Old", 10);
    add("New", 0);
    const Uuid old = model->notes().back().id;
    NoteListModel list;
    const QAbstractItemModelTester tester(&list, QAbstractItemModelTester::FailureReportingMode::Fatal);
    list.setModel(*model);
    model->selection = old;
    ASSERT_THAT(column(list, NoteListModel::title), ElementsAre("New", "Old"));
    EXPECT_EQ(list.currentRow(), 1);
    const QSignalSpy moved(&list, &QAbstractItemModel::rowsMoved);
    const QSignalSpy reset(&list, &QAbstractItemModel::modelReset);
    model->togglePin(old);
    EXPECT_THAT(column(list, NoteListModel::title), ElementsAre("Old", "New"));
    EXPECT_EQ(list.currentRow(), 0);
    EXPECT_EQ(moved.count(), 1);
    EXPECT_EQ(reset.count(), 0);
}

/// Each list has the title of the note in one row, which is all that changes and stays where it is.
TEST_F(ListModels, typing_in_a_title_changes_one_row_of_each_list) {
    for (int i = 0; i < 3; ++i) {
        add("Plan " + std::to_string(i), i, {todo("Write"), todo("Send"), Block::flashcard("Q", "A")});
    }
    NoteListModel notes;
    TodoListModel todos;
    DeckListModel decks;
    const auto check = [this](auto& list, int titleRole) {
        list.setModel(*model);
        const QSignalSpy changed(&list, &QAbstractItemModel::dataChanged);
        const QSignalSpy moved(&list, &QAbstractItemModel::rowsMoved);
        const QSignalSpy removed(&list, &QAbstractItemModel::rowsRemoved);
        const QSignalSpy reset(&list, &QAbstractItemModel::modelReset);
        model->update(model->notes().front().id, false, [](Note& note) { note.title += "x"; });
        EXPECT_EQ(changed.count(), 1);
        EXPECT_EQ(moved.count() + removed.count() + reset.count(), 0);
        EXPECT_THAT(column(list, titleRole), testing::Contains(model->notes().front().title));
    };
    check(notes, NoteListModel::title);
    check(todos, TodoListModel::text);
    check(decks, DeckListModel::title);
}

/// What moves a note's rows in one list or takes them out of it.
TEST_F(ListModels, lists_follow_what_moves_their_rows) {
    const Uuid old = add("Old", 10, {todo("Write"), Block::flashcard("Q", "A")});
    add("New", 0, {todo("Send"), Block::flashcard("Q", "A")});
    NoteListModel notes;
    TodoListModel todos;
    DeckListModel decks;
    notes.setModel(*model);
    todos.setModel(*model);
    decks.setModel(*model);
    model->update(old, false, [](Note& note) { note.created += std::chrono::hours(1); });
    EXPECT_THAT(column(notes, NoteListModel::title), ElementsAre("Old", "New"));
    EXPECT_THAT(column(todos, TodoListModel::text), ElementsAre("Old", "Write", "New", "Send"));
    model->update(old, false, [](Note& note) {
        note.created -= std::chrono::hours(1);
        note.blocks.front().due = "tomorrow";
    });
    EXPECT_THAT(column(notes, NoteListModel::title), ElementsAre("New", "Old"));
    EXPECT_THAT(column(todos, TodoListModel::text), ElementsAre("Old", "Write", "New", "Send"));
    EXPECT_THAT(column(decks, DeckListModel::title), ElementsAre("New", "Old"));
    model->update(old, false, [](Note& note) { note.title = "Better"; });
    EXPECT_THAT(column(decks, DeckListModel::title), ElementsAre("Better", "New"));
    model->section = LibrarySection::notes;
    makeCall(old, {});
    EXPECT_THAT(column(notes, NoteListModel::title), ElementsAre("New"));
    model->update(old, false, [](Note& note) { note.blocks = {Block{}}; });
    EXPECT_THAT(column(todos, TodoListModel::text), ElementsAre("New", "Send"));
    EXPECT_THAT(column(decks, DeckListModel::title), ElementsAre("New"));
    model->remove(model->notes().front().id);
    EXPECT_THAT(column(notes, NoteListModel::title), testing::IsEmpty());
    EXPECT_THAT(column(todos, TodoListModel::text), testing::IsEmpty());
    EXPECT_THAT(column(decks, DeckListModel::title), testing::IsEmpty());
}

TEST_F(ListModels, dates_change_at_midnight) {
    const Uuid id = add("Plan", 0);
    model->update(id, false, [](Note& note) { note.modified = parseDate("2026-03-10T08:05:00Z"); });
    Date now = parseDate("2026-03-10T23:59:59Z");
    NoteListModel list;
    list.now = [&now] { return now; };
    list.setModel(*model);
    const QSignalSpy changed(&list, &QAbstractItemModel::dataChanged);
    list.followCalendar();
    EXPECT_THAT(column(list, NoteListModel::date), ElementsAre("08:05"));
    EXPECT_EQ(changed.count(), 0);
    now = parseDate("2026-03-11T00:00:00Z");
    list.followCalendar();
    EXPECT_THAT(column(list, NoteListModel::date), ElementsAre("Yesterday"));
    EXPECT_EQ(changed.count(), 1);
}

TEST_F(ListModels, keys_stop_at_the_ends) {
    add("B", 10);
    add("A", 0);
    NoteListModel list;
    list.setModel(*model);
    model->selection = std::nullopt;
    EXPECT_TRUE(list.moveByKey(Qt::Key_Down, 5));
    EXPECT_EQ(list.currentRow(), 0);
    list.moveByKey(Qt::Key_PageDown, 5);
    EXPECT_EQ(list.currentRow(), 1);
    list.moveByKey(Qt::Key_Down, 5);
    EXPECT_EQ(list.currentRow(), 1);
    list.moveByKey(Qt::Key_Home, 5);
    EXPECT_EQ(list.currentRow(), 0);
    EXPECT_FALSE(list.moveByKey(Qt::Key_A, 5));
}

TEST_F(ListModels, running_recording_stands_first_and_has_no_menu) {
    add("Plan", 0);
    NoteListModel list;
    list.setModel(*model);
    RecordAction record(*model);
    model->recorder().makeRecognizer = [](auto&&...) { return nullptr; };
    const auto capture = std::make_shared<HandCapture>(std::vector{Speaker::you});
    QCoro::waitFor(model->recorder().start(Uuid::random(), model.folder() / "audio", capture, std::nullopt, "Zoom"));
    ASSERT_EQ(list.count(), 2);
    EXPECT_TRUE(list.data(list.index(0), NoteListModel::isLive).toBool());
    list.select(0);
    EXPECT_EQ(list.currentId(), "");
    EXPECT_EQ(record.accessibleName(), "Stop recording");
    EXPECT_EQ(record.stopText(), "Stop · 0:00");
    EXPECT_TRUE(record.isEnabled());
    model->recorder().discard();
    EXPECT_EQ(list.count(), 1);
    EXPECT_EQ(record.accessibleName(), "Record call");
}

TEST_F(ListModels, menu_offers_to_transcribe_what_has_sound_and_is_not_being_written_down) {
    const Uuid id = add("Call", 0);
    makeCall(id, {});
    model->update(id, false, [](Note& note) { note.call->tracks = {Speaker::them}; });
    NoteActions menu(*model);
    menu.setNoteId(QString::fromStdString(id.text()));
    EXPECT_FALSE(menu.hasAudio());
    std::filesystem::create_directories(model->audioFolder(id));
    std::ofstream(model->audioFolder(id) / "them.wav") << "sound";
    menu.setNoteId(QString::fromStdString(id.text()));
    EXPECT_TRUE(menu.canTranscribe());
    model->processing = std::map<Uuid, ProcessingStage>{{id, ProcessingStage::transcribing(0)}};
    EXPECT_TRUE(menu.hasAudio());
    EXPECT_FALSE(menu.canTranscribe());
}

TEST_F(ListModels, record_does_nothing_while_stopping) {
    RecordAction record(*model);
    std::vector<bool> enabled;
    QObject::connect(&record, &RecordAction::stateChanged, &record, [&] { enabled.push_back(record.isEnabled()); });
    const auto capture = std::make_shared<HandCapture>(std::vector{Speaker::you});
    QCoro::waitFor(model->recorder().start(Uuid::random(), model.folder() / "audio", capture, std::nullopt, "Zoom"));
    QCoro::waitFor(model->recorder().stop());
    // Starting, recording, stopping, idle.
    EXPECT_THAT(enabled, ElementsAre(false, true, false, true));
}

TEST_F(ListModels, search_shows_titles_and_hits_and_opens_a_moment) {
    const Uuid call = add("Budget call", 0);
    makeCall(call, {{Speaker::them, 65, 70, "The budget is <fixed> now"}});
    add("Something else", 5);
    SearchResultsModel results;
    const QAbstractItemModelTester tester(&results, QAbstractItemModelTester::FailureReportingMode::Fatal);
    results.setModel(*model);
    EXPECT_EQ(results.count(), 0);
    QSignalSpy changed(&results, &SearchResultsModel::countChanged);
    model->query = std::string("BUDGET");
    ASSERT_TRUE(changed.wait());
    EXPECT_THAT(column(results, SearchResultsModel::text),
                ElementsAre("Budget call", "Budget call", "Them: The budget is <fixed> now"));
    EXPECT_THAT(column(results, SearchResultsModel::isHeader), ElementsAre("true", "false", "false"));
    EXPECT_THAT(column(results, SearchResultsModel::stamp), ElementsAre("", "", "1:05"));
    EXPECT_THAT(column(results, SearchResultsModel::markedText).back(),
                "Them: The <mark>budget</mark> is &lt;fixed&gt; now");
    Library library(*model);
    library.openHit(QString::fromStdString(call.text()),
                    results.data(results.index(2), SearchResultsModel::time).toDouble());
    EXPECT_EQ(model->selection.value(), call);
    EXPECT_EQ(model->seek.value(), (AppModel::Seek{call, 65}));
}

/// Rows are made in the order in which they are asked for, and yet are those of a search that makes all.
TEST_F(ListModels, search_results_are_the_same_in_any_order) {
    for (int i = 0; i < 20; ++i) {
        makeCall(add("Plan " + std::to_string(i), i),
                 {{Speaker::them, 65, 70, "The plan"}, {Speaker::you, 75, 80, "Plan?"}});
    }
    SearchResultsModel results;
    results.setModel(*model);
    model->query = std::string("plan");
    ASSERT_TRUE(waitUntil([&] { return !results.isSearching(); }));
    const std::vector<Note> notes(model->notes().begin(), model->notes().end());
    std::vector<std::string> rows;
    for (const NoteMatch& match : NoteSearch::search("plan", notes)) {
        rows.push_back(match.note->title);
        for (const SearchHit& hit : match.hits) {
            rows.push_back(hit.snippet);
        }
    }
    ASSERT_EQ(results.count(), std::ssize(rows));
    for (int i = 0; i < results.count(); ++i) {
        const int row = i * 37 % results.count();
        EXPECT_EQ(results.data(results.index(row), SearchResultsModel::text).toString().toStdString(),
                  rows[static_cast<std::size_t>(row)]);
    }
}

TEST_F(ListModels, decks_count_their_cards) {
    add("One", 0, {Block::flashcard("Q", "A")});
    add("Two", 5, {Block::flashcard("Q", "A"), Block::flashcard("R", "A")});
    DeckListModel decks;
    decks.setModel(*model);
    EXPECT_THAT(column(decks, DeckListModel::title), ElementsAre("Two", "One"));
    EXPECT_THAT(column(decks, DeckListModel::total), ElementsAre("2 cards", "1 card"));
    EXPECT_THAT(column(decks, DeckListModel::due), ElementsAre("2 due", "1 due"));
    EXPECT_THAT(column(decks, DeckListModel::studyText), ElementsAre("Study 2", "Study 1"));
}

TEST_F(ListModels, badges_count_and_hide_at_none) {
    SectionModel sections;
    sections.setModel(*model);
    EXPECT_THAT(column(sections, SectionModel::badge), ElementsAre("", "", "", ""));
    EXPECT_THAT(column(sections, SectionModel::title), ElementsAre("All Notes", "Calls", "To-dos", "Flashcards"));
    QSignalSpy changed(&sections, &QAbstractItemModel::dataChanged);
    add("Plan", 0, {todo("Write"), Block::flashcard("Q", "A"), Block::flashcard("R", "A")});
    ASSERT_TRUE(changed.count() > 0 || changed.wait());
    EXPECT_THAT(column(sections, SectionModel::badge), ElementsAre("", "", "1", "2"));
}

TEST_F(ListModels, menu_tells_a_pages_keys_without_taking_them_from_it) {
    const MainMenu menu(*model, menus(*model, [] {}).window);
    const auto captions = column(menu, MainMenu::caption);
    const auto row = static_cast<std::size_t>(std::ranges::find(captions, "Show Transcript") - captions.begin());
    EXPECT_EQ(column(menu, MainMenu::shortcutText).at(row), "Alt+T");
    EXPECT_EQ(column(menu, MainMenu::shortcut).at(row), "");
    EXPECT_EQ(column(menu, MainMenu::shortcut).front(), "Ctrl+N");
}

} // namespace
} // namespace varnic
