#include "VarnicPlatform/Speech/ModelCheck.h"

#include "VarnicCore/Pipeline/Transcriber.h"
#include "VarnicCore/Text/Unicode.h"
#include "VarnicPlatform/Speech/NoiseReduction.h"
#include "VarnicPlatform/Speech/SpeechRecognizer.h"

#include <fmt/format.h>
#include <glib.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <charconv>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <mutex>
#include <ranges>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include <sys/resource.h>

namespace varnic::ModelCheck {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view modelOption = "--try-speech-model";
constexpr std::string_view networkOption = "--try-noise-reduction";
/// Seconds of the processor that trying one out may take, and on the clock: on a busy computer a good one may wait
/// long.
constexpr rlim_t patience = 60;
constexpr unsigned longest = 600;

std::atomic<bool> isEnabled = false;

/// Each line of a list of tokens ends with a number, larger than that of the line before. The engine itself takes
/// anything for such a list, and then leaves out the words that it finds no tokens of.
void requireTokens(const fs::path& file) {
    std::ifstream in(file);
    std::optional<long> last;
    for (std::string line; std::getline(in, line);) {
        const std::string_view text = Unicode::trimEnd(line, Unicode::isSpace);
        const std::string_view digits = text.substr(text.find_last_of(" \t") + 1);
        long number = 0;
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
        if (error != std::errc() || end != digits.data() + digits.size() || number <= last.value_or(-1)) {
            throw std::runtime_error("no list of tokens");
        }
        last = number;
    }
    if (!last) {
        throw std::runtime_error("no list of tokens");
    }
}

/// The engine takes the model of a folder and hears something, be it nothing, with it.
void tryModel(const fs::path& folder) {
    const SpeechModel model = SpeechModel::load(folder);
    requireTokens(model.files.at("tokens"));
    const std::vector<float> second(SpeechRecognizer::rate);
    static_cast<void>(SpeechRecognizer::create(model, "en").decode(second));
}

/// A missing library tells nothing about the network.
void tryNetwork(const fs::path& network) {
    if (std::optional<NoiseReduction> reduction = NoiseReduction::create(network)) {
        static_cast<void>(reduction->clean(std::vector<float>(NoiseReduction::rate)));
    }
}

int tryOut(void (*attempt)(const fs::path&), const fs::path& what) {
    const rlimit limit{.rlim_cur = patience, .rlim_max = patience};
    ::setrlimit(RLIMIT_CPU, &limit);
    ::alarm(longest);
    try {
        attempt(what);
        return 0;
    } catch (const std::exception&) {
        return 1;
    }
}

bool passes(std::string_view option, const fs::path& what) {
    std::error_code error;
    std::string program = fs::read_symlink("/proc/self/exe", error);
    std::string word(option);
    std::string name = what;
    std::array<char*, 4> command{program.data(), word.data(), name.data(), nullptr};
    int status = 0;
    const auto flags = static_cast<GSpawnFlags>(G_SPAWN_STDOUT_TO_DEV_NULL | G_SPAWN_STDERR_TO_DEV_NULL);
    // A program that can't be started tells nothing about the files.
    return g_spawn_sync(nullptr, command.data(), nullptr, flags, nullptr, nullptr, nullptr, nullptr, &status,
                        nullptr) == FALSE ||
           status == 0;
}

/// Sizes and times of files, by which changed ones are told.
using State = std::vector<std::pair<std::uintmax_t, fs::file_time_type>>;

State stateOf(const std::vector<fs::path>& files) {
    State state;
    for (const fs::path& file : files) {
        std::error_code error;
        const std::uintmax_t size = fs::file_size(file, error);
        state.emplace_back(size, fs::last_write_time(file, error));
    }
    return state;
}

/// Tries out what consists of these files, once for each state of them.
bool passes(std::string_view option, const fs::path& what, const std::vector<fs::path>& files) {
    if (!isEnabled) {
        return true;
    }
    // Held while something is tried out: both sides of a call ask at once.
    static std::mutex lock;
    static std::map<fs::path, std::pair<State, bool>> known;
    const std::scoped_lock guard(lock);
    State state = stateOf(files);
    auto found = known.find(what);
    if (found == known.end() || found->second.first != state) {
        const bool usable = passes(option, what);
        found = known.insert_or_assign(what, std::pair(std::move(state), usable)).first;
    }
    return found->second.second;
}

} // namespace

std::optional<int> enable(int argc, char** argv) {
    const std::span words(argv, static_cast<std::size_t>(argc));
    if (words.size() == 3 && words[1] == modelOption) {
        return tryOut(tryModel, words[2]);
    }
    if (words.size() == 3 && words[1] == networkOption) {
        return tryOut(tryNetwork, words[2]);
    }
    isEnabled = true;
    return std::nullopt;
}

std::optional<std::string> fault(const SpeechModel& model) {
    std::vector<fs::path> files;
    std::ranges::copy(std::views::values(model.files), std::back_inserter(files));
    if (passes(modelOption, model.folder, files)) {
        return std::nullopt;
    }
    return fmt::format("The speech model “{}” in {} can’t be used: its files are damaged or of another kind.",
                       model.name, model.folder.string());
}

bool isUsable(const fs::path& network) {
    return passes(networkOption, network, {network});
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
