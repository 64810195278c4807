#pragma once

#include "VarnicCore/Export/PageSize.h"
#include "VarnicCore/Export/StyledText.h"

#include <string>

/// Styled text as a Word file (Office Open XML), whose headings are those of Word. Any thread.
namespace varnic::DocxWriter {

/// The file's bytes. The margin, in points, is that of all four sides. A table becomes lines with tabs between the
/// cells. Throws std::runtime_error where the archive cannot be made.
std::string write(const StyledText& text, PageSize size, double margin);

} // namespace varnic::DocxWriter
