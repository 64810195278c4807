#include "BrevinKit/Bundle/Manifest.h"
#include "BrevinKit/TestBundle.h"
#include "BrevinKit/Updater/Installation.h"
#include "VarnicCore/TemporaryFolder.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <map>
#include <sstream>
#include <stdexcept>
#include <vector>

#include <sys/xattr.h>

namespace brevin {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

/// The lines of a script with "kill -9 $$" behind so many of them.
std::string killedBehind(std::string_view script, std::size_t count) {
    std::istringstream lines{std::string(script)};
    std::string killed;
    std::size_t number = 0;
    for (std::string line; std::getline(lines, line);) {
        killed += line + "\n";
        if (++number == count) {
            killed += "kill -9 $$\n";
        }
    }
    return killed;
}

/// An installed app with the version 0.1.0, and a staged one with 0.1.1.
class Installing : public testing::Test {
protected:
    void SetUp() override { prepare(true); }

    void prepare(bool canExchange) {
        for (const fs::directory_entry& entry : fs::directory_iterator(folder.path())) {
            fs::remove_all(entry.path());
        }
        Release::seal(makeBundle(place, "0.1.0"), key);
        makeBundle(staged, "0.1.1");
        if (canExchange) {
            fs::create_directories(staged / "Contents/libexec");
            fs::copy_file(BREVIN_EXCHANGE, staged / "Contents/libexec/brevin-exchange");
        }
        Release::seal(staged, key);
    }

    /// Runs a script for a process that has ended, with commands of our own found first; gives its exit status as the
    /// shell has it.
    int run(std::string_view script, const std::string& commands = "", const std::string& before = "") const {
        writeFile(folder.path() / "script", script);
        const std::string line = fmt::format("{}; PATH='{}':$PATH sh -c 'sh -c \"$(cat '{}')\" brevin-update 4194304 "
                                             "\"$1\" \"$2\" 0 /nowhere 2>/dev/null' sh "
                                             "'{}' '{}' 2>/dev/null",
                                             before.empty() ? ":" : before, commands,
                                             (folder.path() / "script").string(), staged.string(), place.string());
        return std::system(line.c_str());
    }

    /// The version of the whole app at the place; empty where there is none.
    std::string installed() const {
        const auto info = BundleInfo::read(Bundle::infoFile(place));
        return info && Manifest::isIntact(place, key.publicKey()) ? info->version : "";
    }

    /// What a start does: of the program at its place, or else of that beside it.
    void startAgain() {
        if (!fs::exists(place)) {
            wasAway = true;
            EXPECT_EQ(Installation::putBack(place.string() + ".brevin-old/Contents/bin/tiny"),
                      place / "Contents/bin/tiny");
        }
        Installation::removeLeftovers(place, std::chrono::system_clock::now() + 1h);
    }

    /// The names beside the place.
    std::vector<std::string> besides() const {
        std::vector<std::string> names;
        for (const fs::directory_entry& entry : fs::directory_iterator(place.parent_path())) {
            if (entry.path() != place) {
                names.push_back(entry.path().filename());
            }
        }
        return names;
    }

