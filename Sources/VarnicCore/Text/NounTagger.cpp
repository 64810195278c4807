#include "VarnicCore/Text/NounTagger.h"

#include "VarnicCore/Text/Breaks.h"
#include "VarnicCore/Text/SpeechTagger.h"
#include "VarnicCore/Text/Unicode.h"

#include <algorithm>
#include <array>
#include <utility>

namespace varnic {

namespace {

/// The length of the host of a contraction ("do" of "don't", "I" of "I'll"); the whole length for any other word. The
/// model knows the two parts as words of their own.
std::size_t hostLength(std::string_view word) {
    constexpr std::array<std::string_view, 7> endings{"n't", "'ll", "'re", "'ve", "'d", "'m", "'s"};
    if (word.find('\'') == std::string_view::npos) {
        return word.size();
    }
    const std::string lower = Unicode::lowerCased(word);
    for (const auto ending : endings) {
        // Lower-casing may change the length of what stands before the ending.
        if (lower.size() > ending.size() && lower.ends_with(ending) && word.size() > ending.size()) {
            return word.size() - ending.size();
        }
    }
    return word.size();
}

void tagSentence(const SpeechTagger& tagger, std::string_view sentence, std::vector<TaggedWord>& tagged) {
    std::vector<std::string> tokens;
    std::vector<std::size_t> firstTokens;
    const std::size_t before = tagged.size();
    for (const auto word : Breaks::words(sentence)) {
        tagged.push_back({std::string(word), false});
        firstTokens.push_back(tokens.size());
        const std::string plain = Unicode::plainApostrophes(word);
        const std::size_t host = hostLength(plain);
        tokens.push_back(plain.substr(0, host));
        if (host < plain.size()) {
            tokens.push_back(plain.substr(host));
        }
    }
    const std::vector<SpeechTagger::Label> labels = tagger.tag(tokens);
    for (std::size_t i = 0; i < firstTokens.size(); ++i) {
        tagged[before + i].isNoun = tagger.isNoun(labels[firstTokens[i]]);
    }
}

} // namespace

const NounTagger& englishNounTagger() {
    static const NounTagger english = [](std::string_view text) {
        std::vector<TaggedWord> tagged;
        for (const auto sentence : Breaks::sentences(text)) {
            tagSentence(SpeechTagger::english(), sentence, tagged);
        }
        return tagged;
    };
    SpeechTagger::english();
    return english;
}

NounTagger fixedNounTagger(std::set<std::string> nouns) {
    return [nouns = std::move(nouns)](std::string_view text) {
        std::vector<TaggedWord> tagged;
        for (const auto word : Breaks::words(text)) {
            tagged.push_back({std::string(word), nouns.contains(Unicode::lowerCased(word))});
        }
        return tagged;
    };
}

} // namespace varnic
