#include "VarnicPlatform/Speech/WordTimes.h"

#include "VarnicCore/Text/Tokens.h"
#include "VarnicCore/Text/Unicode.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <limits>
#include <string>

namespace varnic::WordTimes {

using VoiceActivity::Range;

namespace {

/// What a pause inside of a phrase costs, in seconds of misplacement for each second of pause.
constexpr double unpunctuatedCost = 0.6;
/// How much longer than the engine tells the last word before a pause may last, in seconds: to the engine it ends with
/// the sound that it knows it by.
constexpr double longestTail = 1;

bool endsPhrase(std::string_view word) {
    constexpr auto marks = std::to_array<std::string_view>(
        {".", "?", "!", ",", ";", ":", "。", "、", "？", "！", "，", "；", "：", "؟", "،", "।"});
    return std::ranges::any_of(marks, [word](std::string_view mark) { return word.ends_with(mark); });
}

/// Seconds of voice before each word and behind the last, at an even pace.
std::vector<double> evenPace(const std::vector<Token>& words, double voicedSeconds) {
    std::vector<double> before{0};
    for (std::size_t index = 0; index < words.size(); ++index) {
        const bool isFollowed = index + 1 < words.size() && words[index + 1].isJoined;
        const auto length = static_cast<double>(Unicode::characterCount(words[index].text));
        before.push_back(before.back() + length + (isFollowed ? 0 : 1));
    }
    const double pace = voicedSeconds / before.back();
    for (double& seconds : before) {
        seconds *= pace;
    }
    return before;
}

/// For each pause between runs, the number of words before it, by the least sum of costs.
std::vector<std::size_t> wordsBeforePauses(const std::vector<Token>& words, const std::vector<double>& before,
                                           const std::vector<Range>& voiced) {
    const std::size_t pauses = voiced.size() - 1;
    // least[w]: the least cost of the pauses so far with at most w words before the last of them; chosen: which w.
    std::vector<double> least(before.size(), 0);
    std::vector<std::vector<std::size_t>> chosen(pauses, std::vector<std::size_t>(before.size()));
    double voice = 0;
    for (std::size_t pause = 0; pause < pauses; ++pause) {
        voice += voiced[pause].end - voiced[pause].start;
        const double length = std::min(voiced[pause + 1].start - voiced[pause].end, 1.0);
        double best = std::numeric_limits<double>::infinity();
        std::size_t bestCount = 0;
        for (std::size_t count = 0; count < before.size(); ++count) {
            const bool natural = count > 0 && endsPhrase(words[count - 1].text);
            const double cost =
                least[count] + std::abs(before[count] - voice) + (natural ? 0 : unpunctuatedCost * length);
            if (cost < best) {
                best = cost;
                bestCount = count;
            }
            least[count] = best;
            chosen[pause][count] = bestCount;
        }
    }
    std::vector<std::size_t> counts(pauses);
    std::size_t limit = words.size();
    for (std::size_t pause = pauses; pause-- > 0;) {
        limit = chosen[pause][limit];
        counts[pause] = limit;
    }
    return counts;
}

} // namespace

std::vector<TimedWord> spread(std::string_view text, const std::vector<Range>& voiced) {
    const std::vector<Token> words = Tokens::split(text);
    if (words.empty() || voiced.empty()) {
        return {};
    }
    double voicedSeconds = 0;
    for (const Range& run : voiced) {
        voicedSeconds += run.end - run.start;
    }
    const std::vector<double> before = evenPace(words, voicedSeconds);
    std::vector<std::size_t> ends = wordsBeforePauses(words, before, voiced);
    ends.push_back(words.size());
    std::vector<TimedWord> timed;
    for (std::size_t run = 0; run < voiced.size(); ++run) {
        const std::size_t first = timed.size();
        const auto& [start, end] = voiced[run];
        for (std::size_t word = first; word < ends[run]; ++word) {
            const double pace = (end - start) / (before[ends[run]] - before[first]);
            timed.push_back({std::string(words[word].text), start + (before[word] - before[first]) * pace,
                             (before[word + 1] - before[word]) * pace, words[word].isJoined});
        }
    }
    return timed;
}

void fit(std::vector<TimedWord>& words, const std::vector<Range>& voiced) {
    for (std::size_t index = 0; index < words.size(); ++index) {
        TimedWord& word = words[index];
        double end = word.end();
        const auto first = std::ranges::upper_bound(voiced, word.start, {}, &Range::end);
        auto behind = std::ranges::lower_bound(voiced, end, {}, &Range::start);
        if (first == behind && index + 1 < words.size()) {
            end = words[index + 1].start;
            behind = std::ranges::lower_bound(voiced, end, {}, &Range::start);
        }
        if (first < behind) {
            const Range& last = *std::prev(behind);
            const bool isLast = index + 1 == words.size() || words[index + 1].start >= last.end;
            word.start = std::max(word.start, first->start);
            word.duration = std::min(isLast ? end + longestTail : end, last.end) - word.start;
        }
    }
}

} // namespace varnic::WordTimes
