#pragma once

#include "VarnicCore/Library/NoteSearch.h"

#include <algorithm>
#include <vector>

namespace varnic {

/// Whether two searches of the same notes found the same.
inline bool areSame(const std::vector<NoteMatch>& a, const std::vector<NoteMatch>& b) {
    return std::ranges::equal(a, b, [](const NoteMatch& one, const NoteMatch& two) {
        return one.note == two.note && *one.hits == *two.hits;
    });
}

} // namespace varnic
