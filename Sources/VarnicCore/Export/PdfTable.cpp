#include "VarnicCore/Export/PdfTable.h"

#include <algorithm>
#include <deque>
#include <functional>
#include <numeric>
#include <utility>
#include <vector>

namespace varnic::PdfTable {

namespace {

void setColour(cairo_t* canvas, const Colour& colour) {
    cairo_set_source_rgb(canvas, colour.red, colour.green, colour.blue);
}

double heightOf(const TextLine& line) {
    return line.height;
}

/// The lines of a cell that are not drawn yet; those that are laid out already wait in a queue.
class Cell {
public:
    Cell(const TextContexts& contexts, const Paragraph& paragraph, double width) : lines_(contexts, paragraph, width) {}

    /// Lays out lines until they are higher than this, or there are no more.
    void layOut(double height) {
        while (!isLaidOut_ && waitingHeight_ <= height) {
            if (auto line = lines_.next()) {
                waitingHeight_ += line->height;
                waiting_.push_back(std::move(*line));
            } else {
                isLaidOut_ = true;
            }
        }
    }

    [[nodiscard]] double waitingHeight() const { return waitingHeight_; }

    [[nodiscard]] double firstHeight() const { return waiting_.empty() ? 0 : waiting_.front().height; }

    [[nodiscard]] bool isDone() const { return isLaidOut_ && waiting_.empty(); }

    /// Takes the waiting lines that fit.
    std::deque<TextLine> take(double height) {
        std::deque<TextLine> taken;
        while (!waiting_.empty() && waiting_.front().height <= height) {
            height -= waiting_.front().height;
            waitingHeight_ -= waiting_.front().height;
            taken.push_back(std::move(waiting_.front()));
            waiting_.pop_front();
        }
        return taken;
    }

private:
    ParagraphLines lines_;
    std::deque<TextLine> waiting_;
    double waitingHeight_ = 0;
    bool isLaidOut_ = false;
};

/// One row: draws itself onto one page or, piece by piece, onto several.
class Row {
public:
    Row(PdfPages& pages, const std::vector<Paragraph>& cells, bool isHeader)
        : pages_(pages), isHeader_(isHeader), columnWidth_(pages.width() / static_cast<double>(cells.size())),
          padding_(std::min(StyledTable::padding, columnWidth_ / 4)) {
        for (const Paragraph& cell : cells) {
            cells_.emplace_back(pages.contexts(), cell, columnWidth_ - 2 * padding_);
        }
    }

    void draw() {
        do {
            for (Cell& cell : cells_) {
                cell.layOut(pages_.fullHeight());
            }
            if (!pages_.makeRoom(leastRoom())) {
                return;
            }
            drawPiece();
        } while (!std::ranges::all_of(cells_, &Cell::isDone));
    }

private:
    [[nodiscard]] double padded(double height) const { return height + 2 * padding_; }

    /// What the next piece needs: the whole rest where a page can hold it, else one line of each cell.
    [[nodiscard]] double leastRoom() const {
        const double whole = padded(highest(&Cell::waitingHeight));
        return whole <= pages_.fullHeight() ? whole : padded(highest(&Cell::firstHeight));
    }

    [[nodiscard]] double highest(double (Cell::*height)() const) const {
        double result = 0;
        for (const Cell& cell : cells_) {
            result = std::max(result, (cell.*height)());
        }
        return result;
    }

    void drawPiece() {
        std::vector<std::deque<TextLine>> pieces;
        double height = 0;
        // A page with less room than a line takes one all the same.
        const double room = std::max(pages_.room() - 2 * padding_, highest(&Cell::firstHeight));
        for (Cell& cell : cells_) {
            const auto& piece = pieces.emplace_back(cell.take(room));
            height = std::max(height, std::transform_reduce(piece.begin(), piece.end(), 0.0, std::plus(), heightOf));
        }
        for (std::size_t column = 0; column < pieces.size(); ++column) {
            const double left = pages_.left() + columnWidth_ * static_cast<double>(column);
            drawBox(left, padded(height));
            drawLines(pieces[column], left + padding_);
        }
        pages_.advance(padded(height));
    }

    void drawBox(double left, double height) const {
        cairo_t* const canvas = pages_.canvas();
        cairo_rectangle(canvas, left, pages_.y(), columnWidth_, height);
        if (isHeader_) {
            setColour(canvas, StyledTable::headerBackground);
            cairo_fill_preserve(canvas);
        }
        setColour(canvas, StyledTable::border);
        cairo_set_line_width(canvas, StyledTable::borderWidth);
        cairo_stroke(canvas);
    }

    void drawLines(const std::deque<TextLine>& lines, double left) const {
        double top = pages_.y() + padding_;
        for (const TextLine& line : lines) {
            line.draw(pages_.canvas(), left, top);
            top += line.height;
        }
    }

    PdfPages& pages_;
    bool isHeader_;
    double columnWidth_;
    double padding_;
    std::deque<Cell> cells_;
};

} // namespace

void draw(PdfPages& pages, const StyledTable& table) {
    for (const auto& row : table.rows) {
        if (pages.isFull()) {
            return;
        }
        Row(pages, row, &row == &table.rows.front()).draw();
    }
}

} // namespace varnic::PdfTable
