#include "Varnic/ManualPage.h"

#include "VarnicCore/Text/Unicode.h"

#include <fmt/format.h>

namespace varnic {

namespace {

/// What the formatter would take for a request, an escape, or a hyphen to break a line at, stands for itself.
std::string escaped(std::string_view text) {
    std::string result;
    bool isEmphasised = false;
    bool isAtStart = true;
    for (const char c : Unicode::trim(text)) {
        if (isAtStart && (c == '.' || c == '\'')) {
            result += "\\&";
        }
        isAtStart = false;
        switch (c) {
        case '\\':
            result += "\\e";
            break;
        case '-':
            result += "\\-";
            break;
        case '`':
            isEmphasised = !isEmphasised;
            result += isEmphasised ? "\\fB" : "\\fR";
            break;
        case '\n':
            result += ' ';
            break;
        default:
            result += c;
        }
    }
    return result;
}

} // namespace

ManualPage::ManualPage(std::string_view program, std::string_view what)
    : program_(program),
      text_(fmt::format(".TH {} 1 \"\" \"Varnic {}\" \"User Commands\"\n.SH NAME\n{} \\- {}\n",
                        Unicode::upperCased(program), VARNIC_VERSION, escaped(program), escaped(what))) {
    section("SYNOPSIS");
}

void ManualPage::synopsis(std::string_view words) {
    text_ += fmt::format(".B {}\n{}\n.br\n", escaped(program_), escaped(words));
}

void ManualPage::section(std::string_view title) {
    text_ += fmt::format(".SH {}\n", escaped(title));
}

void ManualPage::subsection(std::string_view title) {
    text_ += fmt::format(".SS {}\n", escaped(title));
}

void ManualPage::paragraph(std::string_view text) {
    text_ += fmt::format(".PP\n{}\n", escaped(text));
}

void ManualPage::term(std::string_view label, std::string_view text) {
    text_ += fmt::format(".TP\n.B {}\n{}\n", escaped(label), escaped(text));
}

} // namespace varnic
