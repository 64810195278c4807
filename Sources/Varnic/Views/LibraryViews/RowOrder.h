#pragma once

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <map>
#include <utility>
#include <vector>

/// How to bring a list into another order. Pure.
namespace varnic::RowOrder {

/// Which of these numbers, all different, stand in the longest rising sequence that they hold.
std::vector<bool> longestRise(const std::vector<std::size_t>& numbers);

struct Move {
    std::size_t from = 0;
    /// Where the row stands afterwards.
    std::size_t to = 0;

    bool operator==(const Move&) const = default;
};

/// The fewest moves of one row each that bring `now` into the order that its elements have in `then`, which may hold
/// others too. Elements must be different.
template <typename Id>
std::vector<Move> moves(std::vector<Id> now, const std::vector<Id>& then) {
    std::map<Id, std::size_t> wanted;
    for (std::size_t i = 0; i < then.size(); ++i) {
        wanted.emplace(then[i], i);
    }
    std::vector<std::size_t> places;
    std::ranges::transform(now, std::back_inserter(places), [&](const Id& id) { return wanted.at(id); });
    const std::vector<bool> stays = longestRise(places);
    std::vector<std::size_t> moving;
    for (std::size_t i = 0; i < places.size(); ++i) {
        if (!stays[i]) {
            moving.push_back(places[i]);
        }
    }
    std::ranges::sort(moving);
    std::vector<Move> result;
    for (const std::size_t place : moving) {
        const auto from = std::ranges::find(places, place);
        const auto origin = from - places.begin();
        places.erase(from);
        // The moves go in rising order: whatever belongs before this one stands right by now, so the greatest of those
        // is the one to stand behind.
        std::ptrdiff_t target = 0;
        std::size_t greatest = 0;
        for (std::ptrdiff_t i = 0; i < std::ssize(places); ++i) {
            const std::size_t other = places[static_cast<std::size_t>(i)];
            if (other < place && other >= greatest) {
                greatest = other;
                target = i + 1;
            }
        }
        places.insert(std::next(places.begin(), target), place);
        if (target != origin) {
            result.push_back({static_cast<std::size_t>(origin), static_cast<std::size_t>(target)});
        }
    }
    return result;
}

} // namespace varnic::RowOrder
