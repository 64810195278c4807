#pragma once

#include "VarnicCore/Export/Pango.h"
#include "VarnicCore/Export/StyledText.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>

namespace varnic {

/// Pango's contexts for the two directions of text, over fonts of their own.
class TextContexts {
public:
    /// For text that is drawn on the canvas, of which a unit is a point.
    explicit TextContexts(cairo_t* canvas);

    [[nodiscard]] PangoContext* of(const Paragraph& paragraph) const {
        return (paragraph.isRightToLeft ? rightToLeft_ : leftToRight_).get();
    }

private:
    Pango::FontMap fonts_;
    Pango::Context leftToRight_;
    Pango::Context rightToLeft_;
};

/// One line of a paragraph, ready to be drawn.
struct TextLine {
    /// Keeps the line's text and glyphs.
    std::shared_ptr<PangoLayout> layout;
    PangoLayoutLine* line = nullptr;
    /// From the left edge of the paragraph's room, in points.
    double x = 0;
    /// From the line's top, in points.
    double baseline = 0;
    double height = 0;

    void draw(cairo_t* canvas, double left, double top) const;
};

/// Breaks a paragraph into lines, one after the other. Long ones are laid out in stretches, so that time grows no
/// faster than the text and memory not at all. Words wider than the line are broken. One thread.
class ParagraphLines {
public:
    /// `width` in points. The paragraph and the contexts must outlive this.
    ParagraphLines(const TextContexts& contexts, const Paragraph& paragraph, double width);

    /// The next line; nothing after the last. An empty paragraph has one empty line.
    std::optional<TextLine> next();

private:
    void layOutStretch();
    [[nodiscard]] Pango::Layout stretch(std::size_t end) const;
    [[nodiscard]] Pango::Attributes attributes(std::size_t end) const;
    /// Where a stretch of about so many bytes ends.
    [[nodiscard]] std::size_t stretchEnd(std::size_t bytes) const;
    [[nodiscard]] TextLine line(PangoLayoutIter* iterator) const;

    PangoContext* context_;
    const Paragraph& paragraph_;
    double width_;
    std::string text_;
    /// Where the next stretch begins in the text, in bytes.
    std::size_t position_ = 0;
    bool isFinished_ = false;
    std::shared_ptr<PangoLayout> layout_;
    Pango::LineIterator lines_;
    /// How many lines of the stretch are still to be given.
    int linesLeft_ = 0;
};

} // namespace varnic
