#include "VarnicCore/Editor/NoteHistory.h"

#include "VarnicCore/Text/Unicode.h"

#include <algorithm>
#include <chrono>
#include <numeric>
#include <string_view>
#include <utility>

namespace varnic {

namespace {

using namespace std::chrono_literals;

/// Typing that pauses for longer is another step.
constexpr auto typingPause = 1s;
constexpr std::size_t mostSteps = 500;
/// In bytes; the last step is kept whatever its size.
constexpr std::size_t mostMemory = 16UL << 20U;

/// What an edit of one text took away and what it put in its place.
struct Replacement {
    std::string_view removed;
    std::string_view inserted;
};

Replacement replacement(const NoteStep::TextChange& text) {
    const std::string_view before = text.before;
    const std::string_view after = text.after;
    const auto start = static_cast<std::size_t>(std::ranges::mismatch(before, after).in1 - before.begin());
    const std::size_t most = std::min(before.size(), after.size()) - start;
    std::size_t same = 0;
    while (same < most && before[before.size() - same - 1] == after[after.size() - same - 1]) {
        ++same;
    }
    return {before.substr(start, before.size() - same - start), after.substr(start, after.size() - same - start)};
}

/// Whether `next` begins a new word behind what was typed last.
bool beginsWord(std::string_view last, std::string_view next) {
    return Unicode::trimEnd(last, Unicode::isSpace).size() < last.size() && Unicode::trim(next).data() == next.data() &&
           !Unicode::trim(next).empty();
}

bool areApart(const std::optional<TextPlace>& one, const std::optional<TextPlace>& other) {
    return one && other && *one != *other;
}

} // namespace

void NoteHistory::record(const Note& before, const Note& after, EditKind kind, std::optional<TextPlace> caretBefore,
                         std::optional<TextPlace> caretAfter, Date now) {
    auto step = NoteStep::between(before, after);
    if (!step) {
        return;
    }
    Edit edit{
        .step = std::move(*step), .caretBefore = caretBefore, .caretAfter = caretAfter, .time = now, .typing = {}};
    if (kind == EditKind::typing) {
        edit.typing = edit.step.textChange();
    }
    undone_.clear();
    if (!goOn(edit)) {
        edit.size = edit.step.size();
        done_.push_back(std::move(edit));
        forgetOldest();
    }
}

/// Makes the edit a part of the last one, if it is one.
bool NoteHistory::goOn(Edit& edit) {
    if (done_.empty() || !done_.back().typing || !edit.typing) {
        return false;
    }
    Edit& last = done_.back();
    const Replacement did = replacement(*last.typing);
    const Replacement does = replacement(*edit.typing);
    const bool isSameDirection = did.inserted.empty() ? does.inserted.empty() : does.removed.empty();
    if (!edit.typing->isOfSameText(*last.typing) || edit.typing->before != last.typing->after ||
        edit.time - last.time > typingPause || areApart(last.caretAfter, edit.caretBefore) || !isSameDirection ||
        beginsWord(did.inserted, does.inserted)) {
        return false;
    }
    last.step.append(std::move(edit.step));
    last.size = last.step.size();
    last.caretAfter = edit.caretAfter;
    last.time = edit.time;
    last.typing = std::move(edit.typing);
    return true;
}

void NoteHistory::forgetOldest() {
    auto memory = std::accumulate(done_.begin(), done_.end(), std::size_t{0},
                                  [](std::size_t sum, const Edit& edit) { return sum + edit.size; });
    while (done_.size() > 1 && (done_.size() > mostSteps || memory > mostMemory)) {
        memory -= done_.front().size;
        done_.pop_front();
    }
}

std::optional<NoteHistory::Restored> NoteHistory::undo(const Note& current, Date now) {
    while (!done_.empty()) {
        Edit edit = std::move(done_.back());
        done_.pop_back();
        auto restored = restore(current, edit, NoteStep::Direction::backward, now);
        undone_.push_back(std::move(edit));
        if (restored) {
            endTyping();
            return restored;
        }
    }
    return std::nullopt;
}

std::optional<NoteHistory::Restored> NoteHistory::redo(const Note& current, Date now) {
    while (!undone_.empty()) {
        Edit edit = std::move(undone_.back());
        undone_.pop_back();
        auto restored = restore(current, edit, NoteStep::Direction::forward, now);
        done_.push_back(std::move(edit));
        if (restored) {
            return restored;
        }
    }
    return std::nullopt;
}

/// What is typed next is another step.
void NoteHistory::endTyping() {
    if (!done_.empty()) {
        done_.back().typing.reset();
    }
}

/// Nothing where nothing of the edit could be done.
std::optional<NoteHistory::Restored> NoteHistory::restore(const Note& current, Edit& edit,
                                                          NoteStep::Direction direction, Date now) {
    edit.typing.reset();
    Restored restored{.note = current, .caret = std::nullopt};
    if (!edit.step.apply(direction, restored.note)) {
        return std::nullopt;
    }
    restored.note.modified = now;
    const auto& caret = direction == NoteStep::Direction::backward ? edit.caretBefore : edit.caretAfter;
    if (caret) {
        const auto block = std::ranges::find(restored.note.blocks, caret->block, &Block::id);
        if (block != restored.note.blocks.end()) {
            restored.caret = fitted(*caret, *block);
        }
    }
    return restored;
}

} // namespace varnic
