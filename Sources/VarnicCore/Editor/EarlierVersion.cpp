#include "VarnicCore/Editor/EarlierVersion.h"

#include "VarnicCore/Pipeline/CallProblem.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace varnic {

namespace {

const Block* find(const std::vector<Block>& blocks, const Uuid& id) {
    const auto found = std::ranges::find(blocks, id, &Block::id);
    return found == blocks.end() ? nullptr : &*found;
}

bool isFromDigest(const Block& block) {
    return block.fromDigest;
}

/// Whether a block may have come with the digest that goes: one of its own, a heading of its sections, or a blank.
bool isOfDigest(const Block& block) {
    constexpr auto headings = std::to_array<std::string_view>({"Summary", "To-dos", "Notes"});
    return block.fromDigest ||
           (block.kind == BlockKind::heading && std::ranges::find(headings, block.text) != headings.end()) ||
           (block.kind == BlockKind::paragraph && block.text.empty());
}

std::vector<Block> merged(const std::vector<Block>& present, const std::vector<Block>& earlier) {
    std::vector<Block> blocks;
    for (const Block& block : earlier) {
        if (const Block* now = find(present, block.id)) {
            blocks.push_back(*now);
        } else if (block.fromDigest) {
            blocks.push_back(block);
        }
    }
    // What is new stays behind what it stood behind, and the blocks of the one digest stand for those of the other.
    std::size_t place = 0;
    for (const Block& block : present) {
        const auto known = std::ranges::find(blocks, block.id, &Block::id);
        if (known != blocks.end()) {
            place = static_cast<std::size_t>(known - blocks.begin()) + 1;
        } else if (block.fromDigest) {
            const auto rest = blocks.begin() + static_cast<std::ptrdiff_t>(place);
            place += static_cast<std::size_t>(std::find_if_not(rest, blocks.end(), &isFromDigest) - rest);
        } else if (!isOfDigest(block)) {
            blocks.insert(blocks.begin() + static_cast<std::ptrdiff_t>(place), block);
            ++place;
        }
    }
    if (blocks.empty()) {
        blocks.emplace_back();
    }
    return blocks;
}

} // namespace

Note withEarlierDigest(const Note& present, const Note& earlier, Date now) {
    if (!present.call || !earlier.call) {
        return present;
    }
    Note note = present;
    if (present.call->digest && present.title == present.call->digest->title) {
        note.title = earlier.title;
    }
    note.call->segments = earlier.call->segments;
    note.call->digest = earlier.call->digest;
    note.call->problem = CallProblem::joined(CallProblem::withoutLoss(earlier.call->problem),
                                             CallProblem::lossIn(present.call->problem));
    note.blocks = merged(present.blocks, earlier.blocks);
    note.modified = now;
    return note;
}

} // namespace varnic
