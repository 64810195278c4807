#include "VarnicCore/Library/RepeatedSearch.h"

#include "VarnicCore/Library/NoteSearch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <iterator>
#include <random>
#include <string>
#include <vector>

namespace varnic {
namespace {

using namespace std::chrono_literals;

/// Whether what was found is what a first search of these notes finds, hit by hit in any order.
bool isWhole(const FoundNotes& found, const std::vector<NoteMatch>& matches) {
    std::size_t hits = 0;
    const bool sameNotes = std::ranges::equal(found.notes, matches, [&](const FoundNote& one, const NoteMatch& match) {
        NoteHits lazy(*one.note, found.terms);
        hits += one.hits;
        bool isSame = *one.note == *match.note && one.hits == match.hits.size() && lazy.size() == one.hits;
        for (std::size_t rank = one.hits; isSame && rank-- > 0;) {
            isSame = lazy.hit(rank) == match.hits[rank];
        }
        return isSame;
    });
    return sameNotes && found.hits == hits;
}

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
        const Note& present = *notes.all()[place];
        if (random() % 4 == 0) {
            notes.erase(present.id);
        } else {
            Note changed = present;
            changed.blocks.front().text = words(random() % 6);
            notes.replace(std::move(changed));
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

    [[nodiscard]] std::vector<Note> copies() const { return {notes.begin(), notes.end()}; }

    std::mt19937 random{11};
    SharedNotes notes;
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
        const std::vector<Note> present = copies();
        const auto found = search.search(query, notes.all(), {}, nullptr);
        ASSERT_TRUE(found && isWhole(*found, NoteSearch::search(query, present))) << query;
    }
}

/// Enough for several threads and batches.
/// Until a search is still under way when it is looked at.
constexpr int attempts = 1000;

TEST_F(RepeatedSearchTests, search_preview_isTheSearchOfSomeNotes) {
    for (int i = 0; i < 500; ++i) {
        notes.push_back(Note(Date(std::chrono::seconds(i)), words(4)));
    }
    // Other threads may be done with all before this one looks at what there is.
    int previews = 0;
    for (int attempt = 0; previews == 0 && attempt < attempts; ++attempt) {
        RepeatedSearch eager(0ms);
        const auto found = eager.search("plan", notes.all(), {}, [&](const FoundNotes& early) {
            ++previews;
            std::vector<Note> read;
            for (const FoundNote& one : early.notes) {
                read.push_back(*one.note);
            }
            EXPECT_FALSE(read.empty());
            EXPECT_TRUE(isWhole(early, NoteSearch::search("plan", read)));
        });
        ASSERT_TRUE(found && isWhole(*found, NoteSearch::search("plan", copies())));
    }
    EXPECT_EQ(previews, 1);
}

TEST_F(RepeatedSearchTests, search_stopped_findsNothingAndAllTheNextTime) {
    for (int i = 0; i < 500; ++i) {
        notes.push_back(Note(Date(std::chrono::seconds(i)), words(4)));
    }
    std::stop_source stop;
    RepeatedSearch eager(0ms);
    for (int attempt = 0; !stop.stop_requested() && attempt < attempts; ++attempt) {
        eager = RepeatedSearch(0ms);
        const auto found =
            eager.search("plan", notes.all(), stop.get_token(), [&](const FoundNotes&) { stop.request_stop(); });
        EXPECT_NE(found.has_value(), stop.stop_requested());
    }
    ASSERT_TRUE(stop.stop_requested());
    for (const char* next : {"plan", "plane"}) {
        const auto found = eager.search(next, notes.all(), {}, nullptr);
        ASSERT_TRUE(found && isWhole(*found, NoteSearch::search(next, copies()))) << next;
    }
}

} // namespace
} // namespace varnic
