#include "VarnicPlatform/Speech/SharedRecognizer.h"

#include "VarnicPlatform/Speech/EngineMemory.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <utility>

namespace varnic {

namespace {

/// The bytes of a model's files from which on it is shared: in memory, as it is used, it takes two to four times as
/// much.
constexpr std::uintmax_t large = 100'000'000;

} // namespace

std::shared_ptr<const SharedRecognizer> SharedRecognizer::of(const SpeechModel& model, std::string_view locale) {
    if (model.bytes < large) {
        return std::make_shared<SharedRecognizer>(SpeechRecognizer::create(model, locale));
    }
    static std::mutex lock;
    static std::map<std::pair<std::filesystem::path, std::string>, std::weak_ptr<const SharedRecognizer>> loaded;
    // Held while it loads, which both sides of a call ask for at once.
    const std::scoped_lock guard(lock);
    std::weak_ptr<const SharedRecognizer>& known = loaded[{model.folder, model.tagFor(locale).value_or("")}];
    std::shared_ptr<const SharedRecognizer> recognizer = known.lock();
    if (!recognizer) {
        recognizer = std::make_shared<SharedRecognizer>(SpeechRecognizer::create(model, locale));
        known = recognizer;
    }
    return recognizer;
}

Recognition SharedRecognizer::decode(std::span<const float> samples) const {
    const std::scoped_lock guard(turn_);
    Recognition recognition = recognizer_.decode(samples);
    // Each thread has a heap of its own, and both would keep what one decoding takes.
    returnEngineMemory();
    return recognition;
}

} // namespace varnic
