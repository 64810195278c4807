#include "VarnicPlatform/Speech/SpeechDetector.h"

#include "VarnicCore/Pipeline/Transcriber.h"

#include <sherpa-onnx/c-api/c-api.h>

#include <algorithm>
#include <cstddef>
#include <utility>

namespace varnic {

namespace {

/// The samples that Silero looks at in one go.
constexpr std::size_t window = 512;
/// The engine keeps all of an utterance in memory, and prints when it is longer than this.
constexpr auto bufferSeconds = static_cast<float>(SpeechDetector::latest);
constexpr std::int64_t longestUtterance = std::int64_t{30} * SpeechDetector::rate;

} // namespace

void SpeechDetector::Destroy::operator()(const SherpaOnnxVoiceActivityDetector* detector) const {
    SherpaOnnxDestroyVoiceActivityDetector(detector);
}

SpeechDetector SpeechDetector::create(const std::filesystem::path& modelFile) {
    SherpaOnnxVadModelConfig config{};
    config.silero_vad.model = modelFile.c_str();
    config.silero_vad.threshold = 0.5F;
    config.silero_vad.min_silence_duration = 0.3F;
    config.silero_vad.min_speech_duration = 0.1F;
    config.silero_vad.max_speech_duration = 20;
    config.silero_vad.window_size = window;
    config.sample_rate = rate;
    config.num_threads = 1;
    config.provider = "cpu";
    const SherpaOnnxVoiceActivityDetector* detector = SherpaOnnxCreateVoiceActivityDetector(&config, bufferSeconds);
    if (detector == nullptr) {
        throw TranscriberError::unavailable();
    }
    return SpeechDetector(detector);
}

void SpeechDetector::add(std::span<const float> samples) {
    while (!samples.empty()) {
        const std::size_t count = std::min(samples.size(), window);
        SherpaOnnxVoiceActivityDetectorAcceptWaveform(detector_.get(), samples.data(), static_cast<int32_t>(count));
        samples = samples.subspan(count);
        given_ += static_cast<std::int64_t>(count);
        const bool speaks = SherpaOnnxVoiceActivityDetectorDetected(detector_.get()) != 0;
        speaking_ = speaks ? speaking_ + static_cast<std::int64_t>(count) : 0;
        if (speaking_ > longestUtterance) {
            SherpaOnnxVoiceActivityDetectorFlush(detector_.get());
            speaking_ = 0;
        }
        collect();
    }
}

void SpeechDetector::addSilence(std::int64_t samples) {
    close();
    passed_ += samples;
}

std::vector<VoiceActivity::Range> SpeechDetector::finish() {
    close();
    return take();
}

void SpeechDetector::close() {
    if (given_ > 0) {
        SherpaOnnxVoiceActivityDetectorFlush(detector_.get());
        collect();
        SherpaOnnxVoiceActivityDetectorReset(detector_.get());
        passed_ += std::exchange(given_, 0);
        speaking_ = 0;
    }
}

void SpeechDetector::collect() {
    while (SherpaOnnxVoiceActivityDetectorEmpty(detector_.get()) == 0) {
        const SherpaOnnxSpeechSegment* segment = SherpaOnnxVoiceActivityDetectorFront(detector_.get());
        if (segment == nullptr) {
            throw TranscriberError::failed("the speech detector gave nothing");
        }
        const auto start = static_cast<double>(passed_ + segment->start);
        found_.push_back({start / rate, (start + segment->n) / rate});
        SherpaOnnxDestroySpeechSegment(segment);
        SherpaOnnxVoiceActivityDetectorPop(detector_.get());
    }
}

} // namespace varnic
