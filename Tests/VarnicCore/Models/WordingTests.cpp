#include "VarnicCore/Models/Wording.h"

#include "VarnicCore/Pipeline/Consent.h"

#include <gmock/gmock.h>

#include <vector>

namespace varnic {
namespace {

using testing::HasSubstr;
using testing::Not;

TEST(Wording, shown_speaksOfThisPlatform) {
    struct Case {
        std::string text;
        std::string shown;
    };

    const std::vector<Case> cases{
        {"the Mac’s sound", "the computer’s sound"},
        {"The Mac’s sound has gone silent.", "The computer’s sound has gone silent."},
        {"Recording your side only — their side needs Screen Recording.",
         "Recording your side only — the computer’s sound can’t be heard."},
        {"this Mac, and this Mac’s Keychain", "this computer, and this computer’s key ring"},
        {"Start a Zoom, Meet, Teams or FaceTime call, then press Record.",
         "Start a Zoom, Meet or Teams call, then press Record."},
        {"Speech Recognition is turned off for Varnic.", "No speech model is installed. On Debian there is one for "
                                                         "English in the package varnic-models, and one for 99 "
                                                         "languages in varnic-models-whisper."},
        {"German can’t be transcribed on this Mac yet.",
         "German can’t be transcribed on this computer yet. On Debian there is a speech model for 99 languages in the "
         "package varnic-models-whisper."},
        {"any Zoom, Meet, Teams, FaceTime or browser call", "any Zoom, Meet, Teams or browser call"},
        {"", ""},
    };
    for (const Case& one : cases) {
        EXPECT_EQ(Wording::shown(one.text), one.shown);
    }
    EXPECT_THAT(Wording::shown(Consent::headsUp(Consent::Tone::friendly, "")), Not(HasSubstr("Mac")));
}

TEST(Wording, shown_ofANoteLeavesWhatPeopleSaidAndWrote) {
    const Note note(Uuid::random(), "This Mac", Date(), {Block{}},
                    CallRecord{.segments = {Segment(Speaker::you, 0, 1, "I bought this Mac")},
                               .digest = CallDigest{.provider = "On this Mac"},
                               .problem = "No speech model on this Mac"});
    const Note shown = Wording::shown(note);
    EXPECT_EQ(shown.title, "This Mac");
    EXPECT_EQ(shown.call->segments, note.call->segments);
    EXPECT_EQ(shown.call->digest->provider, "On this computer");
    EXPECT_EQ(shown.call->problem, "No speech model on this computer");
}

} // namespace
} // namespace varnic
