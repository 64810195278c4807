#include "VarnicCore/Text/SpeechTagger.h"

#include "VarnicCore/Text/EnglishModel.h"
#include "VarnicCore/Text/Unicode.h"

#include <simdjson.h>
#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <initializer_list>
#include <stdexcept>

namespace varnic {

namespace {

constexpr std::string_view startMark = "<s>";
constexpr std::string_view endMark = "</s>";

/// FNV-1a; a feature's text can be fed in pieces.
constexpr std::uint64_t hashOf(std::initializer_list<std::string_view> pieces) {
    std::uint64_t hash = 0xCBF29CE484222325U;
    for (const auto piece : pieces) {
        for (const char c : piece) {
            hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3U;
        }
    }
    return hash;
}

std::string_view firstCodePoint(std::string_view word) {
    std::size_t end = word.empty() ? 0 : 1;
    while (end < word.size() && U8_IS_TRAIL(word[end])) {
        ++end;
    }
    return word.substr(0, end);
}

std::string_view lastCodePoints(std::string_view word, int count) {
    std::size_t begin = word.size();
    for (; count > 0 && begin > 0; --count) {
        do {
            --begin;
        } while (begin > 0 && U8_IS_TRAIL(word[begin]));
    }
    return word.substr(begin);
}

std::string_view shape(std::string_view word) {
    const auto isCapital = [](char32_t c) { return u_isUUppercase(static_cast<UChar32>(c)) != 0; };
    const auto isDigit = [](char32_t c) { return u_isdigit(static_cast<UChar32>(c)) != 0; };
    const bool digit = Unicode::any(word, isDigit);
    if (Unicode::any(firstCodePoint(word), isCapital)) {
        return digit ? "Xd" : "X";
    }
    return digit ? "xd" : "x";
}

} // namespace

struct SpeechTagger::Sentence {
    const std::vector<std::string>& words;
    std::vector<std::string> lowered;

    explicit Sentence(const std::vector<std::string>& theWords) : words(theWords) {
        lowered.reserve(words.size());
        std::ranges::transform(words, std::back_inserter(lowered), Unicode::lowerCased);
    }

    [[nodiscard]] std::string_view before(std::size_t position, std::size_t distance) const {
        return position < distance ? startMark : std::string_view(lowered[position - distance]);
    }

