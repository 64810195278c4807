#include "VarnicCore/Library/NoteMerge.h"

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

} // namespace
} // namespace varnic
