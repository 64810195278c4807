#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace varnic {

/// Tells the parts of speech of a sentence's words: an averaged perceptron that goes from left to right and judges each
/// word by its letters, its neighbours and the labels of the two words before it. Immutable: any thread.
class SpeechTagger {
public:
    /// An index into the model's sorted list of labels.
    using Label = std::uint8_t;

    /// Reads a model: a JSON object with "classes" (labels), "tagdict" (words whose label is certain) and "weights"
    /// (label weights by feature, to a thousandth). The bytes must be followed by simdjson's padding. Throws
    /// std::runtime_error for anything else.
    explicit SpeechTagger(std::string_view paddedJson);

    /// The model of English that is part of the program.
    static const SpeechTagger& english();

    /// The labels of one sentence's words, one each. Words hold no white space; "don't" is two of them, "do" and "n't".
    [[nodiscard]] std::vector<Label> tag(const std::vector<std::string>& words) const;

    /// The label's name, such as "NOUN|-" or "VERB|Fin".
    [[nodiscard]] const std::string& name(Label label) const { return labels_.at(label); }

    [[nodiscard]] bool isNoun(Label label) const { return isNoun_.at(label); }

private:
    static constexpr std::size_t mostLabels = 32;

    /// Thousandths, by label.
    using Scores = std::array<std::int32_t, mostLabels>;

    struct Weight {
        Label label = 0;
        std::int32_t thousandths = 0;
    };

    /// A feature's weights are those from `begin` on up to `end`; a slot without any is free.
    struct Slot {
        std::uint64_t hash = 0;
        std::uint32_t begin = 0;
        std::uint32_t end = 0;
    };

    struct Sentence;

    [[nodiscard]] Label labelNamed(std::string_view name) const;
    void insert(Slot slot);
    void add(std::uint64_t feature, Scores& scores) const;
    [[nodiscard]] Label bestLabel(const Sentence& sentence, std::size_t position, Label previous,
                                  Label secondPrevious) const;

    std::vector<std::string> labels_;
    std::vector<bool> isNoun_;
    std::unordered_map<std::string, Label> certain_;
    /// Open addressing, by hashes of the features' texts; its size is a power of two.
    std::vector<Slot> slots_;
    std::vector<Weight> weights_;
};

} // namespace varnic
