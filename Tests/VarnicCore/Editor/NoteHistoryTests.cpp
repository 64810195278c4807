#include "VarnicCore/Editor/NoteHistory.h"

#include "VarnicCore/Editor/BlockNotes.h"
#include "VarnicCore/Editor/BlockSelection.h"
#include "VarnicCore/Editor/NoteEditor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace varnic {
namespace {

using namespace blockNotes;
using namespace std::chrono_literals;
using testing::ElementsAreArray;

/// Someone who edits a note.
struct Desk {
    Note note;
    NoteHistory history;
    Date now = later;

    void edit(const std::function<void(Note&)>& change, EditKind kind = EditKind::structure) {
        const Note before = note;
        change(note);
        history.record(before, note, kind, std::nullopt, std::nullopt, now);
    }

    void type(std::size_t index, std::size_t offset, const std::string& text) {
        const Note before = note;
        Block& block = note.blocks[index];
        block.text.insert(offset, text);
        history.record(before, note, EditKind::typing, TextPlace{block.id, offset},
                       TextPlace{block.id, offset + text.size()}, now);
    }

    void typeLetters(std::size_t index, const std::string& text) {
        for (const char letter : text) {
            type(index, note.blocks[index].text.size(), {letter});
        }
    }

    void backspace(std::size_t index) {
        edit([index](Note& edited) { edited.blocks[index].text.pop_back(); }, EditKind::typing);
    }

    std::optional<TextPlace> undo() { return take(history.undo(note, now)); }

    std::optional<TextPlace> redo() { return take(history.redo(note, now)); }

private:
    std::optional<TextPlace> take(std::optional<NoteHistory::Restored> restored) {
        if (!restored) {
            return std::nullopt;
        }
        note = std::move(restored->note);
        return restored->caret;
    }
};

/// What the text is after each undo.
std::vector<std::string> undone(Desk& desk, std::size_t index = 0) {
    std::vector<std::string> texts;
    while (desk.history.canUndo()) {
        desk.undo();
        texts.push_back(desk.note.blocks[index].text);
    }
    return texts;
}

TEST(NoteHistory, typing_isUndoneByWordsPausesDirectionsAndPlaces) {
    struct Case {
        const char* name;
        std::function<void(Desk&)> typing;
        std::vector<std::string> texts;
    };

    const std::vector<Case> cases{
        {"words", [](Desk& desk) { desk.typeLetters(0, "one  two e"); }, {"one  two ", "one  ", ""}},
        {"a pause",
         [](Desk& desk) {
             desk.typeLetters(0, "on");
             desk.now += 1s;
             desk.typeLetters(0, "e");
             desk.now += 1001ms;
             desk.typeLetters(0, "s");
         },
         {"one", ""}},
        {"deleting",
         [](Desk& desk) {
             desk.typeLetters(0, "one");
             desk.backspace(0);
             desk.backspace(0);
             desk.typeLetters(0, "x");
         },
         {"o", "one", ""}},
        {"elsewhere in the text",
         [](Desk& desk) {
             desk.typeLetters(0, "one");
             desk.type(0, 0, "x");
             desk.type(0, 1, "y");
         },
         {"one", ""}},
        {"in another block",
         [](Desk& desk) {
             desk.typeLetters(0, "one");
             desk.typeLetters(1, "x");
             desk.typeLetters(0, "s");
         },
         {"one", "one", ""}},
        {"structure in between",
         [](Desk& desk) {
             desk.typeLetters(0, "one");
             desk.edit([](Note& note) { NoteEditor::setKind(BlockKind::heading, note.blocks[0].id, note, later); });
             desk.typeLetters(0, "s");
         },
         {"one", "one", ""}},
        {"after an undo",
         [](Desk& desk) {
             desk.typeLetters(0, "one two");
             desk.undo();
             desk.typeLetters(0, "  ");
         },
         {"one ", ""}},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.name);
        Desk desk{.note = noteOf({block(BlockKind::paragraph), block(BlockKind::paragraph)}), .history = {}};
        one.typing(desk);
        EXPECT_THAT(undone(desk), ElementsAreArray(one.texts));
    }
}

