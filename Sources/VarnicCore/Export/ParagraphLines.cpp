#include "VarnicCore/Export/ParagraphLines.h"

#include <unicode/utf8.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

namespace varnic {

namespace {

/// Bytes that are laid out at once: enough for some lines, few enough for Pango, which looks at all that is left for
/// every line that it breaks.
constexpr std::size_t stretchBytes = 1024;

/// A line of more bytes, such as a letter with thousands of accents, is broken here: the shaping of one takes time by
/// the square of its length.
constexpr std::size_t mostStretchBytes = 4096;

const char* families(Typeface typeface) {
    return typeface == Typeface::serif ? "Vollkorn,Georgia,serif" : "Inter";
}

/// The font as Pango looks for it: the family with those that stand in for it.
Pango::FontDescription fontDescription(const Font& font) {
    Pango::FontDescription description(pango_font_description_new());
    pango_font_description_set_family_static(description.get(), families(font.typeface));
    pango_font_description_set_absolute_size(description.get(), Pango::units(font.size));
    pango_font_description_set_weight(description.get(), font.semibold ? PANGO_WEIGHT_SEMIBOLD : PANGO_WEIGHT_NORMAL);
    pango_font_description_set_style(description.get(), font.italic ? PANGO_STYLE_ITALIC : PANGO_STYLE_NORMAL);
    return description;
}

/// How the digits look: Vollkorn's own "$40" reads as "$4o".
const char* fontFeatures(Typeface typeface) {
    switch (typeface) {
    case Typeface::serif:
        return "lnum=1";
    case Typeface::digits:
        return "tnum=1";
    case Typeface::sans:
        return nullptr;
    }
    return nullptr;
}

guint16 part(double value) {
    return static_cast<guint16>(std::lround(value * 65535));
}

Pango::Context context(PangoFontMap* fonts, cairo_t* canvas, PangoDirection direction) {
    Pango::Context context(pango_font_map_create_context(fonts));
    pango_cairo_update_context(canvas, context.get());
    pango_context_set_base_dir(context.get(), direction);
    // Exported pages have no pixel grid to round to.
    pango_context_set_round_glyph_positions(context.get(), FALSE);
    return context;
}

void add(PangoAttrList* list, PangoAttribute* attribute, std::size_t start, std::size_t end) {
    attribute->start_index = static_cast<guint>(start);
    attribute->end_index = static_cast<guint>(end);
    pango_attr_list_insert(list, attribute);
}

void addRun(PangoAttrList* list, const Run& run, std::size_t start, std::size_t end) {
    add(list, pango_attr_font_desc_new(fontDescription(run.font).get()), start, end);
    add(list, pango_attr_foreground_new(part(run.colour.red), part(run.colour.green), part(run.colour.blue)), start,
        end);
    if (const char* const features = fontFeatures(run.font.typeface)) {
        add(list, pango_attr_font_features_new(features), start, end);
    }
    if (run.struckThrough) {
        add(list, pango_attr_strikethrough_new(TRUE), start, end);
    }
}

std::string joined(const std::vector<Run>& runs) {
    std::string text;
    for (const Run& run : runs) {
        text += run.text;
    }
    return text;
}

/// The indent that all lines have in common.
double commonIndent(const ParagraphStyle& style) {
    return std::min(style.firstLineIndent, style.headIndent);
}

void setIndent(PangoLayout* layout, const ParagraphStyle& style, bool isFirst) {
    // Pango's negative indent is that of the lines after the first.
    const double first = isFirst ? style.firstLineIndent : style.headIndent;
    pango_layout_set_indent(layout, Pango::units(first - style.headIndent));
}

/// The paragraph's own stop, and after it those at every interval from the margin.
void setTabs(PangoLayout* layout, const ParagraphStyle& style) {
    std::vector<double> stops;
    if (style.tabStop) {
        stops.push_back(*style.tabStop);
    }
    const double next = tabInterval * (std::floor(style.tabStop.value_or(0) / tabInterval) + 1);
    stops.insert(stops.end(), {next, next + tabInterval}); // Pango goes on with the last two's distance
    const Pango::TabArray tabs(pango_tab_array_new(static_cast<gint>(stops.size()), FALSE));
    for (std::size_t i = 0; i < stops.size(); ++i) {
        pango_tab_array_set_tab(tabs.get(), static_cast<gint>(i), PANGO_TAB_LEFT,
                                Pango::units(stops[i] - commonIndent(style)));
    }
    pango_layout_set_tabs(layout, tabs.get());
}

PangoAlignment alignment(const Paragraph& paragraph) {
    if (paragraph.style.alignment == Alignment::centred) {
        return PANGO_ALIGN_CENTER;
    }
    return paragraph.isRightToLeft ? PANGO_ALIGN_RIGHT : PANGO_ALIGN_LEFT;
}

} // namespace

void TextLine::draw(cairo_t* canvas, double left, double top) const {
    cairo_move_to(canvas, left + x, top + baseline);
    pango_cairo_show_layout_line(canvas, line);
}

TextContexts::TextContexts(cairo_t* canvas)
    : fonts_(pango_cairo_font_map_new()), leftToRight_(context(fonts_.get(), canvas, PANGO_DIRECTION_LTR)),
      rightToLeft_(context(fonts_.get(), canvas, PANGO_DIRECTION_RTL)) {}

ParagraphLines::ParagraphLines(const TextContexts& contexts, const Paragraph& paragraph, double width)
    : context_(contexts.of(paragraph)), paragraph_(paragraph), width_(width), text_(joined(paragraph.runs)) {}

std::optional<TextLine> ParagraphLines::next() {
    if (linesLeft_ == 0) {
        if (isFinished_) {
            return std::nullopt;
        }
        layOutStretch();
    }
    TextLine result = line(lines_.get());
    --linesLeft_;
    pango_layout_iter_next_line(lines_.get());
    return result;
}

void ParagraphLines::layOutStretch() {
    std::size_t bytes = stretchBytes;
    std::size_t end = stretchEnd(bytes);
    layout_ = stretch(end);
    while (pango_layout_get_line_count(layout_.get()) == 1 && end < text_.size() && bytes < mostStretchBytes) {
        bytes *= 2;
        end = stretchEnd(bytes);
        layout_ = stretch(end);
    }
    linesLeft_ = pango_layout_get_line_count(layout_.get());
    isFinished_ = end == text_.size();
    if (!isFinished_ && linesLeft_ > 1) {
        // The last line of a stretch is known only with what follows, so it begins the next one.
        --linesLeft_;
        position_ += static_cast<std::size_t>(pango_layout_get_line_readonly(layout_.get(), linesLeft_)->start_index);
    } else {
        position_ = end;
    }
    lines_.reset(pango_layout_get_iter(layout_.get()));
}

Pango::Layout ParagraphLines::stretch(std::size_t end) const {
    const ParagraphStyle& style = paragraph_.style;
    Pango::Layout layout(pango_layout_new(context_));
    pango_layout_set_font_description(layout.get(), fontDescription(paragraph_.runs.front().font).get());
    pango_layout_set_text(layout.get(), text_.data() + position_, static_cast<int>(end - position_));
    pango_layout_set_attributes(layout.get(), attributes(end).get());
    pango_layout_set_width(layout.get(), Pango::units(std::max(width_ - commonIndent(style), 1.0)));
    pango_layout_set_wrap(layout.get(), PANGO_WRAP_WORD_CHAR);
    pango_layout_set_auto_dir(layout.get(), FALSE);
    pango_layout_set_alignment(layout.get(), alignment(paragraph_));
    setIndent(layout.get(), style, position_ == 0);
    setTabs(layout.get(), style);
    return layout;
}

Pango::Attributes ParagraphLines::attributes(std::size_t end) const {
    Pango::Attributes list(pango_attr_list_new());
    // A word that is broken because it is wider than the line gets no hyphen.
    add(list.get(), pango_attr_insert_hyphens_new(FALSE), 0, end - position_);
    std::size_t start = 0;
    for (const Run& run : paragraph_.runs) {
        const std::size_t from = std::max(start, position_);
        start += run.text.size();
        const std::size_t to = std::min(start, end);
        if (from < to) {
            addRun(list.get(), run, from - position_, to - position_);
        }
    }
    return list;
}

std::size_t ParagraphLines::stretchEnd(std::size_t bytes) const {
    if (text_.size() - position_ <= bytes) {
        return text_.size();
    }
    std::size_t end = position_ + bytes;
    while (U8_IS_TRAIL(text_[end])) {
        --end;
    }
    return end;
}

TextLine ParagraphLines::line(PangoLayoutIter* iterator) const {
    PangoRectangle extents;
    pango_layout_iter_get_line_extents(iterator, nullptr, &extents);
    const double natural = Pango::points(extents.height);
    const double descent = Pango::points(extents.y + extents.height - pango_layout_iter_get_baseline(iterator));
    const double height = natural * paragraph_.style.lineHeightMultiple;
    const double indent = paragraph_.isRightToLeft ? 0 : commonIndent(paragraph_.style);
    return {layout_, pango_layout_iter_get_line_readonly(iterator), indent + Pango::points(extents.x), height - descent,
            height};
}

} // namespace varnic
