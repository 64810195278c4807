#include "Varnic/AppModel/AppSettings.h"

#include "VarnicCore/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace varnic {
namespace {

class AppSettingsTests : public testing::Test {
protected:
    [[nodiscard]] std::unique_ptr<QSettings> store() const {
        return std::make_unique<QSettings>(QString::fromStdString((folder.path() / "settings.ini").string()),
                                           QSettings::IniFormat);
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

} // namespace
} // namespace varnic
