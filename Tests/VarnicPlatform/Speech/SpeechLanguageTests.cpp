#include "VarnicCore/Audio/SoundFiles.h"
#include "VarnicPlatform/Speech/SharedRecognizer.h"
#include "VarnicPlatform/Speech/SpeechTranscriber.h"
#include "VarnicPlatform/Speech/Words.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace varnic {
namespace {

namespace fs = std::filesystem;

const fs::path data = VARNIC_DATA;
const std::string recordings = VARNIC_RECORDINGS;

const std::string german =
    "Guten Tag zusammen. Wir sollten heute über das Budget für das nächste Jahr sprechen. Danach "
    "legen wir den Termin für die Veröffentlichung fest.";
const std::string french =
    "Bonjour à tous. Aujourd’hui nous devons parler du budget de l’année prochaine. Ensuite nous "
    "allons fixer la date de la sortie.";
const std::string spanish = "Buenos días a todos. Hoy tenemos que hablar del presupuesto del año que viene. Después "
                            "vamos a fijar la fecha del lanzamiento.";

/// What it takes that not every developer has: a model of several languages, and a voice for them.
class SpeechLanguageTest : public testing::Test {
protected:
    void SetUp() override {
        if (!SpeechModels::tellLanguages(SpeechModels::installed({data}))) {
            GTEST_SKIP() << "no model of several languages is installed: ./dev setup models";
        }
        if (std::system("espeak-ng --version > /dev/null 2>&1") != 0) {
            GTEST_SKIP() << "espeak-ng, the voices of other languages, is not installed";
        }
    }

    [[nodiscard]] fs::path say(const std::string& voice, const std::string& text) const {
        files.run("espeak-ng -v " + voice + " -s 140 -w " + voice + ".wav '" + text + "'");
        return files.path(voice + ".wav");
    }

    static SpeechTranscriber automatic() { return {{.locale = "en-US", .isAutomatic = true}, {}, {data}}; }

    SoundFiles files;
};

TEST_F(SpeechLanguageTest, sharedRecognizer_largeModel_isInMemoryOncePerLanguage) {
    for (const SpeechModel& model : SpeechModels::installed({data})) {
        const auto recognizer = SharedRecognizer::of(model, "en");
        EXPECT_EQ(SharedRecognizer::of(model, "en-US") == recognizer, model.tellsLanguages()) << model.id;
        if (model.tellsLanguages()) {
            EXPECT_NE(SharedRecognizer::of(model, "de"), recognizer);
        }
    }
}

TEST_F(SpeechLanguageTest, languages_automatic_areFoundOutForEachSide) {
    const fs::path silence = files.make("silence.wav", "-f lavfi -i anullsrc=d=3");
    const fs::path notes = files.write("notes.txt", "no sound in here");

    struct Case {
        CallTracks tracks;
        SpokenLanguages spoken;
    };

    const std::vector<Case> cases{
        {{say("de", german), say("fr", french)}, {"de", "fr", "de"}},
        {{silence, say("es", spanish)}, {"es", "es", "es"}},
        {{std::nullopt, recordings + "/two_cities.wav"}, {"en-US", "en-US", "en-US"}},
        {{std::nullopt, notes}, {"en-US", "en-US", "en-US"}},
    };
    for (const auto& [tracks, spoken] : cases) {
        const SpokenLanguages found = automatic().languages(tracks, {});
        EXPECT_EQ(found, spoken) << found.you << ", " << found.them << ", " << found.call;
    }
    const SpeechTranscriber told({.locale = "en-US"}, {}, {data});
    EXPECT_EQ(told.languages(cases[0].tracks, {}).you, "en-US") << "who says the language is believed";
    std::stop_source stopped;
    stopped.request_stop();
    EXPECT_EQ(automatic().languages(cases[0].tracks, stopped.get_token()).you, "en-US");
}

TEST_F(SpeechLanguageTest, transcribe_otherLanguages_areWrittenInThem) {
    for (const auto& [voice, text] : {std::pair("de", german), std::pair("fr", french), std::pair("es", spanish)}) {
        const std::vector<Segment> lines =
            automatic().transcribe({say(voice, text), Speaker::them, std::nullopt, voice}, [](double /*done*/) {}, {});
        // The voice is a poor one; taken for English, hardly a word would be right.
        EXPECT_LT(wordErrors(text, textOf(lines)), 0.6) << textOf(lines);
    }
}

TEST_F(SpeechLanguageTest, transcribe_moreTokensThanTheEngineGivesAtOnce_loseNoWord) {
    files.run("espeak-ng -v fr -s 175 -w fast.wav \"Bonjour à tous, aujourd'hui nous allons parler du budget de notre "
              "projet, parce qu'il ne reste que trois semaines avant le lancement et que personne n'a encore décidé "
              "quel sera le prix.\"");
    const std::string text = textOf(automatic().transcribe({files.path("fast.wav"), Speaker::them, std::nullopt, "fr"},
                                                           [](double /*done*/) {}, {}));
    EXPECT_TRUE(text.ends_with("le prix. ")) << text;
}

} // namespace
} // namespace varnic
