#include "Varnic/Views/Note/NoteModel.h"
#include "Varnic/Views/NotePage/CallPlayer.h"
#include "Varnic/Views/NotePage/NotePageTest.h"
#include "Varnic/Views/NotePage/SummaryModel.h"
#include "Varnic/Views/NotePage/TranscriptModel.h"
#include "VarnicCore/Audio/AudioMix.h"
#include "VarnicCore/Models/CallProblem.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <set>
#include <tuple>

namespace varnic {
namespace {

TEST_F(NotePageTest, typing_in_the_title_saves_it) {
    const Uuid id = addNote("");
    const Date before = model->note(id)->modified;
    open(id);
    auto* const title = find<QQuickItem>("title");
    ASSERT_NE(title, nullptr);
    title->forceActiveFocus();
    type("Plan");
    EXPECT_EQ(model->note(id)->title, "Plan");
    EXPECT_GT(model->note(id)->modified, before);
    ASSERT_EQ(model.stored().size(), 1U);
    EXPECT_EQ(model.stored().front().title, "Plan");
}

TEST_F(NotePageTest, edits_from_elsewhere_leave_the_cursor_where_one_types) {
    const Uuid id = addNote("Plan");
    open(id);
    find<QQuickItem>("title")->forceActiveFocus();
    QTest::keyClick(&view, Qt::Key_End);
    type(" B");
    model->update(id, false, [](Note& note) { note.title = "Our " + note.title; });
    model->update(id, false, [](Note& note) { note.title += " \xF0\x9F\x98\x80"; });
    type("C");
    EXPECT_EQ(model->note(id)->title, "Our Plan BC \xF0\x9F\x98\x80");
}

TEST_F(NotePageTest, lost_sound_hides_no_summary) {
    const std::string loss = CallProblem::loss(Speaker::you, 3, 5, "The disk is full.");
    model->settings.ai = AISettings{.enabled = true};
    const Uuid id = addCall({line(Speaker::them, 0, 1, "Hello.")});
    open(id);
    for (const auto& [problem, showsAI] : std::map<std::string, bool>{{loss, true}, {nobodyHeard, false}}) {
        model->update(id, true, [&](Note& note) { note.call->problem = problem; });
        const auto* const summary = only<SummaryModel>();
        ASSERT_NE(summary, nullptr);
        EXPECT_EQ(summary->problem().toStdString(), problem);
        EXPECT_EQ(summary->showsAI(), showsAI) << problem;
    }
}

TEST_F(NotePageTest, other_languages_say_what_their_summary_takes) {
    const Uuid id = addCall({line(Speaker::them, 0, 1, "Guten Tag.")});
    open(id);
    const auto note = [this] { return only<SummaryModel>()->languageNote().toStdString(); };
    EXPECT_EQ(note(), "");
    model->update(id, true, [](Note& call) {
        call.call->language = "de";
        call.call->digest = CallDigest();
    });
    EXPECT_EQ(note(),
              "Varnic finds to-dos in English only. A summary in German takes AI, which is turned on in Settings.");
    EXPECT_EQ(find<QQuickItem>("languageNote")->property("text").toString().toStdString(), note());
    EXPECT_EQ(find<QQuickItem>("emailActions"), nullptr) << "none is drafted";
    model->settings.ai = AISettings{.enabled = true};
    EXPECT_EQ(note(), "Varnic finds to-dos in English only. A summary in German takes AI.");
    model->update(id, true, [](Note& call) { call.call->digest = CallDigest{.isLocal = false}; });
    EXPECT_EQ(note(), "");
    EXPECT_NE(find<QQuickItem>("emailActions"), nullptr);
}

TEST_F(NotePageTest, return_in_the_title_goes_to_the_first_block_and_breaks_no_line) {
    const Uuid id = addNote("Plan", {Block{.text = "One"}, Block{.text = "Two"}});
    open(id);
    const auto pressReturn = [this] {
        QCoreApplication::processEvents(); // a new note has asked for the focus
        find<QQuickItem>("title")->forceActiveFocus();
        QTest::keyClick(&view, Qt::Key_Return);
    };
    const auto focused = [this] { return view.activeFocusItem()->property("blockId").toString().toStdString(); };
    pressReturn();
    EXPECT_EQ(model->note(id)->title, "Plan");
    EXPECT_EQ(focused(), model->note(id)->blocks.front().id.text());
    EXPECT_EQ(model->note(id)->blocks.size(), 2U);

    model->update(id, false, [](Note& note) { note.blocks.clear(); });
    pressReturn();
    ASSERT_EQ(model->note(id)->blocks.size(), 1U) << "somewhere to type";
    EXPECT_EQ(focused(), model->note(id)->blocks.front().id.text());
}

TEST_F(NotePageTest, typing_does_not_go_on_in_the_title_of_a_note_that_comes_up_by_itself) {
    const Uuid typed = addNote("Plan");
    const Uuid call = addCall({line(Speaker::them, 0, 1, "Hello.")});
    model->focusBlock = std::nullopt; // a new note asks for it
    open(typed);
    find<QQuickItem>("title")->forceActiveFocus();
    type("a");
    ASSERT_NE(model->note(typed)->title, "Plan");
    open(call);
    QCoreApplication::processEvents();
    type("b");
    EXPECT_EQ(model->note(call)->title, "Call");
}

TEST_F(NotePageTest, a_page_that_is_longer_than_its_window_opens_at_its_top) {
    const Uuid first = addCall({Segment(Speaker::you, 0, 1, "Hello.")});
    const Uuid second = addCall({Segment(Speaker::them, 0, 1, "Goodbye.")});
    for (const Uuid& id : {first, second}) {
        model->update(id, true, [](Note& note) {
            constexpr std::size_t lines = 24;
            note.blocks.resize(lines);
            for (Block& block : note.blocks) {
                block.id = Uuid::random();
                block.text = "A line of its own.";
            }
        });
    }
    for (const Uuid& id : {first, second}) {
        open(id);
        view.grabWindow(); // lays all out
        const auto* const sheet = find<QQuickItem>("sheet");
        EXPECT_LT(sheet->property("originY").toReal(), 0);
        EXPECT_EQ(sheet->property("contentY").toReal(), sheet->property("originY").toReal());
    }
}

TEST_F(NotePageTest, footer_counts_words) {
    const Uuid id = addNote("");
    open(id);
    auto* const note = only<NoteModel>();
    EXPECT_EQ(note->footer(), QStringList({"Edited now"}));
    for (const auto& [title, words] : {std::pair("one", "1 word"), std::pair("one two", "2 words")}) {
        model->update(id, false, [text = title](Note& edited) { edited.title = text; });
        EXPECT_EQ(note->footer(), QStringList({words, "1 min read", "Edited now"}));
    }
}

TEST_F(NotePageTest, a_note_that_is_deleted_while_shown_leaves_a_page_that_works) {
    const Uuid id = addNote("Plan");
    open(id);
    model->remove(id);
    EXPECT_EQ(model->selection.value(), std::nullopt);
    EXPECT_EQ(only<NoteModel>(), nullptr);
    model->selection = id; // a list that has not caught up
    ASSERT_NE(only<NoteModel>(), nullptr);
    EXPECT_EQ(only<NoteModel>()->title(), "");
    find<QQuickItem>("title")->forceActiveFocus();
    type("x");
    EXPECT_TRUE(model->notes().empty());
}

TEST_F(NotePageTest, a_call_says_when_it_was_and_who_spoke) {
    open(addCall({line(Speaker::you, 0, 3, "Hello."), line(Speaker::them, 3, 4, "Hello.")}));
    const auto* const note = only<NoteModel>();
    EXPECT_EQ(note->eyebrow(), "Tue 10 Mar, 09:30 · 1 min");
    EXPECT_EQ(note->sharePercent(), 75);
    EXPECT_NEAR(find<QQuickItem>("yourBar")->width(), 64 * 0.75 - 0.75, 1e-9);
}

TEST_F(NotePageTest, the_share_bar_never_vanishes) {
    for (const auto& [who, percent] : {std::pair(Speaker::you, 100), std::pair(Speaker::them, 0)}) {
        open(addCall({line(who, 0, 3, "Hello.")}));
        EXPECT_EQ(only<NoteModel>()->sharePercent(), percent);
        EXPECT_GE(find<QQuickItem>("yourBar")->width(), 2);
    }
}

TEST_F(NotePageTest, a_typed_name_stands_in_the_transcript) {
    const Uuid id = addCall({line(Speaker::them, 0, 3, "Hello.")});
    open(id);
    find<QQuickItem>("themName")->forceActiveFocus();
    type("Priya");
    EXPECT_EQ(model->note(id)->call->themName, "Priya");
    EXPECT_EQ(column(*only<TranscriptModel>(), TranscriptModel::name), QStringList({"Priya"}));
}

TEST_F(NotePageTest, a_pasted_name_loses_its_line_breaks) {
    const Uuid id = addCall({line(Speaker::them, 0, 3, "Hello.")});
    open(id);
    auto* const field = find<QQuickItem>("themName");
    field->forceActiveFocus();
    for (const auto& [pasted, name] : {std::pair("Priya\n", "Priya"), std::pair("Priya\r\nRao\n\n", "Priya Rao")}) {
        QMetaObject::invokeMethod(field, "selectAll");
        QGuiApplication::clipboard()->setText(pasted);
        QTest::keySequence(&view, QKeySequence::Paste);
        EXPECT_EQ(model->note(id)->call->themName, name);
    }
    EXPECT_EQ(field->property("text").toString().toStdString(), "Priya Rao");
}

TEST_F(NotePageTest, a_pasted_title_loses_its_line_breaks) {
    const Uuid id = addNote("Plan", {Block{.text = "Ship"}});
    open(id);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !model->focusBlock.value(); }));
    find<QQuickItem>("title")->forceActiveFocus();
    for (const auto& [pasted, title] :
         {std::pair("Next\r\nsteps\n", "Next steps"), std::pair("Next steps\n", "Next steps")}) {
        QTest::keySequence(&view, QKeySequence::SelectAll);
        QGuiApplication::clipboard()->setText(pasted);
        QTest::keySequence(&view, QKeySequence::Paste);
        EXPECT_EQ(model->note(id)->title, title);
        EXPECT_EQ(view.activeFocusItem()->property("text").toString().toStdString(), title);
    }
    type("!");
    EXPECT_EQ(model->note(id)->title, "Next steps!");
}

