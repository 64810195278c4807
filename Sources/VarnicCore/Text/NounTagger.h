#pragma once

#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace varnic {

struct TaggedWord {
    /// As it stands in the text.
    std::string text;
    /// A common or a proper noun.
    bool isNoun = false;

    bool operator==(const TaggedWord&) const = default;
};

/// Finds all words of a text (as TextKit::words does) and marks the nouns among them. Callable from any thread.
using NounTagger = std::function<std::vector<TaggedWord>(std::string_view text)>;

/// The tagger for English. Its model is unpacked when it is first asked for.
const NounTagger& englishNounTagger();

/// A tagger to which exactly these words, given in lower case, are nouns.
NounTagger fixedNounTagger(std::set<std::string> nouns);

} // namespace varnic
