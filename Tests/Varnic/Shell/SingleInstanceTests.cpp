#include "Varnic/Shell/SingleInstance.h"

#include "Varnic/EventLoop.h"
#include "VarnicCore/Library/LibraryLock.h"
#include "VarnicCore/Library/LibraryStore.h"
#include "VarnicCore/TemporaryFolder.h"
#include "VarnicPlatform/Desktop/ChildProgram.h"

#include <gmock/gmock.h>

#include <csignal>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <unistd.h>

namespace varnic {
namespace {

namespace fs = std::filesystem;

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

/// Whole programs on a library of their own; see Tests/fixtures/shell_worker.cpp.
class SingleInstanceTest : public testing::Test {
protected:
    static std::unique_ptr<ChildProgram> start(std::vector<std::string> words = {}) {
        words.insert(words.begin(), VARNIC_SHELL_WORKER);
        return std::make_unique<ChildProgram>(std::move(words));
    }

    /// All that a program says until it ends, and its exit code.
    static std::pair<std::string, int> outcome(ChildProgram& program) {
        std::string said;
        for (std::string line = program.readLine(); !line.empty(); line = program.readLine()) {
            said += line + "\n";
        }
        return {said, program.wait()};
    }

    static std::pair<std::string, int> outcome(std::vector<std::string> words) {
        return outcome(*start(std::move(words)));
    }

    [[nodiscard]] std::vector<Note> stored() const {
        LibraryStore store(library);
        return store.loadAll(currentDate());
    }

