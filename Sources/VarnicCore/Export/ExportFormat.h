#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace varnic {

/// The kinds of file that a note can be exported to, in the order in which they are listed.
enum class ExportFormat { markdown, pdf, rtf, docx };

inline constexpr std::array allExportFormats{ExportFormat::markdown, ExportFormat::pdf, ExportFormat::rtf,
                                             ExportFormat::docx};

/// The format's name in settings and commands; also its id in lists.
std::string_view rawValue(ExportFormat format);
std::optional<ExportFormat> exportFormatFrom(std::string_view rawValue);

/// The name in menus.
std::string_view title(ExportFormat format);

/// Without the dot.
std::string_view fileExtension(ExportFormat format);

/// What goes into an exported file besides the note's blocks.
struct ExportOptions {
    /// Add the transcript of a call.
    bool includeTranscript = false;
    /// Add the follow-up email of a call.
    bool includeEmail = false;
    /// Stands for the user in the output; may be empty.
    std::string yourName;

    bool operator==(const ExportOptions&) const = default;
};

} // namespace varnic
