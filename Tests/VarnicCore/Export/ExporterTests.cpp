#include "VarnicCore/Export/Exporter.h"

#include "VarnicCore/Export/MarkdownImport.h"
#include "VarnicCore/Text/Unicode.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace varnic {
namespace {

const Date start = parseDate("2026-03-14T09:26:53Z");

std::string repeated(const std::string& piece, int count) {
    std::string text;
    for (int i = 0; i < count; ++i) {
        text += piece;
    }
    return text;
}

TEST(Exporter, fileName_ofEveryTitleIsOne) {
    const std::string family = "👨‍👩‍👧";
    const std::vector<std::pair<std::string, std::string>> names{
        {"Q3: plan / review?", "Q3- plan - review.md"},
        {"...", "Note.md"},
        {"", "Untitled note.md"},
        {R"(a/b:c\d?e%f*g|h"i<j>k)", "a-b-c-d-e-f-g-h-i-j-k.md"},
        {"tab\there\nand\x01there\x7F", "tab-here-and-there\x7F.md"},
        {"-. Plan .-", "Plan.md"},
        {repeated("x", 100), repeated("x", 80) + ".md"},
        {repeated("x", 79) + " y", repeated("x", 79) + " .md"},
        {repeated(family, 81), repeated(family, 80) + ".md"},
    };
    for (const auto& [title, name] : names) {
        EXPECT_EQ(Exporter::fileName(Note(start, title), ExportFormat::markdown), name);
    }
    EXPECT_EQ(Exporter::fileName(Note(start, "a"), ExportFormat::docx), "a.docx");
}

TEST(Exporter, fittingFileName_isCutAtACharacterAndFits) {
    const std::string family = "👨‍👩‍👧"; // 18 bytes
    const std::string tower = "Z" + repeated("\u0300", 200);
    for (const auto& [title, stem] :
         std::vector<std::pair<std::string, std::string>>{{"Plan", "Plan"},
                                                          {repeated(family, 80), repeated(family, 13)},
                                                          {repeated("é", 80), repeated("é", 80)},
                                                          {repeated("語", 80), repeated("語", 80)},
                                                          {"a" + tower, "a"},
                                                          {tower, "Note"}}) {
        EXPECT_EQ(Exporter::fittingFileName(Note(start, title), ExportFormat::docx), stem + ".docx");
    }
}

CallDigest digestOf(EmailDraft email = {}) {
    CallDigest digest;
    digest.provider = "Varnic";
    digest.email = std::move(email);
    return digest;
}

CallRecord callOf() {
    CallRecord call;
    call.startedAt = start;
    call.duration = 754;
    call.source = "Zoom";
    return call;
}

TEST(Exporter, metaLine_namesTheSummaryOnlyWhenThereIsOne) {
    CallRecord call = callOf();
    EXPECT_EQ(Exporter::metaLine(call, Region{}), "Zoom · Saturday 14 March 2026, 09:26 · 13 min");
    call.digest = digestOf();
    EXPECT_EQ(Exporter::metaLine(call, Region{"de_DE", "Asia/Kolkata"}),
              "Zoom · Samstag 14 März 2026, 14:56 · 13 min · Summary by Varnic");
}

Block blockOf(BlockKind kind, std::string text) {
    Block block;
    block.kind = kind;
    block.text = std::move(text);
    return block;
}

std::string markdownOf(std::vector<Block> blocks, const ExportOptions& options = {}) {
    return Exporter::markdown(Note(Uuid::random(), "T", start, std::move(blocks)), options, Region{});
}

TEST(Exporter, markdown_escapesWhatWouldBeReadAsAnotherKind) {
    const std::vector<std::pair<std::string, std::string>> texts{
        {"- not a list", "\\- not a list"},
        {"#1 priority", "\\#1 priority"},
        {"> x", "\\> x"},
        {"*x*", "\\*x*"},
        {"+1", "\\+1"},
        {" - x", " - x"},
        {"\\x", "\\x"},
        {"#\uFE0F\u20E3 one", "#\uFE0F\u20E3 one"},
    };
    for (const auto& [text, line] : texts) {
        EXPECT_EQ(markdownOf({blockOf(BlockKind::paragraph, text)}), "# T\n\n" + line + "\n");
        EXPECT_EQ(markdownOf({blockOf(BlockKind::bullet, text)}), "# T\n\n- " + line + "\n");
        EXPECT_EQ(markdownOf({blockOf(BlockKind::heading, text)}), "# T\n\n## " + text + "\n");
        EXPECT_EQ(markdownOf({Block::flashcard(text, text)}), fmt::format("# T\n\n**Q:** {0}\n**A:** {0}\n", line));
    }
}

TEST(Exporter, markdown_listsStandTightUntilTheKindChanges) {
    Block done = blockOf(BlockKind::todo, "a");
    done.done = true;
    EXPECT_EQ(markdownOf({done, blockOf(BlockKind::todo, "b"), blockOf(BlockKind::bullet, "c"),
                          blockOf(BlockKind::paragraph, "d"), blockOf(BlockKind::divider, ""),
                          blockOf(BlockKind::quote, "e"), blockOf(BlockKind::subheading, "f")}),
              "# T\n\n- [x] a\n- [ ] b\n\n- c\n\nd\n\n---\n\n> e\n\n### f\n");
}

TEST(Exporter, markdown_tagsTodosWithWhatIsKnown) {
    Block todo = blockOf(BlockKind::todo, "a");
    todo.due = "Friday";
    EXPECT_EQ(markdownOf({todo}), "# T\n\n- [ ] a _(due Friday)_\n");
    todo.owner = Speaker::them;
    EXPECT_EQ(markdownOf({todo}), "# T\n\n- [ ] a _(@Them, due Friday)_\n");
    todo.owner = Speaker::you;
    todo.due.reset();
    EXPECT_EQ(markdownOf({todo}, {.yourName = " Sam "}), "# T\n\n- [ ] a _(@ Sam )_\n");
    EXPECT_EQ(markdownOf({todo}), "# T\n\n- [ ] a _(@)_\n");
    Note note(Uuid::random(), "T", start, {todo}, callOf());
    note.blocks[0].owner = Speaker::them;
    note.call->themName = "Maya ";
    EXPECT_NE(Exporter::markdown(note, {}, Region{}).find("a _(@Maya )_"), std::string::npos);
}

TEST(Exporter, markdown_padsTables) {
    EXPECT_EQ(markdownOf({Block::table({{"a", "b"}, {"c|d", "e\nf", "g\r\u2028h"}, {}})}),
              "# T\n\n| a | b |  |\n| --- | --- | --- |\n| c\\|d | e f | g  h |\n|  |  |  |\n");
    EXPECT_EQ(markdownOf({Block::table({{}, {}}), blockOf(BlockKind::paragraph, "x")}), "# T\n\n\nx\n");
}

TEST(Exporter, markdown_alwaysEndsInOneNewline) {
    EXPECT_EQ(markdownOf({}), "# T\n");
    EXPECT_EQ(markdownOf({blockOf(BlockKind::paragraph, "x\n\n"), blockOf(BlockKind::paragraph, "")}), "# T\n\nx\n");
}

Note callNote() {
    CallRecord call = callOf();
    call.themName = "Maya";
    call.segments = {Segment(Speaker::you, 0, 2, "- Hello."), Segment(Speaker::you, 3, 4, "Again."),
                     Segment(Speaker::them, 65, 66, "Yes.")};
    call.digest = digestOf({.subject = "Notes", .body = "Hi,\n\nbye"});
    return {Uuid::random(), "T", start, {blockOf(BlockKind::paragraph, "x")}, call};
}

TEST(Exporter, markdown_addsEmailAndTranscriptWhenAsked) {
    const Note note = callNote();
    const std::string head = "# T\n\n*Zoom · Saturday 14 March 2026, 09:26 · 13 min · Summary by Varnic*\n\nx\n";
    const std::string email = "\n## Follow-up email\n\n**Subject:** Notes\n\n> Hi,\n> \n> bye\n";
    const std::string transcript = "\n## Transcript\n\n**Sam** [0:00]: \\- Hello. Again.\n\n**Maya** [1:05]: Yes.\n";
    EXPECT_EQ(Exporter::markdown(note, {.yourName = "Sam"}, Region{}), head);
    EXPECT_EQ(Exporter::markdown(note, {.includeEmail = true, .yourName = "Sam"}, Region{}), head + email);
    EXPECT_EQ(Exporter::markdown(note, {.includeTranscript = true, .includeEmail = true, .yourName = "Sam"}, Region{}),
              head + email + transcript);
}

TEST(Exporter, markdown_withNothingToAdd_addsNoHeading) {
    Note note = callNote();
    note.call->digest->email.body.clear();
    note.call->segments.clear();
    const ExportOptions all{.includeTranscript = true, .includeEmail = true, .yourName = "Sam"};
    EXPECT_EQ(Exporter::markdown(note, all, Region{}).find("##"), std::string::npos);
    note.call->digest.reset();
    EXPECT_EQ(Exporter::markdown(note, all, Region{}).find("##"), std::string::npos);
}

TEST(Exporter, markdown_partsOfACall_comeBackAsOrdinaryBlocks) {
    const std::string text =
        Exporter::markdown(callNote(), {.includeTranscript = true, .includeEmail = true, .yourName = "Sam"}, Region{});
    std::string kinds;
    for (const Block& block : MarkdownImport::blocks(text).blocks) {
        kinds.append(rawValue(block.kind)).append(" ");
    }
    // The email's empty line is trimmed to ">", a paragraph.
    EXPECT_EQ(kinds, "paragraph paragraph heading paragraph quote paragraph quote heading paragraph paragraph ");
}

} // namespace
} // namespace varnic
