#pragma once

#include "VarnicCore/Export/ExportFormat.h"
#include "VarnicCore/Models/Note.h"

#include <string>
#include <vector>

/// What all formats write alike. For the implementation files of this folder.
namespace varnic::ExportParts {

/// What the file calls a speaker.
std::string nameOf(Speaker speaker, const Note& note, const ExportOptions& options);

/// The email that goes into the file; null for none.
const EmailDraft* email(const Note& note, const ExportOptions& options);

/// The turns of the transcript that goes into the file; empty for none.
std::vector<Segment> transcript(const Note& note, const ExportOptions& options);

} // namespace varnic::ExportParts
