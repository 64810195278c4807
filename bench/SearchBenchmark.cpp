// Counting what a search finds in a library against `rg -i -c` over the same note files: both with all cores, in turn,
// in one run, the files in the page cache. The library is in memory, as it is while a user types; ripgrep reads the
// files anew.

#include "Tests/VarnicCore/TemporaryFolder.h"
#include "VarnicCore/Library/LibraryStore.h"
#include "VarnicCore/Library/RepeatedSearch.h"
#include "bench/GeneratedLibrary.h"
#include "bench/Measure.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <string>
#include <vector>

namespace {

namespace bench = varnic::bench;

constexpr std::size_t rounds = 9;

/// A pasted line.
constexpr const char* manyWords = "zeppelin glacier tariff orchestra lantern pension violin harbour umbrella bicycle";

struct Size {
    std::size_t notes;
    std::size_t bytes;
};

void ripgrep(std::string terms, const std::filesystem::path& folder) {
    std::ranges::replace(terms, ' ', '|');
    const std::string command = fmt::format("rg -i -c '{}' {} >/dev/null", terms, folder.string());
    // Status 1 says that nothing was found.
    const int status = std::system(command.c_str()); // all words are this program's own
    if (!WIFEXITED(status) || WEXITSTATUS(status) > 1) {
        throw std::runtime_error("ripgrep did not run");
    }
}

/// What a view asks for at first.
constexpr std::size_t rowsOnScreen = 30;

/// Makes the hits that a screen shows.
void show(const varnic::FoundNotes& found) {
    std::size_t rows = 0;
    for (const varnic::FoundNote& one : found.notes) {
        varnic::NoteHits hits(*one.note, found.terms);
        for (std::size_t rank = 0; rank < hits.size() && rows < rowsOnScreen; ++rank, ++rows) {
            static_cast<void>(hits.hit(rank));
        }
        if (rows == rowsOnScreen) {
            return;
        }
    }
}

struct OurCost {
    /// Until the first screen of results is there.
    bench::Cost first;
    bench::Cost whole;
    std::size_t hits = 0;
};

OurCost search(const std::string& term, const varnic::SharedNotes& notes) {
    OurCost cost;
    const double begin = bench::now(CLOCK_MONOTONIC);
    cost.whole = bench::costOf([&] {
        const auto preview = [&](const varnic::FoundNotes& found) {
            show(found);
            cost.first.elapsed = bench::now(CLOCK_MONOTONIC) - begin;
        };
        const auto found = varnic::RepeatedSearch().search(term, notes.all(), {}, preview);
        cost.hits = found->hits;
        if (cost.first.elapsed == 0) {
            show(*found);
            cost.first.elapsed = bench::now(CLOCK_MONOTONIC) - begin;
        }
    });
    return cost;
}

void compare(const std::string& term, const varnic::LibraryStore& store, const varnic::SharedNotes& notes) {
    std::vector<bench::Cost> first;
    std::vector<bench::Cost> whole;
    std::vector<bench::Cost> theirs;
    std::size_t hits = 0;
    for (std::size_t round = 0; round < rounds; ++round) {
        theirs.push_back(bench::costOf([&] { ripgrep(term, store.notesDir()); }));
        const OurCost ours = search(term, notes);
        first.push_back(ours.first);
        whole.push_back(ours.whole);
        hits = ours.hits;
    }
    const double our = bench::median(whole, &bench::Cost::elapsed);
    const double their = bench::median(theirs, &bench::Cost::elapsed);
    fmt::print("  {:<10.10} {:>7} hits: rg {:.1f} ms, first screen {:.1f} ms, whole {:.1f} ms, ratio {:.2f}\n", term,
               hits, their * 1e3, bench::median(first, &bench::Cost::elapsed) * 1e3, our * 1e3, our / their);
}

void run(Size size) {
    const varnic::TemporaryFolder folder;
    varnic::GeneratedLibrary::write(folder.path(), size.notes, size.bytes);
    varnic::LibraryStore store(folder.path());
    const varnic::SharedNotes notes = store.loadAll(varnic::currentDate());
    fmt::print("search: {} notes, {} MB, medians of {} rounds; to reach: ratio 2, and 60 ms to the first screen\n",
               notes.size(), size.bytes / 1'000'000, rounds);
    for (const char* term : {"zeppelin", "ledger", "résumé", "budget", "l", manyWords}) {
        compare(term, store, notes);
    }
}

} // namespace

int main() {
    try {
        run({10'000, 200'000'000});
        run({1'000, 50'000'000});
        return EXIT_SUCCESS;
    } catch (const std::exception& error) {
        fmt::print(stderr, "{}\n", error.what());
        return EXIT_FAILURE;
    }
}
