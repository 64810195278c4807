#include "VarnicCore/Pipeline/CallActions.h"

#include <gtest/gtest.h>

namespace varnic {
namespace {

Note call(std::vector<Segment> segments) {
    Note note(Date{});
    note.call = CallRecord{.segments = std::move(segments)};
    return note;
}

TEST(CallActionsTests, of_followsFromTheNoteItsFilesAndTheWorkOnIt) {
    const Note plain(Date{});
    const Note silent = call({});
    const Note spoken = call({{Speaker::you, 0, 1, "Hello."}});
    const CallFiles none;
    const CallFiles oneSide{.tracks = {.them = "them.m4a"}};
    const CallFiles bothAndEarlier{.tracks = {.you = "you.m4a", .them = "them.m4a"}, .hasEarlier = true};
    const CallFiles earlier{.hasEarlier = true};
    const CallWork idle;
    const CallWork writing{.isTranscribing = true};
    const CallWork asking{.isSummarising = true};
    const CallActions nothing;

    const struct {
        const char* what = "";
        const Note& note;
        const CallFiles& files;
        CallWork work;
        CallActions may;
    } cases[] = {
        {"a plain note beside which files lie", plain, bothAndEarlier, idle, nothing},
        {"a call that left nothing", silent, none, idle, nothing},
        {"sound without words",
         silent,
         oneSide,
         idle,
         {.play = true, .exportAudio = true, .transcribe = true, .removeAudio = true}},
        {"words whose sound was removed", spoken, none, idle, {.summarise = true}},
        {"sound that is being written down", silent, oneSide, writing, {.play = true, .exportAudio = true}},
        {"words that are being replaced",
         spoken,
         bothAndEarlier,
         writing,
         {.play = true, .exportAudio = true, .summarise = true}},
        {"words that an AI reads",
         spoken,
         bothAndEarlier,
         asking,
         {.play = true, .exportAudio = true, .transcribe = true, .removeAudio = true}},
        {"an earlier version of words without sound",
         spoken,
         earlier,
         idle,
         {.summarise = true, .bringBackEarlier = true}},
        {"all there",
         spoken,
         bothAndEarlier,
         idle,
         {.play = true,
          .exportAudio = true,
          .transcribe = true,
          .removeAudio = true,
          .summarise = true,
          .bringBackEarlier = true}},
    };

    for (const auto& row : cases) {
        EXPECT_EQ(CallActions::of(row.note, row.files, row.work), row.may) << row.what;
    }
}

} // namespace
} // namespace varnic
