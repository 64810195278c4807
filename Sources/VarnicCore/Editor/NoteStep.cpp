#include "VarnicCore/Editor/NoteStep.h"

#include "VarnicCore/Editor/BlockOrder.h"

#include <algorithm>
#include <cstddef>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace varnic {

namespace {

using Blocks = std::vector<Block>;
using Indexes = std::unordered_map<Uuid, std::size_t>;

Indexes indexesOf(const Blocks& blocks, std::size_t begin, std::size_t end) {
    Indexes indexes;
    for (std::size_t i = begin; i < end; ++i) {
        indexes.emplace(blocks[i].id, i);
    }
    return indexes;
}

/// Where the two begin to differ, and the ends of what differs in each.
struct Differing {
    std::size_t begin = 0;
    std::size_t oneEnd = 0;
    std::size_t otherEnd = 0;
};

Differing differing(const Blocks& one, const Blocks& other) {
    const auto start = std::ranges::mismatch(one, other);
    Differing found{static_cast<std::size_t>(start.in1 - one.begin()), one.size(), other.size()};
    while (found.oneEnd > found.begin && found.otherEnd > found.begin &&
           one[found.oneEnd - 1] == other[found.otherEnd - 1]) {
        --found.oneEnd;
        --found.otherEnd;
    }
    return found;
}

/// Whether an id of the indexes also stands outside of what they are of.
bool reachBeyond(const Indexes& indexes, const Blocks& blocks, std::size_t begin, std::size_t end) {
    const auto isIn = [&indexes](const Block& block) { return indexes.contains(block.id); };
    return std::any_of(blocks.begin(), blocks.begin() + static_cast<std::ptrdiff_t>(begin), isIn) ||
           std::any_of(blocks.begin() + static_cast<std::ptrdiff_t>(end), blocks.end(), isIn);
}

/// Whether the step leaves the field alone, or the block still has what the step starts from.
template <typename Value>
bool fits(const Value& now, const Value& from, const Value& to) {
    return from == to || now == from;
}

/// Whether all that leads from the one form to the other can be done with the block as it is now. A change of kind
/// needs its words as they were, or it would hide some.
bool canChange(const Block& now, const Block& from, const Block& to) {
    const bool haveSameWords = now.text == from.text && now.back == from.back && now.rows == from.rows;
    return fits(now.kind, from.kind, to.kind) && (from.kind == to.kind || haveSameWords) &&
           fits(now.text, from.text, to.text) && fits(now.done, from.done, to.done) &&
           fits(now.back, from.back, to.back) && fits(now.rows, from.rows, to.rows) &&
           fits(now.card, from.card, to.card) && fits(now.owner, from.owner, to.owner) &&
           fits(now.due, from.due, to.due);
}

template <typename Value>
void take(Value& now, const Value& from, const Value& to) {
    if (from != to) {
        now = to;
    }
}

/// Whether the block changed.
bool change(Block& now, const Block& from, const Block& to) {
    if (from == to || !canChange(now, from, to)) {
        return false;
    }
    take(now.kind, from.kind, to.kind);
    take(now.text, from.text, to.text);
    take(now.done, from.done, to.done);
    take(now.back, from.back, to.back);
    take(now.rows, from.rows, to.rows);
    take(now.card, from.card, to.card);
    take(now.owner, from.owner, to.owner);
    take(now.due, from.due, to.due);
    take(now.fromDigest, from.fromDigest, to.fromDigest);
    return true;
}

std::size_t sizeOf(const Block& block) {
    std::size_t size = block.text.size() + block.back.size();
    for (const auto& row : block.rows) {
        size += sizeof(row);
        for (const std::string& cell : row) {
            size += sizeof(cell) + cell.size();
        }
    }
    return size;
}

} // namespace

std::optional<NoteStep> NoteStep::between(const Note& before, const Note& after) {
    NoteStep step;
    if (before.title != after.title) {
        step.title_ = TitleChange{before.title, after.title};
    }
    auto blocks = changes(before, after);
    if (!blocks) {
        return std::nullopt;
    }
    step.changes_ = std::move(*blocks);
    return step.title_ || !step.changes_.empty() ? std::optional(std::move(step)) : std::nullopt;
}

/// Nothing where an id stands twice.
std::optional<std::vector<NoteStep::Change>> NoteStep::changes(const Note& before, const Note& after) {
    const auto placed = [](const Blocks& blocks, std::size_t i) {
        return Placed{.block = blocks[i],
                      .index = i,
                      .previous = i > 0 ? std::optional(blocks[i - 1].id) : std::nullopt,
                      .next = i + 1 < blocks.size() ? std::optional(blocks[i + 1].id) : std::nullopt};
    };
    const auto [begin, wereEnd, areEnd] = differing(before.blocks, after.blocks);
    const Indexes were = indexesOf(before.blocks, begin, wereEnd);
    const Indexes are = indexesOf(after.blocks, begin, areEnd);
    if (were.size() != wereEnd - begin || are.size() != areEnd - begin ||
        reachBeyond(were, before.blocks, begin, wereEnd) || reachBeyond(are, after.blocks, begin, areEnd)) {
        return std::nullopt;
    }
    std::vector<std::size_t> order;
    for (std::size_t i = begin; i < areEnd; ++i) {
        if (const auto was = were.find(after.blocks[i].id); was != were.end()) {
            order.push_back(was->second);
        }
    }
    const std::unordered_set<std::size_t> stay = BlockOrder::longestRise(order);
    std::vector<Change> changes;
    for (std::size_t i = begin; i < areEnd; ++i) {
        const auto was = were.find(after.blocks[i].id);
        if (was == were.end()) {
            changes.push_back({.before = std::nullopt, .after = placed(after.blocks, i)});
        } else if (const bool isMoved = !stay.contains(was->second);
                   isMoved || before.blocks[was->second] != after.blocks[i]) {
            changes.push_back({placed(before.blocks, was->second), placed(after.blocks, i), isMoved});
        }
    }
    for (std::size_t i = begin; i < wereEnd; ++i) {
        if (!are.contains(before.blocks[i].id)) {
            changes.push_back({.before = placed(before.blocks, i), .after = std::nullopt});
        }
    }
    return changes;
}

