#include "VarnicPlatform/Speech/ModelCheck.h"

#include "VarnicCore/Pipeline/Transcriber.h"
#include "VarnicPlatform/Speech/SpeechRecognizer.h"

#include <fmt/format.h>
#include <glib.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <map>
#include <mutex>
#include <span>
#include <string_view>
#include <system_error>
#include <utility>

#include <sys/resource.h>

namespace varnic::ModelCheck {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view option = "--try-speech-model";
/// Seconds of the processor that trying a model out may take. On a busy computer a good one may wait long for them.
constexpr rlim_t patience = 60;

std::atomic<bool> isEnabled = false;

/// Whether the engine takes the model of a folder and hears something, be it nothing, with it.
int tryOut(const fs::path& folder) {
    const rlimit limit{.rlim_cur = patience, .rlim_max = patience};
    ::setrlimit(RLIMIT_CPU, &limit);
    try {
        const SpeechModel model = SpeechModel::load(folder);
        const std::vector<float> second(SpeechRecognizer::rate);
        static_cast<void>(SpeechRecognizer::create(model, "en").decode(second));
        return 0;
    } catch (const std::exception&) {
        return 1;
    }
}

bool isUsable(const fs::path& folder) {
    std::error_code error;
    std::string program = fs::read_symlink("/proc/self/exe", error);
    std::string word(option);
    std::string name = folder;
    std::array<char*, 4> command{program.data(), word.data(), name.data(), nullptr};
    int status = 0;
    const auto flags = static_cast<GSpawnFlags>(G_SPAWN_STDOUT_TO_DEV_NULL | G_SPAWN_STDERR_TO_DEV_NULL);
    // A program that can't be started tells nothing about the model.
    return g_spawn_sync(nullptr, command.data(), nullptr, flags, nullptr, nullptr, nullptr, nullptr, &status,
                        nullptr) == FALSE ||
           status == 0;
}

/// Sizes and times of the model's files, by which changed ones are told.
using State = std::vector<std::pair<std::uintmax_t, fs::file_time_type>>;

State stateOf(const SpeechModel& model) {
    State state;
    for (const auto& [role, file] : model.files) {
        std::error_code error;
        const std::uintmax_t size = fs::file_size(file, error);
        state.emplace_back(size, fs::last_write_time(file, error));
    }
    return state;
}

} // namespace

std::optional<int> enable(int argc, char** argv) {
    const std::span words(argv, static_cast<std::size_t>(argc));
    if (words.size() == 3 && words[1] == option) {
        return tryOut(words[2]);
    }
    isEnabled = true;
    return std::nullopt;
}

std::optional<std::string> fault(const SpeechModel& model) {
    if (!isEnabled) {
        return std::nullopt;
    }
    // Held while a model is tried out: both sides of a call ask at once.
    static std::mutex lock;
    static std::map<fs::path, std::pair<State, bool>> known;
    const std::scoped_lock guard(lock);
    State state = stateOf(model);
    auto found = known.find(model.folder);
    if (found == known.end() || found->second.first != state) {
        const bool usable = isUsable(model.folder);
        found = known.insert_or_assign(model.folder, std::pair(std::move(state), usable)).first;
    }
    if (found->second.second) {
        return std::nullopt;
    }
    return fmt::format("The speech model “{}” in {} can’t be used: its files are damaged or of another kind.",
                       model.name, model.folder.string());
}

std::optional<SpeechModel> choose(std::vector<SpeechModel> models, std::string_view locale, const ModelChoice& choice,
                                  std::vector<std::string>& faults) {
    std::optional<SpeechModel> chosen;
    while ((chosen = SpeechModels::choose(models, locale, choice))) {
        const std::optional<std::string> why = fault(*chosen);
        if (!why) {
            break;
        }
        faults.push_back(*why);
        std::erase(models, *chosen);
    }
    return chosen;
}

} // namespace varnic::ModelCheck
