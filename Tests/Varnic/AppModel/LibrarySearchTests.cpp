#include "Varnic/AppModel/LibrarySearch.h"

#include "Varnic/AppModel/ScratchModel.h"
#include "VarnicCore/Library/NoteSearch.h"

#include <gmock/gmock.h>

#include <optional>
#include <string>
#include <vector>

namespace varnic {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A search over enough notes that it is under way while the main thread goes on.
class LibrarySearchTests : public testing::Test {
protected:
    LibrarySearchTests() {
        model->isDemo = true; // no need for the disk
        for (int i = 0; i < 400; ++i) {
            model->newNote("Filler", {Block{.text = std::string(20'000, 'x') + " budget"}});
        }
        model->newNote("Plan");
    }

    /// The titles that the model's query finds, once the search is done.
    std::vector<std::string> titles() {
        EXPECT_TRUE(waitUntil([this] { return !search->isRunning(); }));
        std::vector<std::string> found;
        for (const FoundNote& one : search->found()->notes) {
            found.push_back(one.note->title);
        }
        return found;
    }

    ScratchModel model;
    std::optional<LibrarySearch> search{std::in_place, *model};
};

TEST_F(LibrarySearchTests, newest_query_wins) {
    std::vector<std::string> queries;
    QObject::connect(&*search, &LibrarySearch::changed, [&] {
        for (const std::string& term : search->found()->terms.all()) {
            queries.push_back(term);
        }
    });
    model->query = std::string("x");
    model->query = std::string("budget");
    model->query = std::string("plan");
    EXPECT_TRUE(search->isRunning());
    EXPECT_THAT(titles(), ElementsAre("Plan"));
    EXPECT_THAT(queries, testing::Each("plan"));
}

TEST_F(LibrarySearchTests, notes_changed_in_mid_search_are_searched_again) {
    const Uuid id = model->notes().front().id;
    model->query = std::string("plan");
    model->update(id, false, [](Note& note) { note.title = "Planned"; });
    ASSERT_THAT(titles(), ElementsAre("Plan")) << "as it was when the search began";
    EXPECT_TRUE(waitUntil([&] { return search->found()->notes.front().note->title == "Planned"; }));
    model->remove(id);
    EXPECT_TRUE(waitUntil([&] { return search->found()->notes.empty(); }));
}

TEST_F(LibrarySearchTests, empty_query_finds_nothing) {
    model->query = std::string("plan");
    EXPECT_THAT(titles(), ElementsAre("Plan"));
    model->query = std::string(" ");
    EXPECT_THAT(titles(), IsEmpty());
}

TEST_F(LibrarySearchTests, may_go_in_mid_search) {
    model->query = std::string("x");
    EXPECT_TRUE(search->isRunning());
    search.reset();
    model->query = std::string("budget");
    model->remove(model->notes().front().id);
    EXPECT_THAT(model->notes(), testing::SizeIs(400));
}

} // namespace
} // namespace varnic
