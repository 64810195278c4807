#pragma once

#include "VarnicCore/Export/ExportFormat.h"
#include "VarnicCore/Export/PageSize.h"
#include "VarnicCore/Export/StyledText.h"
#include "VarnicCore/Models/Note.h"
#include "VarnicCore/Models/Region.h"

#include <string>
#include <vector>

/// Turns a note into a file that leaves the application. Any thread.
namespace varnic::Exporter {

/// The display title as a file name, with the format's extension: no characters that a file system of any platform
/// refuses, at most 80 characters before the extension.
std::string fileName(const Note& note, ExportFormat format);

/// `fileName`, cut at a character where it has more bytes than file systems take, and a few spared for a longer
/// extension.
std::string fittingFileName(const Note& note, ExportFormat format);

/// The facts about a call in one line: source, start in the region's words, length and what made the summary.
std::string metaLine(const CallRecord& call, const Region& region);

/// The note as Markdown that MarkdownImport reads back. Ends in exactly one newline.
std::string markdown(const Note& note, const ExportOptions& options, const Region& region);

/// Some blocks of the note as they stand in that file, without a newline at the end.
std::string markdown(const std::vector<Block>& blocks, const Note& note, const ExportOptions& options);

/// The note as the bytes of a file. The same note gives the same bytes, where the same fonts are installed. Throws
/// std::runtime_error where a Word file cannot be put together.
std::string data(const Note& note, ExportFormat format, const ExportOptions& options, const Region& region);

/// The note as the one styled text that PDF, RTF and Word files are written from. For Word, tables are lines with
/// tabs between the cells.
StyledText attributed(const Note& note, const ExportOptions& options, bool forWord, const Region& region);

/// The text on pages, with numbers from 1: at most 500 pages, what is beyond them is left out. Empty where no PDF can
/// be made. The margin, in points, is that of all four sides.
std::string pdf(const StyledText& text, PageSize size, double margin);

/// The text font at a size in points.
Font serif(double size, bool bold = false, bool italic = false);

/// A table whose first row is in `bold`, with a little room after it; empty when no row has a cell. More columns than
/// Word's 63 become lines with tabs between the cells, as a page has no room for them either.
StyledText table(const std::vector<std::vector<std::string>>& rows, const Font& font, const Font& bold,
                 const Colour& colour);

inline constexpr Colour ink{0.12, 0.14, 0.2};
/// Secondary text.
inline constexpr Colour muted{0.42, 0.44, 0.5};
/// What the user said or owns.
inline constexpr Colour you{0.18, 0.31, 0.66};
/// What the other party said or owns.
inline constexpr Colour them{0.69, 0.28, 0.18};

} // namespace varnic::Exporter
