#include "probe/Ops.h"

#include "VarnicCore/Summariser/ActionFinder.h"
#include "VarnicCore/Summariser/DueDate.h"
#include "VarnicCore/Summariser/EmailDrafter.h"
#include "VarnicCore/Summariser/ExtractiveSummariser.h"
#include "VarnicCore/Summariser/TitleSuggester.h"
#include "VarnicCore/Text/NounTagger.h"

namespace varnic::probe {

namespace {

/// The words given as the only nouns, or the English tagger.
NounTagger tagger(const Arguments& args) {
    return args.has("nouns") ? fixedNounTagger(args.textSet("nouns")) : englishNounTagger();
}

Json resolveDue(const Arguments& args) {
    return orNull(DueDate::resolve(args.text("phrase"), args.date("from"), args.region()), formatDate);
}

Json draftEmail(const Arguments& args) {
    return encode(EmailDrafter::draft(args.text("title"), args.texts("summary"),
                                      args.stored<std::vector<ActionItem>>("actions"), args.context()));
}

Json findAction(const Arguments& args) {
    const auto action =
        ActionFinder::action(args.text("clause"), args.speaker("speaker"), ifPresent(args, "at", &Arguments::number));
    return orNull(action, [](const ActionItem& item) { return encode(item); });
}

Json keySentences(const Arguments& args) {
    const auto limit = ifPresent(args, "limit", &Arguments::count);
    return ExtractiveSummariser::keySentences(args.segments(), args.stored<std::vector<ActionItem>>("excluding"),
                                              limit);
}

} // namespace

Operations summariserOps() {
    return {
        {"due.phrase",
         [](const Arguments& args) {
             return orNull(DueDate::phrase(args.text("text")), [](const std::string& phrase) { return phrase; });
         }},
        {"due.resolve", resolveDue},
        {"actions.find", [](const Arguments& args) { return encode(ActionFinder::find(args.segments())); }},
        {"actions.clauses", [](const Arguments& args) -> Json { return ActionFinder::clauses(args.text("sentence")); }},
        {"actions.action", findAction},
        {"actions.same",
         [](const Arguments& args) -> Json {
             return ActionFinder::same(args.stored<ActionItem>("a"), args.stored<ActionItem>("b"));
         }},
        {"title",
         [](const Arguments& args) -> Json {
             return TitleSuggester::title(args.segments(), args.date("date"), args.text("themName"), args.region(),
                                          tagger(args));
         }},
        {"email.draft", draftEmail},
        {"email.phrase",
         [](const Arguments& args) -> Json { return EmailDrafter::phrase(args.stored<ActionItem>("action")); }},
        {"summary.keySentences", keySentences},
        {"summary.tidy", [](const Arguments& args) -> Json { return ExtractiveSummariser::tidy(args.text("text")); }},
        {"digest",
         [](const Arguments& args) {
             return encode(ExtractiveSummariser::makeDigest(args.segments(), args.context(), args.region(), args.now(),
                                                            tagger(args)));
         }},
    };
}

} // namespace varnic::probe
