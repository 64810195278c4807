#pragma once

#include "VarnicCore/Models/Block.h"

#include <cstddef>
#include <optional>
#include <unordered_set>
#include <vector>

/// Which blocks of a note have moved, and putting blocks back into their order. Any thread.
namespace varnic::BlockOrder {

/// The longest run of indexes, not next to each other, that rises: of blocks in a new order, those that need not move.
std::unordered_set<std::size_t> longestRise(const std::vector<std::size_t>& indexes);

/// A block on its way to a place.
struct Arrival {
    Block block;
    std::size_t index = 0;
    std::optional<Uuid> previous;
    std::optional<Uuid> next;
};

/// The blocks with those that arrive, each behind the block that it followed, or before its next one where that is
/// gone, or at the end. With all of a note's other blocks present, they stand as their indexes say.
std::vector<Block> withArrivals(std::vector<Block> blocks, std::vector<Arrival> arrivals);

} // namespace varnic::BlockOrder
