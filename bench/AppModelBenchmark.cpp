// What the application's state costs the main thread: loading 10,000 notes through it against reading them with the
// store alone, and keystrokes in a note and in the search field with the lists that views ask for: bench-app [NOTES]

#include "Tests/VarnicCore/TemporaryFolder.h"
#include "Varnic/AppModel/AppModel.h"
#include "Varnic/AppModel/AppPlaces.h"
#include "Varnic/Views/Context/ViewContext.h"
#include "Varnic/Views/LibraryViews/Columns.h"
#include "Varnic/Views/LibraryViews/DeckListModel.h"
#include "Varnic/Views/LibraryViews/NoteListModel.h"
#include "Varnic/Views/LibraryViews/SearchResultsModel.h"
#include "Varnic/Views/LibraryViews/SectionModel.h"
#include "Varnic/Views/LibraryViews/TodoListModel.h"
#include "Varnic/Views/Note/NoteModel.h"
#include "VarnicCore/Editor/NoteEditor.h"
#include "bench/GeneratedLibrary.h"
#include "bench/Measure.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QQmlEngine>
#include <QTimer>

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace varnic;
using bench::Cost;
using bench::costOf;
using bench::median;

std::unique_ptr<AppModel> modelOn(const std::filesystem::path& folder) {
    return std::make_unique<AppModel>(
        AppPlaces{.dataDirectory = folder / "Library",
                  .spareFolder = folder / "Unsaved",
                  .isScratch = true,
                  .settings = std::make_unique<QSettings>(QString::fromStdString((folder / "settings.ini").string()),
                                                          QSettings::IniFormat)});
}