TEST(NoteHistory, titleBackAndCellsAreTypedToo) {
    Desk desk{.note = noteOf({Block::flashcard("q", ""), Block::table({{"", ""}})}), .history = {}};
    const Note before = desk.note;
    for (const char* const letter : {"a", "b"}) {
        desk.edit([letter](Note& note) { note.title += letter; }, EditKind::typing);
    }
    for (const char* const letter : {"a", "b"}) {
        desk.edit([letter](Note& note) { note.blocks[0].back += letter; }, EditKind::typing);
    }
    for (const std::size_t column : {0U, 1U, 1U}) {
        desk.edit([column](Note& note) { note.blocks[1].rows[0][column] += "x"; }, EditKind::typing);
    }
    int steps = 0;
    for (; desk.history.canUndo(); ++steps) {
        desk.undo();
    }
    EXPECT_EQ(steps, 4); // the title, the back and two cells
    desk.note.modified = before.modified;
    EXPECT_EQ(desk.note, before);
}

TEST(NoteHistory, caretGoesWhereItWas) {
    Desk desk{.note = noteOf({block(BlockKind::paragraph, "one")}), .history = {}};
    const Uuid id = desk.note.blocks[0].id;
    desk.type(0, 1, "x");
    desk.type(0, 2, "y");
    desk.now += 1min;
    EXPECT_EQ(desk.undo(), (TextPlace{id, 1}));
    EXPECT_EQ(desk.note.modified, desk.now);
    EXPECT_EQ(desk.redo(), (TextPlace{id, 3}));
    desk.edit([](Note& note) { note.blocks[0].done = true; });
    EXPECT_EQ(desk.undo(), std::nullopt);
    EXPECT_FALSE(desk.note.blocks[0].done);
}

TEST(NoteHistory, newEditEndsWhatCouldBeRedone) {
    Desk desk{.note = noteOf({block(BlockKind::paragraph)}), .history = {}};
    desk.typeLetters(0, "one");
    desk.undo();
    EXPECT_TRUE(desk.history.canRedo());
    desk.edit([](Note& note) { note.pinned = true; }); // neither title nor blocks
    EXPECT_TRUE(desk.history.canRedo());
    desk.typeLetters(0, "x");
    EXPECT_FALSE(desk.history.canRedo());
    EXPECT_EQ(desk.redo(), std::nullopt);
}

TEST(NoteHistory, whatOthersChangedStays) {
    struct Case {
        const char* name;
        std::vector<std::string_view> before;
        std::function<void(Note&)> edit;
        std::function<void(Note&)> foreign;
        std::vector<std::string> undone;
        std::vector<std::string> redone;
    };

    const auto setText = [](std::size_t index, const char* text) {
        return [=](Note& note) { note.blocks[index].text = text; };
    };
    const auto erase = [](std::size_t index) {
        return [=](Note& note) { note.blocks.erase(note.blocks.begin() + static_cast<std::ptrdiff_t>(index)); };
    };
    const auto append = [](Note& note) { note.blocks.push_back(block(BlockKind::bullet, "theirs")); };
    const std::vector<Case> cases{
        {"another block",
         {"P: a", "P: b"},
         setText(0, "x"),
         append,
         {"paragraph: a", "paragraph: b", "bullet: theirs"},
         {"paragraph: x", "paragraph: b", "bullet: theirs"}},
        {"the same text", {"P: a"}, setText(0, "x"), setText(0, "xy"), {"paragraph: xy"}, {"paragraph: xy"}},
        {"the half of a split text that stayed",
         {"P: abcd"},
         [](Note& note) {
             note.blocks[0].text = "ab";
             note.blocks.push_back(block(BlockKind::paragraph, "cd"));
         },
         setText(0, "abY"),
         {"paragraph: abY", "paragraph: cd"},
         {"paragraph: abY", "paragraph: cd"}},
        {"a tick in the same block",
         {"T: a"},
         setText(0, "x"),
         [](Note& note) { note.blocks[0].done = true; },
         {"todo: [x] a"},
         {"todo: [x] x"}},
        {"words under a new kind",
         {"P: a"},
         [](Note& note) { NoteEditor::setKind(BlockKind::bullet, note.blocks[0].id, note, later); },
         setText(0, "xy"),
         {"bullet: xy"},
         {"bullet: xy"}},
        {"the block is gone", {"P: a", "P: b"}, setText(0, "x"), erase(0), {"paragraph: b"}, {"paragraph: b"}},
        {"the new block was typed in",
         {"P: a"},
         append,
         setText(1, "both"),
         {"paragraph: a", "bullet: both"},
         {"paragraph: a", "bullet: both"}},
        {"the block before a removed one is gone",
         {"P: a", "P: b", "P: c"},
         erase(1),
         erase(0),
         {"paragraph: b", "paragraph: c"},
         {"paragraph: c"}},
        {"both beside a removed one are gone",
         {"P: a", "P: b", "P: c", "P: d"},
         erase(1),
         [](Note& note) { note.blocks.erase(note.blocks.begin(), note.blocks.begin() + 2); },
         {"paragraph: d", "paragraph: b"},
         {"paragraph: d"}},
        {"a moved block was typed in",
         {"P: a", "P: b", "P: c"},
         [](Note& note) { NoteEditor::move(note.blocks[0].id, 2, note, later); },
         setText(2, "ax"),
         {"paragraph: ax", "paragraph: b", "paragraph: c"},
         {"paragraph: b", "paragraph: c", "paragraph: ax"}},
        {"the only other block is gone",
         {"P: a"},
         append,
         erase(0),
         {"paragraph: "},
         {"paragraph: ", "bullet: theirs"}},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.name);
        Desk desk{.note = Marked(one.before).note, .history = {}};
        desk.edit(one.edit);
        one.foreign(desk.note);
        desk.undo();
        EXPECT_THAT(lines(desk.note), ElementsAreArray(one.undone));
        desk.redo();
        EXPECT_THAT(lines(desk.note), ElementsAreArray(one.redone));
    }
}

