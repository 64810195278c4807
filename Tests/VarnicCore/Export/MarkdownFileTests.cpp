#include "VarnicCore/Export/MarkdownFile.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace varnic {
namespace {

const Region berlin{.locale = "en_GB", .timeZone = "Europe/Berlin"};

struct FrontMatterCase {
    std::string text;
    std::optional<std::string> title;
    /// As it is stored.
    std::string created;
    std::vector<std::string> blocks;
};

TEST(MarkdownFile, read_takesTitleAndDateOutOfAFrontMatter) {
    const std::string dated = "---\ndate: ";
    const std::string noon = "2026-03-14T11:00:00.000Z";
    const std::vector<FrontMatterCase> cases{
        {"---\ntitle: Plan\ndate: 2026-03-14\n---\nText", "Plan", "2026-03-13T23:00:00.000Z", {"Text"}},
        {"---\r\ntitle: \"A: \\\"b\\\" \\\\\"\r\n...\r\nText", "A: \"b\" \\", "", {"Text"}},
        {"--- \n\n# comment\ntitle: 'It''s' \n---\n", "It's", "", {}},
        {"---\nTitle: Plan # soon\n---\n# Heading\nText", "Plan", "", {"Heading", "Text"}},
        {"---\ntitle: Plan\n---\n# Plan\nText", "Plan", "", {"Text"}},
        {dated + "2026-03-14 12:00\n---\n# Heading", "Heading", noon, {}},
        {dated + "2026-03-14T12:00:00\n---\n", std::nullopt, noon, {}},
        {dated + "\"2026-03-14T11:00:00Z\"\n---\n", std::nullopt, noon, {}},
        {"---\ncreated: 2026-03-14T06:00:00.5-05:00\n---\n", std::nullopt, "2026-03-14T11:00:00.500Z", {}},
        // What a note has no place for stays a text.
        {"---\ntags:\n  - a\ntitle: T\n---\nText", "T", "", {"tags:", "a", "Text"}},
        {dated + "soon\n---\n", std::nullopt, "", {"date: soon"}},
        {dated + "2026-02-30\n---\n", std::nullopt, "", {"date: 2026-02-30"}},
        {"---\ntitle: >\n  folded\n---\n", std::nullopt, "", {"title: >", "folded"}},
        // And this is none.
        {"---\ntitle: Plan\nText", std::nullopt, "", {"", "title: Plan", "Text"}},
        {"---\nWords: and more words\nonly words\n---\n",
         std::nullopt,
         "",
         {"", "Words: and more words", "only words", ""}},
        {"---\n\n---\nText", std::nullopt, "", {"", "", "Text"}},
        {"Text\n---\ntitle: Plan\n---\n", std::nullopt, "", {"Text", "", "title: Plan", ""}},
    };
    for (const FrontMatterCase& row : cases) {
        const MarkdownFile::Contents contents = MarkdownFile::read(row.text, berlin);
        std::vector<std::string> texts;
        for (const Block& block : contents.blocks) {
            texts.push_back(block.text);
        }
        EXPECT_EQ(contents.title, row.title) << row.text;
        EXPECT_EQ(contents.created ? formatDate(*contents.created) : "", row.created) << row.text;
        EXPECT_EQ(texts, row.blocks) << row.text;
    }
}

TEST(MarkdownFile, read_countsWhatANoteCannotHold) {
    struct Case {
        std::string text;
        MarkdownFile::Simplified simplified;
    };

    const std::vector<Case> cases{
        {"- a\n- b\n1. c\n\n- d", {}},
        {"- a\n  - b\n\t* c\n\n    1) d\n- e", {.nestedItems = 3}},
        {"  - a\n  - b\n    + c\nText\n  - d", {.nestedItems = 1}},
        {"- a\n    more of it\n\n    and more\n  - b", {.nestedItems = 1}},
        {"```cpp\nint f() {\n    return 1;\n\n\t}\n```\n  Text", {.codeLines = 2}},
        {"~~~\n  - a\n```\n  b\n~~~~\n- c", {.codeLines = 2}},
        {"- a\n  ```\n  b\n    c\n  ```", {.codeLines = 1}},
        {"Text\n    goes on\n\n    code\n    - code\n\nText", {.codeLines = 2}},
        {"---\ntags:\n  - a\n  - b\n---\n- c", {}},
    };
    for (const Case& row : cases) {
        EXPECT_EQ(MarkdownFile::read(row.text, berlin).simplified, row.simplified) << row.text;
    }
}

} // namespace
} // namespace varnic
