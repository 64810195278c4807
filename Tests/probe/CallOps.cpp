#include "probe/Ops.h"

#include "VarnicCore/Audio/VoiceActivity.h"
#include "VarnicCore/Transcript/Diarisation.h"
#include "VarnicCore/Transcript/Utterances.h"

namespace varnic::probe {

namespace {

std::vector<TimedWord> timedWords(const Arguments& args) {
    std::vector<TimedWord> words;
    for (const Json& word : args.at("words")) {
        const Arguments inner(word);
        words.push_back({inner.text("text"), inner.number("start"), inner.number("duration")});
    }
    return words;
}

Json buildUtterances(const Arguments& args) {
    const auto formatted = args.has("formatted") ? std::optional(args.text("formatted")) : std::nullopt;
    return encode(Utterances::build(timedWords(args), formatted, args.speaker("speaker"), args.number("offset"),
                                    args.number("gap")));
}

Json activity(const Arguments& args) {
    Json pairs = Json::array();
    for (const auto& slice : Diarisation::activity(args.segments(), args.number("duration"), args.integer("buckets"))) {
        pairs.push_back({slice.you, slice.them});
    }
    return pairs;
}

Json detectVoice(const Arguments& args) {
    std::vector<float> levels;
    for (const Json& level : args.at("levels")) {
        levels.push_back(level.get<float>());
    }
    Json regions = Json::array();
    for (const auto& region :
         VoiceActivity::detect(levels, args.number("frame"), args.number("minSpeech"), args.number("bridge"))) {
        regions.push_back({region.start, region.end});
    }
    return regions;
}

} // namespace

Operations callOps() {
    return {
        {"utterances.build", buildUtterances},
        {"diarisation.merge",
         [](const Arguments& args) {
             return encode(
                 Diarisation::merge(args.segments("you"), args.segments("them"), args.number("echoThreshold")));
         }},
        {"diarisation.turns",
         [](const Arguments& args) { return encode(Diarisation::turns(args.segments(), args.number("gap"))); }},
        {"diarisation.activity", activity},
        {"vad.detect", detectVoice},
    };
}

} // namespace varnic::probe
