// Loading a library of 10,000 notes against the bare work that it cannot avoid: reading the files and parsing them.
// Both on one thread, in turn, in one run, from the page cache.

#include "Tests/VarnicCore/TemporaryFolder.h"
#include "VarnicCore/Library/LibraryStore.h"
#include "bench/GeneratedLibrary.h"
#include "bench/Measure.h"

#include <fmt/format.h>
#include <simdjson.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
namespace bench = varnic::bench;
using bench::Cost;
using bench::costOf;
using bench::median;

constexpr std::size_t noteCount = 10'000;
constexpr std::size_t totalBytes = 200'000'000;
constexpr std::size_t rounds = 9;

/// Reads and parses every file with one buffer and one parser; the bytes that were read.
std::size_t readAndParse(const fs::path& folder) {
    simdjson::dom::parser parser;
    std::string buffer;
    std::size_t sum = 0;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
        const int file = ::open(entry.path().c_str(), O_RDONLY | O_CLOEXEC);
        struct stat status{};
        if (file < 0 || ::fstat(file, &status) != 0) {
            throw std::runtime_error("cannot open " + entry.path().string());
        }
        const auto size = static_cast<std::size_t>(status.st_size);
        buffer.resize(std::max(buffer.size(), size + simdjson::SIMDJSON_PADDING));
        const bool isRead = ::read(file, buffer.data(), size) == static_cast<ssize_t>(size);
        ::close(file);
        if (!isRead || parser.parse(buffer.data(), size, false).error() != simdjson::SUCCESS) {
            throw std::runtime_error("cannot read " + entry.path().string());
        }
        sum += size;
    }
    return sum;
}

void print(const char* name, double Cost::* what, const std::vector<Cost>& bare, const std::vector<Cost>& load) {
    const double bareSeconds = median(bare, what);
    const double loadSeconds = median(load, what);
    fmt::print("  {:<15} read and parse {:.3f} s, loadAll {:.3f} s, ratio {:.2f}\n", name, bareSeconds, loadSeconds,
               loadSeconds / bareSeconds);
}

void run(const fs::path& root) {
    varnic::GeneratedLibrary::write(root, noteCount, totalBytes);
    varnic::LibraryStore store(root);
    std::size_t bytes = 0;
    std::size_t notes = 0;
    std::vector<Cost> bare;
    std::vector<Cost> load;
    for (std::size_t round = 0; round < rounds; ++round) {
        bare.push_back(costOf([&] { bytes = readAndParse(store.notesDir()); }));
        std::vector<varnic::Note> loaded;
        load.push_back(costOf([&] { loaded = store.loadAll(varnic::currentDate()); }));
        notes = loaded.size();
    }
    fmt::print("library: {} notes, {:.1f} MB, medians of {} rounds; to reach: elapsed ratio 2\n", notes,
               static_cast<double>(bytes) / 1e6, rounds);
    print("elapsed", &Cost::elapsed, bare, load);
    print("processor time", &Cost::processor, bare, load);
}

} // namespace

int main() {
    try {
        const varnic::TemporaryFolder folder;
        run(folder.path());
        return EXIT_SUCCESS;
    } catch (const std::exception& error) {
        fmt::print(stderr, "{}\n", error.what());
        return EXIT_FAILURE;
    }
}
