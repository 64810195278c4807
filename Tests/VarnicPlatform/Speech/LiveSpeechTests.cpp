#include "VarnicCore/Audio/AudioReader.h"
#include "VarnicCore/Audio/SoundFiles.h"
#include "VarnicPlatform/Speech/LiveRecognizer.h"
#include "VarnicPlatform/Speech/Words.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <condition_variable>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace varnic {
namespace {

namespace fs = std::filesystem;

const std::string recordings = VARNIC_RECORDINGS;
const fs::path data = VARNIC_DATA;

constexpr double rate = TrackFormat::sampleRate;

std::vector<float> samplesOf(const fs::path& file) {
    AudioReader reader = AudioReader::openMono(file, TrackFormat::processing.rate);
    std::vector<float> samples;
    PcmBuffer block;
    while (reader.read(block)) {
        samples.insert(samples.end(), block.channels.front().begin(), block.channels.front().end());
    }
    return samples;
}

/// A recogniser on the real engine, fed as fast as it takes the sound, and what it has said.
class LiveSpeechTest : public testing::Test {
protected:
    void start(const std::vector<fs::path>& directories = {data}) {
        recogniser = LiveRecognizer::create(
            Speaker::you, "en-US", directories,
            [this](Speaker, const std::vector<Segment>& lines) { take(lines, false); },
            [this](Speaker, const std::vector<Segment>& lines) { take(lines, true); });
    }

    /// Gives sound in buffers of 20 ms; the time behind it.
    double feed(const std::vector<float>& samples, double at) {
        constexpr std::ptrdiff_t step = 960;
        for (auto from = samples.begin(); from != samples.end();) {
            const auto to = from + std::min(step, samples.end() - from);
            recogniser->append({TrackFormat::processing.rate, {{from, to}}}, at);
            at += static_cast<double>(to - from) / rate;
            from = to;
        }
        return at;
    }

    void take(const std::vector<Segment>& lines, bool isFinal) {
        const std::scoped_lock lock(mutex);
        EXPECT_FALSE(isSilenced);
        if (isFinal) {
            committed.insert(committed.end(), lines.begin(), lines.end());
        }
        heard += lines.size();
        changed.notify_all();
    }

    [[nodiscard]] bool waitFor(const std::function<bool()>& condition) {
        std::unique_lock lock(mutex);
        return changed.wait_for(lock, std::chrono::minutes(2), condition);
    }

    [[nodiscard]] bool waitForLineBehind(double seconds) {
        return waitFor([this, seconds] { return !committed.empty() && committed.back().end > seconds; });
    }

    /// Ends the sound and waits for all that is said of it, so that no more of it comes; whether its end was reached.
    [[nodiscard]] bool finish(double seconds) {
        recogniser->endAudio();
        const bool isThere = waitForLineBehind(seconds);
        while (isThere && !recogniser->isDone()) { // which it is once its thread comes back from the last line
            std::this_thread::yield();
        }
        return isThere;
    }

