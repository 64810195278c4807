#include "VarnicCore/Export/PdfWriter.h"

#include "VarnicCore/Export/PdfPages.h"
#include "VarnicCore/Export/PdfTable.h"

#include <variant>

namespace varnic::PdfWriter {

namespace {

/// Draws one item of the text after the other.
struct Drawing {
    PdfPages& pages;

    void operator()(const Paragraph& paragraph) const {
        if (!pages.isAtTop()) {
            pages.advance(paragraph.style.before);
        }
        ParagraphLines lines(pages.contexts(), paragraph, pages.width());
        while (const auto line = lines.next()) {
            if (!pages.makeRoom(line->height)) {
                return;
            }
            line->draw(pages.canvas(), pages.left(), pages.y());
            pages.advance(line->height);
        }
        pages.advance(paragraph.style.after);
    }

    void operator()(const StyledTable& table) const { PdfTable::draw(pages, table); }
};

} // namespace

std::string write(const StyledText& text, PageSize size, double margin) {
    PdfPages pages(text, size, margin, mostPages);
    for (const StyledText::Item& item : text.items()) {
        if (pages.isFull()) {
            break;
        }
        std::visit(Drawing{pages}, item);
    }
    return pages.finish();
}

} // namespace varnic::PdfWriter
