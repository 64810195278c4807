#include "VarnicCore/Library/NoteJson.h"
#include "bench/GeneratedLibrary.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <limits>
#include <string>

namespace varnic {
namespace {

const Date someDate = parseDate("2026-03-14T09:26:53Z");
const Uuid someId = Uuid::parse("1B4E28BA-2FA1-11D2-883F-0016D3CCA427").value();

std::string textOf(const auto& record) {
    return jsonText(encode(record));
}

TEST(NoteEncoding, note_isPrettyPrintedWithSortedKeysAndNoEmptyOnes) {
    Block empty;
    empty.id = someId;
    Block todo;
    todo.id = someId;
    todo.kind = BlockKind::todo;
    todo.text = "Größe/“x”";
    todo.done = true;
    todo.owner = Speaker::them;
    const Note note(someId, "", someDate, {empty, todo});
    EXPECT_EQ(textOf(note), R"({
  "blocks": [
    {
      "id": "1B4E28BA-2FA1-11D2-883F-0016D3CCA427",
      "kind": "paragraph"
    },
    {
      "done": true,
      "id": "1B4E28BA-2FA1-11D2-883F-0016D3CCA427",
      "kind": "todo",
      "owner": "them",
      "text": "Größe/“x”"
    }
  ],
  "created": "2026-03-14T09:26:53.000Z",
  "id": "1B4E28BA-2FA1-11D2-883F-0016D3CCA427",
  "modified": "2026-03-14T09:26:53.000Z",
  "pinned": false,
  "title": ""
})");
}

TEST(NoteEncoding, strictRecords_writeAllButAbsentOptionals) {
    EXPECT_EQ(encode(CardState{}).dump(), R"({"box":1,"reviews":0})");
    EXPECT_EQ(encode(EmailDraft{}).dump(), R"({"body":"","subject":""})");
    CallRecord call;
    EXPECT_EQ(encode(call).dump(), R"({"duration":0.0,"language":"en-US","segments":[],"source":"",)"
                                   R"("startedAt":"1970-01-01T00:00:00.000Z","themName":"","tracks":[]})");
    call.problem = "";
    EXPECT_TRUE(encode(call).contains("problem"));
}

TEST(NoteEncoding, generatedNotes_readBackAsTheyWere) {
    for (const Note& note : GeneratedLibrary::notes(25, 500'000)) {
        const std::string text = textOf(note);
        EXPECT_EQ(decodeNote(text, someDate), note);
        EXPECT_EQ(textOf(decodeNote(text, someDate)), text);
        EXPECT_EQ(decode<CallRecord>(textOf(*note.call)), *note.call);
        EXPECT_EQ(decode<std::vector<Segment>>(textOf(note.call->segments)), note.call->segments);
        EXPECT_EQ(decode<CallDigest>(textOf(*note.call->digest)), *note.call->digest);
        EXPECT_EQ(decode<std::vector<Block>>(textOf(note.blocks)), note.blocks);
        EXPECT_EQ(text.find("null"), std::string::npos);
    }
}

TEST(NoteEncoding, numbers_readBackToTheLastBit) {
    for (const double value : {0.1, 1.0 / 3, -0.0, 5e-324, 1.7976931348623157e308, 1e20, 123456789.123456789}) {
        Segment segment;
        segment.start = value;
        EXPECT_EQ(decode<Segment>(textOf(segment)), segment) << value;
    }
    for (const int value : {0, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
        EXPECT_EQ(decode<CardState>(textOf(CardState{.box = value, .due = someDate})).box, value);
    }
}

TEST(NoteEncoding, whatCannotBeReadAgain_throws) {
    for (const double value : {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
        Note note(someDate);
        note.call = CallRecord{};
        note.call->duration = value;
        EXPECT_THROW(encode(note), EncodeError);
    }
    for (const Date date : {Date::min(), Date::max()}) {
        EXPECT_THROW(encode(Note(date)), EncodeError);
    }
    EXPECT_NO_THROW(encode(Note(parseDate("9999-12-31T23:59:59.999Z"))));
}

TEST(NoteEncoding, malformedUtf8_isReplacedAndTheNoteKept) {
    const Note note(someDate, "caf\xC3 \xFFx");
    EXPECT_EQ(decodeNote(textOf(note), someDate).title, "caf\uFFFD \uFFFDx");
}

} // namespace
} // namespace varnic
