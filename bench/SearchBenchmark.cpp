// Searching a library against `rg -i -c` over the same note files: both with all cores, in turn, in one run, the files
// in the page cache. The library is in memory, as it is while a user types; ripgrep reads the files anew.

#include "Tests/VarnicCore/TemporaryFolder.h"
#include "VarnicCore/Library/LibraryStore.h"
#include "VarnicCore/Library/NoteSearch.h"
#include "bench/GeneratedLibrary.h"
#include "bench/Measure.h"

#include <fmt/format.h>

#include <cstdlib>
#include <exception>
#include <string>
#include <vector>

namespace {

namespace bench = varnic::bench;

constexpr std::size_t rounds = 9;

struct Size {
    std::size_t notes;
    std::size_t bytes;
};

void ripgrep(const std::string& term, const std::filesystem::path& folder) {
    const std::string command = fmt::format("rg -i -c {} {} >/dev/null", term, folder.string());
    // Status 1 says that nothing was found.
    const int status = std::system(command.c_str()); // both words are this program's own
    if (!WIFEXITED(status) || WEXITSTATUS(status) > 1) {
        throw std::runtime_error("ripgrep did not run");
    }
}

void compare(const std::string& term, const varnic::LibraryStore& store, const std::vector<varnic::Note>& notes) {
    std::vector<bench::Cost> ours;
    std::vector<bench::Cost> theirs;
    std::size_t hits = 0;
    for (std::size_t round = 0; round < rounds; ++round) {
        theirs.push_back(bench::costOf([&] { ripgrep(term, store.notesDir()); }));
        ours.push_back(bench::costOf([&] {
            hits = 0;
            for (const auto& match : varnic::NoteSearch::search(term, notes)) {
                hits += match.hits->size();
            }
        }));
    }
    const double our = bench::median(ours, &bench::Cost::elapsed);
    const double their = bench::median(theirs, &bench::Cost::elapsed);
    fmt::print("  {:<10} {:>7} hits: rg {:.1f} ms, search {:.1f} ms, ratio {:.2f}\n", term, hits, their * 1e3,
               our * 1e3, our / their);
}

void run(Size size) {
    const varnic::TemporaryFolder folder;
    varnic::GeneratedLibrary::write(folder.path(), size.notes, size.bytes);
    varnic::LibraryStore store(folder.path());
    const std::vector<varnic::Note> notes = store.loadAll(varnic::currentDate());
    fmt::print("search: {} notes, {} MB, medians of {} rounds; to reach: ratio 2, and 16.7 ms for 1000 notes\n",
               notes.size(), size.bytes / 1'000'000, rounds);
    for (const char* term : {"zeppelin", "ledger", "résumé", "budget"}) {
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
