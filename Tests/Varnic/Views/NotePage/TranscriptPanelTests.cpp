#include "Varnic/Views/NotePage/CallPlayer.h"
#include "Varnic/Views/NotePage/NotePageTest.h"
#include "Varnic/Views/NotePage/TranscriptModel.h"

#include <QQuickItem>
#include <QQuickTextDocument>
#include <QQuickView>
#include <QTest>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>

#include <optional>
#include <utility>
#include <vector>

namespace varnic {
namespace {

TEST_F(NotePageTest, filter_finds_words_whatever_their_accents_and_marks_them) {
    model->showTranscript = true;
    open(addCall({line(Speaker::you, 0, 1, "Hi."), line(Speaker::them, 1, 3, "My \xF0\x9F\x98\x80 résumé, Resume!"),
                  line(Speaker::you, 3, 4, "Fine.")}));
    find<QQuickItem>("filter")->forceActiveFocus();
    type("resume");
    EXPECT_EQ(find("turnCount")->property("text"), "1 turns");
    ASSERT_TRUE(QTest::qWaitFor([this] { return find<QQuickItem>("words") != nullptr; }));
    const auto* const source = find("words")->property("textDocument").value<QQuickTextDocument*>();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !source->textDocument()->firstBlock().layout()->formats().empty(); }));
    QStringList marked;
    for (const auto& range : source->textDocument()->firstBlock().layout()->formats()) {
        marked << source->textDocument()->toPlainText().mid(range.start, range.length);
    }
    EXPECT_EQ(marked, QStringList({"résumé", "Resume"}));

    type("x");
    EXPECT_EQ(find("turnCount")->property("text"), "0 turns");
    QTest::keyClick(&view, Qt::Key_Escape);
    EXPECT_EQ(find("turnCount")->property("text"), "3 turns");
}

TEST_F(NotePageTest, a_call_in_which_no_one_was_heard_says_so) {
    model->showTranscript = true;
    const Uuid id = addCall({});
    open(id);
    const auto* const transcript = only<TranscriptModel>();
    EXPECT_EQ(transcript->countText(), "0 turns");
    EXPECT_EQ(transcript->placeholder(), "No one was heard.");
    model->processing = {{id, ProcessingStage::transcribing(0)}};
    EXPECT_EQ(transcript->placeholder(), "Writing the transcript…");
}

TEST_F(NotePageTest, the_current_turn_lasts_a_little_longer_than_it_is_spoken) {
    open(addCall({line(Speaker::you, 0, 1, "One."), line(Speaker::them, 4, 5, "Two.")}));
    auto* const transcript = only<TranscriptModel>();
    for (const auto& [time, current] :
         {std::pair(0.0, QStringList({"true", "false"})), std::pair(1.49, QStringList({"true", "false"})),
          std::pair(1.5, QStringList({"false", "false"})), std::pair(4.0, QStringList({"false", "true"}))}) {
        transcript->setTime(time);
        EXPECT_EQ(column(*transcript, TranscriptModel::isCurrent), current) << time;
    }
}

TEST_F(NotePageTest, the_transcript_follows_the_player_only_while_it_plays) {
    open(addCall({line(Speaker::you, 1, 2, "One."), line(Speaker::them, 4, 5, "Two.")}));
    auto* const transcript = only<TranscriptModel>();
    transcript->setTime(4.5);
    EXPECT_EQ(transcript->followedRow(), -1);
    transcript->setPlaying(true);
    for (const auto& [time, row] :
         {std::pair(0.5, -1), std::pair(0.99, 0), std::pair(3.5, 0), std::pair(3.995, 1), std::pair(60.0, 1)}) {
        transcript->setTime(time);
        EXPECT_EQ(transcript->followedRow(), row) << time;
    }
}

TEST_F(NotePageTest, a_turn_longer_than_the_panel_is_followed_by_its_words) {
    model->showTranscript = true;
    std::vector<Segment> talk;
    for (int i = 0; i < 200; ++i) {
        talk.push_back(line(Speaker::them, i, i + 1, "A sentence of a talk without a pause."));
    }
    open(addCall(std::move(talk)));
    auto* const turns = find<QQuickItem>("turns");
    auto* const transcript = only<TranscriptModel>();
    transcript->setPlaying(true);
    for (const int sentence : {0, 1, 100, 150, 199, 30}) {
        transcript->setTime(sentence + 0.5);
        EXPECT_TRUE(QTest::qWaitFor([&] { return isTurnSeen(0, sentence / 200.0); })) << sentence;
    }
    const auto* const glide = find<QObject>("glide");
    ASSERT_TRUE(QTest::qWaitFor([&] { return !glide->property("running").toBool(); }));
    const double readThere = turns->property("contentY").toDouble() + 2000;
    turns->setProperty("contentY", readThere);
    transcript->setTime(31.5);
    QCoreApplication::processEvents();
    EXPECT_EQ(turns->property("contentY").toDouble(), readThere) << "who scrolls is left there";
}

