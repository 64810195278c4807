#include "VarnicPlatform/Capture/SoundSystem.h"

#include <nlohmann/json.hpp>

#include <stdexcept>

namespace varnic {

namespace {

std::vector<std::string> withOptions(const std::vector<std::string>& options) {
    std::vector<std::string> words{"python3", VARNIC_SOUND_SYSTEM};
    words.insert(words.end(), options.begin(), options.end());
    return words;
}

} // namespace

SoundSystem::SoundSystem(const std::vector<std::string>& options) : program_(withOptions(options)) {
    const std::string ready = program_.readLine();
    if (!ready.starts_with("ready ")) {
        throw std::runtime_error("the sound system did not start: " + ready);
    }
    const auto environment = nlohmann::json::parse(ready.substr(6));
    for (const auto& [name, item] : environment.items()) {
        const auto value = item.get<std::string>();
        environment_.emplace_back(name, value.empty() ? nullptr : value.c_str());
    }
}

SoundSystem::~SoundSystem() {
    program_.wait(); // which leaves nothing behind
}

std::string SoundSystem::operator()(const std::string& command) {
    program_.write(command + "\n");
    const std::string answer = program_.readLine();
    if (!answer.starts_with("ok")) {
        throw std::runtime_error(command + ": " + answer);
    }
    return answer.size() > 3 ? answer.substr(3) : "";
}

} // namespace varnic
