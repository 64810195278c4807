#include "VarnicCore/Audio/AudioReader.h"
#include "VarnicCore/Audio/SoundFiles.h"
#include "VarnicPlatform/Speech/LiveRecognizer.h"
#include "VarnicPlatform/Speech/Words.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
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
        recogniser_ = LiveRecognizer::create(
            Speaker::you, "en-US", directories,
            [this](Speaker, const std::vector<Segment>& lines) { take(lines, false); },
            [this](Speaker, const std::vector<Segment>& lines) { take(lines, true); });
    }

    /// Gives sound in buffers of 20 ms; the time behind it.
    double feed(const std::vector<float>& samples, double at) {
        constexpr std::ptrdiff_t step = 960;
        for (auto from = samples.begin(); from != samples.end();) {
            const auto to = from + std::min(step, samples.end() - from);
            recogniser_->append({TrackFormat::processing.rate, {{from, to}}}, at);
            at += static_cast<double>(to - from) / rate;
            from = to;
        }
        return at;
    }

    void take(const std::vector<Segment>& lines, bool isFinal) {
        const std::scoped_lock lock(mutex_);
        EXPECT_FALSE(isSilenced_);
        if (isFinal) {
            committed_.insert(committed_.end(), lines.begin(), lines.end());
        }
        heard_ += lines.size();
        changed_.notify_all();
    }

    [[nodiscard]] bool waitFor(const std::function<bool()>& condition) {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, std::chrono::minutes(2), condition);
    }

    [[nodiscard]] bool waitForLineBehind(double seconds) {
        return waitFor([this, seconds] { return !committed_.empty() && committed_.back().end > seconds; });
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<Segment> committed_;
    std::size_t heard_ = 0;
    std::atomic<bool> isSilenced_ = false;
    std::unique_ptr<LiveRecognizer> recogniser_;
};

TEST_F(LiveSpeechTest, append_readSpeechFasterThanRealTime_commitsAllOfIt) {
    start();
    feed(samplesOf(recordings + "/two_cities.wav"), 0);
    recogniser_->endAudio();
    ASSERT_TRUE(waitForLineBehind(41));
    EXPECT_LT(wordErrors(twoCities, textOf(committed_)), 0.1) << textOf(committed_);
    EXPECT_TRUE(std::ranges::is_sorted(committed_, {}, &Segment::start));
    EXPECT_LT(committed_.back().end, 44.4);
}

TEST_F(LiveSpeechTest, append_speechAcrossARotation_losesHardlyAWord) {
    start();
    const double end = feed(samplesOf(recordings + "/two_cities.wav"), 30);
    feed(samplesOf(recordings + "/beckett.wav"), end);
    recogniser_->endAudio();
    ASSERT_TRUE(waitForLineBehind(end + 8));
    const std::string beckett = " Ever tried. Ever failed. No matter. Try again. Fail again. Fail better.";
    EXPECT_LT(wordErrors(twoCities + beckett, textOf(committed_)), 0.12) << textOf(committed_);
    EXPECT_TRUE(std::ranges::is_sorted(committed_, {}, &Segment::start)) << "old requests commit before new ones";
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
        const std::scoped_lock lock(mutex_);
        const auto first = std::ranges::find_if(committed_, [at](const Segment& said) { return said.start > at; });
        starts.push_back(first->start - at);
    }
    EXPECT_GT(starts[0], 0);
    EXPECT_LT(starts[0], 2);
    EXPECT_NEAR(starts[1], starts[0], 0.1);
    EXPECT_NEAR(starts[2], starts[0], 0.1);
}

TEST_F(LiveSpeechTest, append_withoutDetector_findsSpeechByItsLevel) {
    const SoundFiles files;
    fs::create_directories(files.path("data/varnic"));
    fs::create_directory_symlink(data / "varnic/models", files.path("data/varnic/models"));
    start({files.path("data")});
    feed(samplesOf(recordings + "/beckett.wav"), 0);
    recogniser_->endAudio();
    ASSERT_TRUE(waitForLineBehind(8));
    EXPECT_NE(textOf(committed_).find("better"), std::string::npos) << textOf(committed_);
}

TEST_F(LiveSpeechTest, append_speechOfAllLevels_isHeard) {
    for (const float gain : {0.1F, 1.0F, 3.0F}) {
        committed_.clear();
        std::vector<float> samples = samplesOf(recordings + "/beckett.wav");
        std::ranges::for_each(samples, [gain](float& sample) { sample *= gain; });
        start();
        feed(samples, 0);
        recogniser_->endAudio();
        ASSERT_TRUE(waitForLineBehind(8)) << gain;
        const std::string said = "Ever tried. Ever failed. No matter. Try again. Fail again. Fail better.";
        EXPECT_LT(wordErrors(said, textOf(committed_)), 0.3) << gain << ": " << textOf(committed_);
    }
}

TEST_F(LiveSpeechTest, cancel_whileItHears_noCallbackRunsAfterwards) {
    const std::vector<float> samples = samplesOf(recordings + "/two_cities.wav");
    for (int run = 0; run < 3; ++run) {
        start();
        isSilenced_ = false;
        heard_ = 0;
        feed(samples, 0);
        if (run > 0) {
            ASSERT_TRUE(waitFor([this] { return heard_ > 0; }));
        }
        recogniser_->cancel();
        isSilenced_ = true;
        feed(samples, 44);
        recogniser_->endAudio();
        recogniser_.reset();
    }
}

TEST_F(LiveSpeechTest, destroyed_whileItHears_endsWithoutACallback) {
    const std::vector<float> samples = samplesOf(recordings + "/two_cities.wav");
    start();
    recogniser_.reset();
    for (int run = 0; run < 3; ++run) {
        start();
        isSilenced_ = false;
        heard_ = 0;
        feed(samples, 0);
        recogniser_->endAudio();
        ASSERT_TRUE(run == 0 || waitFor([this] { return heard_ > 0; }));
        recogniser_.reset();
        isSilenced_ = true;
    }
}

TEST_F(LiveSpeechTest, create_withoutAModelForTheLanguage_givesNone) {
    const auto none = [](Speaker, const std::vector<Segment>&) {};
    EXPECT_EQ(LiveRecognizer::create(Speaker::you, "en-US", {"/nowhere"}, none, none), nullptr);
    EXPECT_EQ(LiveRecognizer::create(Speaker::you, "de-DE", {data}, none, none), nullptr);
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
    ASSERT_NE(recogniser_, nullptr);
    isSilenced_ = true;
    feed(samplesOf(recordings + "/beckett.wav"), 0);
    recogniser_->endAudio();
}

} // namespace
} // namespace varnic
