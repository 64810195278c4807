#pragma once

#include "VarnicCore/Export/PageSize.h"
#include "VarnicCore/Export/Pango.h"
#include "VarnicCore/Export/ParagraphLines.h"

#include <string>

namespace varnic {

/// The pages of one PDF, which are filled from top to bottom and written as they are full. One thread.
class PdfPages {
public:
    /// Begins the first page. The facts of the text become the file's. `mostPages` is how many there may be.
    PdfPages(const StyledText& text, PageSize size, double margin, int mostPages);
    PdfPages(const PdfPages&) = delete;
    PdfPages& operator=(const PdfPages&) = delete;

    /// Writes the last page and gives the file's bytes; empty where something went wrong.
    std::string finish();

    [[nodiscard]] const TextContexts& contexts() const { return contexts_; }

    [[nodiscard]] cairo_t* canvas() const { return canvas_.get(); }

    /// In points.
    [[nodiscard]] double left() const { return margin_; }

    [[nodiscard]] double width() const { return size_.width - 2 * margin_; }

    [[nodiscard]] double fullHeight() const { return size_.height - 2 * margin_; }

    /// Where the next line goes, in points from the page's top.
    [[nodiscard]] double y() const { return y_; }

    /// What is left of the page, in points.
    [[nodiscard]] double room() const { return size_.height - margin_ - y_; }

    [[nodiscard]] bool isAtTop() const { return y_ <= margin_; }

    /// Whether the last page that there may be is full. Nothing is drawn from then on.
    [[nodiscard]] bool isFull() const { return isFull_; }

    /// Moves down; beyond the bottom it is the next page that begins.
    void advance(double height) { y_ += height; }

    /// Goes to the next page unless so much fits on this one or this one is empty. False when there is none.
    bool makeRoom(double height);

private:
    void endPage();
    void setFacts(const StyledText& text);

    PageSize size_;
    double margin_;
    int mostPages_;
    std::string bytes_;
    Pango::Surface surface_;
    Pango::Canvas canvas_;
    TextContexts contexts_;
    double y_;
    int number_ = 1;
    bool isFull_ = false;
};

} // namespace varnic
