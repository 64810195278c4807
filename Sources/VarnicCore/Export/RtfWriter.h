#pragma once

#include "VarnicCore/Export/PageSize.h"
#include "VarnicCore/Export/StyledText.h"

#include <string>

/// Styled text as a file in the Rich Text Format 1.9: plain ASCII, other characters escaped. Any thread.
namespace varnic::RtfWriter {

/// The file's bytes. The margin, in points, is that of all four sides.
std::string write(const StyledText& text, PageSize size, double margin);

} // namespace varnic::RtfWriter
