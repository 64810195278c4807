#pragma once

#include "VarnicPlatform/Speech/SpeechSegments.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace varnic {

/// The model families that the speech engine reads, by the roles of their files in a manifest:
///   moonshine    encoder, merged_decoder, tokens; or preprocessor, encoder, uncached_decoder, cached_decoder, tokens
///   whisper      encoder, decoder, tokens
///   transducer   encoder, decoder, joiner, tokens
///   senseVoice   model, tokens ("sense_voice" in a manifest)
enum class SpeechEngine { moonshine, whisper, transducer, senseVoice };

/// Its name in a manifest.
std::string_view rawValue(SpeechEngine engine);

/// A speech model on this machine: a folder with the manifest "model.json" and the files it names.
struct SpeechModel {
    std::filesystem::path folder;
    std::string id;
    std::string name;
    SpeechEngine engine = SpeechEngine::moonshine;
    /// Language tags such as "en" or "pt-BR".
    std::vector<std::string> locales;
    /// Whole paths by role.
    std::map<std::string, std::filesystem::path> files;
    /// Of all files together. Of two models the larger one is taken for the slower one that knows words better.
    std::uintmax_t bytes = 0;
    /// Whether it tells when each word was said ("word_times" in a manifest).
    bool tellsWordTimes = false;

    /// What it should be given in one go.
    [[nodiscard]] SegmentLimits segments() const;

    /// Whether it can tell which of several languages is spoken.
    [[nodiscard]] bool tellsLanguages() const;

    /// Its own tag of the locale's language: "en" for "en-US" and "en_GB". Nothing for a language that it doesn't know.
    [[nodiscard]] std::optional<std::string> tagFor(std::string_view locale) const;

    [[nodiscard]] bool fits(std::string_view locale) const { return tagFor(locale).has_value(); }

    /// Reads the manifest of a folder. Throws std::runtime_error with the reason for one that cannot be used.
    static SpeechModel load(const std::filesystem::path& folder);

    bool operator==(const SpeechModel&) const = default;
};

/// What is spoken in calls.
struct LanguageChoice {
    /// A language tag such as "en-US". Where the language is found out, what is taken for calls that don't tell and for
    /// what is written down before that.
    std::string locale;
    /// Whether it is found out for each call.
    bool isAutomatic = false;

    /// The setting of a user of a locale: "auto", or a language tag.
    static LanguageChoice from(std::string_view setting, std::string userLocale);

    /// The setting that has each call's language found out.
    static constexpr std::string_view automatic = "auto";

    bool operator==(const LanguageChoice&) const = default;
};

/// Which of the models that know a language is to be taken.
struct ModelChoice {
    enum class Preference { bestWords, fastest };

    Preference preference = Preference::bestWords;
    /// The very model, by its id, wherever it is installed and knows the language; empty for none.
    std::string id;

    /// "bestWords", "fastest" or an id; anything else is taken for an id, and nothing for the best words.
    static ModelChoice from(std::string_view text);
    [[nodiscard]] std::string text() const;

    bool operator==(const ModelChoice&) const = default;
};

/// What is installed. Any thread.
namespace SpeechModels {

/// Where data may be installed, the nearest to the user first: XDG_DATA_HOME, XDG_DATA_DIRS (or their defaults), and
/// "../share" beside the running program.
std::vector<std::filesystem::path> dataDirectories();

/// A folder that holds no usable model, and why.
struct Skipped {
    std::filesystem::path folder;
    std::string reason;
};

/// The models under "varnic/models" of each directory. Of several with the same id the first counts. A broken one is
/// left out, and added to `skipped` if that is given.
std::vector<SpeechModel> installed(const std::vector<std::filesystem::path>& dataDirectories,
                                   std::vector<Skipped>* skipped = nullptr);

/// The model for a locale: of those that name the very locale, else of those that name its language.
std::optional<SpeechModel> choose(const std::vector<SpeechModel>& models, std::string_view locale,
                                  const ModelChoice& choice);

/// Whether there is a model for what is spoken, whatever that may turn out to be.
bool know(const std::vector<SpeechModel>& models, const LanguageChoice& language);

/// Whether the language of a call can be found out.
bool tellLanguages(const std::vector<SpeechModel>& models);

/// The voice activity detector's model file under the first directory that has it.
std::optional<std::filesystem::path> detectorFile(const std::vector<std::filesystem::path>& dataDirectories);

} // namespace SpeechModels
} // namespace varnic
