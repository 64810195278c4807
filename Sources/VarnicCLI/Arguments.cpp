#include "VarnicCLI/Arguments.h"

#include "VarnicCore/Text/Unicode.h"

#include <fmt/format.h>
#include <getopt.h>

#include <algorithm>

namespace varnic::cli {

namespace {

std::string wellFormed(std::string_view text) {
    return Unicode::utf8(Unicode::utf16(text));
}

} // namespace

Arguments Arguments::parse(std::span<const std::string> words, std::vector<Option> options) {
    options.push_back({.name = "help", .value = {}, .help = {}, .letter = 'h'});
    std::vector<option> table;
    std::string letters = ":";
    for (const Option& one : options) {
        const int argument = one.takesValue() ? required_argument : no_argument;
        table.push_back({one.name.c_str(), argument, nullptr, one.letter});
        if (one.letter != 0) {
            letters += one.letter;
            letters += one.takesValue() ? ":" : "";
        }
    }
    table.push_back({});
    std::vector<std::string> copies{"varnic-cli"};
    copies.insert(copies.end(), words.begin(), words.end());
    std::vector<char*> argv;
    argv.reserve(copies.size() + 1);
    for (std::string& copy : copies) {
        argv.push_back(copy.data());
    }
    argv.push_back(nullptr);

    Arguments arguments;
    opterr = 0;
    optind = 0; // GNU: start anew, also after an earlier parse
    int index = 0;
    const auto argc = static_cast<int>(copies.size());
    for (;;) {
        const int result = getopt_long(argc, argv.data(), letters.c_str(), table.data(), &index);
        if (result == -1) {
            break;
        }
        if (result == '?' || result == ':') {
            const std::string word = wellFormed(argv[static_cast<std::size_t>(optind) - 1]);
            throw UsageError(result == ':' ? fmt::format("{} needs a value", word)
                                           : fmt::format("{} isn’t an option here", word));
        }
        const auto given = result == 0 ? options.begin() + index : std::ranges::find(options, result, &Option::letter);
        arguments.values_[given->name] = optarg == nullptr ? std::string() : wellFormed(optarg);
    }
    for (auto i = static_cast<std::size_t>(optind); i < copies.size(); ++i) {
        arguments.words_.push_back(wellFormed(argv[i]));
    }
    return arguments;
}

std::optional<std::string> Arguments::value(const std::string& option) const {
    const auto found = values_.find(option);
    return found == values_.end() ? std::nullopt : std::optional(found->second);
}

std::string Arguments::valueOr(const std::string& option, const std::string& otherwise) const {
    return value(option).value_or(otherwise);
}

const std::string& Arguments::onlyWord(std::string_view what) const {
    if (words_.size() != 1) {
        throw UsageError(fmt::format("give one {}", what));
    }
    return words_.front();
}

void Arguments::expectNoWords() const {
    if (!words_.empty()) {
        throw UsageError(fmt::format("{} isn’t expected here", words_.front()));
    }
}

} // namespace varnic::cli
