#include "probe/Ops.h"

#include "VarnicCore/Models/Clock.h"
#include "VarnicCore/Text/NounTagger.h"
#include "VarnicCore/Text/TextKit.h"
#include "VarnicCore/Text/Unicode.h"

namespace varnic::probe {

namespace {

/// An operation of the text kit over one text.
template <typename Function>
Operation ofText(Function function) {
    return [function](const Arguments& args) -> Json { return function(args.text("text")); };
}

} // namespace

Operations textOps() {
    return {
        {"text.fold", ofText(TextKit::fold)},
        {"text.stripLeadIns", ofText(TextKit::stripLeadIns)},
        {"text.lowercasedFirst", ofText(TextKit::lowercasedFirst)},
        {"text.capitalisedFirst", ofText(TextKit::capitalisedFirst)},
        {"text.sentences", ofText([](const std::string& text) { return TextKit::sentences(text); })},
        {"text.words", ofText([](const std::string& text) { return TextKit::words(text); })},
        {"text.contentWords", ofText(TextKit::contentWords)},
        {"text.wordCount", ofText(TextKit::wordCount)},
        {"text.similarity",
         [](const Arguments& args) -> Json { return TextKit::similarity(args.text("a"), args.text("b")); }},
        {"text.nouns",
         [](const Arguments& args) {
             Json nouns = Json::array();
             for (const TaggedWord& word : englishNounTagger()(args.text("text"))) {
                 if (word.isNoun) {
                     nouns.push_back(Unicode::lowerCased(word.text));
                 }
             }
             return nouns;
         }},
        {"clock.stamp", [](const Arguments& args) -> Json { return Clock::stamp(args.number("seconds")); }},
        {"clock.length", [](const Arguments& args) -> Json { return Clock::length(args.number("seconds")); }},
    };
}

} // namespace varnic::probe