TEST(NoteHistory, stepThatCannotBeUndoneIsPassedOver) {
    Desk desk{.note = noteOf({block(BlockKind::paragraph, "a"), block(BlockKind::paragraph, "b")}), .history = {}};
    desk.edit([](Note& note) { note.title = "ours"; });
    desk.edit([](Note& note) { note.blocks[0].text = "x"; });
    desk.note.blocks[0].text = "theirs";
    desk.undo();
    EXPECT_EQ(desk.note.title, "");
    EXPECT_EQ(desk.note.blocks[0].text, "theirs");
    EXPECT_FALSE(desk.history.canUndo());
}

TEST(NoteHistory, idThatStandsTwiceIsNoStep) {
    const Block twice = block(BlockKind::paragraph, "a");
    Desk desk{.note = noteOf({twice, twice}), .history = {}};
    desk.edit([](Note& note) { note.blocks[1].text = "x"; });
    EXPECT_FALSE(desk.history.canUndo());
}

TEST(NoteHistory, keepsTheLastSteps) {
    Desk many{.note = noteOf({block(BlockKind::todo)}), .history = {}};
    for (int i = 0; i < 600; ++i) {
        many.edit([](Note& note) { note.blocks[0].done = !note.blocks[0].done; });
    }
    EXPECT_EQ(undone(many).size(), 500U);
    Desk large{.note = noteOf({block(BlockKind::paragraph)}), .history = {}};
    for (int i = 0; i < 5; ++i) {
        large.edit([](Note& note) { note.blocks[0].text += std::string(4U << 20U, 'x'); });
    }
    EXPECT_EQ(undone(large).size(), 1U); // of 36 MB
}

/// Any edit that a view can make.
class RandomEditor {
public:
    explicit RandomEditor(unsigned seed) : random_(seed) {}

    void edit(Desk& desk) {
        desk.now += std::chrono::milliseconds(below(1500));
        const Note before = desk.note;
        const TextPlace place = anyPlace(desk.note);
        const bool isTyping = below(3) == 0;
        isTyping ? type(desk.note, place) : restructure(desk.note, place);
        desk.history.record(before, desk.note, isTyping ? EditKind::typing : EditKind::structure, place, std::nullopt,
                            desk.now);
    }

private:
    std::size_t below(std::size_t end) { return std::uniform_int_distribution<std::size_t>(0, end - 1)(random_); }