    [[nodiscard]] std::string_view behind(std::size_t position, std::size_t distance) const {
        return position + distance >= lowered.size() ? endMark : std::string_view(lowered[position + distance]);
    }
};

SpeechTagger::SpeechTagger(std::string_view paddedJson) try {
    simdjson::ondemand::parser parser;
    auto document =
        parser.iterate(simdjson::padded_string_view(paddedJson, paddedJson.size() + simdjson::SIMDJSON_PADDING));
    for (const std::string_view label : document["classes"].get_array()) {
        labels_.emplace_back(label);
    }
    std::ranges::sort(labels_);
    if (labels_.empty() || labels_.size() >= mostLabels) {
        throw std::runtime_error("The tagger's model has no labels or too many");
    }
    for (const auto& label : labels_) {
        isNoun_.push_back(label.starts_with("NOUN|") || label.starts_with("PROPN|"));
    }
    for (auto field : document["tagdict"].get_object()) {
        certain_.emplace(std::string_view(field.unescaped_key()), labelNamed(field.value()));
    }
    std::vector<Slot> features;
    for (auto field : document["weights"].get_object()) {
        Slot slot{hashOf({field.unescaped_key()}), static_cast<std::uint32_t>(weights_.size()), 0};
        for (auto weight : field.value().get_object()) {
            const Label label = labelNamed(weight.unescaped_key());
            weights_.push_back({label, static_cast<std::int32_t>(std::lround(double(weight.value()) * 1000))});
        }
        slot.end = static_cast<std::uint32_t>(weights_.size());
        features.push_back(slot);
    }
    slots_.resize(std::bit_ceil(features.size() * 3 / 2 + 1));
    std::ranges::for_each(features, [this](const Slot& slot) { insert(slot); });
} catch (const simdjson::simdjson_error& error) {

    throw std::runtime_error(std::string("The tagger's model cannot be read: ") + error.what());
}

const SpeechTagger& SpeechTagger::english() {
    static const SpeechTagger tagger(englishModel());
    return tagger;
}

SpeechTagger::Label SpeechTagger::labelNamed(std::string_view name) const {
    const auto found =
        std::ranges::lower_bound(labels_, name, {}, [](const std::string& label) { return std::string_view(label); });
    if (found == labels_.end() || *found != name) {
        throw std::runtime_error("The tagger's model has an unknown label " + std::string(name));
    }
    return static_cast<Label>(found - labels_.begin());
}

void SpeechTagger::insert(Slot slot) {
    const std::size_t mask = slots_.size() - 1;
    std::size_t index = slot.hash & mask;
    while (slots_[index].begin != slots_[index].end) {
        index = (index + 1) & mask;
    }
    slots_[index] = slot;
}

void SpeechTagger::add(std::uint64_t feature, Scores& scores) const {
    const std::size_t mask = slots_.size() - 1;
    for (std::size_t index = feature & mask; slots_[index].begin != slots_[index].end; index = (index + 1) & mask) {
        if (slots_[index].hash != feature) {
            continue;
        }
        for (std::uint32_t i = slots_[index].begin; i < slots_[index].end; ++i) {
            scores[weights_[i].label] += weights_[i].thousandths;
        }
        return;
    }
}

SpeechTagger::Label SpeechTagger::bestLabel(const Sentence& sentence, std::size_t position, Label previous,
                                            Label secondPrevious) const {
    const auto labelName = [this](Label label) {
        return label < labels_.size() ? std::string_view(labels_[label]) : startMark;
    };
    const std::string_view word = sentence.lowered[position];
    const std::string_view t1 = labelName(previous);
    const std::string_view t2 = labelName(secondPrevious);
    Scores scores{};
    for (const std::uint64_t feature : {
             hashOf({"bias"}),
             hashOf({"suf3 ", lastCodePoints(word, 3)}),
             hashOf({"suf2 ", lastCodePoints(word, 2)}),
             hashOf({"suf1 ", lastCodePoints(word, 1)}),
             hashOf({"pre1 ", firstCodePoint(word)}),
             hashOf({"shape ", shape(sentence.words[position])}),
             hashOf({"w ", word}),
             hashOf({"t-1 ", t1}),
             hashOf({"t-2 ", t2}),
             hashOf({"t-1t-2 ", t1, " ", t2}),
             hashOf({"w-1 ", sentence.before(position, 1)}),
             hashOf({"w-2 ", sentence.before(position, 2)}),
             hashOf({"w+1 ", sentence.behind(position, 1)}),
             hashOf({"w+2 ", sentence.behind(position, 2)}),
             hashOf({"t-1 w ", t1, " ", word}),
         }) {
        add(feature, scores);
    }
    // Of labels with equal scores the last one wins.
    std::size_t best = 0;
    for (std::size_t label = 1; label < labels_.size(); ++label) {
        best = scores[label] >= scores[best] ? label : best;
    }
    return static_cast<Label>(best);
}

std::vector<SpeechTagger::Label> SpeechTagger::tag(const std::vector<std::string>& words) const {
    constexpr Label none = mostLabels;
    const Sentence sentence(words);
    std::vector<Label> found;
    found.reserve(words.size());
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (const auto certain = certain_.find(sentence.lowered[i]); certain != certain_.end()) {
            found.push_back(certain->second);
        } else {
            found.push_back(bestLabel(sentence, i, i > 0 ? found[i - 1] : none, i > 1 ? found[i - 2] : none));
        }
    }
    return found;
}

} // namespace varnic
