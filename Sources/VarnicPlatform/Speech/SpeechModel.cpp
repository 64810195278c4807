#include "VarnicPlatform/Speech/SpeechModel.h"

#include "VarnicCore/Text/Language.h"
#include "VarnicCore/Text/Unicode.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>
#include <unicode/locid.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <system_error>

namespace varnic {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view bestWordsText = "bestWords";
constexpr std::string_view fastestText = "fastest";

using Roles = std::vector<std::string_view>;

struct EngineForm {
    std::string_view name;
    SpeechEngine engine;
    /// A model has all files of one of these.
    std::vector<Roles> forms;
};

const std::array<EngineForm, 4>& engineForms() {
    static const std::array<EngineForm, 4> forms{{
        {"moonshine",
         SpeechEngine::moonshine,
         {{"encoder", "merged_decoder", "tokens"},
          {"preprocessor", "encoder", "uncached_decoder", "cached_decoder", "tokens"}}},
        {"whisper", SpeechEngine::whisper, {{"encoder", "decoder", "tokens"}}},
        {"transducer", SpeechEngine::transducer, {{"encoder", "decoder", "joiner", "tokens"}}},
        {"sense_voice", SpeechEngine::senseVoice, {{"model", "tokens"}}},
    }};
    return forms;
}

/// A larger manifest is a file of another kind: one that names a hundred languages takes two kilobytes.
constexpr std::uintmax_t largestManifest = 1 << 20;

/// A part of a manifest for a sentence in one line, since it may be of any length and bytes.
std::string shown(std::string_view text, std::int32_t most = 80) {
    icu::UnicodeString line = Unicode::utf16(text);
    if (line.length() > most) {
        line.truncate(line.getChar32Start(most));
        line.append(u'…');
    }
    for (std::int32_t index = 0; index < line.length(); ++index) {
        if (u_iscntrl(line[index]) != 0) {
            line.setCharAt(index, u' ');
        }
    }
    return Unicode::utf8(line);
}

const EngineForm& formNamed(const std::string& name) {
    const auto* found = std::ranges::find(engineForms(), name, &EngineForm::name);
    if (found == engineForms().end()) {
        throw std::runtime_error(fmt::format("unknown engine “{}”", shown(name)));
    }
    return *found;
}

/// The path of a file that a manifest names. It has to be a file inside of the folder.
fs::path fileIn(const fs::path& folder, const std::string& name) {
    const fs::path relative = fs::path(name).lexically_normal();
    if (name.empty() || relative.is_absolute() || *relative.begin() == "..") {
        throw std::runtime_error(fmt::format("“{}” lies outside of the model’s folder", shown(name)));
    }
    std::error_code error;
    if (!fs::is_regular_file(folder / relative, error)) {
        throw std::runtime_error(fmt::format("“{}” is missing", shown(name)));
    }
    return folder / relative;
}

icu::Locale localeOf(std::string_view tag) {
    std::string name(tag);
    std::ranges::replace(name, '-', '_');
    return icu::Locale::createCanonical(name.c_str());
}

void requireNames(const SpeechModel& model) {
    if (model.id.empty() || ModelChoice::from(model.id).id != model.id) {
        throw std::runtime_error(fmt::format("“{}” can’t be its id", model.id));
    }
    if (model.name.empty()) {
        throw std::runtime_error("its name is empty");
    }
    if (model.locales.empty()) {
        throw std::runtime_error("no language is named");
    }
}

void requireFiles(const SpeechModel& model, const std::vector<Roles>& forms) {
    const auto has = [&model](std::string_view role) { return model.files.contains(std::string(role)); };
    if (!std::ranges::any_of(forms, [&has](const Roles& roles) { return std::ranges::all_of(roles, has); })) {
        throw std::runtime_error("files of the model are not named");
    }
}

std::string environment(const char* name, const std::string& otherwise) {
    const char* value = std::getenv(name);
    return value != nullptr && *value != '\0' ? value : otherwise;
}

} // namespace

std::string_view rawValue(SpeechEngine engine) {
    return std::ranges::find(engineForms(), engine, &EngineForm::engine)->name;
}

/// Whisper hears half a minute at once and needs what comes before to understand it: of Dutch dialogue it got 50 % of
/// the words wrong over pauses of up to three seconds, 62 % over those of up to one. Others lose themselves in so much.
SegmentLimits SpeechModel::segments() const {
    return engine == SpeechEngine::whisper ? SegmentLimits{.speech = 28, .pause = 3} : SegmentLimits();
}

bool SpeechModel::tellsLanguages() const {
    return engine == SpeechEngine::whisper && locales.size() > 1;
}

std::optional<std::string> SpeechModel::tagFor(std::string_view locale) const {
    const auto found =
        std::ranges::find_if(locales, [locale](const std::string& own) { return Language::isSame(own, locale); });
    return found == locales.end() ? std::nullopt : std::optional(*found);
}

