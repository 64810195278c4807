#include "Varnic/AppModel/ScratchModel.h"
#include "Varnic/Views/Study/StudyModel.h"

#include <QSignalSpy>

#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>

namespace varnic {
namespace {

using testing::StartsWith;

Block& block(Note& note, const char* question) {
    return *std::ranges::find(note.blocks, question, &Block::text);
}

class Study : public testing::Test {
protected:
    /// Opens a review of a deck of these questions, "Q1" with the answer "A1" and so on.
    void open(int cards) {
        std::vector<Block> blocks;
        for (int i = 1; i <= cards; ++i) {
            blocks.push_back(Block::flashcard("Q" + std::to_string(i), "A" + std::to_string(i)));
        }
        deck = model->newNote("Capitals", std::move(blocks));
        model->studyDeck = deck;
        study.setModel(*model);
    }

    void answer(StudyModel::Grade grade) {
        study.flip();
        study.grade(grade);
    }

    [[nodiscard]] std::optional<CardState> schedule(const char* question) {
        return std::ranges::find(model->note(deck)->blocks, question, &Block::text)->card;
    }

    /// As another program would.
    void change(const std::function<void(Note&)>& change) { model->update(deck, false, change); }

    void removeCard(const char* question) {
        change([&](Note& note) { std::erase_if(note.blocks, [&](const Block& b) { return b.text == question; }); });
    }

