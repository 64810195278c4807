#include "VarnicPlatform/Speech/ModelCheck.h"

#include "VarnicCore/Pipeline/Transcriber.h"
#include "VarnicCore/Text/Unicode.h"
#include "VarnicPlatform/Speech/LanguageIdentifier.h"
#include "VarnicPlatform/Speech/NoiseReduction.h"
#include "VarnicPlatform/Speech/SpeechRecognizer.h"

#include <fmt/format.h>
#include <glib.h>

#include <algorithm>
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
void tryModel(const fs::path& folder, std::string_view locale) {
    const SpeechModel model = SpeechModel::load(folder);
    requireTokens(model.files.at("tokens"));
    const std::vector<float> second(SpeechRecognizer::rate);
    static_cast<void>(SpeechRecognizer::create(model, locale).decode(second));
    if (model.tellsLanguages()) {
        static_cast<void>(LanguageIdentifier::create(model));
    }
}

/// A missing library tells nothing about the network.
void tryNetwork(const fs::path& network) {
    if (std::optional<NoiseReduction> reduction = NoiseReduction::create(network)) {
        static_cast<void>(reduction->clean(std::vector<float>(NoiseReduction::rate)));
    }
}

template <typename Attempt>
int tryOut(Attempt attempt) {
    const rlimit limit{.rlim_cur = patience, .rlim_max = patience};
    ::setrlimit(RLIMIT_CPU, &limit);
    ::alarm(longest);
    try {
        attempt();
        return 0;
    } catch (const std::exception&) {
        return 1;
    }
}

/// What a second start of the program is to try out, as its arguments.
using Trial = std::vector<std::string>;

bool passes(Trial trial) {
    std::error_code error;
    trial.insert(trial.begin(), fs::read_symlink("/proc/self/exe", error));
    std::vector<char*> command;
    std::ranges::transform(trial, std::back_inserter(command), [](std::string& word) { return word.data(); });
    command.push_back(nullptr);
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
bool passes(const Trial& trial, const std::vector<fs::path>& files) {
    if (!isEnabled) {
        return true;
    }
    // Held while something is tried out: both sides of a call ask at once.
    static std::mutex lock;
    static std::map<Trial, std::pair<State, bool>> known;
    const std::scoped_lock guard(lock);
    State state = stateOf(files);
    auto found = known.find(trial);
    if (found == known.end() || found->second.first != state) {
        const bool usable = passes(trial);
        found = known.insert_or_assign(trial, std::pair(std::move(state), usable)).first;
    }
    return found->second.second;
}

} // namespace

std::optional<int> enable(int argc, char** argv) {
    const std::span words(argv, static_cast<std::size_t>(argc));
    if (words.size() == 4 && words[1] == modelOption) {
        return tryOut([&] { tryModel(words[2], words[3]); });
    }
    if (words.size() == 3 && words[1] == networkOption) {
        return tryOut([&] { tryNetwork(words[2]); });
    }
    isEnabled = true;
    return std::nullopt;
}

std::optional<std::string> fault(const SpeechModel& model, std::string_view locale) {
    std::vector<fs::path> files{model.folder / "model.json"};
    std::ranges::copy(std::views::values(model.files), std::back_inserter(files));
    const std::string tag = model.tagFor(locale).value_or(model.locales.front());
    if (passes({std::string(modelOption), model.folder, tag}, files)) {
        return std::nullopt;
    }
    return fmt::format("The speech model “{}” in {} can’t be used: its files are damaged, of another kind or without "
                       "the language “{}”.",
                       model.name, model.folder.string(), tag);
}

bool isUsable(const fs::path& network) {
    return passes({std::string(networkOption), network}, {network});
}

std::optional<SpeechModel> choose(std::vector<SpeechModel> models, std::string_view locale, const ModelChoice& choice,
                                  std::vector<std::string>& faults) {
    std::optional<SpeechModel> chosen;
    while ((chosen = SpeechModels::choose(models, locale, choice))) {
        const std::optional<std::string> why = fault(*chosen, locale);
        if (!why) {
            break;
        }
        faults.push_back(*why);
        std::erase(models, *chosen);
    }
    return chosen;
}

} // namespace varnic::ModelCheck
