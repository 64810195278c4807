// The digest of a three-hour call of 30,000 words, and its parts. The sentences are filled from templates by a fixed
// sequence of numbers: a third of them commitments, few of them twice.

#include "VarnicCore/Summariser/ActionFinder.h"
#include "VarnicCore/Summariser/DueDate.h"
#include "VarnicCore/Summariser/ExtractiveSummariser.h"
#include "VarnicCore/Summariser/TitleSuggester.h"
#include "VarnicCore/Text/EnglishModel.h"
#include "VarnicCore/Text/SpeechTagger.h"
#include "VarnicCore/Text/TextKit.h"

#include <benchmark/benchmark.h>

#include <array>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace varnic;

constexpr std::size_t callWords = 30'000;

constexpr std::array<std::string_view, 15> templates{
    "So, yeah, I'll send the # # to the # team by Friday, and can you check the # with # before that?",
    "Could you please review the # # and the # of the # by end of day?",
    "We need to update the # page, so let's ask # about the # next week.",
    "I'm going to talk to the # people about the # and the # this afternoon.",
    "Okay, let me write down the # and the # for the # meeting.",
    "The # of the # is important, because the # can’t go on without it.",
    "Well, we decided that the # budget is 40 thousand dollars for the # and the #.",
    "I think the # looks good, but the # was a problem for # last month.",
    "You know, when we looked at the #, the # was nowhere near what the # wanted.",
    "Right, and that is why # never got the # that they asked # for.",
    "How does the # compare with the # that you had in mind for the #?",
    "It took them about three weeks to move the # over to the new #.",
    "Yeah, that makes sense.",
    "People kept asking about the # and whether the # would still be there in the # — nobody knew.",
    "Honestly, the #, the #, the # and the # are all the same to me.",
};

constexpr std::array<std::string_view, 40> topics{
    "pricing",   "launch",  "onboarding", "design",  "contract",  "invoice", "customer",  "roadmap",
    "database",  "release", "survey",     "office",  "marketing", "website", "security",  "partner",
    "dashboard", "hiring",  "travel",     "legal",   "support",   "mobile",  "payment",   "training",
    "brand",     "search",  "billing",    "server",  "feature",   "podcast", "warehouse", "delivery",
    "catalogue", "sales",   "finance",    "quality", "research",  "vendor",  "platform",  "workshop"};

std::vector<Segment> makeCall() {
    std::mt19937 numbers(7);
    std::vector<Segment> segments;
    for (std::size_t words = 0; words < callWords;) {
        std::string text;
        for (int sentence = 0; sentence < 3; ++sentence) {
            text += text.empty() ? "" : " ";
            for (const char c : templates.at(numbers() % templates.size())) {
                text += c == '#' ? topics.at(numbers() % topics.size()) : std::string_view(&c, 1);
            }
        }
        words += TextKit::wordCount(text);
        const auto start = static_cast<double>(segments.size()) * 12;
        segments.emplace_back(segments.size() % 2 == 0 ? Speaker::you : Speaker::them, start, start + 11, text);
    }
    return segments;
}

const std::vector<Segment>& call() {
    static const std::vector<Segment> segments = makeCall();
    return segments;
}

const std::string& callText() {
    static const std::string text = [] {
        std::string joined;
        for (const auto& segment : call()) {
            joined += segment.text + " ";
        }
        return joined;
    }();
    return text;
}

void digest(benchmark::State& state) {
    const DigestContext context{.callDate = {}, .yourName = "Ada", .themName = "Grace", .source = "Call"};
    englishNounTagger();
    while (state.KeepRunning()) {
        benchmark::DoNotOptimize(ExtractiveSummariser::makeDigest(call(), context, Region{}, Date{}));
    }
}

void actions(benchmark::State& state) {
    while (state.KeepRunning()) {
        benchmark::DoNotOptimize(ActionFinder::find(call()));
    }
}

void keySentences(benchmark::State& state) {
    const auto found = ActionFinder::find(call());
    while (state.KeepRunning()) {
        benchmark::DoNotOptimize(ExtractiveSummariser::keySentences(call(), found));
    }
}

void title(benchmark::State& state) {
    englishNounTagger();
    while (state.KeepRunning()) {
        benchmark::DoNotOptimize(TitleSuggester::title(call(), Date{}, "", Region{}));
    }
}

void loadTagger(benchmark::State& state) {
    while (state.KeepRunning()) {
        benchmark::DoNotOptimize(SpeechTagger(englishModel()));
    }
}

void sentences(benchmark::State& state) {
    while (state.KeepRunning()) {
        for (const auto& segment : call()) {
            benchmark::DoNotOptimize(TextKit::sentences(segment.text));
        }
    }
}

void words(benchmark::State& state) {
    while (state.KeepRunning()) {
        for (const auto& segment : call()) {
            benchmark::DoNotOptimize(TextKit::words(segment.text));
        }
    }
}

void duePhrases(benchmark::State& state) {
    while (state.KeepRunning()) {
        for (const auto& segment : call()) {
            benchmark::DoNotOptimize(DueDate::phrase(segment.text));
        }
    }
}

/// Over `callText`, in bytes a second.
void fold(benchmark::State& state) {
    while (state.KeepRunning()) {
        benchmark::DoNotOptimize(TextKit::fold(callText()));
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(callText().size()));
}

BENCHMARK(digest)->Unit(benchmark::kMillisecond);
BENCHMARK(actions)->Unit(benchmark::kMillisecond);
BENCHMARK(keySentences)->Unit(benchmark::kMillisecond);
BENCHMARK(title)->Unit(benchmark::kMillisecond);
BENCHMARK(sentences)->Unit(benchmark::kMillisecond);
BENCHMARK(words)->Unit(benchmark::kMillisecond);
BENCHMARK(duePhrases)->Unit(benchmark::kMillisecond);
BENCHMARK(fold)->Unit(benchmark::kMillisecond);
BENCHMARK(loadTagger)->Unit(benchmark::kMillisecond);

} // namespace
