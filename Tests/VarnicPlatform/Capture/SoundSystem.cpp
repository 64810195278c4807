#include "VarnicPlatform/Capture/SoundSystem.h"

#include <nlohmann/json.hpp>

#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <stdexcept>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>

namespace varnic {

namespace {

/// An empty value takes the variable away.
void setEnvironment(const std::string& name, const std::string& value) {
    value.empty() ? unsetenv(name.c_str()) : setenv(name.c_str(), value.c_str(), 1);
}

} // namespace

SoundSystem::SoundSystem(const std::vector<std::string>& options) {
    std::array<int, 2> input{};
    std::array<int, 2> output{};
    if (pipe2(input.data(), O_CLOEXEC) != 0 || pipe2(output.data(), O_CLOEXEC) != 0) {
        throw std::runtime_error("no pipes");
    }
    std::vector<std::string> words{"python3", VARNIC_SOUND_SYSTEM};
    words.insert(words.end(), options.begin(), options.end());
    std::vector<char*> arguments;
    for (std::string& word : words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    process_ = fork();
    if (process_ == 0) {
        dup2(input[0], STDIN_FILENO);
        dup2(output[1], STDOUT_FILENO);
        execvp(arguments[0], arguments.data());
        _exit(127);
    }
    close(input[0]);
    close(output[1]);
    commands_ = fdopen(input[1], "w");
    answers_ = fdopen(output[0], "r");
    const std::string ready = readLine();
    if (!ready.starts_with("ready ")) {
        stop();
        throw std::runtime_error("the sound system did not start: " + ready);
    }
    const auto environment = nlohmann::json::parse(ready.substr(6));
    for (const auto& [name, value] : environment.items()) {
        const char* before = std::getenv(name.c_str());
        environmentBefore_[name] = before == nullptr ? "" : before;
        setEnvironment(name, value.get<std::string>());
    }
}

SoundSystem::~SoundSystem() {
    stop();
    for (const auto& [name, value] : environmentBefore_) {
        setEnvironment(name, value);
    }
}

std::string SoundSystem::operator()(const std::string& command) {
    std::fprintf(commands_, "%s\n", command.c_str());
    std::fflush(commands_);
    const std::string answer = readLine();
    if (!answer.starts_with("ok")) {
        throw std::runtime_error(command + ": " + answer);
    }
    return answer.size() > 3 ? answer.substr(3) : "";
}

std::string SoundSystem::readLine() const {
    std::string line;
    for (int byte = std::fgetc(answers_); byte != EOF && byte != '\n'; byte = std::fgetc(answers_)) {
        line.push_back(static_cast<char>(byte));
    }
    return line;
}

/// The end of its input is the end of it.
void SoundSystem::stop() {
    std::fclose(commands_);
    waitpid(process_, nullptr, 0);
    std::fclose(answers_);
}

} // namespace varnic
