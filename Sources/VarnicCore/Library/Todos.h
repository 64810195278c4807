#pragma once

#include "VarnicCore/Library/SharedNotes.h"
#include "VarnicCore/Models/Block.h"
#include "VarnicCore/Models/Date.h"
#include "VarnicCore/Models/Note.h"
#include "VarnicCore/Models/Region.h"
#include "VarnicCore/Models/Uuid.h"

#include <optional>
#include <string>
#include <vector>

namespace varnic {

/// A to-do that is not ticked, with the note that it stands in.
struct OpenTodo {
    Uuid noteID;
    /// The note's display title.
    std::string noteTitle;
    Block block;
    /// The start of the day that the to-do's due phrase means; absent without one that is understood.
    std::optional<Date> dueDate;

    [[nodiscard]] const Uuid& id() const { return block.id; }

    bool operator==(const OpenTodo&) const = default;
};

namespace Todos {

/// Those of one note: nearest due date first, else in block order. Any thread.
std::vector<OpenTodo> of(const Note& note, const Region& region);

/// The open to-dos of all notes: nearest due date first, then those without a date; else the newest note first, in
/// block order. A due phrase counts from the start of the note's call, or from the note's creation. Any thread.
std::vector<OpenTodo> open(const SharedNotes& notes, const Region& region);

} // namespace Todos

} // namespace varnic