TEST_F(NotePageTest, space_ticks_a_todo) {
    const Uuid id = addNote("Plan", {Block{.kind = BlockKind::todo, .text = "Ship"}});
    open(id);
    find<QQuickItem>("tick")->forceActiveFocus();
    QTest::keyClick(&view, Qt::Key_Space);
    EXPECT_TRUE(model->note(id)->blocks.front().done);
}

TEST_F(NotePageTest, a_summary_that_was_replaced_can_come_back) {
    const Uuid id = addCall({line(Speaker::you, 1, 4, "We decided to ship on Friday.")});
    open(id);
    auto* const note = only<NoteModel>();
    EXPECT_FALSE(note->hasEarlier());
    model->useLocalSummary(id);
    EXPECT_TRUE(note->hasEarlier());
    model->aiRunning = std::set{id};
    EXPECT_FALSE(note->canBringBackEarlier());
    model->aiRunning = std::set<Uuid>();
    EXPECT_TRUE(note->canBringBackEarlier());
    note->bringBackEarlier();
    EXPECT_TRUE(waitUntil([&] { return !model->note(id)->call->digest; }));
}

TEST_F(NotePageTest, the_export_menu_is_used_by_keys_alone) {
    std::string asked;
    model->desktop.chooseDestination = [&asked](std::string name) -> QCoro::Task<Desktop::File> {
        asked = std::move(name);
        co_return std::nullopt;
    };
    open(addNote("Plan"));
    find<QQuickItem>("export")->forceActiveFocus();
    QTest::keyClick(&view, Qt::Key_Space);
    QTest::keyClick(&view, Qt::Key_Down);
    QTest::keyClick(&view, Qt::Key_Down);
    QTest::keyClick(&view, Qt::Key_Return);
    EXPECT_EQ(asked, "Plan.pdf");
}

