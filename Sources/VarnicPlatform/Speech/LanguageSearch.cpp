#include "VarnicPlatform/Speech/LanguageSearch.h"

#include "VarnicCore/Text/Language.h"
#include "VarnicPlatform/Speech/TrackSegmenter.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <map>
#include <utility>

namespace varnic::LanguageSearch {

namespace {

/// So many stretches are asked for their language.
constexpr std::size_t mostStretches = 5;
/// Seconds of a stretch: what models hear at once, and less than which tells them nothing.
constexpr double longestStretch = 28;
constexpr double shortestStretch = 1.5;
/// Seconds of all stretches in one language from which on it is believed.
constexpr double leastSpeech = 5;

double secondsOf(std::span<const float> samples) {
    return static_cast<double>(samples.size()) / LanguageIdentifier::rate;
}

} // namespace

void Stretches::add(std::span<const float> samples) {
    seconds_ += secondsOf(samples);
    const auto place = std::ranges::lower_bound(longest_, samples.size(), std::greater<>(),
                                                [](const std::vector<float>& kept) { return kept.size(); });
    if (secondsOf(samples) < shortestStretch || (place == longest_.end() && longest_.size() == mostStretches)) {
        return;
    }
    longest_.emplace(place, samples.begin(), samples.end());
    longest_.resize(std::min(longest_.size(), mostStretches));
}

Heard Stretches::heard(const Identify& identify, const std::function<bool(std::string_view)>& isKnown) const {
    std::map<std::string, double> votes;
    for (const std::vector<float>& stretch : longest_) {
        if (const auto language = identify(stretch); language && isKnown(*language)) {
            votes[*language] += secondsOf(stretch);
        }
    }
    const auto most = std::ranges::max_element(votes, {}, &std::pair<const std::string, double>::second);
    const bool isTold = most != votes.end() && most->second >= leastSpeech;
    return {.language = isTold ? most->first : std::string(), .seconds = seconds_};
}

Stretches stretchesOf(const SpokenTrack& track, const std::optional<std::filesystem::path>& detector,
                      const std::stop_token& stop) {
    Stretches stretches;
    TrackSegmenter segmenter(track, detector, {.speech = longestStretch}, stop);
    segmenter.run(
        [&stretches](std::span<const float> samples, const SpeechSegment& /*segment*/) { stretches.add(samples); },
        [](double /*done*/) {});
    return stretches;
}

SpokenLanguages together(const Heard& you, const Heard& them, const std::string& usual) {
    const auto chosen = [&usual](const std::string& told, const std::string& otherwise) {
        const std::string& language = told.empty() ? otherwise : told;
        return language.empty() || Language::isSame(language, usual) ? usual : language;
    };
    const std::string yours = chosen(you.language, them.language);
    const std::string theirs = chosen(them.language, you.language);
    const bool isYours = them.language.empty() || (!you.language.empty() && you.seconds > them.seconds);
    return {.you = yours, .them = theirs, .call = isYours ? yours : theirs};
}

} // namespace varnic::LanguageSearch
