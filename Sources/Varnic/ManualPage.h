#pragma once

#include <string>
#include <string_view>

namespace varnic {

/// A page of the system's manual about a program, in the language of man(7) and UTF-8. Texts are plain; `words` between
/// backticks stand out. Line ends within a text count as blanks.
class ManualPage {
public:
    /// `what` completes the line “PROGRAM - …” by which a page is found.
    ManualPage(std::string_view program, std::string_view what);

    /// A way to call the program.
    void synopsis(std::string_view words);
    void section(std::string_view title);
    void subsection(std::string_view title);
    void paragraph(std::string_view text);
    /// A term, such as an option, and what it is.
    void term(std::string_view label, std::string_view text);

    [[nodiscard]] const std::string& text() const { return text_; }

private:
    std::string program_;
    std::string text_;
};

} // namespace varnic
