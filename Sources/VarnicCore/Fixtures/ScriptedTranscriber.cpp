#include "VarnicCore/Fixtures/ScriptedTranscriber.h"

#include "VarnicCore/Audio/VoiceActivity.h"

#include <algorithm>
#include <cstddef>

namespace varnic {

std::vector<Segment> ScriptedTranscriber::transcribe(const SpokenTrack& track, const ProgressCallback& progress,
                                                     std::stop_token /*stop*/) const {
    constexpr double minSpeech = 0.25;
    constexpr double bridge = 0.6;
    if (!std::filesystem::exists(track.file)) {
        throw TranscriberError::missingFile();
    }
    const std::vector<VoiceActivity::Range> spans = VoiceActivity::detect(track.file, minSpeech, bridge);
    const auto found = script.find(track.speaker);
    const std::vector<std::string> lines = found == script.end() ? std::vector<std::string>{} : found->second;
    progress(1.0);
    std::vector<Segment> segments;
    for (std::size_t index = 0; index < std::min(spans.size(), lines.size()); ++index) {
        segments.emplace_back(track.speaker, spans[index].start, spans[index].end, lines[index]);
    }
    return segments;
}

} // namespace varnic
