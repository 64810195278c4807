#pragma once

#include "VarnicCore/TemporaryFolder.h"
#include "VarnicPlatform/Capture/Recorder.h"
#include "VarnicPlatform/Capture/SoundSystem.h"
#include "VarnicPlatform/Capture/Tones.h"

#include <gmock/gmock.h>

#include <optional>
#include <string>
#include <vector>

namespace varnic {

/// A test with a sound system and a recorder of its own, and long tones to play.
class LiveCaptureTest : public testing::Test {
protected:
    static constexpr double micTone = 1000;
    static constexpr double playerTone = 440;

    void startSystem(const std::vector<std::string>& options = {}) { system.emplace(options); }

    /// The command with its answer.
    std::string run(const std::string& command) { return (*system)(command); }

    /// A file with a sine a channel, long enough for any test.
    std::string tone(const std::vector<double>& frequencies, int rate = 48'000) {
        const auto file = folder.path() / ("tone" + std::to_string(++files) + ".wav");
        Tones::write(file, Tones::sines(frequencies, 60, rate), rate);
        return file;
    }

    std::string feedMicrophone() { return run("feed " + tone({micTone})); }

    std::string play(double frequency = playerTone) { return run("play " + tone({frequency})); }

    /// Whether both sides come to hear what is said and played.
    [[nodiscard]] bool bothSidesHear() const {
        return recorder.comesToHear(Speaker::you, micTone) && recorder.comesToHear(Speaker::them, playerTone);
    }

    [[nodiscard]] bool comesToReport(const std::string& sentence) const {
        return comes([&] { return testing::Value(recorder.capture.problems(), testing::Contains(sentence)); });
    }

    void TearDown() override {
        recorder.capture.stop();
        EXPECT_EQ(recorder.misplaced(), 0);
        EXPECT_EQ(recorder.capture.lostFrames(), 0U);
    }

    TemporaryFolder folder;
    std::optional<SoundSystem> system;
    Recorder recorder;
    int files = 0;
};

} // namespace varnic
