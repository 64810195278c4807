#pragma once

#include "VarnicCore/Models/Note.h"

#include <string>
#include <string_view>

/// The words of this platform in the system's own texts, put in where such a text is shown, copied or exported. Stored
/// data keeps the original, and what people said or wrote is never touched.
namespace varnic::Wording {

/// One of the system's own texts as a user of this platform should read it.
std::string shown(std::string_view text);

/// The note with the system's own texts in it (who made the digest, what went wrong) as `shown`.
Note shown(Note note);

} // namespace varnic::Wording
