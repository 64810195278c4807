#pragma once

#include <map>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace varnic::cli {

/// The command line is not one that the command understands; `what()` says why.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// What stands in a place of the command line, for shells that complete it.
enum class Choice {
    /// Whatever the user likes.
    anything,
    file,
    /// A note of the library, or one of the deleted ones, by the beginning of its id.
    note,
    deletedNote,
    /// A language that a speech model is installed for.
    language,
    speechModel,
    microphone,
    output,
    provider,
    exportFormat,
    keyAction
};

/// One long option of a command.
struct Option {
    std::string name;
    /// What its value is called in the help; empty for an option that takes none.
    std::string value;
    /// What it is for.
    std::string help;
    Choice choice = Choice::anything;
    /// A short form, "-o"; 0 for none.
    char letter = 0;

    [[nodiscard]] bool takesValue() const { return !value.empty(); }
};

/// The words behind a command's name. Malformed UTF-8 in them has become U+FFFD, so that nothing else need care.
class Arguments {
public:
    /// Reads `--name VALUE`, `--name=VALUE` and other words in any order; "--" ends the options. `--help` is known to
    /// every command. Throws UsageError for an unknown option or a missing or superfluous value.
    static Arguments parse(std::span<const std::string> words, std::vector<Option> options);

    [[nodiscard]] bool has(const std::string& option) const { return values_.contains(option); }

    /// The value of an option as given last.
    [[nodiscard]] std::optional<std::string> value(const std::string& option) const;
    [[nodiscard]] std::string valueOr(const std::string& option, const std::string& otherwise) const;

    /// The words that are no options.
    [[nodiscard]] const std::vector<std::string>& words() const { return words_; }

    /// The one word; throws UsageError with `what` where there are none or several.
    [[nodiscard]] const std::string& onlyWord(std::string_view what) const;
    /// Throws UsageError if there are words.
    void expectNoWords() const;

private:
    std::map<std::string, std::string> values_;
    std::vector<std::string> words_;
};

} // namespace varnic::cli