    std::mutex mutex;
    std::condition_variable changed;
    std::vector<Segment> committed;
    std::size_t heard = 0;
    std::atomic<bool> isSilenced = false;
    std::unique_ptr<LiveRecognizer> recogniser;
};

TEST_F(LiveSpeechTest, append_readSpeechFasterThanRealTime_commitsAllOfIt) {
    start();
    feed(samplesOf(recordings + "/two_cities.wav"), 0);
    EXPECT_FALSE(recogniser->isDone()) << "44 seconds are not heard in no time";
    ASSERT_TRUE(finish(41));
    EXPECT_LT(wordErrors(twoCities, textOf(committed)), 0.1) << textOf(committed);
    EXPECT_TRUE(std::ranges::is_sorted(committed, {}, &Segment::start));
    EXPECT_LT(committed.back().end, 44.4);
}

TEST_F(LiveSpeechTest, append_speechAcrossARotation_losesHardlyAWord) {
    start();
    const double end = feed(samplesOf(recordings + "/two_cities.wav"), 30);
    feed(samplesOf(recordings + "/beckett.wav"), end);
    ASSERT_TRUE(finish(end + 8));
    const std::string beckett = " Ever tried. Ever failed. No matter. Try again. Fail again. Fail better.";
    EXPECT_LT(wordErrors(twoCities + beckett, textOf(committed)), 0.08) << textOf(committed);
    EXPECT_TRUE(std::ranges::is_sorted(committed, {}, &Segment::start)) << "old requests commit before new ones";
}

TEST_F(LiveSpeechTest, append_afterGaps_linesHaveTheTimesTheyWereSaidAt) {
    const std::vector<float> line = samplesOf(recordings + "/clone-test.wav");
    start();
    // A gap within a request, and one of an hour.
    const std::vector<double> times{100, 112.34, 3700};
    std::vector<double> starts;
    for (const double at : times) {
        feed(line, at);
        ASSERT_TRUE(waitForLineBehind(at)) << "nothing comes behind it, and yet it ends";
        const std::scoped_lock lock(mutex);
        const auto first = std::ranges::find_if(committed, [at](const Segment& said) { return said.start > at; });
        starts.push_back(first->start - at);
    }
    EXPECT_GT(starts[0], 0);
    EXPECT_LT(starts[0], 2);
    EXPECT_NEAR(starts[1], starts[0], 0.1);
    EXPECT_NEAR(starts[2], starts[0], 0.1);
}

TEST_F(LiveSpeechTest, append_soundBreaksOff_noLineComesOfTheSilenceBehindIt) {
    const std::vector<float> speech = samplesOf(recordings + "/two_cities.wav");
    const std::vector<double> cuts{2.0, 2.3, 2.6, 2.9, 3.2, 3.5, 3.8, 4.1}; // seconds, in the middle of words
    constexpr double apart = 6;
    start();
    double at = 0;
    for (const double cut : cuts) {
        feed({speech.begin(), speech.begin() + static_cast<std::ptrdiff_t>(cut * rate)}, at);
        ASSERT_TRUE(waitFor([&] { return !committed.empty() && committed.back().start >= at; }));
        at += apart;
    }
    const std::scoped_lock lock(mutex);
    EXPECT_EQ(committed.size(), cuts.size()) << textOf(committed);
    for (const Segment& line : committed) {
        EXPECT_LT(std::fmod(line.start, apart), 2) << line.text;
    }
}

TEST_F(LiveSpeechTest, append_speechOfAllLevels_isHeard) {
    for (const float gain : {0.1F, 1.0F, 3.0F}) {
        committed.clear();
        std::vector<float> samples = samplesOf(recordings + "/beckett.wav");
        std::ranges::for_each(samples, [gain](float& sample) { sample *= gain; });
        start();
        feed(samples, 0);
        ASSERT_TRUE(finish(8)) << gain;
        const std::string said = "Ever tried. Ever failed. No matter. Try again. Fail again. Fail better.";
        EXPECT_LT(wordErrors(said, textOf(committed)), 0.3) << gain << ": " << textOf(committed);
    }
}

TEST_F(LiveSpeechTest, cancel_whileItHears_noCallbackRunsAfterwards) {
    const std::vector<float> samples = samplesOf(recordings + "/two_cities.wav");
    for (int run = 0; run < 3; ++run) {
        start();
        isSilenced = false;
        heard = 0;
        feed(samples, 0);
        if (run > 0) {
            ASSERT_TRUE(waitFor([this] { return heard > 0; }));
        }
        recogniser->cancel();
        isSilenced = true;
        feed(samples, 44);
        recogniser->endAudio();
        recogniser.reset();
    }
}

TEST_F(LiveSpeechTest, destroyed_whileItHears_endsWithoutACallback) {
    const std::vector<float> samples = samplesOf(recordings + "/two_cities.wav");
    start();
    recogniser.reset();
    for (int run = 0; run < 3; ++run) {
        start();
        isSilenced = false;
        heard = 0;
        feed(samples, 0);
        recogniser->endAudio();
        ASSERT_TRUE(run == 0 || waitFor([this] { return heard > 0; }));
        recogniser.reset();
        isSilenced = true;
    }
}

TEST_F(LiveSpeechTest, create_withoutAModelForTheLanguage_givesNone) {
    const auto none = [](Speaker, const std::vector<Segment>&) {};
    EXPECT_EQ(LiveRecognizer::create(Speaker::you, "en-US", {"/nowhere"}, none, none), nullptr);
    EXPECT_EQ(LiveRecognizer::create(Speaker::you, "tlh", {data}, none, none), nullptr);
}

TEST_F(LiveSpeechTest, append_modelOrDetectorIsDamaged_theCallGoesOn) {
    const SoundFiles files;
    fs::create_directories(files.path("model/varnic/vad"));
    fs::copy(data / "varnic/models", files.path("model/varnic/models"), fs::copy_options::recursive);
    files.write("model/varnic/vad/silero_vad.onnx", "no model");
    start({files.path("model")});
    feed(samplesOf(recordings + "/beckett.wav"), 0);
    EXPECT_TRUE(waitForLineBehind(3)) << "speech is found by its level";
    for (const auto& entry : fs::recursive_directory_iterator(files.path("model"))) {
        if (entry.path().filename() == "encoder_model.ort") {
            fs::resize_file(entry.path(), fs::file_size(entry.path()) / 2);
        }
    }
    start({files.path("model")});
    ASSERT_NE(recogniser, nullptr);
    isSilenced = true;
    feed(samplesOf(recordings + "/beckett.wav"), 0);
    recogniser->endAudio();
}

} // namespace
} // namespace varnic
