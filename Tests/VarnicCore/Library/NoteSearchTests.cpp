#include "VarnicCore/Library/NoteSearch.h"

#include "VarnicCore/Library/SearchTerms.h"
#include "VarnicCore/Text/TextKit.h"
#include "VarnicCore/Text/Unicode.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace varnic {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Field = SearchHit::Field;

const Date day = parseDate("2026-03-14T09:00:00Z");

Block block(BlockKind kind, const std::string& text) {
    Block made;
    made.kind = kind;
    made.text = text;
    return made;
}

Note noteOf(const std::string& title, std::vector<Block> blocks = {}, Date created = day) {
    return {Uuid::random(), title, created, std::move(blocks)};
}

Note callOf(std::vector<Segment> segments, const std::string& themName = "") {
    Note note = noteOf("");
    note.call = CallRecord{};
    note.call->themName = themName;
    note.call->segments = std::move(segments);
    return note;
}

/// "field score snippet" of every hit of the only matching note.
std::vector<std::string> hitsOf(const std::string& query, const Note& note) {
    std::vector<std::string> lines;
    for (const NoteMatch& match : NoteSearch::search(query, std::span(&note, 1))) {
        for (const SearchHit& hit : match.hits) {
            lines.push_back(std::string(rawValue(hit.field)) + " " + std::to_string(hit.score).substr(0, 4) + " " +
                            hit.snippet);
        }
    }
    return lines;
}

TEST(NoteSearch, search_coversEveryFieldWithItsWeight) {
    Note note = noteOf("Plan Ä", {block(BlockKind::subheading, "plan one"), block(BlockKind::quote, "a PLAN"),
                                  block(BlockKind::todo, "plan it"), Block::flashcard("What plan?", "Plan B"),
                                  Block::table({{"x", "plan"}, {"y"}}), block(BlockKind::divider, "plan"),
                                  block(BlockKind::bullet, "nothing")});
    note.call = CallRecord{};
    note.call->themName = " Maya\t";
    note.call->segments = {Segment(Speaker::them, 65, 70, "The plan stands."), Segment(Speaker::you, 71, 72, "Plan?")};
    note.call->digest = CallDigest{};
    note.call->digest->summary = {"plan in the summary"};
    note.call->digest->email = {"Plan", "Body"};
    EXPECT_THAT(hitsOf("plan", note), ElementsAre("title 5.00 Plan Ä", "heading 3.00 plan one", "body 2.00 a PLAN",
                                                  "todo 2.00 plan it", "flashcard 2.00 What plan? — Plan B",
                                                  "table 1.50 x · plan · y", "transcript 1.00 Maya: The plan stands.",
                                                  "transcript 1.00 You: Plan?", "email 0.50 Plan — Body"));
    const auto matches = NoteSearch::search("plan", std::span(&note, 1));
    EXPECT_EQ(matches[0].hits.at(1).blockID, note.blocks[0].id);
    EXPECT_EQ(matches[0].hits.at(1).time, std::nullopt);
    EXPECT_EQ(matches[0].hits.at(6).time, 65);
    EXPECT_EQ(matches[0].hits.at(6).blockID, std::nullopt);
}

TEST(NoteSearch, search_combinesTermsByOrAndCountsDifferentOnes) {
    EXPECT_THAT(hitsOf("red blue red", noteOf("", {block(BlockKind::paragraph, "red and blue"),
                                                   block(BlockKind::paragraph, "only Blue blue")})),
                ElementsAre("body 4.00 red and blue", "body 2.00 only Blue blue"));
    EXPECT_THAT(hitsOf("  \t\n ", noteOf("a")), IsEmpty());
    EXPECT_THAT(hitsOf("\u0301\u0308", noteOf("a")), IsEmpty());
    EXPECT_THAT(hitsOf("untitled", callOf({})), ElementsAre("title 5.00 Untitled call"));
    EXPECT_THAT(hitsOf("them:", callOf({Segment(Speaker::them, 0, 1, "Hi")}, " ")),
                ElementsAre("transcript 1.00 Them: Hi"));
}

TEST(NoteSearch, search_ignoresCaseAccentsAndWidth) {
    const Note note = noteOf("Café im Straßenlärm, don’t ＡＢＣ Cafe\u0301");
    for (const std::string query : {"CAFE", "cafÉ", "strassenlarm", "don't", "dont’", "abc", "ＡＢ"}) {
        EXPECT_EQ(hitsOf(query, note).size(), query == "dont’" ? 0U : 1U) << query;
    }
}

