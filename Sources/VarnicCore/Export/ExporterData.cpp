#include "VarnicCore/Export/DocxWriter.h"
#include "VarnicCore/Export/Exporter.h"
#include "VarnicCore/Export/PdfWriter.h"
#include "VarnicCore/Export/RtfWriter.h"

namespace varnic::Exporter {

std::string data(const Note& note, ExportFormat format, const ExportOptions& options, const Region& region) {
    switch (format) {
    case ExportFormat::markdown:
        return markdown(note, options, region);
    case ExportFormat::pdf:
        return pdf(attributed(note, options, false, region), a4, pageMargin);
    case ExportFormat::rtf:
        return RtfWriter::write(attributed(note, options, false, region), a4, pageMargin);
    case ExportFormat::docx:
        return DocxWriter::write(attributed(note, options, true, region), a4, pageMargin);
    }
    return {};
}

std::string pdf(const StyledText& text, PageSize size, double margin) {
    return PdfWriter::write(text, size, margin);
}

} // namespace varnic::Exporter