TEST_F(NotePageTest, alt_t_shows_the_transcript_of_a_call) {
    open(addNote("Plan"));
    QTest::keyClick(&view, Qt::Key_T, Qt::AltModifier);
    EXPECT_FALSE(model->showTranscript.value());
    open(addCall({}));
    find<QQuickItem>("title")->forceActiveFocus();
    QTest::keyClick(&view, Qt::Key_T, Qt::AltModifier);
    EXPECT_TRUE(model->showTranscript.value());
    EXPECT_EQ(only<NoteModel>()->title(), "Call") << "no field takes it";
}

TEST_F(NotePageTest, a_problem_of_speech_recognition_leads_to_its_settings) {
    std::optional<SettingsRow> shown;
    model->desktop.openSettings = [&shown](SettingsRow row) { shown = row; };
    const Uuid id = addCall({});
    open(id);
    for (const auto& [problem, leads] :
         std::map<std::string, bool>{{"Speech Recognition is turned off for Varnic.", true}, {nobodyHeard, false}}) {
        model->update(id, true, [&](Note& note) { note.call->problem = problem; });
        EXPECT_EQ(find<QQuickItem>("openSettings")->isVisible(), leads) << problem;
    }
    model->update(id, true, [](Note& note) { note.call->problem = "Speech Recognition is turned off for Varnic."; });
    find<QQuickItem>("openSettings")->forceActiveFocus();
    QTest::keyClick(&view, Qt::Key_Space);
    EXPECT_EQ(shown, SettingsRow::speech);
    model->processing = {{id, ProcessingStage::transcribing(0)}};
    EXPECT_FALSE(find<QQuickItem>("openSettings")->isVisible());
}