bool NoteStep::apply(Direction direction, Note& note) const {
    const bool isBackward = direction == Direction::backward;
    const Side from = isBackward ? &Change::after : &Change::before;
    const Side to = isBackward ? &Change::before : &Change::after;
    bool isChanged = false;
    if (title_) {
        const std::string& now = isBackward ? title_->after : title_->before;
        const std::string& wanted = isBackward ? title_->before : title_->after;
        isChanged = note.title == now;
        note.title = isChanged ? wanted : note.title;
    }
    const Indexes present = indexesOf(note.blocks, 0, note.blocks.size());
    // Where words cannot go back to the block that they came from, the one that holds them stays.
    const bool mayRemove = std::ranges::all_of(changes_, [&](const Change& one) {
        const auto& source = one.*from;
        const auto& target = one.*to;
        if (!source || !target || source->block == target->block) {
            return true;
        }
        const auto found = present.find(source->block.id);
        return found != present.end() && canChange(note.blocks[found->second], source->block, target->block);
    });
    std::unordered_set<Uuid> leaving;
    std::vector<BlockOrder::Arrival> arrivals;
    for (const Change& one : changes_) {
        const auto& source = one.*from;
        const auto& target = one.*to;
        const auto found = present.find((source ? source : target)->block.id);
        Block* const block = found == present.end() ? nullptr : &note.blocks[found->second];
        if (source && block == nullptr) {
            continue; // removed elsewhere
        }
        if (!target) {
            if (mayRemove && *block == source->block) {
                leaving.insert(block->id);
            }
            continue;
        }
        if (source) {
            isChanged = change(*block, source->block, target->block) || isChanged;
        }
        if (source ? one.isMoved : block == nullptr) {
            arrivals.push_back(
                {block == nullptr ? target->block : *block, target->index, target->previous, target->next});
            leaving.insert(target->block.id);
        }
    }
    // Of ids that stand twice by now nothing tells which is meant.
    if (leaving.empty() || present.size() != note.blocks.size()) {
        return isChanged;
    }
    Blocks blocks = std::move(note.blocks);
    std::erase_if(blocks, [&leaving](const Block& block) { return leaving.contains(block.id); });
    note.blocks = BlockOrder::withArrivals(std::move(blocks), std::move(arrivals));
    note.keepOneBlock();
    return true;
}

std::optional<NoteStep::TextChange> NoteStep::textChange() const {
    if (title_) {
        return changes_.empty() ? std::optional(TextChange{.before = title_->before, .after = title_->after})
                                : std::nullopt;
    }
    if (changes_.size() != 1 || !changes_.front().before || !changes_.front().after || changes_.front().isMoved) {
        return std::nullopt;
    }
    Block before = changes_.front().before->block;
    const Block& after = changes_.front().after->block;
    TextChange text{.block = after.id};
    const auto take = [&text](TextChange::Field field, std::string& was, const std::string& is) {
        if (text.field == TextChange::Field::title && was != is) {
            text.field = field;
            text.before = std::exchange(was, is);
            text.after = is;
        }
    };
    take(TextChange::Field::text, before.text, after.text);
    take(TextChange::Field::back, before.back, after.back);
    for (std::size_t row = 0; row < std::min(before.rows.size(), after.rows.size()); ++row) {
        for (std::size_t column = 0; column < std::min(before.rows[row].size(), after.rows[row].size()); ++column) {
            if (text.field == TextChange::Field::title) {
                text.row = row;
                text.column = column;
                take(TextChange::Field::cell, before.rows[row][column], after.rows[row][column]);
            }
        }
    }
    before.fromDigest = after.fromDigest;
    return before == after ? std::optional(std::move(text)) : std::nullopt;
}

void NoteStep::append(NoteStep next) {
    if (title_) {
        title_->after = std::move(next.title_->after);
    } else {
        changes_.front().after = std::move(next.changes_.front().after);
    }
}

std::size_t NoteStep::size() const {
    std::size_t size = sizeof(NoteStep) + (title_ ? title_->before.size() + title_->after.size() : 0);
    for (const Change& one : changes_) {
        size +=
            sizeof(Change) + (one.before ? sizeOf(one.before->block) : 0) + (one.after ? sizeOf(one.after->block) : 0);
    }
    return size;
}

} // namespace varnic
