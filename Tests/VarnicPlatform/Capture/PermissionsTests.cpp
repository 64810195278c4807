#include "VarnicPlatform/Capture/LiveCaptureTest.h"

#include "VarnicPlatform/Capture/Permissions.h"
#include "VarnicPlatform/Capture/SoundSurvey.h"

#include <cstdlib>

namespace varnic {

static void PrintTo(PermissionState state, std::ostream* out) {
    *out << static_cast<int>(state);
}

namespace {

using enum PermissionState;
using testing::ElementsAre;
using testing::IsEmpty;

class PermissionsTest : public LiveCaptureTest {
public:
    ~PermissionsTest() override { Permissions::override.reset(); }
};

const std::vector<SpeechModel> models{{.id = "a", .name = "A", .locales = {"en"}, .files = {}},
                                      {.id = "b", .name = "B", .locales = {"pt-BR", "de", "en"}, .files = {}}};

TEST_F(PermissionsTest, readings_soundSystemThere_grantedOnceSaidYes) {
    startSystem();
    EXPECT_EQ(Permissions::microphone(false), notAsked);
    EXPECT_EQ(Permissions::screen(false), notAsked);
    EXPECT_EQ(Permissions::microphone(true), granted);
    EXPECT_EQ(Permissions::screen(true), granted);
}

TEST_F(PermissionsTest, readings_noSource_microphoneDeniedOnly) {
    startSystem({"--no-source"});
    EXPECT_EQ(Permissions::microphone(true), denied);
    EXPECT_EQ(Permissions::screen(true), granted);
}

TEST_F(PermissionsTest, readings_onlyAMonitor_isNoMicrophone) {
    startSystem({"--no-source"});
    run("add-monitor loop");
    EXPECT_EQ(Permissions::microphone(true), denied);
    run("add-source real");
    EXPECT_EQ(SoundSurvey::take().microphone, "Virtual real");
}

TEST_F(PermissionsTest, readings_noServer_denied) {
    setenv("XDG_RUNTIME_DIR", folder.path().c_str(), 1);
    EXPECT_EQ(Permissions::microphone(true), denied);
    EXPECT_EQ(Permissions::screen(true), denied);
}

TEST_F(PermissionsTest, readings_overridden_giveThatUnasked) {
    Permissions::override = {.mic = granted, .screen = denied, .speech = notAsked};
    EXPECT_EQ(Permissions::microphone(false), granted);
    EXPECT_EQ(Permissions::screen(true), denied);
    EXPECT_EQ(Permissions::speech(true, "en", models), notAsked);
}

TEST_F(PermissionsTest, speech_languages_needAModel) {
    EXPECT_EQ(Permissions::speech(true, "en-US", models), granted);
    EXPECT_EQ(Permissions::speech(true, "fr", models), denied);
    EXPECT_EQ(Permissions::speech(false, "en", models), notAsked);
}

TEST_F(PermissionsTest, onDeviceLanguages_models_eachOnceSortedByName) {
    EXPECT_THAT(Permissions::onDeviceLanguages(models, "en"),
                ElementsAre(Permissions::Language{"en", "English"}, Permissions::Language{"de", "German"},
                            Permissions::Language{"pt-BR", "Portuguese (Brazil)"}));
    EXPECT_THAT(Permissions::onDeviceLanguages({}, "en"), IsEmpty());
}

TEST_F(PermissionsTest, survey_programPlays_isNamed) {
    startSystem();
    play();
    ASSERT_TRUE(comes([] { return !SoundSurvey::take().playing.empty(); }));
    const SoundSurvey survey = SoundSurvey::take();
    EXPECT_EQ(survey.microphone, "Virtual test-mic");
    EXPECT_EQ(survey.output, "Virtual test-sink");
    EXPECT_THAT(survey.playing, ElementsAre("pw-play"));
}

} // namespace
} // namespace varnic
