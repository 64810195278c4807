#include "VarnicCore/Library/NoteJson.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace varnic {
namespace {

const Date now = parseDate("2026-03-14T09:26:53.589Z");
constexpr const char* someId = "1B4E28BA-2FA1-11D2-883F-0016D3CCA427";

/// A note with these further keys.
std::string noteWith(const std::string& keys) {
    return fmt::format(R"({{"id":"{}",{}}})", someId, keys);
}

std::string noteWithBlock(const std::string& block) {
    return noteWith(R"("blocks":[{}, {"text":"second"}, )" + block + "]");
}

/// A note with a call that is complete but for the key, which is replaced by `keys`.
std::string noteWithCall(const std::string& key, const std::string& keys) {
    std::string call;
    for (const auto& [name, value] :
         std::vector<std::pair<std::string, std::string>>{{"startedAt", R"("2026-03-14T09:00:00Z")"},
                                                          {"duration", "61"},
                                                          {"source", R"("Zoom")"},
                                                          {"segments", "[]"},
                                                          {"tracks", R"(["you","them"])"},
                                                          {"themName", R"("")"},
                                                          {"language", R"("en-GB")"}}) {
        call += name == key ? "" : fmt::format(R"("{}":{},)", name, value);
    }
    call += keys.empty() ? R"("unknown":[null])" : keys;
    return noteWith("\"call\":{" + call + "}");
}

std::string errorOf(const std::string& json) {
    try {
        decodeNote(json, now);
        return "no error";
    } catch (const DecodeError& error) {
        return error.what();
    }
}

TEST(NoteDecoding, idAlone_givesAnUntitledNoteOfNow) {
    const Note note = decodeNote(fmt::format(R"({{"id":"{}"}})", someId), now);
    EXPECT_EQ(note.id.text(), someId);
    EXPECT_EQ(note.title, "");
    EXPECT_EQ(note.created, now);
    EXPECT_EQ(note.modified, now);
    EXPECT_FALSE(note.call);
    EXPECT_FALSE(note.pinned);
    ASSERT_EQ(note.blocks.size(), 1U);
    Block empty;
    empty.id = note.blocks.front().id;
    EXPECT_EQ(note.blocks.front(), empty);
    EXPECT_NE(empty.id, Uuid());
}

TEST(NoteDecoding, nullInNoteAndBlock_countsAsMissing) {
    const Note note = decodeNote(noteWith(R"("title":null,"created":null,"modified":null,"call":null,"pinned":null,
        "blocks":[{"id":null,"kind":null,"text":null,"done":null,"back":null,"rows":null,"card":null,"owner":null,
                   "due":null,"fromDigest":null}])"),
                                 now);
    EXPECT_EQ(note.created, now);
    ASSERT_EQ(note.blocks.size(), 1U);
    EXPECT_NE(note.blocks.front().id, Uuid());
    EXPECT_EQ(decodeNote(noteWith(R"("blocks":null)"), now).blocks.size(), 1U);
}

TEST(NoteDecoding, modified_fallsBackToCreated) {
    const Note note = decodeNote(noteWith(R"("created":"2020-01-02T03:04:05Z")"), now);
    EXPECT_EQ(formatDate(note.created), "2020-01-02T03:04:05.000Z");
    EXPECT_EQ(note.modified, note.created);
    const Note turned =
        decodeNote(noteWith(R"("modified":"2021-01-01T00:00:00Z","created":"2020-01-02T03:04:05Z")"), now);
    EXPECT_EQ(formatDate(turned.modified), "2021-01-01T00:00:00.000Z");
}

TEST(NoteDecoding, blockOfUnknownKind_isAParagraphWithItsText) {
    for (const std::string kind : {R"("mindmap")", R"("Todo")", "7", "[]", "{}", "true"}) {
        const Note note = decodeNote(noteWithBlock(R"({"kind":)" + kind + R"(,"text":"x"})"), now);
        ASSERT_EQ(note.blocks.size(), 3U) << kind;
        EXPECT_EQ(note.blocks[2].kind, BlockKind::paragraph) << kind;
        EXPECT_EQ(note.blocks[2].text, "x") << kind;
        EXPECT_NE(note.blocks[2].id, note.blocks[1].id) << kind;
    }
}

TEST(NoteDecoding, unusualForms_readAsTheirMeaning) {
    const std::string fine = noteWithBlock(R"({"card":{"box":2.0,"reviews":1e1}})");
    for (const std::string& json :
         {fine, "\xEF\xBB\xBF" + fine, "\n\t " + fine + "\r\n",
          noteWithBlock(R"({"card":7,"c\u0061rd":{"box":9,"box":2,"reviews":-0.0,"reviews":10}})"),
          noteWithBlock(R"({"kind":"mindmap","card":{"box":2,"reviews":10,"due":"2026-03-14T09:26:53+01:00"}})")}) {
        const Note note = decodeNote(json, now);
        ASSERT_TRUE(note.blocks.back().card) << json;
        EXPECT_EQ(note.blocks.back().card->box, 2) << json;
        EXPECT_EQ(note.blocks.back().card->reviews, 10) << json;
    }
    EXPECT_EQ(decodeNote(noteWith(R"("id":"1b4e28ba-2fa1-11d2-883f-0016d3cca427")"), now).id.text(), someId);
    EXPECT_EQ(decodeNote(noteWith(R"("title":"a\u0000\ud83d\ude00")"), now).title, std::string("a\0😀", 6));
}

TEST(NoteDecoding, segmentWithEndBeforeStart_isTakenAsItStands) {
    const auto segments = decode<std::vector<Segment>>(
        fmt::format(R"([{{"id":"{}","speaker":"them","start":9,"end":2.5,"text":"So."}}])", someId));
    ASSERT_EQ(segments.size(), 1U);
    EXPECT_EQ(segments.front().start, 9);
    EXPECT_EQ(segments.front().end, 2.5);
}

TEST(NoteDecoding, wrongContent_isOneSentenceThatNamesThePlace) {
    const std::string digest = R"("digest":{"title":"","summary":[],"actions":[{"text":"Go"}],"email":{"subject":"",
        "body":""},"provider":"","isLocal":true,"createdAt":"2026-03-14T09:00:00Z"})";
    const std::vector<std::pair<std::string, std::string>> cases{
        {"[]", "The text is not an object."},
        {"null", "The text is not an object."},
        {"{}", "“id” is missing."},
        {R"({"id":null})", "“id” is not a string."},
        {R"({"id":"7"})", "“id” is not a UUID."},
        {noteWith(R"("title":7)"), "“title” is not a string."},
        {noteWith(R"("created":"yesterday")"), "Bad date yesterday"},
        {noteWith(R"("created":"0000-01-01T00:00:00+01:00")"), "Bad date 0000-01-01T00:00:00+01:00"},
        {noteWith(R"("modified":1742000000)"), "“modified” is not a string."},
        {noteWith(R"("pinned":"yes")"), "“pinned” is not true or false."},
        {noteWith(R"("pinned":0)"), "“pinned” is not true or false."},
        {noteWith(R"("blocks":{})"), "“blocks” is not an array."},
        {noteWithBlock("null"), "block 3 in “blocks” is not an object."},
        {noteWithBlock(R"({"id":"x"})"), "“id” in block 3 in “blocks” is not a UUID."},
        {noteWithBlock(R"({"owner":"me"})"), "“owner” in block 3 in “blocks” is not “you” or “them”."},
        {noteWithBlock(R"({"rows":[["a"],["b",null]]})"),
         "text 2 in row 2 in “rows” in block 3 in “blocks” is not a string."},
        {noteWithBlock(R"({"text":"a","text":null,"text":[]})"), "“text” in block 3 in “blocks” is not a string."},
        {noteWithBlock(R"({"card":{"box":1}})"), "“reviews” in “card” in block 3 in “blocks” is missing."},
        {noteWithBlock(R"({"card":{"box":1.5,"reviews":0}})"),
         "“box” in “card” in block 3 in “blocks” is not a whole number of usual size."},
        {noteWithBlock(R"({"card":{"box":2147483648,"reviews":0}})"),
         "“box” in “card” in block 3 in “blocks” is not a whole number of usual size."},
        {noteWithBlock(R"({"card":{"box":1,"reviews":18446744073709551615}})"),
         "“reviews” in “card” in block 3 in “blocks” is not a whole number of usual size."},
        {noteWithBlock(R"({"card":{"box":"1","reviews":0}})"),
         "“box” in “card” in block 3 in “blocks” is not a whole number."},
        {noteWithBlock(R"({"card":{"box":1,"reviews":0,"due":null}})"),
         "“due” in “card” in block 3 in “blocks” is not a string."},
        {noteWithCall("tracks", R"("tracks":["you","us"])"), "track 2 in “tracks” in “call” is not “you” or “them”."},
        {noteWithCall("duration", R"("duration":"61")"), "“duration” in “call” is not a number."},
        {noteWithCall("", R"("digest":null)"), "“digest” in “call” is not an object."},
        {noteWithCall("", R"("problem":null)"), "“problem” in “call” is not a string."},
        {noteWithCall("", digest), "“id” in action 1 in “actions” in “digest” in “call” is missing."},
    };
    for (const auto& [json, sentence] : cases) {
        EXPECT_EQ(errorOf(json), sentence) << json;
    }
}

