#include "VarnicCLI/CallFiling.h"
#include "VarnicCLI/Command.h"
#include "VarnicCLI/Terminal.h"
#include "VarnicCore/Audio/TranscriberError.h"
#include "VarnicCore/Library/NoteJson.h"
#include "VarnicCore/Models/Wording.h"
#include "VarnicPlatform/Speech/ModelCheck.h"
#include "VarnicPlatform/Speech/NoiseReduction.h"
#include "VarnicPlatform/Speech/SpeechModel.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace varnic::cli {

namespace {

/// More languages than this are counted.
constexpr std::size_t mostNamed = 8;
constexpr double bytesOfMegabyte = 1e6;

std::string languages(const SpeechModel& model) {
    return model.locales.size() > mostNamed ? fmt::format("{} languages", model.locales.size())
                                            : fmt::format("{}", fmt::join(model.locales, ", "));
}

void print(const SpeechModel& model) {
    Terminal::print("{}  {}\n", Terminal::bold(model.id), model.name);
    Terminal::print("  {} · {} · {:.0f} MB\n  {}\n", languages(model), rawValue(model.engine),
                    static_cast<double>(model.bytes) / bytesOfMegabyte, Terminal::faint(model.folder.string()));
}

nlohmann::json described(const SpeechModel& model) {
    return {{"id", model.id},           {"name", model.name},   {"engine", rawValue(model.engine)},
            {"locales", model.locales}, {"bytes", model.bytes}, {"folder", model.folder.string()}};
}

} // namespace

ExitCode models(const Arguments& arguments) {
    arguments.expectNoWords();
    std::vector<SpeechModels::Skipped> skipped;
    const std::vector<std::filesystem::path> data = SpeechModels::dataDirectories();
    const std::vector<SpeechModel> installed = SpeechModels::installed(data, &skipped);
    std::vector<std::string> faults;
    for (const auto& [folder, reason] : skipped) {
        faults.push_back(fmt::format("The speech model in {} can’t be used: {}.", folder.string(), reason));
    }
    nlohmann::json list = nlohmann::json::array();
    for (const SpeechModel& model : installed) {
        const std::optional<std::string> fault = arguments.has("check") ? ModelCheck::fault(model) : std::nullopt;
        if (fault) {
            faults.push_back(*fault);
        }
        if (arguments.has("json")) {
            list.push_back(described(model));
        } else {
            print(model);
        }
    }
    if (const auto network = NoiseReduction::network(data)) {
        const std::string folder = network->parent_path().string();
        if (arguments.has("check") && !ModelCheck::isUsable(*network)) {
            faults.push_back(fmt::format(
                "The noise reduction in {} can’t be used: its files are damaged or of another kind.", folder));
        }
        if (!arguments.has("json")) {
            Terminal::print("{}\n  {}\n", Terminal::bold("Noise reduction"), Terminal::faint(folder));
        }
    }
    if (arguments.has("json")) {
        Terminal::printJson(jsonText({{"models", list}, {"faults", faults}}));
    } else {
        for (const std::string& fault : faults) {
            Terminal::print(stderr, "varnic-cli: {}\n", fault);
        }
        if (installed.empty() && faults.empty()) {
            Terminal::print("{}\n", Wording::shown(TranscriberError::notAuthorized().what()));
        }
    }
    return faults.empty() && !installed.empty() ? ExitCode::success : ExitCode::failure;
}

std::string wishedLanguage(const Arguments& arguments, const std::string& otherwise) {
    std::string wish = arguments.valueOr("language", otherwise);
    if (wish == LanguageChoice::automatic &&
        !SpeechModels::tellLanguages(SpeechModels::installed(SpeechModels::dataDirectories()))) {
        throw std::runtime_error(
            "No speech model that is installed can tell languages apart. On Debian, the one in the package "
            "varnic-models-whisper can; or say the language with --language.");
    }
    return wish;
}

std::string wishedModel(const Arguments& arguments, const std::string& otherwise) {
    const std::optional<std::string> wish = arguments.value("model");
    if (!wish) {
        return otherwise;
    }
    const std::vector<SpeechModel> installed = SpeechModels::installed(SpeechModels::dataDirectories());
    const std::string id = ModelChoice::from(*wish).id;
    if (id.empty()) {
        return *wish;
    }
    const auto found = std::ranges::find(installed, id, &SpeechModel::id);
    if (found == installed.end()) {
        throw std::runtime_error(fmt::format("There is no speech model “{}”. `varnic-cli models` lists them.", id));
    }
    if (const std::optional<std::string> fault = ModelCheck::fault(*found)) {
        throw std::runtime_error(*fault);
    }
    return id;
}

} // namespace varnic::cli
