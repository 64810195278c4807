#pragma once

#include "VarnicCore/Editor/TextPlace.h"
#include "VarnicCore/Export/ExportFormat.h"
#include "VarnicCore/Models/Date.h"
#include "VarnicCore/Models/Note.h"

#include <QClipboard>

/// Blocks on the clipboard: as Markdown and as plain text for other programs, and whole for this one. Main thread.
namespace varnic::EditorClipboard {

void copy(QClipboard::Mode mode, const Note& note, const TextSpan& span, const ExportOptions& options);

/// Whether there is more on the clipboard than a line of text, or with `anything`, whether there is text at all.
bool holdsBlocks(QClipboard::Mode mode, bool anything);

/// Puts what is on the clipboard into the note; gives where the caret goes.
TextPlace paste(QClipboard::Mode mode, const TextPlace& place, Note& note, Date now);

} // namespace varnic::EditorClipboard
