// What editing costs in a note of 2,000 blocks, without the views: a key as AppModel has it done (a copy of the note,
// the change, the comparison, the step for undo) beside that copy alone, the larger edits, and undoing them.

#include "VarnicCore/Editor/BlockSelection.h"
#include "VarnicCore/Editor/NoteEditor.h"
#include "VarnicCore/Editor/NoteHistory.h"

#include <benchmark/benchmark.h>

#include <array>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace varnic;

constexpr std::size_t blockCount = 2'000;
constexpr std::size_t middle = blockCount / 2;

Note longNote() {
    constexpr auto kinds = std::to_array({BlockKind::paragraph, BlockKind::todo, BlockKind::bullet});
    std::vector<Block> blocks(blockCount);
    for (std::size_t i = 0; i < blockCount; ++i) {
        blocks[i].kind = kinds.at(i % kinds.size());
        blocks[i].text = std::string(80, 'x') + std::to_string(i);
    }
    return {Uuid::random(), "Long", Date{}, std::move(blocks)};
}

void copyOfTheNote(benchmark::State& state) {
    const Note note = longNote();
    for (auto _ : state) {
        Note copy = note;
        benchmark::DoNotOptimize(copy);
    }
}

/// The note after the change, with the step recorded.
template <typename Change>
Note edited(const Note& before, NoteHistory& history, EditKind kind, const Change& change) {
    Note after = before;
    change(after);
    history.record(before, after, kind, std::nullopt, std::nullopt, Date{});
    benchmark::DoNotOptimize(after == before);
    return after;
}

void letter(benchmark::State& state) {
    Note note = longNote();
    NoteHistory history;
    for (auto _ : state) {
        note = edited(note, history, EditKind::typing, [](Note& typed) {
            NoteEditor::update(typed.blocks[middle].id, typed, Date{}, [](Block& block) {
                block.text.size() > 1'000 ? block.text.clear() : block.text.push_back('a');
            });
        });
    }
}

/// The edit and its undoing.
template <typename Change>
void editAndUndo(benchmark::State& state, const Change& change) {
    const Note note = longNote();
    for (auto _ : state) {
        NoteHistory history;
        const Note after = edited(note, history, EditKind::structure, change);
        benchmark::DoNotOptimize(history.undo(after, Date{}));
    }
}

void split(benchmark::State& state) {
    editAndUndo(state, [](Note& note) { BlockSelection::split({note.blocks[middle].id, 40}, note, Date{}); });
}

void moveFromTopToBottom(benchmark::State& state) {
    editAndUndo(state, [](Note& note) { NoteEditor::move(note.blocks[0].id, blockCount, note, Date{}); });
}

void removeEverything(benchmark::State& state) {
    editAndUndo(state, [](Note& note) { BlockSelection::remove(everything(note), note, Date{}); });
}

void pasteOfEverything(benchmark::State& state) {
    const Note copied = longNote();
    const std::string text = BlockSelection::markdown(everything(copied), copied, {});
    editAndUndo(state,
                [&text](Note& note) { BlockSelection::paste(text, true, {note.blocks[middle].id, 40}, note, Date{}); });
}

BENCHMARK(copyOfTheNote)->Unit(benchmark::kMicrosecond);
BENCHMARK(letter)->Unit(benchmark::kMicrosecond);
BENCHMARK(split)->Unit(benchmark::kMicrosecond);
BENCHMARK(moveFromTopToBottom)->Unit(benchmark::kMicrosecond);
BENCHMARK(removeEverything)->Unit(benchmark::kMicrosecond);
BENCHMARK(pasteOfEverything)->Unit(benchmark::kMicrosecond);

} // namespace
