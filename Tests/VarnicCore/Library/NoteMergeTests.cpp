#include "VarnicCore/Library/NoteMerge.h"

#include "VarnicCore/Models/CallProblem.h"

#include <gmock/gmock.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace varnic {
namespace {

using Change = std::function<void(Note&)>;

Change inserting(std::size_t place, const char* text) {
    return [=](Note& note) {
        note.blocks.insert(note.blocks.begin() + static_cast<std::ptrdiff_t>(place), Block{.text = text});
    };
}

Change setting(std::size_t place, const char* text) {
    return [=](Note& note) { note.blocks[place].text = text; };
}

Change removing(std::size_t place) {
    return [=](Note& note) { note.blocks.erase(note.blocks.begin() + static_cast<std::ptrdiff_t>(place)); };
}

/// The note "one|two|three" of two programs, and what it says in the end.
TEST(NoteMerge, merged_takesWhatBothDid) {
    struct Case {
        const char* name;
        Change ours;
        Change theirs;
        /// Nothing where two versions stay.
        std::optional<std::string> text;
    };

    const Change nothing = [](Note&) {};
    const std::vector<Case> cases{
        {"one side only", nothing, setting(0, "1"), "1|two|three"},
        {"different blocks", setting(0, "1"), setting(2, "3"), "1|two|3"},
        {"both add at the end", inserting(3, "mine"), inserting(3, "other"), "one|two|three|other|mine"},
        {"both add at the front", inserting(0, "mine"), inserting(0, "other"), "other|mine|one|two|three"},
        {"added behind what is removed", removing(1), inserting(2, "other"), "one|other|three"},
        {"typed further", setting(1, "two and"), setting(1, "two and a half"), "one|two and a half|three"},
        {"shortened there", setting(0, "1"), setting(2, "th"), "1|two|th"},
        {"shortened here", setting(2, ""), setting(0, "1"), "1|two|"},
        {"the same block", setting(1, "2"), setting(1, "II"), std::nullopt},
        {"the same change", setting(1, "2"), setting(1, "2"), "one|2|three"},
        {"removed by both", removing(1), removing(1), "one|three"},
        {"removed here, changed there", removing(1), setting(1, "2"), "one|2|three"},
        {"changed here, removed there", setting(1, "2"), removing(1), "one|2|three"},
        {"removed there, the rest changed", setting(0, "1"), removing(1), "1|three"},
        {"an id that stands twice", [](Note& note) { note.blocks[1].id = note.blocks[0].id; }, setting(2, "3"),
         std::nullopt}};
    Note base(currentDate(), "Plan");
    base.blocks = {Block{.text = "one"}, Block{.text = "two"}, Block{.text = "three"}};
    for (const Case& one : cases) {
        Note ours = base;
        Note theirs = base;
        one.ours(ours);
        one.theirs(theirs);
        const auto both = NoteMerge::merged(base, ours, theirs);
        ASSERT_EQ(both.has_value(), one.text.has_value()) << one.name;
        std::string text;
        for (const Block& block : both ? both->blocks : std::vector<Block>()) {
            text += (text.empty() ? "" : "|") + block.text;
        }
        EXPECT_EQ(text, one.text.value_or("")) << one.name;
    }
}

TEST(NoteMerge, merged_ofOtherPartsThanBlocks) {
    Note base(Uuid::random(), "Plan", currentDate(), {}, CallRecord{.source = "Call"});
    Note ours = base;
    Note theirs = base;
    ours.pinned = true;
    ours.call->themName = "Maya";
    theirs.title = "New plan";
    theirs.call->digest = CallDigest{.title = "New plan"};
    theirs.modified += std::chrono::seconds(1);
    const auto both = NoteMerge::merged(base, ours, theirs);
    ASSERT_TRUE(both);
    EXPECT_TRUE(both->pinned);
    EXPECT_EQ(both->title, "New plan");
    EXPECT_EQ(both->call->themName, "Maya");
    EXPECT_TRUE(both->call->digest);
    EXPECT_EQ(both->modified, theirs.modified);

    theirs.call->themName = "Zoë";
    EXPECT_FALSE(NoteMerge::merged(base, ours, theirs));
    theirs.call.reset();
    EXPECT_FALSE(NoteMerge::merged(base, ours, theirs));
}

TEST(NoteMerge, merged_callThatIsWrittenDown_waitsNoMore) {
    const std::string loss = CallProblem::loss(Speaker::you, 3, 5, "The disk is full.");
    for (const std::optional<std::string>& lost : {std::optional<std::string>(), std::optional(loss)}) {
        const Note base(Uuid::random(), "Zoom", currentDate(), {}, CallRecord{.source = "Zoom", .problem = lost});
        Note waiting = base;
        waiting.call->problem = CallProblem::joined(quitProblem, lost);
        Note written = base;
        written.call->segments = {Segment(Speaker::them, 0, 1, "Hello.")};
        for (const auto& [ours, theirs] : {std::pair(waiting, written), std::pair(written, waiting)}) {
            const auto both = NoteMerge::merged(base, ours, theirs);
            ASSERT_TRUE(both);
            EXPECT_EQ(both->call->segments, written.call->segments);
            EXPECT_EQ(both->call->problem, lost);
        }
        EXPECT_EQ(NoteMerge::merged(base, base, waiting)->call->problem, waiting.call->problem);
    }
}

TEST(NoteMerge, holds_callThatIsWrittenDown_itsOwnWithoutWords) {
    struct Case {
        const char* name;
        Change change;
        bool isHeld;
    };

    Note waiting(Uuid::random(), "Zoom · 14 Mar, 09:26", currentDate(),
                 {Block{.kind = BlockKind::heading, .text = "Notes"}, Block{}, Block{.text = "typed"}},
                 CallRecord{.duration = 9, .source = "Zoom"});
    Note written = waiting;
    written.title = "Pricing & launch";
    written.blocks = {Block{.kind = BlockKind::bullet, .text = "Said.", .fromDigest = true}, waiting.blocks.back()};
    written.call->segments = {Segment(Speaker::them, 0, 1, "Hello.")};
    const auto loss = CallProblem::loss(Speaker::you, 3, 5, "The disk is full.");
    const std::vector<Case> cases{
        {"as it was filed", [](Note&) {}, true},
        {"that says so", [](Note& note) { note.call->problem = quitProblem; }, true},
        {"that was recovered", [](Note& note) { note.title = "Call on Sat 14 Mar"; }, true},
        {"with the same title", [&](Note& note) { note.title = written.title; }, true},
        {"with a title of the user's", [](Note& note) { note.title = "Zoom · pricing"; }, false},
        {"with more text", [](Note& note) { note.blocks.push_back(Block{.text = "more"}); }, false},
        {"with another heading", [](Note& note) { note.blocks.front().text = "Mine"; }, false},
        {"with a name", [](Note& note) { note.call->themName = "Maya"; }, false},
        {"pinned", [](Note& note) { note.pinned = true; }, false},
        {"that tells of lost sound", [&](Note& note) { note.call->problem = loss; }, false},
        {"of another start", [](Note& note) { note.call->startedAt += std::chrono::milliseconds(4); }, true},
        {"of another call", [](Note& note) { note.call->startedAt += std::chrono::hours(1); }, false},
        {"with words", [](Note& note) { note.call->segments = {Segment(Speaker::them, 0, 1, "Hi.")}; }, false}};
    for (const Case& one : cases) {
        Note less = waiting;
        one.change(less);
        EXPECT_EQ(NoteMerge::holds(written, less), one.isHeld) << one.name;
        EXPECT_FALSE(NoteMerge::holds(less, written)) << one.name;
    }
    EXPECT_FALSE(NoteMerge::holds(waiting, Note(waiting.id, "Zoom · 14 Mar, 09:27", currentDate(), {}, waiting.call)));
}

} // namespace
} // namespace varnic