    varnic::TemporaryFolder folder;
    ReleaseKey key = ReleaseKey::generate();
    fs::path place = folder.path() / "apps of mine/Tiny.app";
    fs::path staged = folder.path() / "caches/BrevinUpdate/Tiny.app";
    bool wasAway = false;
};

TEST_F(Installing, script_putsTheNewAppInPlace) {
    for (const bool canExchange : {true, false}) {
        prepare(canExchange);
        // Not every file system has attributes.
        const bool hasAttributes = ::setxattr(Bundle::infoFile(staged).c_str(), "user.brevin", "kept", 4, 0) == 0;
        EXPECT_EQ(run(Installation::script), 0);
        EXPECT_EQ(installed(), "0.1.1");
        EXPECT_THAT(besides(), testing::IsEmpty());
        EXPECT_FALSE(fs::exists(staged.parent_path()));
        EXPECT_EQ(::getxattr(Bundle::infoFile(place).c_str(), "user.brevin", nullptr, 0), hasAttributes ? 4 : -1);
    }
}

TEST_F(Installing, script_killedBehindAnyLine_leavesAWholeAppForTheNextStart) {
    const auto lines = static_cast<std::size_t>(std::ranges::count(Installation::script, '\n'));
    ASSERT_GT(lines, 10U);
    for (const bool canExchange : {true, false}) {
        std::size_t kills = 0;
        wasAway = false;
        for (std::size_t line = 1; line < lines; ++line) {
            prepare(canExchange);
            kills += run(killedBehind(Installation::script, line)) != 0 ? 1U : 0U;
            EXPECT_TRUE(!canExchange || fs::exists(place)) << line;
            startAgain();
            EXPECT_THAT(installed(), testing::AnyOf("0.1.0", "0.1.1")) << line;
            EXPECT_THAT(besides(), testing::IsEmpty()) << line;
            if (fs::exists(staged)) {
                run(Installation::script);
                EXPECT_EQ(installed(), "0.1.1") << "at the next end, after line " << line;
            }
        }
        EXPECT_GE(kills, lines - 7) << "the lines that a sound swap comes through";
        EXPECT_NE(wasAway, canExchange);
    }
}

TEST_F(Installing, script_killedInTheMiddleOfACommand_leavesAWholeApp) {
    const fs::path commands = folder.path() / "commands";
    const std::map<std::string, std::string> halves{
        {"cp", "mkdir -p \"$3\"; cp \"$2/Contents/Info.plist\" \"$3\""},
        {"rm", "[ -e \"$2\" ] || exit 0; rm -rf \"$2/Contents/bin\""},
        {"mv", ":"},
    };
    for (const auto& [command, half] : halves) {
        for (const bool canExchange : {true, false}) {
            prepare(canExchange);
            // Half of the work is done when the shell dies.
            writeFile(commands / command, "#!/bin/sh\nPATH=/usr/bin:/bin\n" + half + "\nkill -9 $PPID\n");
            fs::permissions(commands / command, fs::perms(0755));
            run(Installation::script, commands);
            startAgain();
            EXPECT_THAT(installed(), testing::AnyOf("0.1.0", "0.1.1")) << command;
            fs::remove_all(commands);
        }
    }
}

TEST_F(Installing, script_whereTheCopyOrAMoveFails_leavesTheOldApp) {
    const fs::path commands = folder.path() / "commands";
    EXPECT_EQ(run(Installation::script, "", "ulimit -f 100"), 0) << "the disk is full";
    EXPECT_EQ(installed(), "0.1.0");
    EXPECT_THAT(besides(), testing::IsEmpty());
    prepare(false);
    // The second move fails, and the third puts the old app back.
    writeFile(commands / "mv", "#!/bin/sh\ncase \"$1\" in *.brevin-new) exit 1 ;; esac\nexec /bin/mv \"$@\"\n");
    fs::permissions(commands / "mv", fs::perms(0755));
    EXPECT_EQ(run(Installation::script, commands), 0);
    EXPECT_EQ(installed(), "0.1.0");
    EXPECT_THAT(besides(), testing::IsEmpty());
    EXPECT_EQ(run(Installation::script), 0) << "the staged app is gone by now";
    EXPECT_EQ(installed(), "0.1.0");
}

TEST_F(Installing, putBack_isOnlyForAPlaceThatIsEmpty) {
    const fs::path old = place.string() + ".brevin-old";
    EXPECT_EQ(Installation::putBack(place / "Contents/bin/tiny"), std::nullopt);
    fs::copy(place, old, fs::copy_options::recursive | fs::copy_options::copy_symlinks);
    EXPECT_EQ(Installation::putBack(old / "Contents/bin/tiny"), std::nullopt) << "another app is there";
    Installation::removeLeftovers(place, std::chrono::system_clock::now());
    EXPECT_TRUE(fs::exists(old)) << "a swap may be going on";
    Installation::removeLeftovers(place, std::chrono::system_clock::now() + 1h);
    EXPECT_FALSE(fs::exists(old));
}

} // namespace
} // namespace brevin
