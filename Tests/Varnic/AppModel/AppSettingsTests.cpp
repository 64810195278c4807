#include "Varnic/AppModel/AppSettings.h"

#include "Varnic/AppModel/SettingsFile.h"
#include "Varnic/EventLoop.h"
#include "VarnicCore/FileSizeLimit.h"
#include "VarnicCore/TemporaryFolder.h"

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
}

TEST_F(AppSettingsTests, change_eachKind_isThereNextTime) {
    {
        AppSettings settings(store(), "", "en_US");
        settings.yourName = "Zoë, “the boss”";
        settings.showPill = false;
        settings.headsUpTone = Consent::Tone::brief;
        settings.hotkey = HotkeyChoice::ctrlShiftR;
        settings.ai = AISettings{.enabled = true, .compatModel = "llama \"3\"; x=1"};
    }
    const AppSettings settings(store(), "", "en_US");
    EXPECT_EQ(settings.yourName.value(), "Zoë, “the boss”");
    EXPECT_FALSE(settings.showPill.value());
    EXPECT_EQ(settings.headsUpTone.value(), Consent::Tone::brief);
    EXPECT_EQ(settings.hotkey.value(), HotkeyChoice::ctrlShiftR);
    EXPECT_EQ(settings.ai.value(), (AISettings{.enabled = true, .compatModel = "llama \"3\"; x=1"}));
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

TEST_F(AppSettingsTests, settingsOfDevicesAndKeys_areThereNextTime) {
    const DeviceChoice headset{.name = "alsa_input.usb-1", .label = "Headset “pro”"};
    {
        AppSettings settings(store(), "", "en_US");
        settings.microphone = headset;
        settings.heardOutput = headset;
        settings.hotkeyKeys = "Ctrl+Alt+F9";
    }
    AppSettings settings(store(), "", "en_US");
    EXPECT_EQ(settings.devices(), (CaptureDevices{.microphone = headset, .heard = headset}));
    EXPECT_EQ(settings.hotkeyKeys.value(), "Ctrl+Alt+F9");
    settings.microphone = DeviceChoice();
    EXPECT_TRUE(settings.save());
    EXPECT_TRUE(AppSettings(store(), "", "C").microphone.value().isDefault());
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