TEST_F(NotePageTest, what_is_looked_for_in_a_long_turn_is_shown) {
    model->showTranscript = true;
    std::vector<Segment> talk(200, line(Speaker::them, 0, 1, "A sentence of a talk without a pause."));
    talk[150].text = "Of one café only, it speaks but once.";
    for (Segment& sentence : talk) {
        sentence.id = Uuid::random();
    }
    open(addCall(std::move(talk)));
    EXPECT_FALSE(isTurnSeen(0, 0.75));
    for (const auto& [filter, part] : {std::pair("CAFE", 0.75), std::pair("a talk", 0.0)}) {
        find<QQuickItem>("filter")->setProperty("text", filter);
        EXPECT_TRUE(QTest::qWaitFor([&] { return isTurnSeen(0, part); })) << filter;
    }
}

TEST_F(NotePageTest, return_on_a_turn_goes_to_it) {
    model->showTranscript = true;
    open(addCall({line(Speaker::you, 0, 1, "One."), line(Speaker::them, 4, 5, "Two.")}));
    find<QQuickItem>("filter")->forceActiveFocus();
    QTest::keyClick(&view, Qt::Key_Down);
    QTest::keyClick(&view, Qt::Key_Down);
    QTest::keyClick(&view, Qt::Key_Return);
    EXPECT_EQ(only<CallPlayer>()->time(), 4);
    EXPECT_EQ(column(*only<TranscriptModel>(), TranscriptModel::isCurrent), QStringList({"false", "true"}));
}

TEST_F(NotePageTest, keys_page_through_the_transcript) {
    model->showTranscript = true;
    std::vector<Segment> lines;
    for (int i = 0; i < 200; ++i) {
        lines.push_back(line(i % 2 == 0 ? Speaker::you : Speaker::them, i * 5, i * 5 + 1,
                             i > 100 ? "A turn of many more words than one line of the panel has room for." : "Yes."));
    }
    open(addCall(std::move(lines)));
    auto* const turns = find<QQuickItem>("turns");
    turns->forceActiveFocus();
    const auto seen = [&](int row) {
        QQuickItem* item = nullptr;
        QMetaObject::invokeMethod(turns, "itemAtIndex", Q_RETURN_ARG(QQuickItem*, item), Q_ARG(int, row));
        const qreal y = item == nullptr ? -1 : item->mapToItem(turns, QPointF()).y();
        return y >= 0 && y + item->height() <= turns->height();
    };
    ASSERT_TRUE(seen(0));
    QTest::keyClick(&view, Qt::Key_PageDown);
    EXPECT_FALSE(seen(0));
    QTest::keyClick(&view, Qt::Key_End);
    EXPECT_TRUE(seen(199));
    QTest::keyClick(&view, Qt::Key_Home);
    EXPECT_TRUE(seen(0));
    QTest::keyClick(&view, Qt::Key_Down);
    EXPECT_EQ(turns->property("currentIndex"), 1) << "arrow keys choose a turn";
}

TEST_F(NotePageTest, a_click_on_the_words_of_a_turn_goes_to_it) {
    model->showTranscript = true;
    open(addCall({line(Speaker::you, 3, 4, "One.")}));
    auto* const words = find<QQuickItem>("words");
    ASSERT_NE(words, nullptr);
    QTest::mouseClick(&view, Qt::LeftButton, {}, words->mapToScene({8, 8}).toPoint());
    EXPECT_EQ(only<CallPlayer>()->time(), 3);
}

TEST_F(NotePageTest, a_seek_shows_what_is_said_there) {
    std::vector<Segment> lines;
    for (int i = 0; i < 200; ++i) {
        lines.push_back(
            line(i % 2 == 0 ? Speaker::you : Speaker::them, i * 5, i * 5 + 1,
                 i % 60 > 20 ? "A turn of many more words than one line of the panel has room for." : "Yes."));
    }
    const Uuid id = addCall(std::move(lines));
    for (const int row : {180, 20, 100, 101}) {
        model->seek = AppModel::Seek{.note = id, .time = row * 5.0};
        if (row == 180) {
            open(id);
        }
        const auto isThere = [&] { return isTurnSeen(row) && !find<QObject>("glide")->property("running").toBool(); };
        EXPECT_TRUE(QTest::qWaitFor(isThere)) << row;
    }
}

TEST_F(NotePageTest, a_seek_is_taken_by_the_page_of_its_call_only) {
    const Uuid id = addCall({line(Speaker::you, 0, 9, "One.")});
    open(id);
    const AppModel::Seek elsewhere{.note = Uuid::random(), .time = 5};
    model->seek = elsewhere;
    QCoreApplication::processEvents();
    EXPECT_EQ(model->seek.value(), elsewhere);
    EXPECT_EQ(only<CallPlayer>()->time(), 0);
    EXPECT_FALSE(model->showTranscript.value());

    model->seek = AppModel::Seek{.note = id, .time = 7};
    EXPECT_EQ(model->seek.value(), std::nullopt);
    EXPECT_EQ(only<CallPlayer>()->time(), 7);
    EXPECT_TRUE(model->showTranscript.value());
}

TEST_F(NotePageTest, a_seek_from_before_the_page_was_opened_is_taken) {
    const Uuid id = addCall({line(Speaker::you, 0, 9, "One.")});
    model->seek = AppModel::Seek{.note = id, .time = 7};
    open(id);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !model->seek.value(); }));
    EXPECT_EQ(only<CallPlayer>()->time(), 7);
}

} // namespace
} // namespace varnic
