#include "BrevinKit/Updater/Updater.h"

#include "BrevinKit/TestBundle.h"
#include "BrevinKit/UpdateError.h"
#include "BrevinKit/Updater/Staging.h"
#include "BrevinKit/UpdaterHost.h"
#include "HTTP/Client.h"
#include "HTTP/LocalServer.h"
#include "VarnicCore/FileSizeLimit.h"
#include "VarnicCore/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <functional>
#include <optional>
#include <stdexcept>
#include <vector>

#include <sys/xattr.h>

namespace brevin {
namespace {

namespace fs = std::filesystem;
using namespace UpdatePhase;
using std::holds_alternative;
using testing::ElementsAre;
using testing::IsEmpty;

/// Tiny 0.1.0 in a folder of its own, and a publisher’s server with 0.1.1.
class UpdaterTest : public testing::Test {
protected:
    void SetUp() override {
        ::setenv("SSL_CERT_FILE", server.certificate().c_str(), 1);
        makeBundle(bundle, "0.1.0");
        Release::seal(bundle, key);
        publish("0.1.1");
        host.opened = [this] { ++openings; };
        makeUpdater();
    }

    void TearDown() override { ::unsetenv("SSL_CERT_FILE"); }

    void makeUpdater() {
        updater.reset();
        updater = std::make_unique<Updater>(configuration(), settings, host.host());
        QObject::connect(updater.get(), &Updater::phaseChanged, [this] {
            if (const auto* download = std::get_if<Downloading>(&updater->phase())) {
                progress.push_back(download->progress);
            }
        });
    }

    UpdaterConfiguration configuration() const {
        return {.appName = "Tiny",
                .identifier = "app.brevin.Tiny",
                .currentVersion = "0.1.0",
                .feedURL = feedURL,
                .publicKey = key.publicKey(),
                .program = bundle / "Contents/bin/tiny",
                .bundle = bundle,
                .caches = folder.path() / "caches",
                .system = {.major = 2, .minor = 36}};
    }

    /// The app that a publisher makes an archive of.
    fs::path newApp(const std::string& version) {
        const fs::path app = folder.path() / ("new-" + version) / "Tiny.app";
        fs::remove_all(app);
        return makeBundle(app, version);
    }

    void publish(const std::string& version, const std::function<void(const fs::path&)>& change = [](auto&) {}) {
        const fs::path app = newApp(version);
        change(app);
        Release::seal(app, key);
        pack(app, version);
    }

    /// Packs what is there and makes the feed for it, signed as it is.
    void pack(const fs::path& app, const std::string& version) {
        Release::pack(app, served / "update.zip");
        feed = {.version = version,
                .url = "https://example.org/tiny",
                .notes = "Better.",
                .download = Release::describe(served / "update.zip", server.secureURL("update.zip"), key)};
        writeFeed();
    }

    void writeFeed() const { writeFile(served / "feed.json", feed.encode()); }

    std::string ask(const std::string& path) const {
        std::string answer;
        http::send({.url = server.url(path)}, {.body = [&answer](std::string_view bytes) { answer += bytes; }});
        return answer;
    }

    /// Checks and waits until all comes to rest.
    void check(bool userInitiated = false) {
        updater->check(userInitiated);
        settle();
    }

    void settle() {
        ASSERT_TRUE(host.waitUntil([this] { return host.isIdle(); }));
    }

    std::string failure() const {
        const auto* const failed = std::get_if<Failed>(&updater->phase());
        return failed == nullptr ? "" : failed->message;
    }

    /// The version that stands at the place.
    std::string installed() const { return BundleInfo::read(Bundle::infoFile(bundle))->version; }