TEST_F(NotePageTest, the_toolbar_has_labels_where_they_fit) {
    open(addCall({line(Speaker::you, 0, 1, "One.")}));
    const auto* const button = find<QQuickItem>("transcriptButton");
    const auto* const toolbar = button->parentItem();
    for (const auto& [width, labelled] : std::map<int, bool>{{1000, true}, {200, false}}) {
        view.resize(width, 800);
        ASSERT_TRUE(QTest::qWaitFor([&, wide = width] { return view.rootObject()->width() == wide; }));
        EXPECT_EQ(button->property("labelled").toBool(), labelled) << width;
        EXPECT_GE(toolbar->x(), 0) << "nothing is cut off";
        EXPECT_EQ(button->property("text"), "Transcript") << "its name stays";
    }
}

TEST_F(NotePageTest, buttons_have_labels_where_they_fit_in_any_language) {
    const Uuid id = addCall({});
    model->update(id, true, [](Note& note) { note.call->digest = CallDigest(); });
    open(id);
    for (const char* const name : {"addBlockBar", "emailActions"}) {
        auto* const bar = find<QQuickItem>(name);
        ASSERT_NE(bar, nullptr) << name;
        const QList<QQuickItem*> buttons = bar->childItems();
        const auto first = std::ranges::find_if(
            buttons, [](const QQuickItem* item) { return item->inherits("QQuickAbstractButton"); });
        for (const char* const label : {"Add", "Abschnittsüberschrift"}) {
            (*first)->setProperty("text", label);
            std::set<bool> labelled;
            for (int width = 1200; width >= 360; width -= 20) {
                view.resize(width, 800);
                ASSERT_TRUE(QTest::qWaitFor([&] { return view.rootObject()->width() == width; }));
                view.grabWindow(); // after which all is in its place
                labelled.insert((*first)->property("labelled").toBool());
                EXPECT_LE(bar->mapToScene({bar->childrenRect().right(), 0}).x(), width) << name << ", " << label;
                EXPECT_TRUE(!*labelled.rbegin() || bar->childrenRect().height() < 30) << name << ": in one line";
            }
            EXPECT_EQ(labelled.size(), 2U) << name << ", " << label;
        }
    }
}

