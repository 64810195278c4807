#pragma once

#include "VarnicCore/Editor/TextPlace.h"

#include <optional>
#include <string>

namespace varnic {

class BlockField;
class BlocksModel;
class EditorSurface;

/// What is selected over several blocks of a note. What is selected within one text is its editor's own affair. Main
/// thread.
class EditorSelection {
public:
    /// An end of it: where it began, or where the caret is.
    struct End {
        Uuid block;
        /// UTF-16 units; 0 in a block without a line of text, the whole of which is selected.
        int position = 0;

        bool operator==(const End&) const = default;
    };

    explicit EditorSelection(EditorSurface& surface) : surface_(surface) {}

    [[nodiscard]] bool isActive() const { return anchor_.has_value(); }

    /// Selects from the one end to the other. Within one text that becomes its editor's selection. The focus goes where
    /// what is typed will stand, to the upper end: an input method loses what it composes when the focus moves.
    void set(const End& anchor, const End& head);
    void selectAll();
    /// Nothing is selected; the focus stays.
    void clear();

    /// Where it began; valid while it is active.
    [[nodiscard]] const End& anchor() const { return *anchor_; }

    [[nodiscard]] const End& head() const { return head_; }

    /// Valid while it is active.
    [[nodiscard]] TextSpan span() const;
    /// Shows in the field what of it is selected.
    void show(BlockField& field) const;

    /// The place in a note of an end.
    [[nodiscard]] static TextPlace placeOf(const End& end, const BlocksModel& blocks);
    [[nodiscard]] static End endAt(const TextPlace& place, const BlocksModel& blocks);

private:
    EditorSurface& surface_;
    std::optional<End> anchor_;
    End head_;
};

} // namespace varnic
