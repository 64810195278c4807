#include "VarnicCore/Fixtures/FixtureBuilder.h"

#include "VarnicCore/Audio/AudioFiles.h"
#include "VarnicCore/Audio/AudioMix.h"
#include "VarnicCore/Files/FileDescriptor.h"
#include "VarnicCore/Files/Folders.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <exception>
#include <sstream>
#include <utility>

namespace varnic::FixtureBuilder {

namespace {

namespace fs = std::filesystem;

constexpr const char* program = "flite";
constexpr double firstLineAt = 0.6;
constexpr double behindLastLine = 0.5;
constexpr float gain = 0.8F;

/// What the child process does with its standard output and errors.
class Actions {
public:
    Actions() { ::posix_spawn_file_actions_init(&actions_); }

    Actions(const Actions&) = delete;
    Actions& operator=(const Actions&) = delete;

    ~Actions() { ::posix_spawn_file_actions_destroy(&actions_); }

    void drop(int stream) { ::posix_spawn_file_actions_addopen(&actions_, stream, "/dev/null", O_WRONLY, 0); }

    void send(int stream, int to) { ::posix_spawn_file_actions_adddup2(&actions_, to, stream); }

    [[nodiscard]] const posix_spawn_file_actions_t* get() const { return &actions_; }

private:
    posix_spawn_file_actions_t actions_{};
};

/// Starts flite; nothing where it cannot be started.
std::optional<pid_t> start(std::vector<std::string> arguments, const Actions& actions) {
    arguments.insert(arguments.begin(), program);
    std::vector<char*> words;
    for (std::string& argument : arguments) {
        words.push_back(argument.data());
    }
    words.push_back(nullptr);
    pid_t child = 0;
    const bool started = ::posix_spawnp(&child, program, actions.get(), nullptr, words.data(), environ) == 0;
    return started ? std::optional(child) : std::nullopt;
}

bool succeeded(pid_t child) {
    int status = 0;
    while (::waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) {
            return false;
        }
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

/// What flite prints; nothing where it cannot be started.
std::string outputOf(const std::vector<std::string>& arguments) {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        return {};
    }
    const FileDescriptor reading(ends[0]);
    std::optional<pid_t> child;
    {
        const FileDescriptor writing(ends[1]);
        Actions actions;
        actions.send(STDOUT_FILENO, writing.number());
        actions.drop(STDERR_FILENO);
        child = start(arguments, actions);
    }
    std::string text;
    std::array<char, 512> part{};
    ssize_t count = 0;
    while ((count = ::read(reading.number(), part.data(), part.size())) > 0 || (count < 0 && errno == EINTR)) {
        text.append(part.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    }
    return child && succeeded(*child) ? text : std::string();
}

/// A voice as flite's arguments. These two are the clearest for a recogniser, each for the side whose lines it says
/// well, and at these paces the recognised words hardly depend on where the audio is cut; without them flite's choice
/// will do.
std::vector<std::string> voiceOf(Speaker speaker, const std::set<std::string>& installed) {
    const auto [name, stretch] = speaker == Speaker::you ? std::pair("rms", "1.05") : std::pair("slt", "1.15");
    if (!installed.contains(name)) {
        return {};
    }
    return {"-voice", name, "--setf", fmt::format("duration_stretch={}", stretch)};
}

bool say(const std::string& text, std::vector<std::string> voice, const fs::path& file) {
    std::vector<std::string> arguments = std::move(voice);
    arguments.insert(arguments.end(), {"-t", text, "-o", file.string()});
    Actions actions;
    actions.drop(STDOUT_FILENO);
    actions.drop(STDERR_FILENO);
    const std::optional<pid_t> child = start(std::move(arguments), actions);
    return child && succeeded(*child) && fs::exists(file);
}

/// The files of single lines, gone at the end.
class LineFiles {
public:
    explicit LineFiles(const fs::path& folder) : folder_(folder) {}

    LineFiles(const LineFiles&) = delete;
    LineFiles& operator=(const LineFiles&) = delete;

    ~LineFiles() {
        for (const fs::path& file : files_) {
            Folders::removeAll(file);
        }
    }

    const fs::path& next() { return files_.emplace_back(folder_ / fmt::format("line-{}.wav", files_.size())); }

private:
    fs::path folder_;
    std::vector<fs::path> files_;
};

} // namespace

std::optional<Result> build(const fs::path& folder, const std::vector<std::pair<Speaker, std::string>>& lines,
                            double gap) {
    try {
        Folders::make(folder);
        const std::set<std::string> voices = installedVoices();
        LineFiles files(folder);
        std::map<Speaker, std::vector<AudioMix::Clip>> clips;
        Result result{folder / "you.caf", folder / "them.caf", 0, {}};
        double cursor = firstLineAt;
        for (const auto& [speaker, text] : lines) {
            const fs::path& file = files.next();
            if (!say(text, voiceOf(speaker, voices), file)) {
                return std::nullopt;
            }
            clips[speaker].push_back({file, cursor + silenceBefore, gain});
            result.placements[speaker].push_back(cursor);
            cursor += silenceBefore + AudioFiles::duration(file) + silenceBehind + gap;
        }
        result.duration = cursor + behindLastLine;
        AudioMix::render(clips[Speaker::you], result.duration, result.you, false);
        AudioMix::render(clips[Speaker::them], result.duration, result.them, false);
        return result;
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

std::set<std::string> installedVoices() {
    // "Voices available: kal awb_time ... "
    std::istringstream words(outputOf({"-lv"}));
    std::string introduction;
    std::getline(words, introduction, ':');
    std::set<std::string> voices;
    for (std::string voice; words >> voice;) {
        voices.insert(voice);
    }
    return voices;
}

} // namespace varnic::FixtureBuilder
