#include "VarnicCLI/Command.h"
#include "VarnicCLI/SoundDeviceChoice.h"
#include "VarnicCLI/Terminal.h"
#include "VarnicCLI/UserLibrary.h"
#include "VarnicCore/AISummariser/AISettings.h"
#include "VarnicCore/Export/ExportFormat.h"
#include "VarnicCore/Text/Unicode.h"
#include "VarnicPlatform/Speech/SpeechModel.h"

#include <algorithm>
#include <exception>
#include <string>
#include <utility>
#include <vector>

namespace varnic::cli {

namespace {

struct Candidate {
    std::string text;
    std::string description;
};

using Candidates = std::vector<Candidate>;

/// Stands for the names of files, which shells know best.
const Candidate files{":files", {}};

Candidates notes(const std::vector<Note>& notes) {
    Candidates candidates;
    std::ranges::transform(notes, std::back_inserter(candidates),
                           [](const Note& note) { return Candidate{shortId(note), note.displayTitle()}; });
    return candidates;
}

Candidates devices(const std::vector<SoundDevice>& devices) {
    Candidates candidates;
    std::ranges::transform(devices, std::back_inserter(candidates),
                           [](const SoundDevice& device) { return Candidate{device.name, device.label}; });
    return candidates;
}

Candidates languages() {
    Candidates candidates;
    const std::vector<SpeechModel> models = SpeechModels::installed(SpeechModels::dataDirectories());
    if (SpeechModels::tellLanguages(models)) {
        candidates.push_back({std::string(LanguageChoice::automatic), "found out for each call"});
    }
    for (const SpeechModel& model : models) {
        for (const std::string& locale : model.locales) {
            if (std::ranges::find(candidates, locale, &Candidate::text) == candidates.end()) {
                candidates.push_back({locale, model.name});
            }
        }
    }
    return candidates;
}

Candidates speechModels() {
    Candidates candidates{{"bestWords", "the model with the fewest wrong words"}, {"fastest", "the quickest model"}};
    for (const SpeechModel& model : SpeechModels::installed(SpeechModels::dataDirectories())) {
        candidates.push_back({model.id, model.name});
    }
    return candidates;
}

template <typename Values>
Candidates named(const Values& values) {
    Candidates candidates;
    for (const auto value : values) {
        candidates.push_back({std::string(rawValue(value)), std::string(title(value))});
    }
    return candidates;
}

Candidates candidatesFor(Choice choice) {
    switch (choice) {
    case Choice::anything:
        break;
    case Choice::file:
        return {files};
    case Choice::note:
        return notes(LibraryStore(libraryFolder()).loadAll(currentDate()));
    case Choice::deletedNote:
        return notes(LibraryStore(libraryFolder()).deleted(currentDate()));
    case Choice::language:
        return languages();
    case Choice::speechModel:
        return speechModels();
    case Choice::microphone:
        return devices(soundDevices().microphones);
    case Choice::output:
        return devices(soundDevices().outputs);
    case Choice::provider:
        return named(allAIProviderKinds);
    case Choice::exportFormat:
        return named(allExportFormats);
    case Choice::keyAction:
        return {{"set", "keep a key"}, {"remove", "forget it"}};
    }
    return {};
}

Candidates firstWords() {
    Candidates candidates{{"--help", "tell of the commands"}, {"--version", "tell the version"}};
    for (const Command& command : commands()) {
        candidates.push_back({std::string(command.name), std::string(command.summary)});
    }
    return candidates;
}

Candidates optionsOf(const Command& command) {
    Candidates candidates{{"--help", "tell of the command"}};
    for (const Option& option : command.options) {
        candidates.push_back({"--" + option.name, option.help});
    }
    return candidates;
}

/// The option of a word such as "--name" or "-o".
const Option* optionNamed(const Command& command, std::string_view word) {
    const auto found = std::ranges::find_if(command.options, [word](const Option& option) {
        return word == "--" + option.name || (option.letter != 0 && word == std::string{'-', option.letter});
    });
    return found == command.options.end() ? nullptr : &*found;
}

/// What stands behind a command's name, read up to the word that is to be completed.
class CommandWords {
public:
    explicit CommandWords(const Command& command) : command_(command) {}

    void read(const std::string& word) {
        if (std::exchange(awaited_, nullptr) != nullptr) {
            return;
        }
        if (!areOptionsOver_ && word == "--") {
            areOptionsOver_ = true;
        } else if (!areOptionsOver_ && word.starts_with("-") && word != "-") {
            const Option* option = optionNamed(command_, word);
            awaited_ = option != nullptr && option->takesValue() ? option : nullptr;
        } else {
            ++count_;
        }
    }

    [[nodiscard]] Candidates candidates(const std::string& word) const {
        if (awaited_ != nullptr) {
            return candidatesFor(awaited_->choice);
        }
        if (!areOptionsOver_ && word.starts_with("-")) {
            const std::size_t equals = word.find('=');
            return equals == std::string::npos ? optionsOf(command_) : assigned(word.substr(0, equals));
        }
        return count_ < command_.words.size() ? candidatesFor(command_.words[count_]) : Candidates();
    }

private:
    /// The values of an option, each with the option in front.
    [[nodiscard]] Candidates assigned(const std::string& name) const {
        const Option* option = optionNamed(command_, name);
        Candidates values = option != nullptr && option->takesValue() ? candidatesFor(option->choice) : Candidates();
        for (Candidate& value : values) {
            value.text = value.text == files.text ? value.text : name + "=" + value.text;
        }
        return values;
    }

    const Command& command_;
    /// The option whose value comes next.
    const Option* awaited_ = nullptr;
    bool areOptionsOver_ = false;
    /// Words that are no options.
    std::size_t count_ = 0;
};

Candidates candidatesFor(std::vector<std::string> words) {
    const std::string last = std::move(words.back());
    words.pop_back();
    if (words.empty()) {
        return firstWords();
    }
    const auto command = std::ranges::find(commands(), words.front(), &Command::name);
    if (command == commands().end()) {
        return {};
    }
    CommandWords behind(*command);
    std::for_each(words.begin() + 1, words.end(), [&](const std::string& word) { behind.read(word); });
    return behind.candidates(last);
}

/// As one line without what a shell, or the terminal, could take for something else.
std::string lineOf(std::string_view text) {
    std::string line = Terminal::plain(text);
    std::ranges::replace_if(line, [](char c) { return c == '\t' || c == '\n'; }, ' ');
    return line;
}

/// Whether the candidate goes on from the word, in whichever case.
bool fits(const Candidate& candidate, std::string_view word) {
    return candidate.text == files.text || Unicode::lowerCased(candidate.text).starts_with(Unicode::lowerCased(word));
}

} // namespace

/// Whatever fails, nothing is said into the line that is being typed.
ExitCode complete(const Arguments& arguments) {
    const std::vector<std::string>& words = arguments.words();
    if (words.empty()) {
        throw UsageError("give the words of a command line");
    }
    try {
        for (const Candidate& candidate : candidatesFor(words)) {
            if (fits(candidate, words.back())) {
                fmt::print("{}\t{}\n", lineOf(candidate.text), lineOf(candidate.description));
            }
        }
    } catch (const std::exception&) {
        return ExitCode::failure;
    }
    return ExitCode::success;
}

} // namespace varnic::cli
