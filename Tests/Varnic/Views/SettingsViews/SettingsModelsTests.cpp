#include "Varnic/AppModel/ScratchModel.h"
#include "Varnic/Views/SettingsViews/HotkeySettings.h"
#include "Varnic/Views/SettingsViews/KeySettings.h"
#include "Varnic/Views/SettingsViews/MenuBarWindow.h"
#include "Varnic/Views/SettingsViews/RecentCalls.h"
#include "Varnic/Views/SettingsViews/RecordingSettings.h"
#include "Varnic/Views/SettingsViews/ServerCheck.h"
#include "Varnic/Views/SettingsViews/SummarySettings.h"

#include "VarnicCore/TemporaryFolder.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace varnic {
namespace {

namespace fs = std::filesystem;

using testing::ElementsAre;
using testing::HasSubstr;

TEST(MenuBarWindow, place_isBesideTheIconAndOnItsScreen) {
    constexpr QRect screen(100, 50, 1280, 720);
    constexpr QSize size(300, 260);
    constexpr std::array icons{QRect(100, 746, 24, 24), QRect(1356, 746, 24, 24), QRect(700, 50, 24, 24),
                               QRect(1356, 50, 24, 24)};
    for (const QRect& icon : icons) {
        const QRect place = MenuBarWindow::place(icon, size, screen);
        EXPECT_EQ(place.size(), size);
        EXPECT_TRUE(screen.contains(place)) << icon.x() << ' ' << icon.y();
        EXPECT_FALSE(place.intersects(icon)) << icon.x() << ' ' << icon.y();
    }
    EXPECT_TRUE(QRect(0, 0, 200, 100).contains(MenuBarWindow::place(icons[0], size, QRect(0, 0, 200, 100)).topLeft()));
}

TEST(RecentCall, of_isTheNewestCallsAlone) {
    ScratchModel model;
    const Date now = currentDate();
    for (const auto& [title, hours, isCall] :
         {std::tuple("oldest", 9, true), std::tuple("a note", 1, false), std::tuple("last", 2, true),
          std::tuple("third", 4, true), std::tuple("second", 3, true)}) {
        const Uuid id = model->newNote(title, {}, now - std::chrono::hours(hours));
        if (isCall) {
            model->update(id, true, [](Note& note) { note.call = CallRecord(); });
        }
    }
    std::vector<std::string> titles;
    for (const RecentCall& call : RecentCall::of(*model)) {
        titles.push_back(call.title.toStdString());
    }
    EXPECT_THAT(titles, ElementsAre("last", "second", "third"));
    EXPECT_EQ(RecentCall::of(*model).front().date, "2 hours ago");
}

TEST(HotkeySettings, press_takesWhatCanBeACombination) {
    ScratchModel model;
    HotkeySettings settings(*model, nullptr);
    const auto shown = [&settings] { return settings.choices().at(settings.selected()); };
    const qsizetype choices = settings.choices().size();

    settings.setRecording(true);
    settings.press(Qt::Key_Control, Qt::ControlModifier);
    EXPECT_TRUE(settings.isRecording()) << "a modifier alone";
    settings.press(Qt::Key_A, Qt::NoModifier);
    EXPECT_TRUE(settings.isRecording()) << "a letter alone";
    EXPECT_NE(settings.problem(), "");
    settings.press(Qt::Key_F9, Qt::ControlModifier);
    EXPECT_FALSE(settings.isRecording());
    EXPECT_EQ(settings.problem(), "");
    EXPECT_EQ(shown(), "Ctrl+F9");

    settings.setRecording(true);
    settings.press(Qt::Key_R, int(Qt::AltModifier | Qt::ShiftModifier));
    EXPECT_EQ(settings.choices().size(), choices) << "one of the choices is no combination of one's own";
    EXPECT_EQ(shown(), "Alt+Shift+R");
    model.restart();
    EXPECT_EQ(HotkeySettings(*model, nullptr).selected(), 1);
}

/// Lays out a model of which only the manifest is read.
void installModel(const fs::path& data, const std::string& id, const std::string& engine, const std::string& locales) {
    const fs::path folder = data / "varnic/models" / id;
    fs::create_directories(folder);
    std::ofstream(folder / "file") << "weights";
    std::ofstream(folder / "model.json") << fmt::format(
        R"({{"id": "{0}", "name": "{0}", "engine": "{1}", "locales": {2}, "files": {{"encoder": "file",)"
        R"("decoder": "file", "merged_decoder": "file", "tokens": "file"}}}})",
        id, engine, locales);
}

TEST(RecordingSettings, language_automaticComesFirstWhereLanguagesCanBeToldApart) {
    const TemporaryFolder data;
    ScratchModel model;
    model->settings.localeID = std::string("de-AT");
    installModel(data.path(), "one", "moonshine", R"(["tlh"])");
    RecordingSettings settings(*model, {data.path()});
    settings.look();
    EXPECT_TRUE(waitUntil([&settings] { return !settings.languages().isEmpty(); }));
    EXPECT_FALSE(settings.languages().contains("Automatic"));

    installModel(data.path(), "many", "whisper", R"(["de", "en"])");
    settings.look();
    EXPECT_TRUE(waitUntil([&settings] { return settings.languages().contains("German"); }));
    EXPECT_EQ(settings.languages().front(), "Automatic");
    EXPECT_EQ(settings.languages().at(settings.language()), "German") << "what was chosen stays";
    EXPECT_EQ(settings.languageDetail(), "");
    settings.setLanguage(0);
    EXPECT_TRUE(model->settings.language().isAutomatic);
    EXPECT_EQ(settings.language(), 0);
    EXPECT_THAT(settings.languageDetail().toStdString(), HasSubstr("Live lines are in English"));

    fs::remove_all(data.path() / "varnic/models/many");
    settings.look();
    EXPECT_TRUE(waitUntil([&settings] { return settings.language() == -1; }));
    EXPECT_EQ(settings.otherLanguage(), "Automatic");
}

TEST(SummarySettings, disclosure_tellsWhereTheTranscriptGoes) {
    ScratchModel model;
    SummarySettings settings(*model);
    EXPECT_THAT(settings.disclosure().toStdString(), HasSubstr("Audio is never sent"));
    EXPECT_TRUE(settings.needsKey());
    settings.setProvider(1);
    EXPECT_THAT(settings.disclosure().toStdString(), HasSubstr("doesn’t leave your computer"));
    EXPECT_FALSE(settings.needsKey()) << "a server on this computer";
    settings.usePreset(2);
    EXPECT_TRUE(settings.needsKey());
    EXPECT_FALSE(settings.staysHere());
}

TEST(SummarySettings, model_mayBeOneThatIsNotOffered) {
    ScratchModel model;
    AISettings ai;
    ai.anthropicModel = "claude-of-tomorrow";
    model->settings.ai = ai;
    SummarySettings settings(*model);
    EXPECT_EQ(settings.model(), -1);
    EXPECT_EQ(settings.otherModel(), "claude-of-tomorrow");
    settings.setModel(0);
    EXPECT_EQ(settings.model(), 0);
}

TEST(KeySettings, key_isSavedAndRemovedOrSaysWhyNot) {
    ScratchModel model;
    KeySettings settings(*model);
    int saved = 0;
    QObject::connect(&settings, &KeySettings::saved, [&saved] { ++saved; });
    settings.save(" \n");
    EXPECT_TRUE(waitUntil([&settings] { return !settings.problem().isEmpty(); }));
    settings.save(" a-key\n");
    EXPECT_TRUE(waitUntil([&settings] { return settings.isSaved() && !settings.isBusy(); }));
    EXPECT_EQ(saved, 1);
    EXPECT_TRUE(settings.isJustSaved());
    EXPECT_EQ(settings.problem(), "");
    EXPECT_EQ(model->keys->key(model->settings.ai.value().keyAccount()), "a-key");
    settings.remove();
    EXPECT_TRUE(waitUntil([&settings] { return !settings.isSaved() && !settings.isBusy(); }));
}

TEST(KeySettings, otherProvider_knowsNothingOfTheKeyThatWasTyped) {
    ScratchModel model;
    KeySettings settings(*model);
    int forgotten = 0;
    int saved = 0;
    QObject::connect(&settings, &KeySettings::providerChanged, [&forgotten] { ++forgotten; });
    QObject::connect(&settings, &KeySettings::saved, [&saved] { ++saved; });
    const auto choose = [&model](AIProviderKind provider) {
        model->settings.ai = AISettings{.provider = provider, .compatBaseURL = "https://example.org/v1"};
    };
    settings.save("key-a");
    settings.save("key-b"); // as by Return while the key ring is busy
    choose(AIProviderKind::openAICompatible);
    EXPECT_EQ(forgotten, 1);
    EXPECT_TRUE(waitUntil([&settings] { return !settings.isBusy(); }));
    EXPECT_FALSE(settings.isSaved());
    EXPECT_FALSE(settings.isJustSaved()) << "nothing of this one";
    EXPECT_EQ(saved, 0);
    EXPECT_EQ(model->keys->key("anthropic"), "key-a");
    EXPECT_EQ(model->keys->key("openAICompatible"), std::nullopt);

    settings.save("key-c");
    EXPECT_TRUE(waitUntil([&settings] { return settings.isJustSaved(); }));
    choose(AIProviderKind::anthropic);
    EXPECT_FALSE(settings.isJustSaved());
    EXPECT_EQ(forgotten, 2);
}

TEST(ServerCheck, answer_isOfTheAddressThatStands) {
    ScratchModel model;
    const auto goTo = [&model](const std::string& address) {
        AISettings ai = model->settings.ai.value();
        ai.provider = AIProviderKind::openAICompatible;
        ai.compatBaseURL = address;
        model->settings.ai = ai;
    };
    ServerCheck check(*model);
    goTo("no scheme");
    EXPECT_NE(check.addressProblem(), "");
    // Nobody listens on the port of the discard service.
    goTo("http://127.0.0.1:9");
    EXPECT_EQ(check.addressProblem(), "");
    check.ask();
    EXPECT_TRUE(check.isAsking());
    EXPECT_TRUE(waitUntil([&check] { return !check.isAsking(); }));
    EXPECT_FALSE(check.works());
    EXPECT_NE(check.sentence(), "");
    goTo("http://127.0.0.1:10");
    EXPECT_EQ(check.sentence(), "");
}

} // namespace
} // namespace varnic
