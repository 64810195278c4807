// What the application's state costs the main thread: loading 10,000 notes through it against reading them with the
// store alone, and one keystroke in a library of 1,000 notes with all lists that views ask for.

#include "Tests/VarnicCore/TemporaryFolder.h"
#include "Varnic/AppModel/AppModel.h"
#include "bench/GeneratedLibrary.h"
#include "bench/Measure.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <exception>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace varnic;
using bench::Cost;
using bench::costOf;
using bench::median;

std::unique_ptr<AppModel> modelOn(const std::filesystem::path& folder) {
    return std::make_unique<AppModel>(
        AppPlaces{.dataDirectory = folder / "Library",
                  .isScratch = true,
                  .settings = std::make_unique<QSettings>(QString::fromStdString((folder / "settings.ini").string()),
                                                          QSettings::IniFormat)});
}

/// The longest time that the event loop did not come round, in seconds.
class LongestStall {
public:
    LongestStall() {
        QObject::connect(&timer_, &QTimer::timeout, [this] {
            longest_ = std::max(longest_, static_cast<double>(clock_.nsecsElapsed()) / 1e9);
            clock_.start();
        });
        clock_.start();
        timer_.start(0);
    }

    [[nodiscard]] double seconds() const { return longest_; }

private:
    QTimer timer_;
    QElapsedTimer clock_;
    double longest_ = 0;
};

void load() {
    constexpr int rounds = 7;
    const TemporaryFolder folder;
    GeneratedLibrary::write(folder.path() / "Library", 10'000, 200'000'000);
    std::vector<Cost> bare;
    std::vector<Cost> loaded;
    double stall = 0;
    for (int round = 0; round < rounds; ++round) {
        LibraryStore store(folder.path() / "Library");
        std::vector<Note> notes;
        bare.push_back(costOf([&] { notes = store.loadAll(currentDate()); }));
        notes.clear();
        const auto model = modelOn(folder.path());
        const LongestStall longest;
        loaded.push_back(costOf([&] { QCoro::waitFor(model->load()); }));
        stall = std::max(stall, longest.seconds());
    }
    fmt::print("load of 10,000 notes: store {:.3f} s, application {:.3f} s, ratio {:.2f}; the main thread stood still "
               "for {:.3f} s at most\n",
               median(bare, &Cost::elapsed), median(loaded, &Cost::elapsed),
               median(loaded, &Cost::elapsed) / median(bare, &Cost::elapsed), stall);
}

void keystrokes() {
    constexpr int strokes = 200;
    const TemporaryFolder folder;
    GeneratedLibrary::write(folder.path() / "Library", 1'000, 20'000'000);
    const auto model = modelOn(folder.path());
    QCoro::waitFor(model->load());
    const Uuid id = *model->selection.value();
    const Uuid block = model->note(id)->blocks.front().id;
    std::size_t seen = 0;
    for (const char* query : {"", "launch"}) {
        model->query = std::string(query);
        std::vector<Cost> update;
        std::vector<Cost> lists;
        std::vector<Cost> search;
        for (int stroke = 0; stroke < strokes; ++stroke) {
            update.push_back(costOf([&] {
                model->update(id, false, [&](Note& note) {
                    NoteEditor::update(block, note, currentDate(), [](Block& changed) { changed.text += 'x'; });
                });
            }));
            lists.push_back(costOf([&] {
                seen += model->visibleNotes().size() + model->openTodos().size() +
                        static_cast<std::size_t>(model->dueCardCount());
            }));
            search.push_back(costOf([&] { seen += model->searchResults().size(); }));
        }
        fmt::print("keystroke in 1,000 notes, query “{}”: update {:.3f} ms, visibleNotes, openTodos and dueCardCount "
                   "{:.3f} ms, searchResults {:.3f} ms; to reach: 10 ms\n",
                   query, median(update, &Cost::elapsed) * 1e3, median(lists, &Cost::elapsed) * 1e3,
                   median(search, &Cost::elapsed) * 1e3);
    }
    fmt::print("({} results)\n", seen);
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    try {
        load();
        keystrokes();
        return EXIT_SUCCESS;
    } catch (const std::exception& error) {
        fmt::print(stderr, "{}\n", error.what());
        return EXIT_FAILURE;
    }
}
