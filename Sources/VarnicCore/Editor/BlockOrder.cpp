#include "VarnicCore/Editor/BlockOrder.h"

#include <algorithm>
#include <iterator>
#include <unordered_map>
#include <utility>

namespace varnic::BlockOrder {

std::unordered_set<std::size_t> longestRise(const std::vector<std::size_t>& indexes) {
    std::vector<std::size_t> ends; // of the best run of each length, as places in `indexes`
    std::vector<std::size_t> previous(indexes.size());
    for (std::size_t i = 0; i < indexes.size(); ++i) {
        const auto place =
            std::ranges::lower_bound(ends, indexes[i], {}, [&](std::size_t end) { return indexes[end]; });
        previous[i] = place == ends.begin() ? i : *std::prev(place);
        place == ends.end() ? ends.push_back(i) : void(*place = i);
    }
    std::unordered_set<std::size_t> rise;
    for (std::size_t length = ends.size(), i = length == 0 ? 0 : ends.back(); length > 0; --length, i = previous[i]) {
        rise.insert(indexes[i]);
    }
    return rise;
}

std::vector<Block> withArrivals(std::vector<Block> blocks, std::vector<Arrival> arrivals) {
    std::ranges::sort(arrivals, {}, &Arrival::index);
    std::unordered_set<Uuid> present;
    for (const Block& block : blocks) {
        present.insert(block.id);
    }
    std::unordered_map<Uuid, std::vector<std::size_t>> behind;
    std::unordered_map<Uuid, std::vector<std::size_t>> before;
    std::vector<std::size_t> first;
    std::vector<std::size_t> last;
    for (std::size_t i = 0; i < arrivals.size(); ++i) {
        const Arrival& arrival = arrivals[i];
        if (!arrival.previous) {
            first.push_back(i);
        } else if (present.contains(*arrival.previous)) {
            behind[*arrival.previous].push_back(i);
        } else if (arrival.next && present.contains(*arrival.next)) {
            before[*arrival.next].push_back(i);
        } else {
            last.push_back(i);
        }
        present.insert(arrival.block.id);
    }
    std::vector<Block> result;
    result.reserve(blocks.size() + arrivals.size());
    std::vector<std::size_t> waiting; // the next one last
    const auto wait = [&waiting](const std::vector<std::size_t>& group) {
        waiting.insert(waiting.end(), group.rbegin(), group.rend());
    };
    const auto waitFor = [&wait](const auto& groups, const Uuid& id) {
        if (const auto group = groups.find(id); group != groups.end()) {
            wait(group->second);
        }
    };
    const auto addWaiting = [&] {
        while (!waiting.empty()) {
            Block& block = arrivals[waiting.back()].block;
            waiting.pop_back();
            waitFor(behind, block.id);
            result.push_back(std::move(block));
        }
    };
    wait(first);
    addWaiting();
    for (Block& block : blocks) {
        const Uuid id = block.id;
        waitFor(before, id);
        addWaiting();
        result.push_back(std::move(block));
        waitFor(behind, id);
        addWaiting();
    }
    wait(last);
    addWaiting();
    return result;
}

} // namespace varnic::BlockOrder
