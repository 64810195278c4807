#pragma once

#include "VarnicCore/Export/PageSize.h"
#include "VarnicCore/Export/StyledText.h"

#include <string>

/// Styled text as a PDF file: real text in subsets of its fonts. Pages are laid out and written one after the other.
/// Any thread.
namespace varnic::PdfWriter {

/// Text beyond so many pages is left out.
inline constexpr int mostPages = 500;

/// The file's bytes; empty where no PDF can be made. The margin, in points, is that of all four sides. There is at
/// least one page, and every page has its number at the bottom.
std::string write(const StyledText& text, PageSize size, double margin);

} // namespace varnic::PdfWriter
