#include "VarnicPlatform/Speech/SpeechTranscriber.h"

#include "VarnicCore/Audio/AudioError.h"
#include "VarnicCore/Text/Language.h"
#include "VarnicCore/Transcript/Utterances.h"
#include "VarnicPlatform/Speech/GuardedDecoding.h"
#include "VarnicPlatform/Speech/LanguageSearch.h"
#include "VarnicPlatform/Speech/ModelCheck.h"
#include "VarnicPlatform/Speech/NoiseReduction.h"
#include "VarnicPlatform/Speech/SharedRecognizer.h"
#include "VarnicPlatform/Speech/SpeechModel.h"
#include "VarnicPlatform/Speech/TrackSegmenter.h"

#include <algorithm>
#include <memory>
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
/// Noise that is not steady isn't cleaned: with music below it or in a room that rings, the speech goes with it.
constexpr float noisy = -40;

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
        throw TranscriberError::noOnDevice(Language::name(locale, displayLocale));
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

/// Of the models that tell languages the one that knows them best; nothing where there is none.
std::optional<SpeechModel> languageModel(const std::vector<SpeechModel>& models) {
    std::optional<SpeechModel> best;
    for (const SpeechModel& model : models) {
        if (model.tellsLanguages() && (!best || model.bytes > best->bytes) && !ModelCheck::fault(model)) {
            best = model;
        }
    }
    return best;
}

} // namespace

SpeechTranscriber::SpeechTranscriber(LanguageChoice language, ModelChoice choice,
                                     std::vector<std::filesystem::path> dataDirectories, std::string displayLocale)
    : language_(std::move(language)), choice_(std::move(choice)), dataDirectories_(std::move(dataDirectories)),
      displayLocale_(std::move(displayLocale)) {}

std::vector<Segment> SpeechTranscriber::transcribe(const SpokenTrack& track, const ProgressCallback& progress,
                                                   std::stop_token stop) const {
    std::error_code error;
    if (!std::filesystem::exists(track.file, error)) {
        throw TranscriberError::missingFile();
    }
    const std::string& locale = track.language.empty() ? language_.locale : track.language;
    const SpeechModel model = modelFor(locale, choice_, dataDirectories_, displayLocale_);
    try {
        TrackSegmenter segmenter(track, SpeechModels::detectorFile(dataDirectories_), model.segments(), stop);
        std::shared_ptr<const SharedRecognizer> recognizer; // a track without speech needs none
        const auto decode = [&](std::span<const float> samples) {
            if (stop.stop_requested()) {
                throw TranscriberError::failed("cancelled");
            }
            if (!recognizer) {
                recognizer = SharedRecognizer::of(model, locale);
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

SpokenLanguages SpeechTranscriber::languages(const CallTracks& tracks, const std::stop_token& stop) const {
    const std::string& usual = language_.locale;
    const std::vector<SpeechModel> models =
        language_.isAutomatic ? SpeechModels::installed(dataDirectories_) : std::vector<SpeechModel>();
    const std::optional<SpeechModel> model = languageModel(models);
    if (!model) {
        return {.you = usual, .them = usual, .call = usual};
    }
    std::optional<LanguageIdentifier> identifier; // sides without speech need none
    const auto identify = [&](std::span<const float> samples) -> std::optional<std::string> {
        if (stop.stop_requested()) {
            return std::nullopt;
        }
        if (!identifier) {
            identifier = LanguageIdentifier::create(*model);
        }
        return identifier->identify(samples);
    };
    const auto isKnown = [&models](std::string_view language) {
        return std::ranges::any_of(models, [language](const SpeechModel& one) { return one.fits(language); });
    };
    const auto heardOn = [&](const SpokenTrack& track) -> LanguageSearch::Heard {
        try {
            return LanguageSearch::stretchesOf(track, SpeechModels::detectorFile(dataDirectories_), stop)
                .heard(identify, isKnown);
        } catch (const std::exception&) {
            return {}; // whoever transcribes the track finds out what it lacks
        }
    };
    const auto you = tracks.you ? heardOn({*tracks.you, Speaker::you, tracks.them, {}}) : LanguageSearch::Heard();
    const auto them = tracks.them ? heardOn({*tracks.them, Speaker::them, {}, {}}) : LanguageSearch::Heard();
    return LanguageSearch::together(you, them, usual);
}

/// The model that is preferred for a language now, where that was not there yet when the call began.
bool SpeechTranscriber::surpasses(const std::string& liveModel, const SpokenLanguages& spoken) const {
    if (liveModel.empty()) {
        return false;
    }
    const std::vector<SpeechModel> models = SpeechModels::installed(dataDirectories_);
    return std::ranges::any_of(allSpeakers, [&](Speaker side) {
        std::vector<std::string> faults;
        const std::string& locale = spoken.of(side).empty() ? language_.locale : spoken.of(side);
        const auto model = ModelCheck::choose(models, locale, choice_, faults);
        return model && model->id != liveModel;
    });
}

} // namespace varnic
