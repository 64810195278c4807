#include "VarnicCore/Models/NoteAddress.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace varnic {
namespace {

const std::string id = "6E0B7B39-6C0A-4E0C-9C53-0A6A1B0D7F11";

TEST(NoteAddress, text_isReadBack) {
    for (const auto& [time, text] : std::vector<std::pair<std::optional<double>, std::string>>{
             {std::nullopt, "varnic:" + id}, {0, "varnic:" + id + "?t=0"}, {83, "varnic:" + id + "?t=83"}}) {
        const NoteAddress address{.note = *Uuid::parse(id), .time = time};
        EXPECT_EQ(address.text(), text);
        EXPECT_EQ(NoteAddress::parse(text), address);
    }
    EXPECT_EQ((NoteAddress{.note = *Uuid::parse(id), .time = 83.9}).text(), "varnic:" + id + "?t=83");
}

TEST(NoteAddress, parse_takesWhatProgramsMakeOfIt) {
    const NoteAddress address{.note = *Uuid::parse(id), .time = 1.5};
    for (const std::string& text :
         std::vector<std::string>{"VARNIC:" + id + "?t=1.5", "varnic://" + id + "?t=1.5", "varnic://" + id + "/?t=1.5",
                                  "varnic:///6e0b7b39-6c0a-4e0c-9c53-0a6a1b0d7f11?t=1.5"}) {
        EXPECT_EQ(NoteAddress::parse(text), address) << text;
    }
}

TEST(NoteAddress, parse_givesNothingForOthers) {
    for (const std::string& text : std::vector<std::string>{"",
                                                            "varnic",
                                                            "varnic:",
                                                            "varnic:///",
                                                            "http:" + id,
                                                            id,
                                                            "varnic:" + id.substr(1),
                                                            "varnic:" + id + "/more",
                                                            "varnic:" + id + "?",
                                                            "varnic:" + id + "?t=",
                                                            "varnic:" + id + "?t=-1",
                                                            "varnic:" + id + "?t=1e3",
                                                            "varnic:" + id + "?t=nan",
                                                            "varnic:" + id + "?t=inf",
                                                            "varnic:" + id + "?t=1&t=2",
                                                            "varnic:" + id + "?s=1",
                                                            "varnic:" + id + "#t=1",
                                                            "varnic:" + id + "?t= 1",
                                                            "varnic:" + id + "?t=" + std::string(400, '9'),
                                                            "varnic:\xFF"}) {
        EXPECT_EQ(NoteAddress::parse(text), std::nullopt) << text;
    }
}

} // namespace
} // namespace varnic
