#include "VarnicCore/Export/PdfPages.h"

#include <new>
#include <utility>
#include <variant>

namespace varnic {

namespace {

constexpr Font numberFont{.typeface = Typeface::sans, .size = 8};
constexpr Colour numberColour{142 / 255.0, 142 / 255.0, 147 / 255.0};

/// Cairo's writer into a string.
cairo_status_t append(void* string, const unsigned char* data, unsigned int length) {
    try {
        static_cast<std::string*>(string)->append(reinterpret_cast<const char*>(data), length);
        return CAIRO_STATUS_SUCCESS;
    } catch (const std::bad_alloc&) {
        return CAIRO_STATUS_NO_MEMORY;
    }
}

} // namespace

PdfPages::PdfPages(const StyledText& text, PageSize size, double margin, int mostPages)
    : size_(size), margin_(margin), mostPages_(mostPages),
      surface_(cairo_pdf_surface_create_for_stream(append, &bytes_, size.width, size.height)),
      canvas_(cairo_create(surface_.get())), contexts_(canvas_.get()), y_(margin) {
    setFacts(text);
}

void PdfPages::setFacts(const StyledText& text) {
    const auto set = [this](cairo_pdf_metadata_t key, const std::string& value) {
        cairo_pdf_surface_set_metadata(surface_.get(), key, value.c_str());
    };
    set(CAIRO_PDF_METADATA_TITLE, text.title());
    set(CAIRO_PDF_METADATA_CREATOR, "Varnic");
    set(CAIRO_PDF_METADATA_CREATE_DATE, text.created());
    set(CAIRO_PDF_METADATA_MOD_DATE, text.modified());
}

std::string PdfPages::finish() {
    if (!isFull_) {
        endPage();
    }
    cairo_surface_finish(surface_.get());
    const bool isWhole = cairo_status(canvas_.get()) == CAIRO_STATUS_SUCCESS &&
                         cairo_surface_status(surface_.get()) == CAIRO_STATUS_SUCCESS;
    return isWhole ? std::move(bytes_) : std::string();
}

bool PdfPages::makeRoom(double height) {
    if (isAtTop() || height <= room()) {
        return !isFull_;
    }
    if (!isFull_) {
        endPage();
        isFull_ = number_ == mostPages_;
        ++number_;
        y_ = margin_;
    }
    return !isFull_;
}

void PdfPages::endPage() {
    StyledText number;
    number.add({{std::to_string(number_), numberFont, numberColour}},
               {.lineHeightMultiple = 1, .alignment = Alignment::centred});
    const auto& paragraph = std::get<Paragraph>(number.items().front());
    ParagraphLines(contexts_, paragraph, size_.width).next()->draw(canvas_.get(), 0, size_.height - margin_ / 2);
    cairo_show_page(canvas_.get());
}

} // namespace varnic
