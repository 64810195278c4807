#pragma once

#include "VarnicCore/Editor/TextPlace.h"
#include "VarnicCore/Export/ExportFormat.h"
#include "VarnicCore/Models/Date.h"
#include "VarnicCore/Models/Note.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Editing that treats a note's blocks as one continuous text. Spans may be given in either order and with any offsets;
/// a span or a place in an unknown block holds nothing and changes nothing. What changes a block sets the note's
/// `modified` to `now`, and a digest's block whose text changes becomes the user's own, as with NoteEditor. Pure but
/// for fresh ids. Any thread.
namespace varnic::BlockSelection {

// What is copied.

/// The blocks of the span, those at its ends with the part of their text that lies in it. Where it goes over several
/// blocks, one at an end of which it holds no text is left out.
std::vector<Block> blocks(const TextSpan& span, const Note& note);

/// The span as the export writes it (text/markdown), without a newline at the end. Part or all of one block's text is
/// that text alone. Of the options only the user's name counts.
std::string markdown(const TextSpan& span, const Note& note, const ExportOptions& options);

/// The span for programs that know no Markdown (text/plain): a line a block with its list mark or tick, cells between
/// tabs, cards as they are typed. `paste` makes the same blocks of it, but for headings.
std::string plainText(const TextSpan& span, const Note& note);

// What changes the note. Each gives where the caret goes.

/// Removes what the span holds. The first block keeps its kind and takes what is left of the last one's text; blocks
/// without a line of text go whole. An empty paragraph is left where the caret would have nowhere to go.
TextPlace remove(const TextSpan& span, Note& note, Date now);

/// Return in a text. Its end: as NoteEditor::pressReturn. Its beginning: an empty block of that kind goes before it.
/// Within it: the rest goes into the block that pressReturn makes. Gives the block at whose start the caret goes, and
/// nothing for an unknown block.
std::optional<Uuid> split(const TextPlace& place, Note& note, Date now);

/// Backspace at the start of a text. A block that is not a paragraph becomes one; a paragraph is joined to the text
/// before it, or takes the divider before it away. A card or table before it stays and is where the focus goes; a card
/// itself, and the first paragraph, stay as they are, which gives nothing.
std::optional<TextPlace> joinWithPrevious(Uuid id, Note& note, Date now);

/// Delete at the end of a text: takes the text of the next block over, or the divider away. A card or table stays and
/// is where the focus goes. An empty paragraph goes instead, so that what follows keeps its kind. Nothing after the
/// last block.
std::optional<TextPlace> joinWithNext(Uuid id, Note& note, Date now);

/// Puts a text in at a place, of any size and of any bytes. One line goes into the text there, as it stands; several
/// lines become blocks. `isMarkdown` reads them as MarkdownImport does; else a line is what typing it would make, and
/// lines with as many tabs each are a table. The first of them and the text before the place, and the last and the text
/// behind it, are joined where both are of one kind or the pasted is a paragraph. Plain lines go on with a list. An
/// empty block takes the first one's kind; a card or table, behind which they go, stays whole. Blank lines make no
/// block.
TextPlace paste(std::string_view text, bool isMarkdown, const TextPlace& place, Note& note, Date now);

/// Puts copied blocks in, as several lines of text; they get fresh ids and no longer belong to a digest, and keep all
/// else (a card's schedule, who owes a to-do).
TextPlace paste(std::vector<Block> blocks, const TextPlace& place, Note& note, Date now);

/// Moves the blocks that the span touches by a number of places, as far as the note goes.
void move(const TextSpan& span, int offset, Note& note, Date now);

} // namespace varnic::BlockSelection
