#include "VarnicCore/Export/ExportFormat.h"

#include <algorithm>

namespace varnic {

namespace {

struct FormatNames {
    std::string_view rawValue;
    std::string_view title;
    std::string_view fileExtension;
};

constexpr std::array<FormatNames, allExportFormats.size()> formatNames{{
    {"markdown", "Markdown", "md"},
    {"pdf", "PDF", "pdf"},
    {"rtf", "Rich Text (RTF)", "rtf"},
    {"docx", "Word (.docx)", "docx"},
}};

const FormatNames& names(ExportFormat format) {
    return formatNames.at(static_cast<std::size_t>(format));
}

} // namespace

std::string_view rawValue(ExportFormat format) {
    return names(format).rawValue;
}

std::optional<ExportFormat> exportFormatFrom(std::string_view rawValue) {
    const auto* const found = std::ranges::find(formatNames, rawValue, &FormatNames::rawValue);
    if (found == formatNames.end()) {
        return std::nullopt;
    }
    return allExportFormats.at(static_cast<std::size_t>(found - formatNames.begin()));
}

std::string_view title(ExportFormat format) {
    return names(format).title;
}

std::string_view fileExtension(ExportFormat format) {
    return names(format).fileExtension;
}

} // namespace varnic
