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

TEST_F(PermissionsTest, survey_soundSystemThere_grantedOnceSaidYes) {
    startSystem();
    EXPECT_EQ(Permissions::survey(false, {"en"}, models), Permissions::States());
    EXPECT_EQ(Permissions::survey(true, {"en"}, models), (Permissions::States{granted, granted, granted}));
}

TEST_F(PermissionsTest, survey_onlyAMonitor_isNoMicrophone) {
    startSystem({"--no-source"});
    run("add-monitor loop");
    EXPECT_EQ(Permissions::survey(true, {"en"}, models).mic, denied);
    run("add-source real");
    EXPECT_EQ(SoundSurvey::take().microphone, "Virtual real");
}

TEST_F(PermissionsTest, survey_noServer_speechGrantedWhereAModelFits) {
    setenv("XDG_RUNTIME_DIR", folder.path().c_str(), 1);
    EXPECT_EQ(Permissions::survey(true, {"en-US"}, models), (Permissions::States{denied, denied, granted}));
    EXPECT_EQ(Permissions::survey(true, {"fr"}, models), (Permissions::States{denied, denied, denied}));
    const LanguageChoice automatic{.locale = "fr", .isAutomatic = true};
    EXPECT_EQ(Permissions::survey(true, automatic, models).speech, denied) << "nothing tells languages apart";
    const SpeechModel whisper{
        .id = "c", .name = "C", .engine = SpeechEngine::whisper, .locales = {"en", "de"}, .files = {}};
    EXPECT_EQ(Permissions::survey(true, automatic, {whisper}).speech, granted);
}

TEST_F(PermissionsTest, look_tellsWhatIsMissingAndWhatIsThere) {
    const auto remedies = [](const char* locale) {
        const auto findings = Permissions::look(true, {locale}, "en", models);
        std::vector<std::string> said;
        for (const Permission& one : Permissions::described(findings, locale, "en")) {
            said.push_back(one.state == denied ? one.remedy : "");
        }
        return said;
    };
    using testing::HasSubstr;
    startSystem({"--no-source"});
    EXPECT_THAT(remedies("fr-FR"),
                ElementsAre(HasSubstr("There is only “Virtual test-sink” to listen with."), IsEmpty(),
                            testing::AllOf(HasSubstr("for French (France)"),
                                           HasSubstr("models for English, German, Portuguese (Brazil). On Debian"),
                                           HasSubstr("package varnic-models-whisper"))));
    system.reset();
    startSystem({"--no-nodes", "--no-session", "--no-pulse"});
    EXPECT_THAT(remedies("en"), ElementsAre(HasSubstr("no sound devices"), HasSubstr("no sound devices"), IsEmpty()));
    system.reset();
    setenv("XDG_RUNTIME_DIR", folder.path().c_str(), 1);
    EXPECT_THAT(remedies("en"), ElementsAre(HasSubstr("isn’t running"), HasSubstr("isn’t running"), IsEmpty()));
}

TEST_F(PermissionsTest, described_beforeTheUserHasSaidYes_tellsWhatIsMissingToo) {
    startSystem({"--no-source"});
    const auto missing = [](const std::vector<SpeechModel>& installed) {
        std::vector<std::string> said;
        for (const Permission& one :
             Permissions::described(Permissions::look(false, {"en"}, "en", installed), "en", "en")) {
            EXPECT_EQ(one.state, notAsked) << one.title;
            said.push_back(one.isMissing ? one.remedy : "");
        }
        return said;
    };
    using testing::HasSubstr;
    EXPECT_THAT(missing(models), ElementsAre(HasSubstr("No microphone was found."), IsEmpty(), IsEmpty()));
    EXPECT_THAT(missing({}), ElementsAre(HasSubstr("No microphone"), IsEmpty(),
                                         testing::AllOf(HasSubstr("English in the package varnic-models,"),
                                                        HasSubstr("99 languages in varnic-models-whisper;"))));
    setenv("PIPEWIRE_CONFIG_DIR", folder.path().c_str(), 1);
    EXPECT_THAT(missing(models),
                ElementsAre(HasSubstr("package pipewire-bin"), HasSubstr("package pipewire-bin"), IsEmpty()));
    unsetenv("PIPEWIRE_CONFIG_DIR");
}

TEST_F(PermissionsTest, described_aLanguageThatNoneOfManyKnows_countsThemAndNamesNoPackage) {
    const Permissions::Findings findings{.states = {.speech = denied},
                                         .there = {.languages = std::vector<std::string>(99, "German")}};
    EXPECT_THAT(Permissions::described(findings, "ga", "en").back().remedy,
                testing::AllOf(testing::StartsWith("No speech model is installed for Irish. There are models for 99 "
                                                   "other languages."),
                               testing::Not(testing::HasSubstr("varnic-models"))));
}

TEST_F(PermissionsTest, survey_overridden_givesThatUnasked) {
    Permissions::override = {.mic = granted, .screen = denied, .speech = notAsked};
    EXPECT_EQ(Permissions::survey(false, {"en"}, models), *Permissions::override);
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
