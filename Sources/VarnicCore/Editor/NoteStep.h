#pragma once

#include "VarnicCore/Models/Note.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace varnic {

/// What one edit did to a note's title and blocks: enough to undo it and to do it again, on that note or on what has
/// become of it since. Holds the blocks that changed or moved, and no others.
class NoteStep {
public:
    enum class Direction { backward, forward };

    /// What leads from the one note to the other; nothing where their titles and blocks are the same, or where an id
    /// stands twice in one of them.
    static std::optional<NoteStep> between(const Note& before, const Note& after);

    /// Undoes the step, or does it again. A block that is no longer as this step (or its undoing) left it, in what the
    /// step changed, stays as it is, and so do a block that is gone and one that is back. Whether anything changed.
    bool apply(Direction direction, Note& note) const;

    /// The one text that a step of typing changed.
    struct TextChange {
        /// Absent for the note's title.
        std::optional<Uuid> block = std::nullopt;
        enum class Field { title, text, back, cell } field = Field::title;
        std::size_t row = 0;
        std::size_t column = 0;
        std::string before;
        std::string after;

        [[nodiscard]] bool isOfSameText(const TextChange& other) const {
            return block == other.block && field == other.field && row == other.row && column == other.column;
        }
    };

    /// Nothing where more than one text changed, or something else than texts.
    [[nodiscard]] std::optional<TextChange> textChange() const;

    /// Makes this step lead to where the next one does, which must be of the same one text.
    void append(NoteStep next);

    /// About how much memory the step takes, in bytes.
    [[nodiscard]] std::size_t size() const;

private:
    /// A block with its place in one of the two notes.
    struct Placed {
        Block block;
        std::size_t index = 0;
        std::optional<Uuid> previous;
        std::optional<Uuid> next;
    };

    /// One block: made (without `before`), removed (without `after`), changed in its place or moved.
    struct Change {
        std::optional<Placed> before;
        std::optional<Placed> after;
        bool isMoved = false;
    };

    struct TitleChange {
        std::string before;
        std::string after;
    };

    using Side = std::optional<Placed> Change::*;

    static std::optional<std::vector<Change>> changes(const Note& before, const Note& after);

    std::optional<TitleChange> title_;
    std::vector<Change> changes_;
};

} // namespace varnic