TEST(NoteDecoding, recordInACall_needsAllItsKeys) {
    EXPECT_EQ(errorOf(noteWithCall("", "")), "no error");
    for (const std::string key : {"startedAt", "duration", "source", "segments", "tracks", "themName", "language"}) {
        EXPECT_EQ(errorOf(noteWithCall(key, "")), "“" + key + "” in “call” is missing.");
    }
}

TEST(NoteDecoding, textThatIsNoJson_saysSo) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"", "There is no text."},
        {"\xEF\xBB\xBF", "There is no text."},
        {"  ", "There is no text."},
        {noteWith("\"title\":\"\xC3\x28\""), "The text is not in UTF-8."},
        {std::string(100'000, '[') + std::string(100'000, ']'), "The text is nested too deeply."},
        {noteWith("\"x\":" + std::string(2'000, '[') + std::string(2'000, ']')), "The text is nested too deeply."},
    };
    for (const auto& [json, sentence] : cases) {
        EXPECT_EQ(errorOf(json), sentence) << json.substr(0, 80);
    }
    const std::string whole = noteWithCall("", "");
    for (std::size_t length = 1; length < whole.size(); ++length) {
        EXPECT_NE(errorOf(whole.substr(0, length)), "no error") << length;
    }
    for (const std::string& json :
         {whole + "}", whole + whole, std::string(100'000, '['), noteWith(R"("title":"\ud800")"),
          noteWith("\"title\":\"a\nb\""), noteWith(R"("pinned":NaN)")}) {
        EXPECT_TRUE(errorOf(json).starts_with("The text is not JSON: ")) << json << "\n" << errorOf(json);
    }
}

TEST(NoteDecoding, manyNotes_nameTheOneAtFault) {
    EXPECT_EQ(decodeNotes("[" + noteWith("\"x\":1") + "," + noteWith("\"x\":2") + "]", now).size(), 2U);
    try {
        decodeNotes("[" + noteWith("\"x\":1") + R"(,{"title":"no id"}])", now);
        FAIL();
    } catch (const DecodeError& error) {
        EXPECT_STREQ(error.what(), "“id” in note 2 is missing.");
    }
}

} // namespace
} // namespace varnic
