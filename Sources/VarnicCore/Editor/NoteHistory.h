#pragma once

#include "VarnicCore/Editor/NoteStep.h"
#include "VarnicCore/Editor/TextPlace.h"
#include "VarnicCore/Models/Date.h"
#include "VarnicCore/Models/Note.h"

#include <cstddef>
#include <deque>
#include <optional>
#include <vector>

namespace varnic {

enum class EditKind {
    /// Letters typed or deleted; those of one word are one step.
    typing,
    /// Whatever else: one step each.
    structure,
};

/// What the user did to a note's title and blocks, to be undone and redone. It holds the blocks that changed, not
/// notes: a step is undone on the note as it is by then, and what others (another program, a new digest) have changed
/// since stays. Of a step that can only be undone in part, the rest is passed over; a step of which nothing is left is
/// passed over whole. One thread at a time.
class NoteHistory {
public:
    struct Restored {
        Note note;
        /// Where the caret was, if the step knew and its block is there.
        std::optional<TextPlace> caret;
    };

    /// Takes an edit in; there is nothing to redo any more. Typing goes on with the last step where it is in the same
    /// text, at the caret, of the same direction, within a second, and no new word begins. An edit of neither title nor
    /// blocks is none. Notes in which an id stands twice have no history.
    void record(const Note& before, const Note& after, EditKind kind, std::optional<TextPlace> caretBefore,
                std::optional<TextPlace> caretAfter, Date now);

    /// The note without its last edit, or with the next one again; modified at `now`. Nothing where there is none.
    std::optional<Restored> undo(const Note& current, Date now);
    std::optional<Restored> redo(const Note& current, Date now);

    [[nodiscard]] bool canUndo() const { return !done_.empty(); }

    [[nodiscard]] bool canRedo() const { return !undone_.empty(); }

private:
    struct Edit {
        NoteStep step;
        std::optional<TextPlace> caretBefore;
        std::optional<TextPlace> caretAfter;
        Date time;
        /// Of the step, in bytes.
        std::size_t size = 0;
        /// Present for typing that the next letter may go on with.
        std::optional<NoteStep::TextChange> typing;
    };

    bool goOn(Edit& edit);
    static std::optional<Restored> restore(const Note& current, Edit& edit, NoteStep::Direction direction, Date now);
    void forgetOldest();
    void endTyping();

    /// The last edit last.
    std::deque<Edit> done_;
    /// The next edit to redo last.
    std::vector<Edit> undone_;
};

} // namespace varnic
