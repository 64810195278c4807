#include "VarnicCore/Audio/SoundFiles.h"
#include "VarnicCore/Text/Unicode.h"
#include "VarnicPlatform/Speech/SpeechModel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace varnic {
namespace {

namespace fs = std::filesystem;

/// A folder of data with models that have no content but their manifests.
class SpeechModelTest : public ::testing::Test {
protected:
    void add(const std::string& folder, const std::string& manifest, std::size_t size = 1) const {
        const fs::path path = root() / "varnic/models" / folder;
        fs::create_directories(path);
        for (const char* name : {"e.onnx", "d.onnx", "t.txt"}) {
            std::ofstream(path / name) << std::string(size, 'x');
        }
        std::ofstream(path / "model.json") << manifest;
    }

    static std::string manifest(const std::string& id, const std::string& locales,
                                const std::string& encoder = "e.onnx", const std::string& engine = "whisper") {
        return R"({"id": ")" + id + R"(", "name": "N", "engine": ")" + engine + R"(", "locales": [)" + locales +
               R"(], "files": {"encoder": ")" + encoder + R"(", "decoder": "d.onnx", "tokens": "t.txt"}})";
    }

    [[nodiscard]] fs::path root() const { return files_.path("data"); }

    [[nodiscard]] std::string chosen(const std::string& locale, const std::string& choice = "") const {
        const auto model = SpeechModels::choose(SpeechModels::installed({root()}), locale, ModelChoice::from(choice));
        return model ? model->id : "";
    }

private:
    SoundFiles files_;
};

TEST_F(SpeechModelTest, installed_brokenModels_areSkippedWithAReason) {
    add("good", manifest("good", R"("en")"));
    add("copy", manifest("good", R"("de")"));
    add("cut", R"({"id": "cut", "na)");
    add("climbing", manifest("climbing", R"("en")", "../good/e.onnx"));
    add("absolute", manifest("absolute", R"("en")", "/etc/passwd"));
    add("incomplete", manifest("incomplete", R"("en")", "f.onnx"));
    add("unknown", manifest("unknown", R"("en")", "e.onnx", "oracle"));
    add("roles", manifest("roles", R"("en")", "e.onnx", "transducer"));
    add("types", manifest("types", "7"));
    add("bytes", "{\"id\": \"\xFF\", \"name\": \"" + std::string(1000, '\x01'));
    add("lengthy", manifest("lengthy", R"("en")", std::string(5000, 'e')));
    add("mute", manifest("mute", ""));
    // These two mean something else in settings.
    add("nameless", manifest("", R"("en")"));
    add("reserved", manifest("fastest", R"("en")"));
    add("pipe", "");
    fs::remove(root() / "varnic/models/pipe/model.json");
    ASSERT_EQ(::mkfifo((root() / "varnic/models/pipe/model.json").c_str(), 0600), 0);
    fs::create_directories(root() / "varnic/models/empty");
    std::vector<SpeechModels::Skipped> skipped;
    const auto models = SpeechModels::installed({root() / "nowhere", root()}, &skipped);
    ASSERT_EQ(models.size(), 1U);
    EXPECT_EQ(models[0].id, "good");
    EXPECT_EQ(models[0].engine, SpeechEngine::whisper);
    std::vector<std::string> folders;
    for (const auto& [folder, reason] : skipped) {
        folders.push_back(folder.filename());
        EXPECT_FALSE(reason.empty());
        EXPECT_LT(reason.size(), 300U) << reason;
        EXPECT_EQ(Unicode::utf8(Unicode::utf16(reason)), reason) << "malformed in " << folder;
    }
    EXPECT_THAT(folders,
                ::testing::ElementsAre("absolute", "bytes", "climbing", "cut", "empty", "incomplete", "lengthy", "mute",
                                       "nameless", "pipe", "reserved", "roles", "types", "unknown"));
}

TEST_F(SpeechModelTest, choose_locale_prefersTheVeryLocale) {
    add("a", manifest("english", R"("en")"));
    add("b", manifest("british", R"("en-GB")"));
    add("c", manifest("brazilian", R"("pt-BR")"));
    const std::vector<std::pair<std::string, std::string>> choices{
        {"en-US", "english"}, {"en_GB", "british"}, {"en", "english"}, {"pt-PT", "brazilian"}, {"de-DE", ""}, {"", ""}};
    for (const auto& [locale, id] : choices) {
        EXPECT_EQ(chosen(locale), id) << locale;
    }
}

TEST_F(SpeechModelTest, tagFor_locale_isTheModelsOwn) {
    const SpeechModel model{.id = "many", .name = "Many", .locales = {"en", "tl", "no", "he"}, .files = {}};
    for (const auto& [locale, tag] : {std::pair("en-GB", "en"), std::pair("fil-PH", "tl"), std::pair("nb-NO", "no"),
                                      std::pair("iw", "he"), std::pair("de", "none")}) {
        EXPECT_EQ(model.tagFor(locale).value_or("none"), tag) << locale;
    }
}

TEST_F(SpeechModelTest, choose_severalForALanguage_byWishOrBySize) {
    add("large", manifest("large", R"("en", "de")"), 300);
    add("middle", manifest("middle", R"("en")"), 200);
    add("small", manifest("small", R"("en")"), 100);

    struct Case {
        std::string locale;
        std::string choice;
        std::string id;
    };

    for (const auto& [locale, choice, id] :
         {Case{"en", "", "large"}, Case{"en", "bestWords", "large"}, Case{"en", "fastest", "small"},
          Case{"en", "middle", "middle"}, Case{"en", "gone", "large"}, Case{"de", "fastest", "large"},
          Case{"de", "middle", "large"}, Case{"fr", "middle", ""}}) {
        EXPECT_EQ(chosen(locale, choice), id) << locale << " " << choice;
        EXPECT_EQ(ModelChoice::from(choice).text(), choice.empty() ? "bestWords" : choice);
    }
}

TEST(SpeechModels, dataDirectories_environment_isFollowed) {
    setenv("XDG_DATA_HOME", "/home/of/data", 1);
    setenv("XDG_DATA_DIRS", "/one:relative:/two", 1);
    const auto directories = SpeechModels::dataDirectories();
    ASSERT_EQ(directories.size(), 4U);
    EXPECT_EQ(directories[0], "/home/of/data");
    EXPECT_EQ(directories[1], "/one");
    EXPECT_EQ(directories[2], "/two");
    EXPECT_EQ(directories[3], fs::read_symlink("/proc/self/exe").parent_path().parent_path() / "share");
    unsetenv("XDG_DATA_HOME");
    unsetenv("XDG_DATA_DIRS");
}

} // namespace
} // namespace varnic
