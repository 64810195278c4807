#include "VarnicCore/Audio/SoundFiles.h"
#include "VarnicPlatform/Speech/LiveRecognizer.h"
#include "VarnicPlatform/Speech/SpeechTranscriber.h"
#include "VarnicPlatform/Speech/Words.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace varnic {
namespace {

namespace fs = std::filesystem;

const std::string recordings = VARNIC_RECORDINGS;
const fs::path data = VARNIC_DATA;

void ignore(double /*progress*/) {}

/// The model that every developer has.
const ModelChoice fastest{.preference = ModelChoice::Preference::fastest, .id = {}};

std::vector<Segment> transcribe(const fs::path& file, const ModelChoice& choice = fastest,
                                const std::vector<fs::path>& directories = {data}) {
    return SpeechTranscriber({"en-US"}, choice, directories).transcribe({file, Speaker::you}, ignore, {});
}

/// The start of the line that begins with the text, or -1.
double startOf(const std::vector<Segment>& lines, std::string_view text) {
    const auto found = std::ranges::find_if(lines, [text](const Segment& line) { return line.text.starts_with(text); });
    return found == lines.end() ? -1 : found->start;
}

TEST(SpeechTranscriber, transcribe_readSpeech_eachModelHearsWhatIsSaid) {
    for (const SpeechModel& model : SpeechModels::installed({data})) {
        SCOPED_TRACE(model.id);
        const ModelChoice choice = ModelChoice::from(model.id);
        const std::vector<Segment> lines = transcribe(recordings + "/two_cities.wav", choice);
        EXPECT_LT(wordErrors(twoCities, textOf(lines)), 0.06) << textOf(lines);
        ASSERT_FALSE(lines.empty());
        EXPECT_TRUE(std::ranges::is_sorted(lines, {}, &Segment::start));
        EXPECT_LT(lines.back().end, 44.4);
        const std::vector<Segment> other = transcribe(recordings + "/beckett.wav", choice);
        EXPECT_LT(wordErrors("Ever tried. Ever failed. No matter. Try again. Fail again. Fail better.", textOf(other)),
                  0.09)
            << textOf(other);
    }
}

TEST(SpeechTranscriber, surpasses_modelOfTheCall_onlyWhereAnotherIsPreferredNow) {
    const auto live = LiveRecognizer::create(Speaker::you, "en-US", {data}, {}, {});
    const SpeechTranscriber transcriber({"en-US"}, fastest, {data});
    EXPECT_FALSE(live->model().empty());
    EXPECT_FALSE(transcriber.surpasses(live->model(), {}));
    EXPECT_TRUE(transcriber.surpasses("of yesterday", {}));
    EXPECT_FALSE(transcriber.surpasses("", {}));
    EXPECT_FALSE(SpeechTranscriber({"tlh"}, {}, {data}).surpasses("of yesterday", {}));
}

TEST(SpeechTranscriber, transcribe_linesWithPauses_haveTheirTimes) {
    const SoundFiles files;
    const auto say = [&files](const std::string& name, const std::string& text) {
        files.run("flite -voice slt --setf duration_stretch=1.15 -t '" + text + "' -o " + name);
    };
    say("a.wav", "Please send me the contract before the meeting tomorrow.");
    say("b.wav", "The weather in the mountains was very cold last winter. We should visit my brother in the summer.");
    say("c.wav", "Everybody agreed to finish the report on Friday.");
    // The lines begin at 2, 9 and 20 seconds, quietly, in a compressed stereo file at another rate.
    files.make("mix.wav", "-i a.wav -i b.wav -i c.wav -filter_complex \"[0]adelay=2000[a];[1]adelay=9000[b];"
                          "[2]adelay=20000[c];[a][b][c]amix=3:normalize=0,volume=-14dB,apad=whole_dur=26\"");
    const auto track = files.make("track.m4a", "-i mix.wav -ar 44100 -ac 2 -c:a aac -b:a 64k");
    std::vector<double> told;
    const SpeechTranscriber transcriber({"en-US"}, fastest, {data});
    const std::vector<Segment> lines =
        transcriber.transcribe({track, Speaker::them}, [&told](double done) { told.push_back(done); }, {});
    EXPECT_NEAR(startOf(lines, "Please"), 2.1, 0.5) << textOf(lines);
    EXPECT_NEAR(startOf(lines, "The weather"), 9.1, 0.5);
    EXPECT_NEAR(startOf(lines, "Everybody"), 20.1, 0.5);
    for (const Segment& line : lines) {
        EXPECT_EQ(line.speaker, Speaker::them);
    }
    EXPECT_FALSE(told.empty());
    EXPECT_TRUE(std::ranges::is_sorted(told));
    EXPECT_TRUE(std::ranges::all_of(told, [](double done) { return done >= 0 && done <= 0.99; }));
}

TEST(SpeechTranscriber, transcribe_withoutDetector_findsSpeechByItsLevel) {
    const SoundFiles files;
    fs::create_directories(files.path("data/varnic"));
    fs::create_directory_symlink(data / "varnic/models", files.path("data/varnic/models"));
    const std::string text = textOf(transcribe(recordings + "/beckett.wav", fastest, {files.path("data")}));
    EXPECT_NE(text.find("tried"), std::string::npos) << text;
}

TEST(SpeechTranscriber, transcribe_quietSpeechInSteadyNoise_isHeard) {
    const SoundFiles files;
    const std::string voice = "-i '" + recordings + "/two_cities.wav' -f lavfi -i anoisesrc=d=44:s=7:a=";

    struct Case {
        const char* name;
        std::string arguments;
        double most;
    };

    const std::vector<Case> cases{
        {"as loud.wav", voice + "0.032 -filter_complex amix=normalize=0,volume=-6dB -ac 1", 0.5},
        // As telephones even it out, and nowhere 15 dB above the noise or at -30 dB.
        {"far.wav",
         voice + "0.006 -filter_complex '[0]acompressor=threshold=0.012:ratio=20:attack=1:release=50,volume=-3dB[v];"
                 "[v][1]amix=normalize=0' -ac 1",
         0.4}};
    for (const auto& [name, arguments, most] : cases) {
        const std::string text = textOf(transcribe(files.make(name, arguments)));
        EXPECT_LT(wordErrors(twoCities, text), most) << name << ": " << text;
    }
}

TEST(SpeechTranscriber, transcribe_nobodySpeaks_isEmpty) {
    const SoundFiles files;
    const std::vector<std::pair<std::string, std::string>> inputs{
        {"silence.m4a", "-f lavfi -i anullsrc=r=48000:d=20 -c:a aac"},
        {"hum.wav", "-f lavfi -i sine=f=50:d=20 -af volume=-20dB"},
        {"noise.wav", "-f lavfi -i anoisesrc=d=20:a=0.1"},
        {"far noise.wav", "-f lavfi -i anoisesrc=d=20:a=0.02:c=pink"},
        {"far hum.wav", "-f lavfi -i sine=f=120:d=20 -af volume=-20dB"},
        {"bursts.wav", "-f lavfi -i anoisesrc=d=20:a=0.3 -af \"volume='if(lt(mod(t,2),0.7),1,0)':eval=frame\""},
        {"chord.wav", "-f lavfi -i \"aevalsrc='0.2*(sin(1382*t)+sin(1741*t)+sin(2073*t))*exp(-2*mod(t,1))':d=20\""}};
    for (const auto& [name, arguments] : inputs) {
        const std::vector<Segment> lines = transcribe(files.make(name, arguments));
        EXPECT_TRUE(lines.empty()) << name << ": " << textOf(lines);
    }
}

struct Failure {
    std::string what;
    std::string locale;
    fs::path file;
    fs::path directory;
    TranscriberError error;
};

TEST(SpeechTranscriber, transcribe_somethingIsMissing_saysWhatInOrder) {
    const SoundFiles files;
    const auto text = files.write("notes.txt", "no sound in here, however long one listens");
    fs::create_directories(files.path("broken/varnic"));
    fs::copy(data / "varnic/models", files.path("broken/varnic/models"), fs::copy_options::recursive);
    for (const auto& entry : fs::recursive_directory_iterator(files.path("broken"))) {
        if (entry.path().filename() == "encoder_model.ort") {
            fs::resize_file(entry.path(), fs::file_size(entry.path()) / 2);
        }
    }
    const fs::path speech = recordings + "/beckett.wav";
    const std::vector<Failure> failures{
        {"no file before no model", "tlh", "/nowhere.wav", "/nowhere", TranscriberError::missingFile()},
        {"no model at all", "tlh", speech, "/nowhere", TranscriberError::notAuthorized()},
        {"none for the language", "tlh-US", speech, data, TranscriberError::noOnDevice("Klingon (United States)")},
        {"none for the language", "tlh", speech, data, TranscriberError::noOnDevice("Klingon")},
        {"no sound", "en-US", text, data,
         TranscriberError::failed("“notes.txt” doesn’t hold any sound Varnic can read.")},
        {"a damaged model", "en-US", speech, files.path("broken"), TranscriberError::unavailable()},
    };
    for (const auto& [what, locale, file, directory, expected] : failures) {
        try {
            static_cast<void>(
                SpeechTranscriber({locale}, fastest, {directory}).transcribe({file, Speaker::you}, ignore, {}));
            ADD_FAILURE() << what;
        } catch (const TranscriberError& error) {
            EXPECT_EQ(error, expected) << what << ": " << error.what();
        }
    }
    const auto silence = files.make("silence.wav", "-f lavfi -i anullsrc=d=3");
    EXPECT_TRUE(transcribe(silence, fastest, {files.path("broken")}).empty()) << "silence needs no engine";
}

TEST(SpeechTranscriber, transcribe_stopRequested_endsAtTheNextSegment) {
    const SoundFiles files;
    const auto track = files.make("long.wav", "-stream_loop 4 -i '" + recordings + "/two_cities.wav'");
    const SpeechTranscriber transcriber({"en-US"}, fastest, {data});
    std::stop_source source;
    std::vector<double> told;
    const auto stopAtFirstSegment = [&](double done) {
        told.push_back(done);
        if (done > 0.16) {
            source.request_stop();
        }
    };
    EXPECT_THROW(
        static_cast<void>(transcriber.transcribe({track, Speaker::you}, stopAtFirstSegment, source.get_token())),
        TranscriberError);
    ASSERT_FALSE(told.empty());
    EXPECT_LT(told.back(), 0.4);
    EXPECT_THROW(static_cast<void>(transcriber.transcribe({track, Speaker::you}, ignore, source.get_token())),
                 TranscriberError)
        << "stopped before it began";
}

TEST(SpeechTranscriber, transcribe_twoTracksAtOnce_giveWhatEachGivesAlone) {
    const SpeechTranscriber transcriber({"en-US"}, fastest, {data});
    const std::string file = recordings + "/beckett.wav";
    const std::string alone = textOf(transcribe(file));
    std::string you;
    std::string them;
    {
        const std::jthread first([&] { you = textOf(transcriber.transcribe({file, Speaker::you}, ignore, {})); });
        const std::jthread second([&] { them = textOf(transcriber.transcribe({file, Speaker::them}, ignore, {})); });
    }
    EXPECT_EQ(you, alone);
    EXPECT_EQ(them, alone);
}

} // namespace
} // namespace varnic
