#include "VarnicCLI/Help.h"

#include "Varnic/ManualPage.h"
#include "VarnicCore/Text/Unicode.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <iterator>

namespace varnic::cli {

namespace {

constexpr std::size_t width = 120;
constexpr std::string_view about = "Keeps calls and notes in a library on this computer.";
constexpr std::string_view library =
    "The library is in $VARNIC_DATA_DIR or, if that isn’t set, in Varnic/Library under your "
    "data folder.";

/// The text in lines of so many characters at most; those behind the first begin with blanks.
std::string wrapped(std::string_view text, std::size_t indent, std::size_t most) {
    std::string result;
    std::size_t used = 0;
    for (const std::string_view word : Unicode::split(text, [](char32_t c) { return c == U' ' || c == U'\n'; })) {
        const std::size_t length = Unicode::characterCount(word);
        if (used > 0 && indent + used + 1 + length > most) {
            result += '\n' + std::string(indent, ' ');
            used = 0;
        } else if (used > 0) {
            result += ' ';
            ++used;
        }
        result += word;
        used += length;
    }
    return result;
}

std::string optionLines(const Command& command) {
    std::size_t column = 0;
    for (const Option& option : command.options) {
        column = std::max(column, Help::label(option).size());
    }
    constexpr std::size_t gap = 2;
    std::string lines;
    for (const Option& option : command.options) {
        fmt::format_to(std::back_inserter(lines), "  {:<{}}  {}\n", Help::label(option), column,
                       wrapped(option.help, gap + column + gap, width));
    }
    return lines;
}

} // namespace

std::string Help::label(const Option& option) {
    return fmt::format("{}--{}{}{}", option.letter == 0 ? "" : fmt::format("-{}, ", option.letter), option.name,
                       option.takesValue() ? " " : "", option.value);
}

std::string Help::overview() {
    std::string text =
        fmt::format("usage: varnic-cli COMMAND [options]\n       varnic-cli --help | --version\n\n{}\n\n", about);
    for (const Command& command : commands()) {
        fmt::format_to(std::back_inserter(text), "  {:<12} {}\n", command.name, command.summary);
    }
    return text +
           fmt::format("\n{}\n", wrapped(fmt::format("varnic-cli COMMAND --help tells more. {}", library), 0, width));
}

std::string Help::of(const Command& command) {
    const std::string options = optionLines(command);
    return fmt::format("usage: varnic-cli {} {}\n\n{}\n{}{}{}", command.name, command.synopsis, command.summary,
                       command.help, options.empty() ? "" : "\n", options);
}

std::string Help::manual() {
    ManualPage page("varnic-cli", "calls and notes on the command line");
    page.synopsis("COMMAND [options]");
    page.synopsis("--help | --version");
    page.section("DESCRIPTION");
    page.paragraph(fmt::format("{} Sound is recorded through PipeWire and written down on this computer.", about));
    page.paragraph("Every command knows --help.");
    page.section("COMMANDS");
    for (const Command& command : commands()) {
        page.subsection(fmt::format("{} {}", command.name, command.synopsis));
        std::string summary(command.summary);
        summary.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(summary.front())));
        page.paragraph(summary + ".");
        if (!command.help.empty()) {
            page.paragraph(command.help);
        }
        for (const Option& option : command.options) {
            page.term(label(option), option.help);
        }
    }
    page.section("EXIT STATUS");
    page.term("0", "All went well.");
    page.term("1", "Something failed; a sentence on standard error says what.");
    page.term("2", "The command line isn’t one that the command understands.");
    page.section("ENVIRONMENT");
    page.term("VARNIC_DATA_DIR", "The library’s folder, instead of the usual one. The key ring isn’t touched then.");
    page.term("NO_COLOR", "If set, the terminal gets no styles.");
    page.section("FILES");
    page.paragraph(library);
    page.term("notes/ID.json", "A note; other programs may read and write it.");
    page.term("audio/ID", "The recordings of a call.");
    page.section("SEE ALSO");
    page.paragraph("varnic(1)");
    return page.text();
}

} // namespace varnic::cli