    TemporaryFolder folder;
    fs::path library = folder.path() / "Library";
    EnvironmentVariable data{"VARNIC_DATA_DIR", library.c_str()};
    EnvironmentVariable config{"XDG_CONFIG_HOME", (folder.path() / "config").c_str()};
    EnvironmentVariable token{"XDG_ACTIVATION_TOKEN", "the-token"};
};

TEST_F(SingleInstanceTest, secondStart_activatesTheFirst) {
    const auto first = start();
    EXPECT_EQ(first->readLine(), "window the-token");
    EXPECT_EQ(first->readLine(), "ready");
    const EnvironmentVariable another("XDG_ACTIVATION_TOKEN", "another");
    EXPECT_EQ(outcome({}), std::pair(std::string("handed over\n"), 0));
    EXPECT_EQ(first->readLine(), "window another");
    first->signal(SIGTERM);
    EXPECT_EQ(first->wait(), 0);
    // The name is free again.
    const auto next = start();
    EXPECT_EQ(next->readLine(), "window another");
}

TEST_F(SingleInstanceTest, manyAtOnce_leaveOne) {
    std::vector<std::unique_ptr<ChildProgram>> programs;
    for (int i = 0; i < 6; ++i) {
        programs.push_back(start());
    }
    std::map<std::string, int> firstWords;
    for (const auto& program : programs) {
        ++firstWords[program->readLine()];
    }
    EXPECT_EQ(firstWords, (std::map<std::string, int>{{"handed over", 5}, {"window the-token", 1}}));
}

TEST_F(SingleInstanceTest, toggle_startsTheProgramAndThenWorksTheRunningOne) {
    const auto first = start({"--toggle-recording"});
    EXPECT_EQ(first->readLine(), "ready");
    EXPECT_EQ(first->readLine(), "recording");
    EXPECT_EQ(outcome({"--toggle-recording"}), std::pair(std::string("handed over\n"), 0));
    EXPECT_EQ(first->readLine(), "idle");
    EXPECT_EQ(first->readLine(), "filed");
    first->signal(SIGINT);
    EXPECT_EQ(first->wait(), 0);
    ASSERT_EQ(stored().size(), 1U);
    EXPECT_FALSE(stored().front().call->segments.empty());
}

TEST_F(SingleInstanceTest, background_startsWithoutAWindowAndLeavesARunningProgramAlone) {
    const auto first = start({"--background"});
    EXPECT_EQ(first->readLine(), "ready");
    EXPECT_EQ(outcome({"--background"}), std::pair(std::string("handed over\n"), 0));
    EXPECT_EQ(outcome({}), std::pair(std::string("handed over\n"), 0));
    EXPECT_EQ(first->readLine(), "window the-token") << "once, for the one who asked for it";
    first->signal(SIGTERM);
    EXPECT_EQ(first->wait(), 0);
}

TEST_F(SingleInstanceTest, follow_marksTheProgramInTheLibrarysNewPlace) {
    SingleInstance instance(library, "app.brevin.Varnic.Moving");
    ASSERT_EQ(instance.claim({}), SingleInstance::Outcome::first);
    const fs::path moved = folder.path() / "moved";
    fs::create_directory(moved);
    instance.follow(moved);
    EXPECT_EQ(LibraryLock::application(moved), ::getpid());
    EXPECT_EQ(LibraryLock::application(library), std::nullopt);
}

TEST_F(SingleInstanceTest, file_isImportedByTheRunningProgram) {
    const auto first = start();
    EXPECT_EQ(first->readLine(), "window the-token");
    EXPECT_EQ(first->readLine(), "ready");
    const fs::path recording = fs::path(VARNIC_RECORDINGS) / "success.wav";
    EXPECT_EQ(outcome({fs::relative(recording).string()}), std::pair(std::string("handed over\n"), 0));
    EXPECT_EQ(first->readLine(), "window the-token");
    EXPECT_EQ(first->readLine(), "filed");
    first->signal(SIGTERM);
    EXPECT_EQ(first->wait(), 0);
    ASSERT_EQ(stored().size(), 1U);
    EXPECT_EQ(stored().front().call->source, "Imported recording");
}

TEST_F(SingleInstanceTest, address_isShownByTheRunningProgram) {
    const auto first = start();
    EXPECT_EQ(first->readLine(), "window the-token");
    EXPECT_EQ(first->readLine(), "ready");
    EXPECT_EQ(outcome({"varnic:nothing"}), std::pair(std::string("handed over\n"), 0));
    EXPECT_EQ(first->readLine(), "window the-token");
    const std::string name = SingleInstance::busNameFor(library, true).toStdString();
    ASSERT_EQ(runProgram({"gapplication", "launch", name, "varnic:nothing"}), 0);
    EXPECT_THAT(first->readLine(), StartsWith("window"));
    EXPECT_EQ(outcome({"--record"}), std::pair(std::string("handed over\n"), 0));
    EXPECT_EQ(first->readLine(), "recording");
}

TEST_F(SingleInstanceTest, desktop_callsTheProgramAsAnApplication) {
    const auto first = start();
    EXPECT_EQ(first->readLine(), "window the-token");
    EXPECT_EQ(first->readLine(), "ready");
    const std::string name = SingleInstance::busNameFor(library, true).toStdString();
    ASSERT_EQ(runProgram({"gapplication", "launch", name}), 0);
    EXPECT_THAT(first->readLine(), StartsWith("window"));
    ASSERT_EQ(runProgram({"gapplication", "action", name, "toggle-recording"}), 0);
    EXPECT_EQ(first->readLine(), "recording");
    ASSERT_EQ(runProgram({"gapplication", "launch", name, (fs::path(VARNIC_RECORDINGS) / "success.wav").string()}), 0);
    EXPECT_THAT(first->readLine(), StartsWith("window"));
    EXPECT_EQ(first->readLine(), "filed");
}

TEST_F(SingleInstanceTest, politeKillWhileRecording_filesTheCall) {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        const auto program = start({"--toggle-recording"});
        EXPECT_EQ(program->readLine(), "ready");
        EXPECT_EQ(program->readLine(), "recording");
        const std::size_t before = stored().size();
        program->signal(SIGPIPE);
        program->signal(signal);
        EXPECT_EQ(program->readLine(), "idle");
        EXPECT_EQ(program->wait(), 0);
        EXPECT_EQ(stored().size(), before + 1) << signal;
    }
}

TEST_F(SingleInstanceTest, otherLibrary_hasAProgramOfItsOwn) {
    const auto first = start();
    EXPECT_EQ(first->readLine(), "window the-token");
    const EnvironmentVariable other("VARNIC_DATA_DIR", (folder.path() / "Other").c_str());
    const auto second = start();
    EXPECT_EQ(second->readLine(), "window the-token");
}

TEST_F(SingleInstanceTest, withoutBus_theLibraryTellsOfTheFirst) {
    const EnvironmentVariable none("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus");
    const auto first = start();
    EXPECT_EQ(first->readLine(), "window the-token");
    const auto [said, code] = outcome({});
    EXPECT_THAT(said, AllOf(StartsWith("Varnic is open already (process "), HasSubstr("install dbus-user-session")));
    EXPECT_EQ(code, 1);
}

TEST_F(SingleInstanceTest, libraryThatCannotBe_isTold) {
    const EnvironmentVariable impossible("VARNIC_DATA_DIR", "/dev/null/Library");
    const auto [said, code] = outcome({});
    EXPECT_NE(said.find("/dev/null"), std::string::npos) << said;
    EXPECT_EQ(code, 1);
}

TEST(BusName, busNameFor_isOneALibrary) {
    EXPECT_EQ(SingleInstance::busNameFor("/home/a/Library", false), "app.brevin.Varnic");
    const QString name = SingleInstance::busNameFor("/tmp/a", true);
    EXPECT_TRUE(name.startsWith("app.brevin.Varnic.Library_"));
    EXPECT_EQ(SingleInstance::busNameFor("/tmp/b/../a", true), name);
    EXPECT_NE(SingleInstance::busNameFor("/tmp/b", true), name);
}

} // namespace
} // namespace varnic