    TextPlace anyPlace(const Note& note) {
        const Block& block = note.blocks[below(note.blocks.size())];
        return fitted({block.id, below(block.text.size() + 1)}, block);
    }

    void type(Note& note, const TextPlace& place) {
        NoteEditor::update(place.block, note, later, [&](Block& block) {
            if (below(3) == 0 && !block.text.empty()) {
                block.text.pop_back();
            } else {
                block.text.insert(std::min(place.offset, block.text.size()), below(4) == 0 ? " " : "x");
            }
        });
    }

    void restructure(Note& note, const TextPlace& place) {
        const TextSpan span{place, anyPlace(note)};
        const Uuid id = place.block;
        switch (below(13)) {
        case 0:
            BlockSelection::remove(span, note, later);
            break;
        case 1:
            BlockSelection::split(place, note, later);
            break;
        case 2:
            BlockSelection::joinWithPrevious(id, note, later);
            break;
        case 3:
            BlockSelection::joinWithNext(id, note, later);
            break;
        case 4:
            BlockSelection::paste("# a\n- b\n[x] c\nd\te\nf\tg\nh", false, place, note, later);
            break;
        case 5:
            BlockSelection::paste(BlockSelection::blocks(span, note), anyPlace(note), note, later);
            break;
        case 6:
            BlockSelection::move(span, static_cast<int>(below(9)) - 4, note, later);
            break;
        case 7:
            NoteEditor::setKind(allBlockKinds.at(below(allBlockKinds.size())), id, note, later);
            break;
        case 8:
            NoteEditor::pressDeleteWhenEmpty(id, note, later);
            break;
        case 9:
            NoteEditor::update(id, note, later, [](Block& block) { block.done = !block.done; });
            break;
        case 10:
            NoteEditor::addRow(id, note, later);
            break;
        case 11:
            note.title += "t";
            break;
        default:
            std::ranges::shuffle(note.blocks, random_);
        }
    }

    std::mt19937 random_;
};

TEST(NoteHistory, undoingAllGivesTheFirstNoteAndRedoingAllTheLast) {
    for (unsigned seed = 0; seed < 30; ++seed) {
        SCOPED_TRACE(seed);
        RandomEditor editor(seed);
        Desk desk{.note = Marked({"P: one two", "H: Plan", "B: a", "T: b", "---", "C: q / a", "|t", "P: "}).note,
                  .history = {}};
        desk.note.blocks[2].fromDigest = true;
        const Note first = desk.note;
        for (int i = 0; i < 100; ++i) {
            editor.edit(desk);
        }
        const Note last = desk.note;
        while (desk.history.canUndo()) {
            desk.undo();
        }
        ASSERT_EQ(lines(desk.note), lines(first));
        EXPECT_EQ(desk.note.blocks, first.blocks);
        EXPECT_EQ(desk.note.title, first.title);
        while (desk.history.canRedo()) {
            desk.redo();
        }
        EXPECT_EQ(desk.note.blocks, last.blocks);
        EXPECT_EQ(desk.note.title, last.title);
    }
}

TEST(NoteHistory, noteThatOthersEditTooStaysWhole) {
    for (unsigned seed = 0; seed < 30; ++seed) {
        SCOPED_TRACE(seed);
        RandomEditor editor(seed);
        RandomEditor others(seed + 1000);
        Desk desk{.note = Marked({"P: one two", "H: Plan", "B: a", "C: q / a"}).note, .history = {}};
        for (int i = 0; i < 50; ++i) {
            editor.edit(desk);
            Desk elsewhere{.note = desk.note, .history = {}};
            others.edit(elsewhere);
            desk.note = elsewhere.note;
        }
        Block theirs = block(BlockKind::paragraph, "theirs");
        desk.note.blocks.push_back(theirs);
        for (int i = 0; i < 200; ++i) {
            i % 3 == 2 ? desk.redo() : desk.undo();
            std::set<Uuid> ids;
            for (const Block& one : desk.note.blocks) {
                ids.insert(one.id);
            }
            ASSERT_EQ(ids.size(), desk.note.blocks.size());
            EXPECT_TRUE(ids.contains(theirs.id));
        }
    }
}

} // namespace
} // namespace varnic
