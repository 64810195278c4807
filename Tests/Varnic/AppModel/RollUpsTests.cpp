#include "Varnic/AppModel/RollUps.h"

#include <gmock/gmock.h>

#include <chrono>
#include <random>
#include <string>
#include <vector>

namespace varnic {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAreArray;

/// Notes that change at random while time goes on.
class RollUpsTests : public testing::Test {
protected:
    Block block() {
        static const std::vector<std::string> dues{"tomorrow", "by Friday", "", "some day"};
        Block made;
        made.kind = random() % 2 == 0 ? BlockKind::todo : BlockKind::flashcard;
        made.text = random() % 5 == 0 ? "" : "text " + std::to_string(random() % 9);
        made.done = random() % 3 == 0;
        if (const std::string& due = dues[random() % dues.size()]; !due.empty()) {
            made.due = due;
        }
        if (random() % 2 == 0) {
            made.card = CardState{.due = now + std::chrono::hours(random() % 9) - 4h};
        }
        return made;
    }

    void change(Note& note) {
        switch (random() % 5) {
        case 0:
            note.title = "Week " + std::to_string(random() % 12);
            break;
        case 1:
            note.created = now - std::chrono::days(random() % 3);
            break;
        case 2:
            note.blocks.back().text += 'x';
            break;
        default:
            note.blocks = std::vector<Block>(1 + random() % 3);
            std::ranges::generate(note.blocks, [this] { return block(); });
        }
    }

    /// Any change of one note; which it was.
    Uuid changeNotes() {
        const std::size_t place = random() % (notes.size() + 1);
        if (place == notes.size()) {
            Note fresh(now);
            change(fresh);
            const Uuid id = fresh.id;
            notes.insert(notes.begin(), std::move(fresh));
            return id;
        }
        Note changed = *notes.all()[place];
        if (random() % 8 == 0) {
            notes.erase(changed.id);
        } else {
            change(changed);
            notes.replace(changed);
        }
        return changed.id;
    }

    std::mt19937 random{5};
    Date now = parseDate("2026-03-10T09:00:00Z");
    SharedNotes notes;
    Region region{.locale = "en_GB", .timeZone = "UTC"};
    RollUps rollUps{notes, region};
};

TEST_F(RollUpsTests, whateverChanges_areWhatTheNotesTell) {
    for (int round = 0; round < 2000; ++round) {
        std::vector<Uuid> changed(1 + random() % 3);
        std::ranges::generate(changed, [this] { return changeNotes(); });
        rollUps.take(random() % 50 == 0 ? ChangedNotes() : ChangedNotes(changed));
        now += std::chrono::minutes(random() % 60);
        if (random() % 100 == 0) {
            region.timeZone = region.timeZone == "UTC" ? "Asia/Tokyo" : "UTC";
        }
        if (random() % 3 == 0) {
            ASSERT_THAT(rollUps.openTodos(), ElementsAreArray(Todos::open(notes, region))) << round;
        }
        if (random() % 3 == 0) {
            ASSERT_THAT(rollUps.decks(now), ElementsAreArray(Flashcards::decks(notes, now, region))) << round;
        }
    }
}

} // namespace
} // namespace varnic