TEST(NoteSearch, search_ordersNotesByScoreThenNewestFirst) {
    const std::vector<Note> notes{
        noteOf("other", {block(BlockKind::bullet, "term")}, day),
        noteOf("newer", {block(BlockKind::bullet, "term")}, day + std::chrono::hours(1)),
        noteOf("newer twin", {block(BlockKind::bullet, "term")}, day + std::chrono::hours(1)),
        noteOf("seven", std::vector<Block>(7, block(BlockKind::bullet, "term"))),
        noteOf("eight", std::vector<Block>(8, block(BlockKind::bullet, "term"))),
        noteOf("The term", {}),
        noteOf("none", {}),
    };
    std::vector<std::string> titles;
    for (const NoteMatch& match : NoteSearch::search("term", notes)) {
        titles.push_back(match.note->title);
    }
    EXPECT_THAT(titles, ElementsAre("eight", "The term", "seven", "newer", "newer twin", "other"));
}

TEST(Snippet, snip_showsWhatStandsAroundTheMatch) {
    const std::string before(100, 'b');
    const std::string behind(200, 'e');
    const auto snipped = [](const std::string& text, const std::vector<std::string_view>& terms) {
        return snip(text, terms, 60);
    };
    const std::string head(60, 'b');
    EXPECT_EQ(snipped(before + "mid" + behind, {"mid"}),
              (Snippet{"…" + head + "mid" + std::string(117, 'e') + "…", {{61, 64}}}));
    EXPECT_EQ(snipped("mid" + behind, {"mid"}), (Snippet{"mid" + std::string(117, 'e') + "…", {{0, 3}}}));
    EXPECT_EQ(snipped(head + "mid", {"mid"}), (Snippet{head + "mid", {{60, 63}}}));
    EXPECT_EQ(snipped("one\r\ntwo\u2028three", {"two"}), (Snippet{"one two three", {{4, 7}}}));
    EXPECT_EQ(snipped("aXaxa", {"axa", "x"}), (Snippet{"aXaxa", {{0, 3}, {1, 2}, {3, 4}}}));
    // A match is told in the characters that a reader sees, whatever they fold to.
    EXPECT_EQ(snipped("Straße Cafe\u0301 👩‍👩‍👧x", {"cafe", "x"}),
              (Snippet{"Straße Cafe\u0301 👩‍👩‍👧x", {{7, 11}, {13, 14}}}));
    EXPECT_EQ(snipped("e\u20DD!", {"e"}), (Snippet{"e\u20DD!", {{0, 1}}}));
    // Where folding changes the number of characters, the extract is the beginning.
    EXPECT_EQ(snipped("ß" + before + "mid", {"mid"}).text, "ß" + before + "mid");
    EXPECT_EQ(snipped("ß" + before + before + "mid", {"mid"}).text, "ß" + before + std::string(19, 'b') + "…");
}

/// The terms found in the plain and slow way.
std::vector<std::string> plainlyFound(const std::string& query, const std::string& text) {
    std::vector<std::string> terms;
    const std::string folded = TextKit::fold(query);
    for (const auto piece : Unicode::split(folded, Unicode::isSpace)) {
        const bool isNew = std::ranges::find(terms, piece) == terms.end();
        if (isNew && TextKit::fold(text).find(piece) != std::string::npos) {
            terms.emplace_back(piece);
        }
    }
    return terms;
}

TEST(SearchTerms, foundIn_fewOrManyTerms_findsWhatThePlainWayFinds) {
    std::mt19937 random(7);
    const std::vector<std::string> letters{"a", "b", "A", "é", "e\u0301", "ß", "s", " ", "’", "ｂ", "\xFF", "İ"};
    const auto text = [&](std::size_t length) {
        std::string made;
        for (std::size_t i = 0; i < length; ++i) {
            made += letters[random() % letters.size()];
        }
        return made;
    };
    for (int round = 0; round < 400; ++round) {
        const std::string query = text(round % 2 == 0 ? 12 : 200);
        const std::string searched = text(60);
        const SearchTerms terms(query);
        const auto found = terms.foundIn(TextKit::fold(searched));
        EXPECT_EQ(std::vector<std::string>(found.begin(), found.end()), plainlyFound(query, searched))
            << query << " in " << searched;
    }
}

} // namespace
} // namespace varnic
