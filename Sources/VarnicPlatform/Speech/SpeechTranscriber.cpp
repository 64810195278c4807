#include "VarnicPlatform/Speech/SpeechTranscriber.h"

#include "VarnicCore/Audio/AudioError.h"
#include "VarnicCore/Text/Unicode.h"
#include "VarnicCore/Transcript/Utterances.h"
#include "VarnicPlatform/Speech/GuardedDecoding.h"
#include "VarnicPlatform/Speech/ModelCheck.h"
#include "VarnicPlatform/Speech/NoiseReduction.h"
#include "VarnicPlatform/Speech/SpeechModel.h"
#include "VarnicPlatform/Speech/SpeechRecognizer.h"
#include "VarnicPlatform/Speech/TrackSegmenter.h"

#include <unicode/locid.h>

#include <algorithm>
#include <optional>
#include <span>
#include <system_error>
#include <utility>

namespace varnic {

namespace {

/// A longer pause in seconds ends a line of the transcript.
constexpr double lineGap = 1.2;
constexpr double mostProgress = 0.99;
/// Speech is cleaned where the pauses around it are louder than this, with the speech at SpeechSegments::speechLevel.
/// The pauses of quiet recordings lie at -45 to -48 dB. With white or low noise 20 dB below the speech (pauses at -42
/// to -45) as many words were right before as after cleaning; 15 dB below, a third fewer were wrong in white noise.
constexpr float noisy = -40;

std::string displayName(const std::string& locale, const std::string& displayLocale) {
    icu::UnicodeString name;
    icu::Locale::createCanonical(locale.c_str()).getDisplayName(icu::Locale(displayLocale.c_str()), name);
    return name.isEmpty() ? locale : Unicode::utf8(name);
}

SpeechModel modelFor(const std::string& locale, const ModelChoice& choice,
                     const std::vector<std::filesystem::path>& directories, const std::string& displayLocale) {
    const std::vector<SpeechModel> models = SpeechModels::installed(directories);
    if (models.empty()) {
        throw TranscriberError::notAuthorized();
    }
    std::vector<std::string> faults;
    std::optional<SpeechModel> model = ModelCheck::choose(models, locale, choice, faults);
    if (!model && !faults.empty()) {
        throw TranscriberError::failed(faults.front());
    }
    if (!model) {
        throw TranscriberError::noOnDevice(displayName(locale, displayLocale));
    }
    return *std::move(model);
}

/// Takes noise out of the segments that have much of it, where noise reduction is installed.
class Quietening {
public:
    explicit Quietening(const std::vector<std::filesystem::path>& dataDirectories)
        : network_(NoiseReduction::network(dataDirectories)) {}

    /// What is to be decoded of a segment, until the next one's turn.
    std::span<const float> of(std::span<const float> samples, const SpeechSegment& segment) {
        if (segment.noise <= noisy || !isReady()) {
            return samples;
        }
        clean_ = reduction_->clean(samples);
        return clean_;
    }

private:
    bool isReady() {
        // It is looked for once, and not at all in a quiet track.
        const std::optional<std::filesystem::path> network = std::exchange(network_, std::nullopt);
        if (network && ModelCheck::isUsable(*network)) {
            reduction_ = NoiseReduction::create(*network);
        }
        return reduction_.has_value();
    }

    std::optional<std::filesystem::path> network_;
    std::optional<NoiseReduction> reduction_;
    std::vector<float> clean_;
};

} // namespace

SpeechTranscriber::SpeechTranscriber(std::string locale, ModelChoice choice,
                                     std::vector<std::filesystem::path> dataDirectories, std::string displayLocale)
    : locale_(std::move(locale)), choice_(std::move(choice)), dataDirectories_(std::move(dataDirectories)),
      displayLocale_(std::move(displayLocale)) {}

std::vector<Segment> SpeechTranscriber::transcribe(const SpokenTrack& track, const ProgressCallback& progress,
                                                   std::stop_token stop) const {
    std::error_code error;
    if (!std::filesystem::exists(track.file, error)) {
        throw TranscriberError::missingFile();
    }
    const SpeechModel model = modelFor(locale_, choice_, dataDirectories_, displayLocale_);
    try {
        TrackSegmenter segmenter(track, SpeechModels::detectorFile(dataDirectories_), model.longestSegment(), stop);
        std::optional<SpeechRecognizer> recognizer; // a track without speech needs none
        const auto decode = [&](std::span<const float> samples) {
            if (stop.stop_requested()) {
                throw TranscriberError::failed("cancelled");
            }
            if (!recognizer) {
                recognizer = SpeechRecognizer::create(model, locale_);
            }
            return recognizer->decode(samples);
        };
        Quietening quietening(dataDirectories_);
        std::vector<TimedWord> words;
        const auto transcribe = [&](std::span<const float> samples, const SpeechSegment& segment) {
            const std::vector<TimedWord> said =
                GuardedDecoding::decode(quietening.of(samples, segment), segment, segmenter.levels(), decode);
            words.insert(words.end(), said.begin(), said.end());
        };
        segmenter.run(transcribe, [&progress](double done) { progress(std::min(done, mostProgress)); });
        return Utterances::build(words, std::nullopt, track.speaker, 0, lineGap);
    } catch (const AudioError& unreadable) {
        throw TranscriberError::failed(unreadable.what());
    }
}

/// The model that is preferred for the language now, where that was not there yet when the call began.
bool SpeechTranscriber::surpasses(const std::string& liveModel) const {
    std::vector<std::string> faults;
    const auto model = ModelCheck::choose(SpeechModels::installed(dataDirectories_), locale_, choice_, faults);
    return model && !liveModel.empty() && model->id != liveModel;
}

} // namespace varnic
