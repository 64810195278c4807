#include "Varnic/Shell/CommandLine.h"

#include "Varnic/Shell/ApplicationInterface.h"
#include "VarnicPlatform/Desktop/ChildProgram.h"

#include <QFile>
#include <QRegularExpression>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>

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
        {{"varnic", "varnic:x?t=1"}, {Request::Kind::openAddress, {}, "token", "varnic:x?t=1"}},
        {{"varnic", "Varnic://x"}, {Request::Kind::openAddress, {}, "token", "Varnic://x"}},
        {{"varnic", "./varnic:x"}, {Request::Kind::importFiles, {here / "varnic:x"}, "token"}},
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
          Case{{"varnic", "--togle"}, 2, "togle'; see varnic --help"},
          Case{{"varnic", "varnic:x", "a.m4a"}, 2, "an address goes with nothing else"},
          Case{{"varnic", "--toggle-recording", "a.m4a"}, 2, "takes no files"}}) {
        const CommandLine line = CommandLine::parse(words);
        ASSERT_TRUE(line.answer) << words.join(' ').toStdString();
        EXPECT_NE(line.answer->find(answer), std::string::npos) << *line.answer;
        EXPECT_EQ(line.exitCode, exitCode) << *line.answer;
    }
}

TEST(CommandLine, desktopEntry_asksForTheSameByCommandAsOverTheBus) {
    std::map<QString, QString> entry; // by "group/key"
    QFile file(VARNIC_DESKTOP_FILE);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    QString group;
    for (const QString& line : QString::fromUtf8(file.readAll()).split('\n')) {
        group = line.startsWith('[') ? line.mid(1, line.size() - 2) + "/" : group;
        entry[group + line.section('=', 0, 0)] = line.section('=', 1);
    }
    const QStringList names = entry["Desktop Entry/Actions"].split(';', Qt::SkipEmptyParts);
    EXPECT_EQ(names.size(), 3);
    for (const QString& name : names) {
        const auto known = std::ranges::find_if(ApplicationInterface::actions,
                                                [&name](const auto& action) { return name == action.name; });
        ASSERT_NE(known, ApplicationInterface::actions.end()) << name.toStdString();
        const QStringList words = entry["Desktop Action " + name + "/Exec"].split(' ');
        EXPECT_EQ(CommandLine::parse(words).request.kind, known->kind) << words.join(' ').toStdString();
    }
}

TEST(CommandLine, help_tellsOfEachOptionInALine_byWhichShellsComplete) {
    const QString help = QString::fromStdString(CommandLine::parse({"varnic", "--help"}).answer.value());
    const QStringList lines = help.split('\n').filter(QRegularExpression("^ +(-\\w, )?--"));
    EXPECT_GE(lines.size(), 7);
    for (const QString& line : lines) {
        EXPECT_TRUE(line.endsWith('.')) << line.toStdString();
    }
}

TEST(CommandLine, manual_tellsOfEveryOptionOfTheHelp) {
    const auto options = [](const char* word) {
        QString text = QString::fromStdString(CommandLine::parse({"varnic", word}).answer.value());
        text.replace("\\-", "-");
        std::set<QString> found;
        for (auto each = QRegularExpression("--[a-z-]+").globalMatch(text); each.hasNext();) {
            found.insert(each.next().captured());
        }
        return found;
    };
    EXPECT_GE(options("--help").size(), 7U);
    EXPECT_EQ(options("--manual"), options("--help"));
}

} // namespace
} // namespace varnic
