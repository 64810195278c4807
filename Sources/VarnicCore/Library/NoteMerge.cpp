#include "VarnicCore/Library/NoteMerge.h"

#include "VarnicCore/Models/CallProblem.h"
#include "VarnicCore/Models/PlaceholderBlocks.h"
#include "VarnicCore/Text/Pattern.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <unordered_map>
#include <utility>
#include <vector>

namespace varnic::NoteMerge {

namespace {

/// Whether all that a reader sees of the block is in the other: one that was typed further, for instance.
bool holds(const Block& block, Block less) {
    if (!block.text.contains(less.text) || !block.back.contains(less.back)) {
        return false;
    }
    less.text = block.text;
    less.back = block.back;
    return block == less;
}

/// Takes a change of theirs over into ours; false where both changed it in different ways.
template <typename Value>
bool take(const Value& base, Value& ours, const Value& theirs) {
    if (theirs == base || theirs == ours) {
        return true;
    }
    if (ours != base) {
        return false;
    }
    ours = theirs;
    return true;
}

bool takeCall(const std::optional<CallRecord>& base, std::optional<CallRecord>& ours,
              const std::optional<CallRecord>& theirs) {
    if (!base || !ours || !theirs) {
        return take(base, ours, theirs);
    }
    const bool areTaken =
        take(base->startedAt, ours->startedAt, theirs->startedAt) &&
        take(base->duration, ours->duration, theirs->duration) && take(base->source, ours->source, theirs->source) &&
        take(base->segments, ours->segments, theirs->segments) && take(base->digest, ours->digest, theirs->digest) &&
        take(base->audioFolder, ours->audioFolder, theirs->audioFolder) &&
        take(base->tracks, ours->tracks, theirs->tracks) && take(base->themName, ours->themName, theirs->themName) &&
        take(base->language, ours->language, theirs->language);
    // A call that one program has transcribed no longer waits for its transcript, whatever another says.
    const auto problemOf = [isWritten = !ours->segments.empty()](const CallRecord& call) {
        return isWritten && CallProblem::isQuit(call.problem) ? CallProblem::lossIn(call.problem) : call.problem;
    };
    ours->problem = problemOf(*ours);
    return areTaken && take(problemOf(*base), ours->problem, problemOf(*theirs));
}

/// By how much the start noted for a recovered recording may differ from the real one.
constexpr auto startTolerance = std::chrono::minutes(1);

/// Whether the call is the other one as it was before it was transcribed.
bool awaits(const CallRecord& call, const CallRecord& written) {
    const std::optional<std::string> loss = CallProblem::lossIn(call.problem);
    return call.segments.empty() && !call.digest && !written.segments.empty() &&
           std::chrono::abs(call.startedAt - written.startedAt) < startTolerance && call.source == written.source &&
           (call.themName.empty() || call.themName == written.themName) &&
           (!loss || loss == CallProblem::lossIn(written.problem));
}

/// Whether a call's title is one that it gets without a transcript: "Zoom · 14 Mar, 09:26", "Call on Sat 14 Mar".
bool isPrograms(const std::string& title) {
    static const Pattern form(R"(\A(?:[^·]* · \d{1,2} \S+, \d\d:\d\d|Call on \S+ \d{1,2} \S+)\z)");
    return title.empty() || form.isIn(icu::UnicodeString::fromUTF8(title));
}

using Blocks = std::vector<Block>;
using Index = std::unordered_map<Uuid, const Block*>;

Index indexOf(const Blocks& blocks) {
    Index index;
    for (const Block& block : blocks) {
        index.emplace(block.id, &block);
    }
    return index;
}

/// Null where there is none of the id.
const Block* find(const Index& index, const Uuid& id) {
    const auto found = index.find(id);
    return found == index.end() ? nullptr : found->second;
}

/// A block that both have; `base` is null where both have added it.
std::optional<Block> mergedBlock(const Block* base, const Block& ours, const Block& theirs) {
    if (theirs == ours || (base != nullptr && theirs == *base)) {
        return ours;
    }
    // Ahead of what follows, which would mistake a block that they have shortened for an older version.
    if (base != nullptr && ours == *base) {
        return theirs;
    }
    if (holds(ours, theirs)) {
        return ours;
    }
    return holds(theirs, ours) ? std::optional(theirs) : std::nullopt;
}

/// Whether a block that only one side has is the work of that side, rather than removed by the other.
bool stays(const Block* base, const Block& block) {
    return base == nullptr || block != *base;
}

std::optional<Blocks> mergedBlocks(const Blocks& base, const Blocks& ours, const Blocks& theirs) {
    const Index before = indexOf(base);
    const Index mine = indexOf(ours);
    const Index other = indexOf(theirs);
    if (before.size() != base.size() || mine.size() != ours.size() || other.size() != theirs.size()) {
        return std::nullopt; // an id that stands twice says nothing
    }
    Blocks result;
    for (const Block& block : ours) {
        if (const Block* const their = find(other, block.id)) {
            auto both = mergedBlock(find(before, block.id), block, *their);
            if (!both) {
                return std::nullopt;
            }
            result.push_back(std::move(*both));
        } else if (stays(find(before, block.id), block)) {
            result.push_back(block);
        }
    }
    // What only they have goes after what precedes it there.
    std::size_t place = 0;
    for (const Block& block : theirs) {
        const auto common = std::ranges::find(result, block.id, &Block::id);
        if (common != result.end()) {
            place = static_cast<std::size_t>(common - result.begin()) + 1;
        } else if (stays(find(before, block.id), block)) {
            result.insert(result.begin() + static_cast<std::ptrdiff_t>(place++), block);
        }
    }
    return result;
}

} // namespace

bool holds(const Note& note, const Note& less) {
    const bool awaitsWords = note.call && less.call && awaits(*less.call, *note.call);
    const bool hasTitle = note.title == less.title || (awaitsWords && isPrograms(less.title));
    return hasTitle && (awaitsWords || note.call == less.call) && note.pinned == less.pinned &&
           std::ranges::all_of(less.blocks, [&](const Block& block) {
               const auto same = std::ranges::find(note.blocks, block.id, &Block::id);
               return same == note.blocks.end() ? awaitsWords && isPlaceholder(block) : holds(*same, block);
           });
}

std::optional<Note> merged(const Note& base, const Note& ours, const Note& theirs) {
    Note result = ours;
    auto blocks = mergedBlocks(base.blocks, ours.blocks, theirs.blocks);
    if (!blocks || !take(base.title, result.title, theirs.title) || !take(base.pinned, result.pinned, theirs.pinned) ||
        !take(base.created, result.created, theirs.created) || !takeCall(base.call, result.call, theirs.call)) {
        return std::nullopt;
    }
    result.blocks = std::move(*blocks);
    result.keepOneBlock();
    result.modified = std::max(ours.modified, theirs.modified);
    return result;
}

} // namespace varnic::NoteMerge
