#include "VarnicCore/Audio/AudioFiles.h"
#include "VarnicCore/Audio/VoiceActivity.h"
#include "VarnicCore/Fixtures/DemoCall.h"
#include "VarnicCore/Fixtures/FixtureBuilder.h"
#include "VarnicCore/Fixtures/ScriptedTranscriber.h"
#include "VarnicCore/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cmath>

namespace varnic {
namespace {

TEST(FixtureBuilder, build_demoCall_isFoundLineByLineInItsTracks) {
    const TemporaryFolder folder;
    const auto call = FixtureBuilder::build(folder.path() / "deep" / "er", DemoCall::lines(), 0.9);
    ASSERT_TRUE(call);
    ScriptedTranscriber scripted;
    scripted.script = DemoCall::script();
    for (const auto& [speaker, file] : {std::pair(Speaker::you, call->you), std::pair(Speaker::them, call->them)}) {
        EXPECT_EQ(AudioFiles::duration(file), std::floor(call->duration * 48'000) / 48'000);
        double fraction = 0;
        const std::vector<Segment> found =
            scripted.transcribe({file, speaker}, [&](double part) { fraction = part; }, {});
        const std::vector<double>& placed = call->placements.at(speaker);
        ASSERT_EQ(VoiceActivity::detect(file, 0.25, 0.6).size(), placed.size());
        ASSERT_EQ(found.size(), placed.size());
        EXPECT_EQ(fraction, 1);
        for (std::size_t line = 0; line < placed.size(); ++line) {
            EXPECT_EQ(found[line].speaker, speaker);
            EXPECT_EQ(found[line].text, scripted.script.at(speaker)[line]);
            EXPECT_NEAR(found[line].start, placed[line] + FixtureBuilder::silenceBefore, 0.35) << found[line].text;
        }
    }
    EXPECT_TRUE(ScriptedTranscriber().transcribe({call->you, Speaker::you}, [](double) {}, {}).empty());
    EXPECT_THROW(static_cast<void>(scripted.transcribe({folder.path() / "gone", Speaker::you}, [](double) {}, {})),
                 TranscriberError);
}

} // namespace
} // namespace varnic
