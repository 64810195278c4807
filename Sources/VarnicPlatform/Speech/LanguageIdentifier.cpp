#include "VarnicPlatform/Speech/LanguageIdentifier.h"

#include "VarnicCore/Audio/TranscriberError.h"
#include "VarnicPlatform/Speech/EngineMemory.h"

#include <sherpa-onnx/c-api/c-api.h>

#include <cstdint>

namespace varnic {

namespace {

struct DestroyStream {
    void operator()(const SherpaOnnxOfflineStream* stream) const { SherpaOnnxDestroyOfflineStream(stream); }
};

struct DestroyResult {
    void operator()(const SherpaOnnxSpokenLanguageIdentificationResult* result) const {
        SherpaOnnxDestroySpokenLanguageIdentificationResult(result);
    }
};

} // namespace

void LanguageIdentifier::Destroy::operator()(const SherpaOnnxSpokenLanguageIdentification* identifier) const {
    SherpaOnnxDestroySpokenLanguageIdentification(identifier);
    returnEngineMemory();
}

LanguageIdentifier LanguageIdentifier::create(const SpeechModel& model) {
    const auto file = [&model](const char* role) {
        const auto found = model.files.find(role);
        return found == model.files.end() ? nullptr : found->second.c_str();
    };
    SherpaOnnxSpokenLanguageIdentificationConfig config{};
    config.whisper = {.encoder = file("encoder"), .decoder = file("decoder"), .tail_paddings = -1};
    config.num_threads = 1;
    config.provider = "cpu";
    const SherpaOnnxSpokenLanguageIdentification* identifier = SherpaOnnxCreateSpokenLanguageIdentification(&config);
    if (identifier == nullptr) {
        throw TranscriberError::unavailable();
    }
    returnEngineMemory();
    return LanguageIdentifier(identifier);
}

std::optional<std::string> LanguageIdentifier::identify(std::span<const float> samples) const {
    const std::unique_ptr<const SherpaOnnxOfflineStream, DestroyStream> stream(
        SherpaOnnxSpokenLanguageIdentificationCreateOfflineStream(identifier_.get()));
    if (stream == nullptr) {
        return std::nullopt;
    }
    SherpaOnnxAcceptWaveformOffline(stream.get(), rate, samples.data(), static_cast<int32_t>(samples.size()));
    const std::unique_ptr<const SherpaOnnxSpokenLanguageIdentificationResult, DestroyResult> result(
        SherpaOnnxSpokenLanguageIdentificationCompute(identifier_.get(), stream.get()));
    return result == nullptr || result->lang == nullptr ? std::nullopt : std::optional<std::string>(result->lang);
}

} // namespace varnic