SpeechModel SpeechModel::load(const fs::path& folder) {
    const fs::path file = folder / "model.json";
    std::error_code error;
    std::ifstream in;
    if (fs::is_regular_file(file, error)) { // reading from a pipe would wait
        in.open(file);
    }
    if (!in.is_open()) {
        throw std::runtime_error("there is no model.json");
    }
    if (fs::file_size(file) > largestManifest) {
        throw std::runtime_error("model.json is no manifest: it is too large");
    }
    // nlohmann's exceptions are std::exception, but not std::runtime_error.
    try {
        const nlohmann::json manifest = nlohmann::json::parse(in);
        const EngineForm& form = formNamed(manifest.at("engine").get<std::string>());
        SpeechModel model{.folder = folder,
                          .id = manifest.at("id"),
                          .name = manifest.at("name"),
                          .engine = form.engine,
                          .locales = manifest.at("locales"),
                          .files = {},
                          .bytes = 0,
                          .tellsWordTimes = manifest.value("word_times", false)};
        for (const auto& [role, name] : manifest.at("files").items()) {
            model.files[role] = fileIn(folder, name.get<std::string>());
            model.bytes += fs::file_size(model.files[role]);
        }
        requireNames(model);
        requireFiles(model, form.forms);
        return model;
    } catch (const nlohmann::json::exception& why) {
        // Behind the library's own "[json.exception…] ".
        const std::string_view what = why.what();
        constexpr std::int32_t most = 200;
        throw std::runtime_error(
            fmt::format("model.json is no manifest: {}", shown(what.substr(what.find("] ") + 2), most)));
    }
}

LanguageChoice LanguageChoice::from(std::string_view setting, std::string userLocale) {
    return setting == automatic ? LanguageChoice{.locale = std::move(userLocale), .isAutomatic = true}
                                : LanguageChoice{.locale = std::string(setting)};
}

ModelChoice ModelChoice::from(std::string_view text) {
    if (text.empty() || text == bestWordsText) {
        return {};
    }
    return text == fastestText ? ModelChoice{.preference = Preference::fastest, .id = {}}
                               : ModelChoice{.id = std::string(text)};
}

std::string ModelChoice::text() const {
    return !id.empty() ? id : std::string(preference == Preference::fastest ? fastestText : bestWordsText);
}

std::vector<fs::path> SpeechModels::dataDirectories() {
    std::vector<fs::path> directories{environment("XDG_DATA_HOME", environment("HOME", "/") + "/.local/share")};
    const std::string shared = environment("XDG_DATA_DIRS", "/usr/local/share:/usr/share");
    for (std::size_t begin = 0; begin <= shared.size();) {
        const std::size_t end = std::min(shared.find(':', begin), shared.size());
        directories.emplace_back(shared.substr(begin, end - begin));
        begin = end + 1;
    }
    std::error_code error;
    const fs::path program = fs::read_symlink("/proc/self/exe", error);
    if (!error) {
        directories.push_back(program.parent_path().parent_path() / "share");
    }
    // The base directory rules: relative paths are to be ignored.
    std::erase_if(directories, [](const fs::path& directory) { return !directory.is_absolute(); });
    return directories;
}

std::vector<SpeechModel> SpeechModels::installed(const std::vector<fs::path>& dataDirectories,
                                                 std::vector<Skipped>* skipped) {
    std::vector<SpeechModel> models;
    for (const fs::path& directory : dataDirectories) {
        std::error_code error;
        std::vector<fs::path> folders;
        for (const auto& entry : fs::directory_iterator(directory / "varnic/models", error)) {
            if (entry.is_directory(error)) {
                folders.push_back(entry.path());
            }
        }
        std::ranges::sort(folders);
        for (const fs::path& folder : folders) {
            try {
                SpeechModel model = SpeechModel::load(folder);
                if (std::ranges::find(models, model.id, &SpeechModel::id) == models.end()) {
                    models.push_back(std::move(model));
                }
            } catch (const std::runtime_error& reason) {
                if (skipped != nullptr) {
                    skipped->push_back({folder, reason.what()});
                }
            }
        }
    }
    return models;
}

std::optional<SpeechModel> SpeechModels::choose(const std::vector<SpeechModel>& models, std::string_view locale,
                                                const ModelChoice& choice) {
    std::vector<SpeechModel> fitting;
    std::ranges::copy_if(models, std::back_inserter(fitting),
                         [&](const SpeechModel& model) { return model.fits(locale); });
    if (const auto wished = std::ranges::find(fitting, choice.id, &SpeechModel::id); wished != fitting.end()) {
        return *wished;
    }
    const auto isForLanguageOnly = [wanted = localeOf(locale)](const SpeechModel& model) {
        return std::ranges::none_of(model.locales, [&](const std::string& own) { return localeOf(own) == wanted; });
    };
    if (!std::ranges::all_of(fitting, isForLanguageOnly)) {
        std::erase_if(fitting, isForLanguageOnly);
    }
    const bool isSmall = choice.preference == ModelChoice::Preference::fastest;
    const auto found = isSmall ? std::ranges::min_element(fitting, {}, &SpeechModel::bytes)
                               : std::ranges::max_element(fitting, {}, &SpeechModel::bytes);
    return found == fitting.end() ? std::nullopt : std::optional(*found);
}

bool SpeechModels::know(const std::vector<SpeechModel>& models, const LanguageChoice& language) {
    return (language.isAutomatic && tellLanguages(models)) || choose(models, language.locale, {}).has_value();
}

bool SpeechModels::tellLanguages(const std::vector<SpeechModel>& models) {
    return std::ranges::any_of(models, &SpeechModel::tellsLanguages);
}

std::optional<fs::path> SpeechModels::detectorFile(const std::vector<fs::path>& dataDirectories) {
    for (const fs::path& directory : dataDirectories) {
        fs::path file = directory / "varnic/vad/silero_vad.onnx";
        std::error_code error;
        if (fs::is_regular_file(file, error)) {
            return file;
        }
    }
    return std::nullopt;
}

} // namespace varnic
