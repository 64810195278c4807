#include "VarnicCore/Library/RepeatedSearch.h"

#include "VarnicCore/Library/SameMatches.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace varnic {
namespace {

/// Notes that change, and a query that is typed, both at random from a few words.
class RepeatedSearchTests : public testing::Test {
protected:
    [[nodiscard]] std::string words(std::size_t count) {
        static const std::vector<std::string> all{"plan", "plane", "lane", "Café", "cafe\u0301", "an", "e", "pl", "’s"};
        std::string text;
        for (std::size_t i = 0; i < count; ++i) {
            text += all[random() % all.size()] + (random() % 3 == 0 ? "\n" : " ");
        }
        return text;
    }

    void changeNotes() {
        const std::size_t place = random() % (notes.size() + 1);
        if (place == notes.size()) {
            notes.insert(notes.begin(), Note(Date(std::chrono::seconds(random() % 3)), words(2)));
            return;
        }
        search.forget(notes[place].id);
        if (random() % 4 == 0) {
            notes.erase(notes.begin() + static_cast<std::ptrdiff_t>(place));
        } else {
            notes[place].blocks.front().text = words(random() % 6);
        }
    }

    void type() {
        switch (random() % 4) {
        case 0:
            query.resize(query.size() / 2);
            break;
        case 1:
            query = words(random() % 3);
            break;
        default:
            query += "plan ce"[random() % 7];
        }
    }

    std::mt19937 random{11};
    std::vector<Note> notes;
    std::string query;
    RepeatedSearch search;
};

TEST_F(RepeatedSearchTests, search_whateverChanges_findsWhatTheFirstSearchWould) {
    for (int round = 0; round < 4000; ++round) {
        if (random() % 2 == 0) {
            changeNotes();
        } else {
            type();
        }
        ASSERT_TRUE(areSame(search.search(query, notes), NoteSearch::search(query, notes))) << query;
    }
}

} // namespace
} // namespace varnic
