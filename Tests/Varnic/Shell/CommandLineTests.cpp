#include "Varnic/Shell/CommandLine.h"

#include "VarnicPlatform/Desktop/ChildProgram.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace varnic {
namespace {

namespace fs = std::filesystem;

TEST(CommandLine, parse_givesTheRequest) {
    const EnvironmentVariable token("XDG_ACTIVATION_TOKEN", "token");
    const fs::path here = fs::current_path();

    struct Case {
        QStringList words;
        Request request;
    };

    const std::vector<Case> cases{
        {{"varnic"}, {Request::Kind::activate, {}, "token"}},
        {{"varnic", "--toggle-recording"}, {Request::Kind::toggleRecording, {}, "token"}},
        {{"varnic", "--background"}, {Request::Kind::background, {}, "token"}},
        {{"varnic", "a call.m4a", "../b.wav"},
         {Request::Kind::importFiles, {here / "a call.m4a", here.parent_path() / "b.wav"}, "token"}},
        {{"varnic", "/x/ü.mp3", "file:///x/a%20b.mp3"},
         {Request::Kind::importFiles, {"/x/ü.mp3", "/x/a b.mp3"}, "token"}},
        {{"varnic", "--", "--toggle-recording"}, {Request::Kind::importFiles, {here / "--toggle-recording"}, "token"}},
        {{"varnic", "100%25.m4a"}, {Request::Kind::importFiles, {here / "100%25.m4a"}, "token"}}};
    for (const auto& [words, request] : cases) {
        const CommandLine line = CommandLine::parse(words);
        EXPECT_EQ(line.answer, std::nullopt) << words.join(' ').toStdString();
        EXPECT_EQ(line.request, request) << words.join(' ').toStdString();
    }
}

TEST(CommandLine, parse_answersInsteadOfRunning) {
    struct Case {
        QStringList words;
        int exitCode;
        std::string answer;
    };

    for (const auto& [words, exitCode, answer] :
         {Case{{"varnic", "--version"}, 0, "varnic " VARNIC_VERSION "\n"},
          Case{{"varnic", "--help"}, 0, "--toggle-recording"}, Case{{"varnic", "-h"}, 0, "[file…]"},
          Case{{"varnic", "--background", "--toggle-recording"}, 2, "nothing else"},
          Case{{"varnic", "--togle"}, 2, "togle"},
          Case{{"varnic", "--toggle-recording", "a.m4a"}, 2, "takes no files"}}) {
        const CommandLine line = CommandLine::parse(words);
        ASSERT_TRUE(line.answer) << words.join(' ').toStdString();
        EXPECT_NE(line.answer->find(answer), std::string::npos) << *line.answer;
        EXPECT_EQ(line.exitCode, exitCode) << *line.answer;
    }
}

} // namespace
} // namespace varnic
