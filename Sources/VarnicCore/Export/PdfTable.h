#pragma once

#include "VarnicCore/Export/PdfPages.h"

namespace varnic::PdfTable {

/// Draws the table from where the pages are. A row that no page holds is broken over pages, line by line.
void draw(PdfPages& pages, const StyledTable& table);

} // namespace varnic::PdfTable