    ScratchModel model;
    StudyModel study;
    Uuid deck;
};

TEST_F(Study, deck_with_nothing_due_says_so) {
    open(0);
    EXPECT_FALSE(study.hasCard());
    EXPECT_EQ(study.endTitle(), "Nothing due right now");
    EXPECT_EQ(study.comeback(), "");
    answer(StudyModel::Good);
    EXPECT_EQ(study.reviewed(), 0);
}

TEST_F(Study, failed_card_returns_behind_the_others_until_it_is_known) {
    open(2);
    EXPECT_EQ(study.toGo(), "2 to go");
    EXPECT_EQ(study.spoken(), "Question: Q1");
    study.flip();
    EXPECT_EQ(study.spoken(), "Answer: A1");
    study.grade(StudyModel::Again);
    EXPECT_EQ(study.spoken(), "Question: Q2");
    EXPECT_EQ(study.answer(), "A1"); // which turns away now
    EXPECT_EQ(study.toGo(), "2 to go");
    answer(StudyModel::Easy);
    EXPECT_EQ(study.question(), "Q1");
    answer(StudyModel::Again);
    answer(StudyModel::Again);
    EXPECT_EQ(study.toGo(), "1 to go");
    answer(StudyModel::Good);
    EXPECT_FALSE(study.hasCard());
    EXPECT_EQ(study.endTitle(), "All caught up — 5 reviewed");
    EXPECT_EQ(study.comeback(), "The next one is due tomorrow.");
    EXPECT_EQ(schedule("Q1")->reviews, 4);
    EXPECT_EQ(schedule("Q2")->box, 3);
}

TEST_F(Study, keys_mean_what_shows) {
    open(1);
    EXPECT_TRUE(study.press(Qt::Key_2, Qt::NoModifier));
    EXPECT_EQ(study.reviewed(), 0);
    EXPECT_FALSE(study.press(Qt::Key_Space, Qt::ControlModifier));
    EXPECT_FALSE(study.isFlipped());
    EXPECT_TRUE(study.press(Qt::Key_Space, Qt::NoModifier));
    EXPECT_TRUE(study.press(Qt::Key_Space, Qt::NoModifier));
    EXPECT_TRUE(study.isFlipped());
    EXPECT_FALSE(study.press(Qt::Key_2, Qt::ControlModifier));
    EXPECT_TRUE(study.press(Qt::Key_1, Qt::KeypadModifier));
    EXPECT_EQ(schedule("Q1")->box, 1);
    study.flip();
    study.press(Qt::Key_3, Qt::ShiftModifier);
    EXPECT_FALSE(study.hasCard());
    EXPECT_FALSE(study.press(Qt::Key_Space, Qt::NoModifier));
    EXPECT_TRUE(study.press(Qt::Key_Z, Qt::ControlModifier));
    EXPECT_TRUE(study.hasCard());
}

TEST_F(Study, undo_takes_one_grade_after_another_back) {
    open(2);
    const auto untouched = schedule("Q1");
    answer(StudyModel::Again);
    answer(StudyModel::Good);
    answer(StudyModel::Good);
    ASSERT_FALSE(study.hasCard());
    study.undo();
    EXPECT_EQ(study.spoken(), "Answer: A1");
    EXPECT_EQ(study.toGo(), "1 to go");
    EXPECT_EQ(study.reviewed(), 2);
    EXPECT_EQ(schedule("Q1")->reviews, 1);
    study.undo();
    study.undo();
    EXPECT_EQ(study.spoken(), "Answer: A1");
    EXPECT_EQ(study.toGo(), "2 to go");
    EXPECT_EQ(schedule("Q1"), untouched);
    EXPECT_EQ(schedule("Q2"), CardState());
    EXPECT_FALSE(study.canUndo());
    study.undo();
    EXPECT_EQ(study.toGo(), "2 to go");
    study.grade(StudyModel::Good);
    EXPECT_EQ(schedule("Q1")->box, 2);
    EXPECT_EQ(study.question(), "Q2");
}

TEST_F(Study, card_that_goes_takes_no_grade_along_with_it) {
    open(3);
    study.flip();
    removeCard("Q1");
    EXPECT_EQ(study.spoken(), "Question: Q2");
    study.grade(StudyModel::Easy);
    EXPECT_EQ(schedule("Q2"), CardState());
    change([](Note& note) { block(note, "Q2").text = ""; });
    EXPECT_EQ(study.question(), "Q3");
    change([](Note& note) { block(note, "Q3").kind = BlockKind::paragraph; });
    EXPECT_FALSE(study.hasCard());
}

TEST_F(Study, card_that_is_edited_stays_the_one_that_is_asked) {
    open(2);
    study.flip();
    const QSignalSpy changed(&study, &StudyModel::changed);
    change([](Note& note) {
        block(note, "Q1").back = "Better";
        std::ranges::reverse(note.blocks);
    });
    EXPECT_EQ(changed.count(), 1);
    EXPECT_EQ(study.spoken(), "Answer: Better");
    study.grade(StudyModel::Good);
    EXPECT_EQ(schedule("Q1")->box, 2);
}

TEST_F(Study, card_that_is_graded_elsewhere_leaves_the_review) {
    open(2);
    study.flip();
    change([](Note& note) {
        block(note, "Q1").card = CardState{.box = 3, .due = currentDate() + std::chrono::hours(72), .reviews = 5};
    });
    EXPECT_EQ(study.spoken(), "Question: Q2");
    EXPECT_EQ(study.toGo(), "1 to go");
}

TEST_F(Study, undo_leaves_what_was_done_elsewhere) {
    open(2);
    answer(StudyModel::Good);
    const CardState theirs{.box = 5, .due = currentDate() + std::chrono::hours(72), .reviews = 9};
    change([&](Note& note) { block(note, "Q1").card = theirs; });
    study.undo();
    EXPECT_EQ(schedule("Q1"), theirs);
    EXPECT_EQ(study.reviewed(), 0);
    answer(StudyModel::Good);
    removeCard("Q1");
    study.undo();
    EXPECT_EQ(study.spoken(), "Question: Q2");
    EXPECT_EQ(study.toGo(), "1 to go");
}

TEST_F(Study, review_ends_with_its_deck) {
    open(2);
    study.flip();
    model->remove(deck);
    EXPECT_EQ(model->studyDeck.value(), std::nullopt);
    EXPECT_FALSE(study.press(Qt::Key_Q, Qt::NoModifier));
    study.grade(StudyModel::Good);
    study.undo();
    EXPECT_EQ(study.title(), "");
}

TEST_F(Study, other_deck_begins_anew) {
    open(1);
    answer(StudyModel::Good);
    const Uuid other = model->newNote("Rivers", {Block::flashcard("R1", "Longest")});
    model->studyDeck = other;
    EXPECT_EQ(study.title(), "Rivers");
    EXPECT_EQ(study.question(), "R1");
    EXPECT_FALSE(study.canUndo());
}

TEST_F(Study, failed_card_that_was_left_comes_back_the_same_day) {
    open(1);
    answer(StudyModel::Again);
    StudyModel later;
    later.setModel(*model);
    EXPECT_FALSE(later.hasCard());
    const bool isBeforeMidnight = model->region.day(*schedule("Q1")->due) == model->region.day(currentDate());
    EXPECT_THAT(later.comeback().toStdString(),
                StartsWith(isBeforeMidnight ? "The next one is due at " : "The next one is due tomorrow"));
}

} // namespace
} // namespace varnic