TEST_F(NotePageTest, a_speed_is_for_all_calls_and_remembered) {
    open(addCall({}));
    EXPECT_EQ(CallPlayer::speeds(), QStringList({"0.75×", "1×", "1.25×", "1.5×", "1.75×", "2×"}));
    EXPECT_EQ(only<CallPlayer>()->speedText(), "1×");
    only<CallPlayer>()->setSpeedIndex(3);
    open(addCall({}));
    EXPECT_EQ(only<CallPlayer>()->speedText(), "1.5×");
    EXPECT_EQ(only<CallPlayer>()->speedIndex(), 3);
    model->settings.store().setValue("window/playbackSpeed", "fast");
    open(addCall({}));
    EXPECT_EQ(only<CallPlayer>()->speedText(), "1×") << "what is no speed is none";
}

TEST_F(NotePageTest, a_drag_along_the_timeline_tells_what_was_said_and_goes_there) {
    openCallWithAudio({line(Speaker::you, 0, 20, "Good morning."), line(Speaker::them, 30, 61, "Let us begin.")});
    auto* const timeline = find<QQuickItem>("timeline");
    const auto at = [&](double part) { return timeline->mapToScene({timeline->width() * part, 20}).toPoint(); };
    QTest::mouseMove(&view, at(0.1));
    EXPECT_EQ(find("hoverWords")->property("text"), "Good morning.");
    QTest::mouseMove(&view, at(0.4));
    EXPECT_FALSE(find<QQuickItem>("hoverWords")->isVisible()) << "nobody speaks";
    QTest::mousePress(&view, Qt::LeftButton, {}, at(0.1));
    for (const double part : {0.2, 0.4, 0.6, 0.75}) {
        QTest::mouseMove(&view, at(part));
    }
    EXPECT_EQ(find("hoverWords")->property("text"), "Let us begin.");
    EXPECT_NEAR(find<QQuickItem>("position")->x(), timeline->width() * 0.75, 2);
    EXPECT_EQ(only<CallPlayer>()->time(), 0);
    QTest::mouseRelease(&view, Qt::LeftButton, {}, at(0.75));
    EXPECT_NEAR(only<CallPlayer>()->time(), 61 * 0.75, 0.5);
}

TEST_F(NotePageTest, keys_go_ten_seconds_on_or_back_within_the_call) {
    openCallWithAudio({line(Speaker::you, 0, 20, "Good morning.")});
    find<QQuickItem>("title")->forceActiveFocus();
    auto* const player = only<CallPlayer>();
    for (const auto& [from, key, to] : {std::tuple(30, Qt::Key_Left, 20), std::tuple(30, Qt::Key_Right, 40),
                                        std::tuple(4, Qt::Key_Left, 0), std::tuple(55, Qt::Key_Right, 61)}) {
        player->seek(from, false);
        QTest::keyClick(&view, key, Qt::AltModifier);
        EXPECT_EQ(player->time(), to);
        EXPECT_FALSE(player->playing());
    }
}

TEST_F(NotePageTest, long_names_push_nothing_out_of_a_narrow_page) {
    model->settings.yourName = "Aleksandra-Magdalena";
    const Uuid id = addCall({line(Speaker::you, 0, 3, "Hello.")});
    model->renameThem(id, "Priya Balasubramaniam-Venkataraman of the Northern Works");
    open(id);
    for (const int width : {1000, 380}) {
        view.resize(width, 800);
        ASSERT_TRUE(QTest::qWaitFor([&] { return view.rootObject()->width() == width; }));
        const auto* const title = find<QQuickItem>("title");
        const qreal edge = title->mapToScene({title->width(), 0}).x();
        ASSERT_LT(edge, width);
        for (const char* name : {"yourBar", "stamp", "timeline"}) {
            const auto* const item = find<QQuickItem>(name);
            EXPECT_LE(item->mapToScene({item->width(), 0}).x(), edge) << name << " at " << width;
        }
        EXPECT_GE(find<QQuickItem>("themName")->width(), 86);
    }
}

