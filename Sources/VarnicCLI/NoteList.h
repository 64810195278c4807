#pragma once

#include "VarnicCore/Models/Note.h"

#include <vector>

namespace varnic::cli {

/// Prints the notes, a line each with what names it, or as an array of JSON objects.
void printList(const std::vector<Note>& notes, bool json);

} // namespace varnic::cli
