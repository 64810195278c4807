#pragma once

#include "VarnicCore/Models/Note.h"

namespace varnic {

/// The present note of a call with the transcript and the summary of an earlier version, and with the title and the
/// digest's blocks that went with them. What the user has written, ticked or taken away since stays so. Any thread.
Note withEarlierDigest(const Note& present, const Note& earlier, Date now);

} // namespace varnic