TEST_F(NotePageTest, a_long_name_shows_its_beginning_unless_it_is_typed_in) {
    const Uuid id = addCall({});
    open(id);
    auto* const name = find<QQuickItem>("themName");
    const auto shown = [&] { return name->property("cursorRectangle").toRectF().x(); };
    model->renameThem(id, "Priya Balasubramaniam-Venkataraman of the Northern Works");
    EXPECT_EQ(name->width(), 160);
    EXPECT_EQ(name->property("cursorPosition"), 0);
    name->forceActiveFocus();
    QTest::keyClick(&view, Qt::Key_End);
    EXPECT_GT(shown(), 100);
    type("!");
    EXPECT_EQ(model->note(id)->call->themName.back(), '!');
    find<QQuickItem>("title")->forceActiveFocus();
    EXPECT_LT(shown(), 1);
}

/// Whether an item shows a text that ends in this.
bool shows(const QQuickItem* item, const QString& end) {
    return item->property("text").toString().endsWith(end) ||
           std::ranges::any_of(item->childItems(), [&end](const QQuickItem* child) { return shows(child, end); });
}

TEST_F(NotePageTest, keys_scroll_the_page_when_no_field_is_in_use) {
    std::vector<Block> blocks(160, Block{.text = "A line."});
    open(addNote("Plan", std::move(blocks)));
    auto* const sheet = find<QQuickItem>("sheet");
    // They are counted a moment later, and then take a line.
    ASSERT_TRUE(QTest::qWaitFor([sheet] { return shows(sheet, " words"); }));
    view.grabWindow();
    const auto place = [sheet] { return sheet->property("contentY").toReal() - sheet->property("originY").toReal(); };
    const qreal end = sheet->property("contentHeight").toReal() - sheet->height();
    ASSERT_GT(end, 2 * sheet->height());

    find<QQuickItem>("title")->forceActiveFocus();
    QTest::keyClick(&view, Qt::Key_PageDown);
    EXPECT_EQ(place(), 0) << "the field's own keys";

    find<QQuickItem>("export")->forceActiveFocus(); // a button takes none of them
    QTest::keyClick(&view, Qt::Key_Down);
    const qreal step = place();
    EXPECT_GT(step, 20);
    QTest::keyClick(&view, Qt::Key_PageDown);
    EXPECT_GT(place(), step + sheet->height() / 2);
    EXPECT_LT(place(), step + sheet->height()) << "some lines stay";
    QTest::keyClick(&view, Qt::Key_PageUp);
    EXPECT_EQ(place(), step);
    QTest::keyClick(&view, Qt::Key_End);
    EXPECT_EQ(place(), end);
    QTest::keyClick(&view, Qt::Key_PageDown);
    EXPECT_EQ(place(), end);
    QTest::keyClick(&view, Qt::Key_Home);
    EXPECT_EQ(place(), 0);
    QTest::keyClick(&view, Qt::Key_Up);
    EXPECT_EQ(place(), 0);
}

TEST_F(NotePageTest, sound_that_is_being_written_down_is_not_offered_for_removal) {
    const Uuid id = addCall({line(Speaker::them, 0, 1, "Hello.")});
    std::filesystem::create_directories(model->audioFolder(id));
    std::ofstream(model->audioFolder(id) / "them.mp3") << "sound";
    model->update(id, true, [](Note& note) { note.call->tracks = {Speaker::them}; });
    open(id);
    auto* const page = only<NoteModel>();
    ASSERT_NE(page, nullptr);
    EXPECT_EQ(page->tracks().size(), 1);
    EXPECT_TRUE(page->canRemoveAudio());
    model->processing = std::map<Uuid, ProcessingStage>{{id, ProcessingStage::transcribing(0)}};
    EXPECT_FALSE(page->canRemoveAudio());
    EXPECT_TRUE(page->canExportAudio());
    model->processing = std::map<Uuid, ProcessingStage>();
    EXPECT_TRUE(page->canRemoveAudio());
}

} // namespace
} // namespace varnic
