#include "Varnic/AppModel/AppSettings.h"

#include "Varnic/AppModel/SettingsFile.h"
#include "Varnic/EventLoop.h"
#include "VarnicCore/FileSizeLimit.h"
#include "VarnicCore/TemporaryFolder.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace varnic {
namespace {

class AppSettingsTests : public testing::Test {
protected:
    [[nodiscard]] std::unique_ptr<QSettings> store() const {
        return std::make_unique<QSettings>(QString::fromStdString((folder.path() / "settings.ini").string()),
                                           QSettings::IniFormat);
    }

    static std::string bytesOf(const std::filesystem::path& file) {
        std::ifstream stream(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    TemporaryFolder folder;
};

TEST_F(AppSettingsTests, read_emptyStore_givesDefaultsAndWritesNothing) {
    const AppSettings settings(store(), "  Sam  Lee", "en_GB");
    EXPECT_EQ(settings.yourName.value(), "Sam");
    EXPECT_EQ(settings.localeID.value(), "en-GB");
    EXPECT_FALSE(settings.consentSeen.value());
    EXPECT_TRUE(settings.showPill.value());
    EXPECT_TRUE(settings.keepAudio.value());
    EXPECT_EQ(settings.hotkey.value(), HotkeyChoice::ctrlOptCmdR);
    EXPECT_EQ(settings.ai.value(), AISettings());
    EXPECT_TRUE(store()->allKeys().isEmpty());
    EXPECT_EQ(AppSettings(store(), "", "C").yourName.value(), "");
    EXPECT_EQ(settings.language(), (LanguageChoice{.locale = "en-GB", .isAutomatic = false}));
}

TEST_F(AppSettingsTests, language_automatic_fallsBackToTheUsersOwn) {
    AppSettings settings(store(), "", "en_GB");
    settings.localeID = std::string(LanguageChoice::automatic);
    EXPECT_EQ(settings.language(), (LanguageChoice{.locale = "en-GB", .isAutomatic = true}));
    settings.localeID = std::string("de");
    EXPECT_EQ(settings.language(), (LanguageChoice{.locale = "de", .isAutomatic = false}));
}

TEST_F(AppSettingsTests, change_eachKind_isThereNextTime) {
    const DeviceChoice headset{.name = "alsa_input.usb-1", .label = "Headset “pro”"};
    {
        AppSettings settings(store(), "", "en_US");
        settings.yourName = "Zoë, “the boss”";
        settings.showPill = false;
        settings.headsUpTone = Consent::Tone::brief;
        settings.hotkey = HotkeyChoice::ctrlShiftR;
        settings.hotkeyKeys = "Ctrl+Alt+F9";
        settings.microphone = headset;
        settings.heardOutput = headset;
        settings.ai = AISettings{.enabled = true, .compatModel = "llama \"3\"; x=1"};
    }
    AppSettings settings(store(), "", "en_US");
    EXPECT_EQ(settings.yourName.value(), "Zoë, “the boss”");
    EXPECT_FALSE(settings.showPill.value());
    EXPECT_EQ(settings.headsUpTone.value(), Consent::Tone::brief);
    EXPECT_EQ(settings.hotkey.value(), HotkeyChoice::ctrlShiftR);
    EXPECT_EQ(settings.hotkeyKeys.value(), "Ctrl+Alt+F9");
    EXPECT_EQ(settings.devices(), (CaptureDevices{.microphone = headset, .heard = headset}));
    EXPECT_EQ(settings.ai.value(), (AISettings{.enabled = true, .compatModel = "llama \"3\"; x=1"}));
    settings.microphone = DeviceChoice();
    EXPECT_TRUE(settings.save());
    EXPECT_TRUE(AppSettings(store(), "", "C").microphone.value().isDefault());
}

TEST_F(AppSettingsTests, read_damagedValues_givesDefaults) {
    {
        const auto damaged = store();
        damaged->setValue("hotkey", "altF4");
        damaged->setValue("headsUpTone", 7);
        damaged->setValue("showPill", "perhaps");
        damaged->setValue("ai", "{\"enabled\":true}");
    }
    const AppSettings settings(store(), "", "en_US");
    EXPECT_EQ(settings.hotkey.value(), HotkeyChoice::ctrlOptCmdR);
    EXPECT_EQ(settings.headsUpTone.value(), Consent::Tone::friendly);
    EXPECT_TRUE(settings.showPill.value());
    EXPECT_EQ(settings.ai.value(), AISettings());
}

TEST_F(AppSettingsTests, read_whatCantBeRead_isKeptAsideAndTold) {
    struct Case {
        const char* what;
        std::string contents;
        const char* aside;
        const char* sentence;
    };

    const auto file = folder.path() / "settings.ini";
    for (const auto& [what, contents, aside, sentence] :
         {Case{"a value", "[General]\nyourName=Sam\nshowPill=perhaps\n", ".damaged", "Some settings can’t be read"},
          Case{"a cut line", "[General]\nyourName=Sam\nshowPi", ".damaged-2", "Some settings can’t be read"},
          Case{"garbage", "\x01\x02[[[\n=\n\xff\xfe garbage", ".damaged-3", "Some settings can’t be read"},
          Case{"a later version", "[General]\nversion=7\nyourName=Sam\nhotkey=brainWave\n", ".version-7",
               "a later version of Varnic"}}) {
        std::ofstream(file, std::ios::binary) << contents;
        EXPECT_TRUE(AppSettings(store(), "", "C").problem.value()) << "as long as nothing is changed";
        AppSettings settings(store(), "", "en_US");
        EXPECT_NE(settings.problem.value().value_or("").find(sentence), std::string::npos) << what;
        EXPECT_TRUE(settings.showPill.value()) << what;
        settings.showPill = false;
        EXPECT_TRUE(settings.save()) << what;
        EXPECT_EQ(bytesOf(file.string() + aside), contents) << what;
        AppSettings next(store(), "", "C");
        EXPECT_FALSE(next.showPill.value()) << what;
        EXPECT_EQ(next.problem.value().has_value(), SettingsFile::isLater(*store())) << what;
    }
    EXPECT_FALSE(std::filesystem::exists(file.string() + ".damaged-4")) << "once each";
    EXPECT_EQ(AppSettings(store(), "", "C").yourName.value(), "Sam") << "what could be read stays";
    EXPECT_EQ(store()->value("hotkey"), "brainWave") << "and what a later version knows";
}

TEST_F(AppSettingsTests, read_fileCantBeOpened_isPutAside) {
    std::filesystem::create_directory(folder.path() / "settings.ini");
    AppSettings settings(store(), "Sam", "en_US");
    EXPECT_NE(settings.problem.value().value_or("").find("can’t be read"), std::string::npos);
    settings.showPill = false;
    EXPECT_TRUE(settings.save());
    EXPECT_FALSE(AppSettings(store(), "", "C").showPill.value());
}

TEST_F(AppSettingsTests, libraryFolder_whereItIsNotKnownAnyMore_isMissedUntilItIsSet) {
    const auto file = folder.path() / "settings.ini";

    struct Case {
        const char* what;
        std::string contents;
        bool isLost;
    };

    for (const auto& [what, contents, isLost] :
         {Case{"cut off", "[General]\nyourName=Sam\nlibraryFol", true},
          Case{"no path", "[General]\nlibraryFolder=Sync/Varnic\n", true},
          Case{"another value damaged", "[General]\nshowPill=perhaps\n", false},
          Case{"damaged elsewhere", "[General]\nlibraryFolder=/home/sam/Sync\nyourNa", false},
          Case{"from a later version", "[General]\nversion=7\n", false}}) {
        std::ofstream(file, std::ios::binary) << contents;
        AppSettings settings(store(), "", "C");
        EXPECT_EQ(settings.isLibraryLost.value(), isLost) << what;
        settings.showPill = false;
        EXPECT_TRUE(settings.save());
        AppSettings next(store(), "", "C");
        EXPECT_EQ(next.isLibraryLost.value(), isLost) << what << ", at the next start";
        next.libraryFolder = "/home/sam/Notes";
        next.isLibraryLost = false;
        EXPECT_TRUE(next.save());
        EXPECT_FALSE(AppSettings(store(), "", "C").isLibraryLost.value()) << what;
    }
    std::filesystem::remove(file);
    std::filesystem::create_directory(file); // which can't be read
    EXPECT_TRUE(AppSettings(store(), "", "C").isLibraryLost.value());
    EXPECT_TRUE(AppSettings(store(), "", "C").isLibraryLost.value()) << "though that file has gone aside";
}

TEST_F(AppSettingsTests, change_isWrittenAfterAWhileAndNotWithEveryKey) {
    const auto file = folder.path() / "settings.ini";
    AppSettings settings(store(), "", "en_US");
    settings.yourName = "S";
    settings.store().setValue("of a window", 1);
    QCoreApplication::sendPostedEvents();
    EXPECT_FALSE(std::filesystem::exists(file)) << "with the next turn of the loop";
    EXPECT_TRUE(waitUntil([&] { return bytesOf(file).find("yourName=S") != std::string::npos; }));
    settings.store().setValue("of a window", 2);
    EXPECT_TRUE(waitUntil([&] { return bytesOf(file).find("window=2") != std::string::npos; })) << "once more";
}

TEST_F(AppSettingsTests, save_fullDisk_saysSoUntilThereIsRoom) {
    AppSettings settings(store(), "", "en_US");
    settings.yourName = "Sam";
    ASSERT_TRUE(settings.save());
    const FileSizeLimit full(0);
    settings.yourName = "Zoë";
    EXPECT_TRUE(waitUntil([&] { return settings.problem.value().has_value(); })) << "without being asked";
    EXPECT_FALSE(settings.save());
    EXPECT_NE(settings.problem.value().value_or("").find("can’t be saved"), std::string::npos);
    EXPECT_EQ(settings.yourName.value(), "Zoë");
    full.lift();
    EXPECT_NE(bytesOf(folder.path() / "settings.ini").find("Sam"), std::string::npos);
    EXPECT_TRUE(settings.save());
    EXPECT_EQ(settings.problem.value(), std::nullopt);
    EXPECT_EQ(AppSettings(store(), "", "C").yourName.value(), "Zoë");
}

} // namespace
} // namespace varnic