/// The longest time that the event loop did not come round, in seconds; a millisecond at least.
class LongestStall {
public:
    LongestStall() {
        QObject::connect(&timer_, &QTimer::timeout, [this] {
            longest_ = std::max(longest_, static_cast<double>(clock_.nsecsElapsed()) / 1e9);
            clock_.start();
        });
        clock_.start();
        // Seldom enough to leave both cores to the work that is measured.
        timer_.setTimerType(Qt::PreciseTimer);
        timer_.start(1);
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

/// A model with so many notes loaded, and its folder.
struct LoadedModel {
    explicit LoadedModel(std::size_t notes) {
        GeneratedLibrary::write(folder.path() / "Library", notes, notes * 20'000);
        model = modelOn(folder.path());
        QCoro::waitFor(model->load());
    }

    TemporaryFolder folder;
    std::unique_ptr<AppModel> model;
};

/// What a list costs after each of a few keystrokes in a note, in milliseconds.
double perStroke(AppModel& model, const std::function<std::size_t()>& list) {
    constexpr int strokes = 50;
    const Uuid id = *model.selection.value();
    const Uuid block = model.note(id)->blocks.front().id;
    std::vector<Cost> costs;
    for (int stroke = 0; stroke < strokes; ++stroke) {
        costs.push_back(costOf([&] {
            model.update(id, false, [&](Note& note) {
                NoteEditor::update(block, note, currentDate(), [](Block& changed) { changed.text += 'x'; });
            });
            list();
        }));
    }
    return median(costs, &Cost::elapsed) * 1e3;
}

void keystrokes(std::size_t notes) {
    const LoadedModel loaded(notes);
    AppModel& model = *loaded.model;
    fmt::print("a keystroke in a note of {} with one list asked for; to reach with 1000 notes: 10 ms\n", notes);
    const std::vector<std::pair<const char*, std::function<std::size_t()>>> lists{
        {"none", [] { return std::size_t{0}; }},
        {"visibleNotes", [&] { return model.visibleNotes().size(); }},
        {"openTodos", [&] { return model.openTodos().size(); }},
        {"decks", [&] { return model.decks().size(); }},
        {"dueCardCount", [&] { return static_cast<std::size_t>(model.dueCardCount()); }}};
    for (const auto& [name, list] : lists) {
        fmt::print("  {:<14} {:8.3f} ms\n", name, perStroke(model, list));
    }
}

/// A key in a title with a list and the note's page open, in milliseconds.
template <typename List>
void titleKeys(LoadedModel& loaded, const char* name) {
    constexpr int strokes = 100;
    AppModel& model = *loaded.model;
    QQmlEngine engine;
    ViewContext{.model = model}.giveTo(engine);
    Columns columns(model);
    SectionModel sections;
    sections.setModel(model);
    List list;
    list.setModel(model);
    NoteModel page;
    QQmlEngine::setContextForObject(&page, engine.rootContext());
    page.setNoteId(QString::fromStdString(model.selection.value()->text()));
    page.componentComplete();
    QObject::connect(&page, &NoteModel::changed, &page, [&page] { static_cast<void>(page.footer()); });
    std::vector<Cost> costs;
    for (int stroke = 0; stroke < strokes; ++stroke) {
        costs.push_back(costOf([&] {
            page.setTitle(page.title() + "x");
            QCoreApplication::processEvents();
        }));
    }
    std::ranges::sort(costs, {}, &Cost::elapsed);
    fmt::print("  {:<14} {:8.3f} ms; {:.3f} ms at most\n", name, median(costs, &Cost::elapsed) * 1e3,
               costs.back().elapsed * 1e3);
}

void titleKeys(std::size_t notes) {
    LoadedModel loaded(notes);
    fmt::print("a key in a title of {} notes with a list and the page open; to reach: 2 ms\n", notes);
    titleKeys<NoteListModel>(loaded, "notes");
    titleKeys<TodoListModel>(loaded, "to-dos");
    titleKeys<DeckListModel>(loaded, "flashcards");
    loaded.model->query = std::string("l");
    titleKeys<SearchResultsModel>(loaded, "search results");
}

/// What a screen shows of the results.
void readScreen(const SearchResultsModel& results) {
    constexpr int rowsOnScreen = 30;
    for (int row = 0; row < std::min(results.count(), rowsOnScreen); ++row) {
        static_cast<void>(results.data(results.index(row), SearchResultsModel::markedText));
    }
}

void typing(std::size_t notes) {
    const LoadedModel loaded(notes);
    AppModel& model = *loaded.model;
    SearchResultsModel results;
    results.setModel(model);
    const auto wait = [](const auto& condition) {
        while (!condition()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
    };
    wait([&] { return !results.isSearching(); });
    fmt::print("a keystroke in the search field, {} notes; to reach: 60 ms to the first screen\n", notes);
    for (const std::string query :
         {"l", "la", "lau", "laun", "launc", "launch", "launch b", "launch", "zeppelin", "e"}) {
        bool isReset = false;
        const auto watch = QObject::connect(&results, &SearchResultsModel::modelReset, [&] { isReset = true; });
        const double begin = bench::now(CLOCK_MONOTONIC);
        const auto since = [begin] { return (bench::now(CLOCK_MONOTONIC) - begin) * 1e3; };
        const LongestStall stall;
        model.query = query;
        wait([&] { return isReset || !results.isSearching(); });
        readScreen(results);
        const double first = since();
        wait([&] { return !results.isSearching(); });
        readScreen(results);
        fmt::print("  {:<10} {:>8} rows, first screen {:8.3f} ms, whole {:8.3f} ms; the main thread stood still for "
                   "{:.3f} ms at most\n",
                   query, results.count(), first, since(), stall.seconds() * 1e3);
        QObject::disconnect(watch);
    }
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    try {
        std::setvbuf(stdout, nullptr, _IOLBF, 0);
        std::vector<std::size_t> sizes{1'000, 10'000};
        if (argc > 1) {
            sizes = {std::stoul(argv[1])};
        } else {
            load();
        }
        for (const std::size_t notes : sizes) {
            keystrokes(notes);
            titleKeys(notes);
            typing(notes);
        }
        return EXIT_SUCCESS;
    } catch (const std::exception& error) {
        fmt::print(stderr, "{}\n", error.what());
        return EXIT_FAILURE;
    }
}