    varnic::TemporaryFolder folder;
    fs::path bundle = folder.path() / "apps/Tiny.app";
    fs::path served = folder.path();
    ReleaseKey key = ReleaseKey::generate();
    varnic::LocalServer server{"update_server.py", {folder.path().string()}};
    std::string feedURL = server.secureURL("feed.json");
    UpdateFeed feed;
    QSettings settings{QString::fromStdString(folder.path() / "settings.ini"), QSettings::IniFormat};
    UpdaterHost host;
    int openings = 0;
    std::vector<double> progress;
    std::unique_ptr<Updater> updater;
};

TEST_F(UpdaterTest, check_findsDownloadsVerifiesAndStages) {
    feed.download->url = server.secureURL("moved/update.zip");
    writeFeed();
    check();
    ASSERT_EQ(updater->phase(), Phase(Ready{feed})) << failure();
    EXPECT_EQ(BundleInfo::read(Bundle::infoFile(*updater->stagedApp()))->version, "0.1.1");
    EXPECT_EQ(fs::status(updater->stagedApp()->parent_path()).permissions(), fs::perms::owner_all);
    const auto length = static_cast<double>(feed.download->length);
    EXPECT_THAT(progress, ElementsAre(0, 262'144 / length, 2 * 262'144 / length));
    EXPECT_TRUE(updater->lastChecked());
    EXPECT_EQ(installed(), "0.1.0");
    EXPECT_EQ(openings, 1);
    // What is ready stays, whoever asks.
    check();
    check(true);
    EXPECT_EQ(updater->phase(), Phase(Ready{feed}));
    EXPECT_EQ(ask("count/update.zip"), "2") << "with its redirect";
}

TEST_F(UpdaterTest, start_checksByItselfAgainAndAgain) {
    UpdaterConfiguration quick = configuration();
    quick.firstCheckAfter = std::chrono::milliseconds(1);
    quick.checkInterval = std::chrono::milliseconds(50);
    feed.version = "0.1.0";
    writeFeed();
    updater = std::make_unique<Updater>(quick, settings, host.host());
    updater->start();
    EXPECT_TRUE(host.waitUntil([this] { return std::stoi(ask("count/feed.json")) >= 3; }));
    EXPECT_EQ(openings, 0);
    quick.feedURL = std::nullopt;
    updater = std::make_unique<Updater>(quick, settings, host.host());
    updater->start();
    updater->check(true);
    EXPECT_EQ(updater->phase(), Phase(Idle()));
    EXPECT_EQ(openings, 0);
}

TEST_F(UpdaterTest, twoChecks_makeOneDownload) {
    feed.download->url = server.secureURL("held/update.zip");
    writeFeed();
    updater->check(false);
    updater->check(true);
    updater->check(false);
    ASSERT_TRUE(host.waitUntil([this] { return holds_alternative<Downloading>(updater->phase()); }));
    updater->check(true);
    updater->download(feed);
    ask("release");
    settle();
    EXPECT_EQ(updater->phase(), Phase(Ready{feed}));
    EXPECT_EQ(ask("count/update.zip"), "1");
    EXPECT_EQ(openings, 2) << "by each check that the user started";
}

TEST_F(UpdaterTest, end_breaksOffADownload) {
    feed.download->url = server.secureURL("held/update.zip");
    writeFeed();
    updater->check(false);
    ASSERT_TRUE(host.waitUntil([this] { return ask("count/update.zip") == "1"; }));
    updater.reset();
    settle();
}

TEST_F(UpdaterTest, aVersion_opensTheWindowByItselfOnlyOnce) {
    updater->setAutomaticallyDownloads(false);
    for (int i = 0; i < 3; ++i) {
        check();
        EXPECT_EQ(updater->phase(), Phase(Available{feed}));
    }
    EXPECT_EQ(openings, 1);
    makeUpdater();
    EXPECT_FALSE(updater->automaticallyDownloads());
    check();
    EXPECT_EQ(openings, 1) << "not after the next start, either";
    publish("0.1.2");
    check();
    EXPECT_EQ(openings, 2);
    updater->download(feed);
    settle();
    EXPECT_EQ(updater->phase(), Phase(Ready{feed})) << failure();
    EXPECT_EQ(openings, 2);
}

TEST_F(UpdaterTest, whatCannotBeInstalled_isOnlyTold) {
    const std::vector<std::pair<std::string, std::function<void(UpdaterConfiguration&)>>> cases{
        {"no bundle", [](UpdaterConfiguration& one) { one.bundle = std::nullopt; }},
        {"no key", [](UpdaterConfiguration& one) { one.publicKey = std::nullopt; }},
        {"a stick", [](UpdaterConfiguration& one) { one.bundle = "/media/stick/Tiny.app"; }},
        {"a disk image", [](UpdaterConfiguration& one) { one.bundle = "/tmp/.mount_Tiny/Tiny.app"; }},
        {"nothing there", [this](UpdaterConfiguration& one) { one.bundle = folder.path() / "none/Tiny.app"; }},
        {"a package", [](UpdaterConfiguration& one) { one.program = "/usr/bin/dpkg"; }},
    };
    for (const auto& [name, change] : cases) {
        UpdaterConfiguration other = configuration();
        change(other);
        updater = std::make_unique<Updater>(other, settings, host.host());
        check();
        EXPECT_EQ(updater->phase(), Phase(Available{feed})) << name;
        host.urls.clear();
        updater->download(feed);
        settle();
        EXPECT_EQ(updater->phase(), Phase(Available{feed})) << name;
        EXPECT_THAT(host.urls, ElementsAre("https://example.org/tiny")) << name;
    }
    EXPECT_EQ(updater->owner(), (PackageOwner{.system = PackageOwner::System::dpkg, .package = "dpkg"}));
    EXPECT_THAT(updater->owner()->advice("Tiny"), testing::HasSubstr("sudo apt install dpkg"));
    feed.url = "file:///bin/sh";
    feed.download = std::nullopt;
    host.urls.clear();
    updater->download(feed);
    EXPECT_THAT(host.urls, IsEmpty()) << "a feed opens pages, not programs";
    EXPECT_EQ(ask("count/update.zip"), "0");
}

TEST_F(UpdaterTest, whatIsNotNewOrDoesNotRunHere_isUpToDate) {
    for (const auto& [version, minimum] : {std::pair("0.0.9", ""), {"0.1.0", ""}, {"0.2.0", "2.37"}}) {
        feed.version = version;
        feed.minimumSystemVersion = minimum;
        writeFeed();
        check();
        EXPECT_EQ(updater->phase(), Phase(Idle())) << version;
        check(true);
        EXPECT_EQ(updater->phase(), Phase(UpToDate())) << version;
    }
    EXPECT_EQ(openings, 3) << "each time that the user asked";
}

TEST_F(UpdaterTest, aBadFeed_isToldToTheUserAlone) {
    const auto serve = [this](const std::string& contents) {
        writeFile(served / "feed.json", contents);
        return server.secureURL("feed.json");
    };
    feed.version = "9";
    const std::string good = feed.encode();
    const auto named = [this](const std::string& version) {
        UpdateFeed other = feed;
        other.version = version;
        return other.encode();
    };
    const std::vector<std::pair<std::string, std::function<std::string()>>> cases{
        {"HTML", [&] { return serve("<!DOCTYPE html><html>It works!</html>"); }},
        {"empty", [&] { return serve(""); }},
        {"50 MB",
         [&] {
             std::string padded = good;
             padded.resize(50'000'000, ' ');
             return serve(padded);
         }},
        {"without an end", [&] { return serve(good), server.secureURL("endless/feed.json"); }},
        {"cut", [&] { return server.secureURL("cut/feed.json"); }},
        {"not there", [&] { return server.secureURL("none.json"); }},
        {"503", [&] { return server.secureURL("status-503/feed.json"); }},
        {"a redirect to HTTP", [&] { return server.secureURL("downgraded/feed.json"); }},
        {"not reachable", [] { return std::string("https://127.0.0.1:1/feed.json"); }},
        {"no address", [] { return std::string("feed"); }},
        {"a version that is none", [&] { return serve(named("newest")); }},
        {"a version with a path", [&] { return serve(named("9/../../x")); }},
        {"an empty version", [&] { return serve(named("")); }},
        {"an untrusted server",
         [&] {
             ::unsetenv("SSL_CERT_FILE");
             return serve(good);
         }},
    };
    for (const auto& [name, prepare] : cases) {
        feedURL = prepare();
        makeUpdater();
        check();
        EXPECT_EQ(updater->phase(), Phase(Idle())) << name;
        EXPECT_EQ(openings, 0) << name;
        check(true);
        EXPECT_EQ(failure(), UpdateMessages::feedUnavailable) << name;
        EXPECT_EQ(std::exchange(openings, 0), 1) << name;
        EXPECT_FALSE(updater->lastChecked()) << name;
    }
}

TEST_F(UpdaterTest, aBadArchive_isRefusedInOneSentence) {
    const fs::path zip = served / "update.zip";
    const std::string bytes = readFile(zip);
    const UpdateFeed good = feed;
    const auto serve = [&](const std::string& contents) { writeFile(zip, contents); };
    const auto other = [](std::string_view text) { return UpdateMessages::other(text); };

    struct Case {
        std::string name;
        std::function<void()> prepare;
        std::string message;
    };

    const std::vector<Case> cases{
        {"truncated", [&] { serve(bytes.substr(0, bytes.size() - 1)); },
         std::string(UpdateMessages::downloadIncomplete)},
        {"empty", [&] { serve(""); }, std::string(UpdateMessages::downloadIncomplete)},
        {"a byte too long", [&] { serve(bytes + "x"); }, std::string(UpdateMessages::downloadTooLarge)},
        {"without an end", [&] { feed.download->url = server.secureURL("endless/update.zip"); },
         std::string(UpdateMessages::downloadTooLarge)},
        {"a length below zero", [&] { feed.download->length = -1; }, std::string(UpdateMessages::downloadTooLarge)},
        {"broken off", [&] { feed.download->url = server.secureURL("cut/update.zip"); },
         other("The connection to the server was lost.")},
        {"404", [&] { feed.download->url = server.secureURL("none.zip"); },
         std::string(UpdateMessages::downloadRefused)},
        {"a redirect to HTTP", [&] { feed.download->url = server.secureURL("downgraded/update.zip"); },
         std::string(UpdateMessages::downloadRefused)},
        {"one changed byte",
         [&] {
             std::string changed = bytes;
             changed[changed.size() / 2] ^= 1;
             serve(changed);
         },
         std::string(UpdateMessages::wrongSignature)},
        {"no signature", [&] { feed.download->edSignature = "none"; }, std::string(UpdateMessages::wrongSignature)},
        {"somebody else’s signature",
         [&] { feed.download = Release::describe(zip, feed.download->url, ReleaseKey::generate()); },
         std::string(UpdateMessages::wrongSignature)},
        {"another version’s, rightly signed", [&] { feed.version = "0.1.2"; }, std::string(UpdateMessages::wrongApp)},
        {"another app",
         [&] {
             const fs::path app = makeBundle(folder.path() / "other/Tiny.app", "0.1.1", "app.brevin.Other");
             Release::seal(app, key);
             pack(app, "0.1.1");
         },
         std::string(UpdateMessages::wrongApp)},
        {"no program", [&] { publish("0.1.1", [](const fs::path& app) { fs::remove(app / "Contents/bin/tiny"); }); },
         std::string(UpdateMessages::wrongApp)},
        {"no manifest", [&] { pack(newApp("0.1.1"), "0.1.1"); }, std::string(UpdateMessages::damagedCode)},
        {"somebody else’s manifest",
         [&] {
             const fs::path app = newApp("0.1.1");
             Release::seal(app, ReleaseKey::generate());
             pack(app, "0.1.1");
         },
         std::string(UpdateMessages::damagedCode)},
        {"one file too many",
         [&] {
             const fs::path app = newApp("0.1.1");
             Release::seal(app, key);
             writeFile(app / "Contents/bin/more", "");
             pack(app, "0.1.1");
         },
         std::string(UpdateMessages::damagedCode)},
        {"no app",
         [&] {
             const fs::path app = folder.path() / "folder/Tiny";
             writeFile(app / "setup.exe", "MZ");
             pack(app, "0.1.1");
         },
         std::string(UpdateMessages::noApp)},
        {"another platform’s app",
         [&] {
             const fs::path app = folder.path() / "elsewhere/Tiny.app";
             fs::remove_all(app);
             writeFile(Bundle::infoFile(app), BundleInfo{.identifier = "app.brevin.Tiny",
                                                         .name = "Tiny",
                                                         .version = "0.1.1",
                                                         .executable = "MacOS/tiny"}
                                                  .encode());
             writeFile(app / "Contents/MacOS/tiny", "\xcf\xfa\xed\xfe");
             pack(app, "0.1.1");
         },
         std::string(UpdateMessages::damagedCode)},
        {"no zip",
         [&] {
             serve("Rar!");
             feed.download = Release::describe(zip, feed.download->url, key);
         },
         other("The archive is damaged.")},
        {"a set-user-id program",
         [&] {
             publish("0.1.1",
                     [](const fs::path& app) { fs::permissions(app / "Contents/bin/tiny", fs::perms(04755)); });
         },
         other("The archive holds what no app should hold.")},
    };
    for (const auto& [name, prepare, message] : cases) {
        feed = good;
        serve(bytes);
        prepare();
        writeFeed();
        check();
        EXPECT_EQ(failure(), message) << name;
        EXPECT_FALSE(updater->stagedApp()) << name;
        EXPECT_FALSE(fs::exists(folder.path() / "caches/app.brevin.Tiny/BrevinUpdate")) << name;
        updater->installOnQuit();
        EXPECT_EQ(installed(), "0.1.0") << name;
        makeUpdater();
    }
    EXPECT_EQ(openings, 0) << "what nobody asked for fails in silence";
    feed = good;
    serve(bytes);
    writeFeed();
    check();
    EXPECT_EQ(updater->phase(), Phase(Ready{feed})) << "and the next check finds it mended";
}

TEST_F(UpdaterTest, aFullDisk_isTold) {
    for (const rlim_t room : {rlim_t(300'000), rlim_t(feed.download->length)}) {
        if (room > 300'000) {
            // The archive fits in, and what it holds does not.
            publish("0.1.1",
                    [](const fs::path& app) { writeFile(app / "Contents/share/big", std::string(900'000, 'x')); });
        }
        const varnic::FileSizeLimit limit(room);
        check();
        EXPECT_EQ(failure(), UpdateMessages::other("File too large."));
        EXPECT_FALSE(updater->stagedApp());
    }
    check();
    EXPECT_EQ(updater->phase(), Phase(Ready{feed})) << failure();
}

TEST_F(UpdaterTest, aStagedApp_isTestedAgainAtTheEnd) {
    check();
    ASSERT_TRUE(updater->stagedApp()) << failure();
    fs::remove(*updater->stagedApp() / "Contents/bin/tiny");
    updater->installOnQuit();
    EXPECT_TRUE(updater->stagedApp()) << "no script is at work on it";
    EXPECT_EQ(installed(), "0.1.0");
}

TEST_F(UpdaterTest, clearOrigin_takesTheMarksOfTheInternet) {
    const fs::path file = Bundle::infoFile(bundle);
    if (::setxattr(file.c_str(), "user.xdg.origin.url", "x", 1, 0) != 0) {
        GTEST_SKIP() << "no attributes here";
    }
    ::setxattr(file.c_str(), "user.brevin", "x", 1, 0);
    ::setxattr(bundle.c_str(), "user.xdg.referrer.url", "x", 1, 0);
    Staging::clearOrigin(bundle);
    EXPECT_EQ(::getxattr(file.c_str(), "user.xdg.origin.url", nullptr, 0), -1);
    EXPECT_EQ(::getxattr(bundle.c_str(), "user.xdg.referrer.url", nullptr, 0), -1);
    EXPECT_EQ(::getxattr(file.c_str(), "user.brevin", nullptr, 0), 1);
}

} // namespace
} // namespace brevin
