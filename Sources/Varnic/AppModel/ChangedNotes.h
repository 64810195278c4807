#pragma once

#include "VarnicCore/Models/Uuid.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace varnic {

/// The notes that have changed, come or gone; nothing where any of them may have.
using ChangedNotes = std::optional<std::vector<Uuid>>;

inline bool concerns(const ChangedNotes& changed, const Uuid& id) {
    return !changed || std::ranges::find(*changed, id) != changed->end();
}

} // namespace varnic
