#pragma once

#include "VarnicCore/Models/Call.h"
#include "VarnicCore/Models/Date.h"
#include "VarnicCore/Models/Note.h"
#include "VarnicCore/Models/Region.h"
#include "VarnicCore/Text/NounTagger.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

/// The rules of editing: the only code that changes a note's blocks. Every function that changes a block sets the
/// note's `modified` to `now`; an unknown block id changes nothing and gives no result. Pure but for fresh ids.
namespace varnic::NoteEditor {

/// A block was inserted; focus goes to it.
struct NewBlock {
    Uuid id;
    bool operator==(const NewBlock&) const = default;
};

/// An empty list item turned into a paragraph; focus stays on it.
struct LeftList {
    Uuid id;
    bool operator==(const LeftList&) const = default;
};

/// What pressing Return did.
using ReturnResult = std::variant<NewBlock, LeftList>;

/// Puts a block after the block `after`, or at the end where that is absent or unknown.
void insert(Block block, std::optional<Uuid> after, Note& note, Date now);

/// Removes a block and gives the one to focus: the block before it, or the first.
std::optional<Uuid> remove(Uuid id, Note& note, Date now);

/// Moves a block by a number of places, as far as the note goes.
void move(Uuid id, int offset, Note& note, Date now);

/// Runs the change on a block. A block from a digest whose text changes becomes the user's own.
void update(Uuid id, Note& note, Date now, const std::function<void(Block&)>& change);

/// Turns a block into another kind; its words stay as far as the kind can hold them.
void setKind(BlockKind kind, Uuid id, Note& note, Date now);

/// Return in a block: a new block after it, or the end of a list.
std::optional<ReturnResult> pressReturn(Uuid id, Note& note, Date now);

/// The delete key in an empty block: takes its form away first, then the block. Gives the block to focus.
std::optional<Uuid> pressDeleteWhenEmpty(Uuid id, Note& note, Date now);

/// Turns typed shortcuts ("# ", "- [ ] ", "front :: back", "---") into the block they mean. True when it did.
bool applyShortcut(Uuid id, Note& note, Date now);

/// Table cells and their shape; rows and columns from 0, those out of range are ignored.
void setCell(Uuid table, std::size_t row, std::size_t column, std::string text, Note& note, Date now);
void addRow(Uuid table, Note& note, Date now);
void addColumn(Uuid table, Note& note, Date now);
void removeRow(std::size_t index, Uuid table, Note& note, Date now);
void removeColumn(std::size_t index, Uuid table, Note& note, Date now);

/// The note's blocks as text, without its title.
std::string plainText(const Note& note);
/// Words of the title and the blocks.
std::size_t wordCount(const Note& note);
/// Minutes at 230 words a minute, rounded up.
std::size_t readingMinutes(const Note& note);

/// The note of a finished call, with the digest's sections when there is one.
Note callNote(Uuid id, CallRecord call, const std::optional<CallDigest>& digest, const Region& region, Date now,
              const NounTagger& tagger = englishNounTagger());

/// Puts a digest on a note: title (when `replaceTitle` or there is none), summary and to-dos. To-dos that the user
/// ticked and blocks that the user wrote or reworded stay.
void apply(const CallDigest& digest, Note& note, bool replaceTitle, Date now);

/// Gives the other party of a call another name, by which a follow-up email that greets them by the old one does too.
/// Nothing in a note without a call.
void renameThem(std::string name, Note& note);

} // namespace varnic::NoteEditor
