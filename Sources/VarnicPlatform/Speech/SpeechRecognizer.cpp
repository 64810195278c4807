#include "VarnicPlatform/Speech/SpeechRecognizer.h"

#include "VarnicCore/Pipeline/Transcriber.h"
#include "VarnicCore/Text/Tokens.h"
#include "VarnicCore/Text/Unicode.h"
#include "VarnicPlatform/Speech/EngineMemory.h"
#include "VarnicPlatform/Speech/TranscriptGuards.h"

#include <sherpa-onnx/c-api/c-api.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <utility>

namespace varnic {

namespace {

/// The engine gives no more tokens of Whisper's a second than this, which is enough for English. Of a sentence in
/// Russian, Greek, Hindi or fast French, where a word takes more of them, it leaves out the end.
constexpr double whisperTokens = 6;
/// Seconds of audio that Whisper takes at once, with some to spare: of more the engine leaves out the end.
constexpr double longestAudio = 29;

/// "en" of "en-US".
std::string languageOf(std::string_view locale) {
    return std::string(locale.substr(0, locale.find_first_of("-_")));
}

/// Fills in the engine's form of a model's files. Its pointers point into `model` and `language`.
void describe(SherpaOnnxOfflineModelConfig& config, const SpeechModel& model, const std::string& language) {
    const auto file = [&model](const char* role) -> const char* {
        const auto found = model.files.find(role);
        return found == model.files.end() ? nullptr : found->second.c_str();
    };
    config.tokens = file("tokens");
    config.num_threads = 1;
    config.provider = "cpu";
    switch (model.engine) {
    case SpeechEngine::moonshine:
        config.moonshine = {.preprocessor = file("preprocessor"),
                            .encoder = file("encoder"),
                            .uncached_decoder = file("uncached_decoder"),
                            .cached_decoder = file("cached_decoder"),
                            .merged_decoder = file("merged_decoder")};
        break;
    case SpeechEngine::whisper:
        config.whisper.encoder = file("encoder");
        config.whisper.decoder = file("decoder");
        config.whisper.language = language.c_str();
        config.whisper.task = "transcribe";
        // The engine's own default length.
        config.whisper.tail_paddings = -1;
        config.whisper.enable_token_timestamps = model.tellsWordTimes ? 1 : 0;
        break;
    case SpeechEngine::transducer:
        config.transducer = {.encoder = file("encoder"), .decoder = file("decoder"), .joiner = file("joiner")};
        break;
    case SpeechEngine::senseVoice:
        config.sense_voice = {.model = file("model"), .language = language.c_str(), .use_itn = 1};
        break;
    }
}

/// The bytes of a token without the blank, or its stand-in U+2581, that marks a word's beginning.
std::string_view bareToken(std::string_view token) {
    constexpr std::string_view mark = "\u2581";
    token = Unicode::trim(token);
    return token.starts_with(mark) ? token.substr(mark.size()) : token;
}

/// The words of the text, each from its first token's time to the next one's; nothing where tokens and text differ.
std::vector<TimedWord> timedWords(std::string_view text, const SherpaOnnxOfflineRecognizerResult& result,
                                  double length) {
    if (result.timestamps == nullptr || result.count <= 0 || result.tokens_arr == nullptr) {
        return {};
    }
    std::vector<double> starts;
    std::string joined;
    for (int32_t index = 0; index < result.count; ++index) {
        const std::string_view bytes = bareToken(result.tokens_arr[index]);
        joined += bytes;
        starts.resize(joined.size(), static_cast<double>(result.timestamps[index]));
    }
    std::vector<TimedWord> words;
    std::size_t position = 0;
    for (const auto& [word, isJoined] : Tokens::split(text)) {
        if (joined.compare(position, word.size(), word) != 0) {
            return {};
        }
        words.push_back({std::string(word), starts[position], 0, isJoined});
        position += word.size();
    }
    for (std::size_t index = 0; index < words.size(); ++index) {
        const double next = index + 1 < words.size() ? words[index + 1].start : length;
        // A word of a second or more is followed by a pause that belongs to nobody.
        words[index].duration = std::clamp(next - words[index].start, 0.0, 1.0);
    }
    return words;
}

struct DestroyStream {
    void operator()(const SherpaOnnxOfflineStream* stream) const { SherpaOnnxDestroyOfflineStream(stream); }
};

struct DestroyResult {
    void operator()(const SherpaOnnxOfflineRecognizerResult* result) const {
        SherpaOnnxDestroyOfflineRecognizerResult(result);
    }
};

} // namespace

void SpeechRecognizer::Destroy::operator()(const SherpaOnnxOfflineRecognizer* recognizer) const {
    SherpaOnnxDestroyOfflineRecognizer(recognizer);
    returnEngineMemory();
}

SpeechRecognizer SpeechRecognizer::create(const SpeechModel& model, std::string_view locale) {
    // The engine ends the process over a language that it knows by another tag.
    const std::string language = languageOf(model.tagFor(locale).value_or(std::string(locale)));
    SherpaOnnxOfflineRecognizerConfig config{};
    config.feat_config.sample_rate = rate;
    config.feat_config.feature_dim = 80;
    config.decoding_method = "greedy_search";
    describe(config.model_config, model, language);
    const SherpaOnnxOfflineRecognizer* recognizer = SherpaOnnxCreateOfflineRecognizer(&config);
    if (recognizer == nullptr) {
        throw TranscriberError::unavailable();
    }
    returnEngineMemory();
    const double mostTokens =
        model.engine == SpeechEngine::whisper ? whisperTokens : std::numeric_limits<double>::infinity();
    return {recognizer, mostTokens};
}

Recognition SpeechRecognizer::decode(std::span<const float> samples) const {
    Recognition recognition = decodeOnce(samples);
    constexpr auto most = static_cast<std::size_t>(longestAudio * rate);
    // A text that repeats itself would only go on with that.
    if (recognition.isCutShort && samples.size() < most && !TranscriptGuards::repeats(recognition.text)) {
        // Silence behind it makes room for as many tokens again.
        std::vector<float> longer(samples.begin(), samples.end());
        longer.resize(std::min(2 * samples.size(), most));
        recognition = decodeOnce(longer);
    }
    return recognition;
}

Recognition SpeechRecognizer::decodeOnce(std::span<const float> samples) const {
    const std::unique_ptr<const SherpaOnnxOfflineStream, DestroyStream> stream(
        SherpaOnnxCreateOfflineStream(recognizer_.get()));
    if (stream == nullptr) {
        throw TranscriberError::failed("the speech engine has no memory left");
    }
    SherpaOnnxAcceptWaveformOffline(stream.get(), rate, samples.data(), static_cast<int32_t>(samples.size()));
    SherpaOnnxDecodeOfflineStream(recognizer_.get(), stream.get());
    const std::unique_ptr<const SherpaOnnxOfflineRecognizerResult, DestroyResult> result(
        SherpaOnnxGetOfflineStreamResult(stream.get()));
    if (result == nullptr || result->text == nullptr) {
        throw TranscriberError::failed("the speech engine gave no answer");
    }
    Recognition recognition;
    recognition.text = Unicode::trim(result->text);
    recognition.tokens = static_cast<std::size_t>(std::max<int32_t>(result->count, 0));
    const double seconds = static_cast<double>(samples.size()) / rate;
    recognition.isCutShort = static_cast<double>(recognition.tokens + 1) > mostTokens_ * seconds;
    recognition.words = timedWords(recognition.text, *result, seconds);
    return recognition;
}

} // namespace varnic
