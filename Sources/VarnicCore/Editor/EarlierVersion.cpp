#include "VarnicCore/Editor/EarlierVersion.h"

#include "VarnicCore/Models/CallProblem.h"
#include "VarnicCore/Models/PlaceholderBlocks.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
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

bool isHeading(const Block& block, std::string_view text) {
    return block.kind == BlockKind::heading && block.text == text;
}

/// What goes with the digest besides its own blocks: the heading of each section that was not there before, and the
/// blank block under that of the notes. All other such blocks are the user's.
std::vector<Uuid> framesOfDigest(const std::vector<Block>& present, const std::vector<Block>& earlier) {
    constexpr auto sections = std::to_array<std::string_view>({"Summary", "To-dos", notesHeading});
    std::vector<Uuid> frames;
    for (const std::string_view section : sections) {
        const auto isNew = [&](const Block& block) {
            return isHeading(block, section) && find(earlier, block.id) == nullptr;
        };
        const auto isFilled = [&](const Block& block, const Block& next) { return isNew(block) && next.fromDigest; };
        auto heading = std::ranges::adjacent_find(present, isFilled);
        if (heading == present.end()) {
            heading = std::ranges::find_if(present, isNew);
        }
        const bool wasThere =
            std::ranges::any_of(earlier, [&](const Block& block) { return isHeading(block, section); });
        if (wasThere || heading == present.end()) {
            continue;
        }
        frames.push_back(heading->id);
        const auto next = std::next(heading);
        if (section == notesHeading && next != present.end() && isBlank(*next) && find(earlier, next->id) == nullptr) {
            frames.push_back(next->id);
        }
    }
    return frames;
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
    // New blocks stay after those that they followed, and the blocks of the one digest replace those of the other.
    const std::vector<Uuid> frames = framesOfDigest(present, earlier);
    std::size_t place = 0;
    for (const Block& block : present) {
        const auto known = std::ranges::find(blocks, block.id, &Block::id);
        if (known != blocks.end()) {
            place = static_cast<std::size_t>(known - blocks.begin()) + 1;
        } else if (block.fromDigest) {
            const auto rest = blocks.begin() + static_cast<std::ptrdiff_t>(place);
            place += static_cast<std::size_t>(std::find_if_not(rest, blocks.end(), &isFromDigest) - rest);
        } else if (std::ranges::find(frames, block.id) == frames.end()) {
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
