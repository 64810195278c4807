#include "VarnicCore/Models/Call.h"
#include "VarnicCore/Models/Note.h"

#include <gtest/gtest.h>

namespace varnic {
namespace {

TEST(CallRecord, yourShare_isAFractionOfAllSpeechOrAbsent) {
    CallRecord call;
    EXPECT_EQ(call.yourShare(), std::nullopt);
    call.segments = {Segment(Speaker::you, 1, 1, "Yes."), Segment(Speaker::them, 4, 2, "No.")};
    EXPECT_EQ(call.segments[1].end, 4);
    EXPECT_EQ(call.yourShare(), std::nullopt);
    call.segments.emplace_back(Speaker::you, 5, 6, "So.");
    call.segments.emplace_back(Speaker::them, 6, 9, "I see.");
    EXPECT_DOUBLE_EQ(call.yourShare().value_or(-1), 0.25);
}

TEST(CallRecord, name_ofThemFallsBackOnlyWhenBlank) {
    CallRecord call;
    call.themName = " \t";
    EXPECT_EQ(call.name(Speaker::them, "Sam"), "Them");
    EXPECT_EQ(call.name(Speaker::you, ""), "");
    call.themName = " Maya ";
    EXPECT_EQ(call.name(Speaker::them, "Sam"), " Maya ");
}

TEST(Note, displayTitle_ofBlankTitleSaysWhatTheNoteIs) {
    Note note(Date{}, " \n\t ");
    EXPECT_EQ(note.displayTitle(), "Untitled note");
    note.call = CallRecord{};
    EXPECT_EQ(note.displayTitle(), "Untitled call");
    note.title = "\u00A0 Plan \n";
    EXPECT_EQ(note.displayTitle(), "Plan");
    ASSERT_EQ(note.blocks.size(), 1U);
}

TEST(CallRecord, email_ofOtherLanguages_isThereOnlyIfSomebodyWroteOne) {
    CallRecord call;
    EXPECT_EQ(call.email(), nullptr);
    call.digest = CallDigest();
    EXPECT_NE(call.email(), nullptr) << "emptied by the user, who may go on with it";
    call.language = "de";
    EXPECT_EQ(call.email(), nullptr);
    call.digest->email.body = "Hallo!";
    EXPECT_NE(call.email(), nullptr);
    call.digest = CallDigest{.isLocal = false};
    EXPECT_NE(call.email(), nullptr);
}

} // namespace
} // namespace varnic
