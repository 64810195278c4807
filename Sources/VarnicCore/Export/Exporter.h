#pragma once

#include "VarnicCore/Export/ExportFormat.h"
#include "VarnicCore/Models/Note.h"
#include "VarnicCore/Models/Region.h"

#include <string>

/// Turns a note into a file that leaves the application. Any thread.
namespace varnic::Exporter {

/// The display title as a file name, with the format's extension: no characters that a file system of any platform
/// refuses, at most 80 characters before the extension.
std::string fileName(const Note& note, ExportFormat format);

/// The facts about a call in one line: source, start in the region's words, length and what made the summary.
std::string metaLine(const CallRecord& call, const Region& region);

/// The note as Markdown that MarkdownImport reads back. Ends in exactly one newline.
std::string markdown(const Note& note, const ExportOptions& options, const Region& region);

} // namespace varnic::Exporter
