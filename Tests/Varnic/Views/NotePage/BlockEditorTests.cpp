#include "Varnic/Views/BlockEditor/BlocksModel.h"
#include "Varnic/Views/NotePage/NotePageTest.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QSignalSpy>

#include <algorithm>
#include <array>
#include <map>

namespace varnic {
namespace {

constexpr std::array letters{
    std::pair(BlockKind::paragraph, "p"), std::pair(BlockKind::heading, "h"),   std::pair(BlockKind::subheading, "s"),
    std::pair(BlockKind::todo, "t"),      std::pair(BlockKind::bullet, "-"),    std::pair(BlockKind::quote, ">"),
    std::pair(BlockKind::table, "|"),     std::pair(BlockKind::flashcard, "c"), std::pair(BlockKind::divider, "=")};

std::string joined(const std::vector<std::string>& parts, const char* between) {
    std::string whole;
    for (const std::string& part : parts) {
        whole += (&part == &parts.front() ? "" : between) + part;
    }
    return whole;
}

std::vector<std::string> split(const std::string& whole, const std::string& between) {
    std::vector<std::string> parts;
    for (std::size_t from = 0;;) {
        const std::size_t to = whole.find(between, from);
        parts.push_back(whole.substr(from, to - from));
        if (to == std::string::npos) {
            return parts;
        }
        from = to + between.size();
    }
}

/// The fields of a block, in the order of their parts.
std::vector<std::string*> fieldsOf(Block& block) {
    if (block.kind == BlockKind::flashcard) {
        return {&block.text, &block.back};
    }
    if (block.kind == BlockKind::table) {
        std::vector<std::string*> cells;
        for (auto& row : block.rows) {
            for (std::string& cell : row) {
                cells.push_back(&cell);
            }
        }
        return cells;
    }
    return {&block.text};
}

/// A note in short: a line a block, its kind's letter (x for a to-do that is done) and its text; "|a,b;c,d" is a table,
/// "cq::a" a card. "^" is the caret.
std::string brief(std::vector<Block> blocks, const QQuickItem* focused) {
    std::vector<std::string> lines;
    for (Block& block : blocks) {
        if (focused != nullptr && focused->property("blockId").toString().toStdString() == block.id.text()) {
            std::string& text = *fieldsOf(block).at(static_cast<std::size_t>(focused->property("part").toInt()));
            QString withCaret = QString::fromStdString(text);
            text = withCaret.insert(focused->property("cursorPosition").toInt(), '^').toStdString();
        }
        const auto* const letter = std::ranges::find(letters, block.kind, &decltype(letters)::value_type::first);
        std::string line = block.kind == BlockKind::todo && block.done ? "x" : letter->second;
        if (block.kind == BlockKind::table) {
            std::vector<std::string> rows;
            std::ranges::transform(block.rows, std::back_inserter(rows),
                                   [](const auto& row) { return joined(row, ","); });
            line += joined(rows, ";");
        } else {
            line += block.text + (block.kind == BlockKind::flashcard ? "::" + block.back : "");
        }
        lines.push_back(line);
    }
    return joined(lines, "\n");
}

struct Parsed {
    std::vector<Block> blocks;
    std::size_t block = 0;
    int part = 0;
    int caret = 0;
};

Parsed parse(const std::string& note) {
    Parsed parsed;
    for (const std::string& line : split(note, "\n")) {
        Block block;
        block.done = line.front() == 'x';
        const auto* const letter = std::ranges::find(letters, block.done ? "t" : line.substr(0, 1),
                                                     [](const auto& pair) { return std::string(pair.second); });
        const std::string text = line.substr(1);
        if (letter->first == BlockKind::table) {
            std::vector<std::vector<std::string>> rows;
            for (const std::string& row : split(text, ";")) {
                rows.push_back(split(row, ","));
            }
            block = Block::table(rows);
        } else if (letter->first == BlockKind::flashcard) {
            block = Block::flashcard(split(text, "::")[0], split(text, "::")[1]);
        } else {
            block.kind = letter->first;
            block.text = text;
        }
        const auto fields = fieldsOf(block);
        for (std::size_t part = 0; part < fields.size(); ++part) {
            if (const std::size_t at = fields[part]->find('^'); at != std::string::npos) {
                fields[part]->erase(at, 1);
                parsed.block = parsed.blocks.size();
                parsed.part = static_cast<int>(part);
                parsed.caret = static_cast<int>(QString::fromStdString(fields[part]->substr(0, at)).size());
            }
        }
        parsed.blocks.push_back(block);
    }
    return parsed;
}

class BlockEditorTest : public NotePageTest {
protected:
    /// Opens a note, given in short, and puts the caret in.
    void start(const std::string& note) {
        const Parsed parsed = parse(note);
        id = addNote("Plan", parsed.blocks);
        open(id);
        // A new note asks for the focus.
        ASSERT_TRUE(QTest::qWaitFor([this] { return !model->focusBlock.value(); }));
        place(parsed.blocks[parsed.block].id, parsed.part, parsed.caret);
    }

    QQuickItem* field(const Uuid& block, int part) {
        QQuickItem* found = nullptr;
        visitShown(view.rootObject(), [&](QQuickItem* item) {
            if (found == nullptr && item->metaObject()->indexOfProperty("cursorPosition") >= 0 &&
                item->property("blockId").toString().toStdString() == block.text() && item->property("part") == part) {
                found = item;
            }
        });
        return found;
    }

    void place(const Uuid& block, int part, int caret) {
        ASSERT_TRUE(QTest::qWaitFor([&] { return field(block, part) != nullptr; }));
        field(block, part)->forceActiveFocus();
        field(block, part)->setProperty("cursorPosition", caret);
    }

    /// Presses keys: letters as they are, others as "<Return>", "<S-Down>", "<C-z>", "<A-Up>".
    void press(const std::string& keys) {
        for (std::size_t i = 0; i < keys.size(); ++i) {
            if (keys[i] != '<') {
                QTest::keyClick(&view, keys[i]);
                continue;
            }
            const std::size_t end = keys.find('>', i);
            std::string name = keys.substr(i + 1, end - i - 1);
            i = end;
            Qt::KeyboardModifiers modifiers;
            while (name.size() > 2 && name[1] == '-') {
                if (name[0] == 'C') {
                    modifiers |= Qt::ControlModifier;
                } else {
                    modifiers |= name[0] == 'A' ? Qt::AltModifier : Qt::ShiftModifier;
                }
                name.erase(0, 2);
            }
            const QKeySequence sequence(QString::fromStdString(name));
            QTest::keyClick(&view, static_cast<Qt::Key>(sequence[0].key()), modifiers);
        }
        QCoreApplication::processEvents();
    }

    std::string now() {
        const QQuickItem* const focused = view.activeFocusItem();
        return brief(model->note(id)->blocks,
                     focused != nullptr && focused->property("blockId").isValid() ? focused : nullptr);
    }

    /// So many lines, with the caret at the start of the first.
    static std::string lines(int count) {
        std::string note = "p^line";
        for (int line = 1; line < count; ++line) {
            note += "\npline";
        }
        return note;
    }

    Uuid id;
};

struct KeyCase {
    friend std::ostream& operator<<(std::ostream& out, const KeyCase& shown) { return out << shown.keys; }

    const char* name;
    std::string before;
    std::string keys;
    std::string after;
};

class Keys : public BlockEditorTest, public testing::WithParamInterface<KeyCase> {};

TEST_P(Keys, do_what_is_expected) {
    start(GetParam().before);
    press(GetParam().keys);
    EXPECT_EQ(now(), GetParam().after);
}

INSTANTIATE_TEST_SUITE_P(
    BlockEditor, Keys,
    testing::Values(
        KeyCase{"return_makes_a_block", "pone^", "<Return>two", "pone\nptwo^"},
        KeyCase{"return_in_a_text_splits_it", "tone^two", "<Return>", "tone\nt^two"},
        KeyCase{"return_in_an_empty_item_ends_the_list", "-one\n-^", "<Return>x", "-one\npx^"},
        KeyCase{"shift_return_breaks_the_line", "pone^two", "<S-Return>", "pone\n^two"},
        KeyCase{"heading_by_its_sign", "p^", "# Plan", "hPlan^"},
        KeyCase{"todo_by_its_sign", "p^", "[] Ship", "tShip^"},
        KeyCase{"bullet_and_then_todo", "p^", "- [x] Ship", "xShip^"},
        KeyCase{"card_goes_on_with_its_answer", "p^", "sky :: blue", "csky::blue^"},
        KeyCase{"divider_goes_on_below", "p^", "---x", "=\npx^"},
        KeyCase{"divider_before_a_text", "p^\npnext", "---", "=\npnext^"},
        KeyCase{"backspace_in_an_empty_block_removes_it", "pone\np^", "<Backspace>", "pone^"},
        KeyCase{"backspace_takes_the_form_away_first", "pone\nh^", "<Backspace>", "pone\np^"},
        KeyCase{"backspace_in_the_only_block", "p^", "<Backspace>x", "px^"},
        KeyCase{"backspace_at_the_start_joins", "pone\np^two", "<Backspace>", "pone^two"},
        KeyCase{"delete_at_the_end_joins", "pone^\nptwo", "<Delete>", "pone^two"},
        KeyCase{"backspace_deletes_a_divider", "pone^\n=\nptwo", "<Down><Backspace>", "pone^\nptwo"},
        KeyCase{"backspace_keeps_an_answer", "c^::yes", "<Backspace>", "c^::yes"},
        KeyCase{"up_and_down_keep_their_column", "pabcdef^gh\npx\npabcdefgh", "<Down><Down>",
                "pabcdefgh\npx\npabcdef^gh"},
        KeyCase{"left_at_the_start_goes_back", "pone\np^two", "<Left>", "pone^\nptwo"},
        KeyCase{"right_at_the_end_goes_on", "pone^\nptwo", "<Right>", "pone\np^two"},
        KeyCase{"from_a_question_to_its_answer", "cq^::a", "<Return>!", "cq::a!^"},
        KeyCase{"tab_walks_through_a_table", "|a^,b;c,d", "<Tab>1<Tab>2<Tab>3", "|a,b1;c2,d3^"},
        KeyCase{"tab_after_the_last_cell_adds_a_row", "|a,b^", "<Tab>x", "|a,b;x^,"},
        KeyCase{"down_stays_in_the_column_of_a_table", "|a,b^;c,d", "<Down>", "|a,b;c,d^"},
        KeyCase{"alt_down_moves_the_block", "po^ne\nptwo", "<A-Down>x", "ptwo\npox^ne"},
        KeyCase{"ctrl_return_ticks", "tShip^", "<C-Return>", "xShip^"},
        KeyCase{"typing_takes_the_place_of_what_is_selected", "po^ne\nptwo\nph", "<S-Down><S-Down>x", "pox^"},
        KeyCase{"delete_takes_what_is_selected", "po^ne\n=\npthree", "<S-Down><S-Down><Delete>", "po^hree"},
        KeyCase{"shift_right_goes_over_the_border", "pone^\nptwo", "<S-Right><S-Right><Delete>", "pone^wo"},
        KeyCase{"shift_left_goes_over_the_border", "pone\np^two", "<S-Left><S-Left><Delete>", "pon^two"},
        KeyCase{"a_selection_can_shrink_again", "pone^\nptwo", "<S-Right><S-Left>x", "ponex^\nptwo"},
        KeyCase{"select_all_twice_is_the_note", "pone^\nhtwo\n=", "<C-a><C-a><Delete>x", "px^"},
        KeyCase{"the_menu_turns_a_block_into_another", "pone^", "<Menu><Down><Right><Down><Down><Down><Return>!",
                "tone!^"},
        KeyCase{"escape_ends_a_selection_where_it_was_led", "po^ne\nptwo", "<S-Down><Escape>x", "pone\nptx^wo"},
        KeyCase{"end_of_the_line_a_selection_was_led_to", "po^ne\nptwo", "<S-Down><End>x", "pone\nptwox^"},
        KeyCase{"end_of_the_note_from_a_selection", "po^ne\nptwo\npthree", "<S-Down><C-End>x", "pone\nptwo\npthreex^"},
        KeyCase{"arrow_ends_a_selection", "pone^\nptwo", "<S-Down><Right>x", "pone\nptwox^"},
        KeyCase{"the_menu_of_a_divider", "pone^\n=\npx", "<Down><S-F10><Down><Down><Down><Return>", "pone\npx\n=^"},
        KeyCase{"the_menu_of_a_card", "cq::a^\npx", "<C-S-F10><Down><Down><Down><Return>", "px\ncq^::a"},
        KeyCase{"the_menu_of_a_table", "|a,b^\npx", "<C-S-F10><Down><Down><Down><Return>", "px\n|a^,b"},
        KeyCase{"the_menu_of_a_table_by_that_of_a_cell", "|a,b^\npx",
                "<Menu><Down><Down><Down><Down><Return><Down><Down><Down><Return>", "px\n|a^,b"},
        KeyCase{"shift_page_down_selects_on", "po^ne\nptwo\npthree", "<S-PgDown><Delete>", "po^"},
        KeyCase{"shift_page_up_selects_back", "pone\nptwo\npth^ree", "<S-PgUp><Delete>", "p^ree"},
        KeyCase{"shift_page_down_and_up_again", "pone\npt^wo", "<S-PgDown><S-PgUp>x", "px^wo"},
        KeyCase{"undo_of_a_row_leads_to_the_cell_above", "|a,b^", "<Tab>x<C-z><C-z>y", "|ay^,b"},
        KeyCase{"undo_in_a_cell_stays_in_it", "|a,b;c,d^", "x<C-z>", "|a,b;c,d^"},
        KeyCase{"undo_of_backspaces_is_one", "pone^", "<Backspace><Backspace><C-z>", "pone^"},
        KeyCase{"undo_takes_a_word_back", "pone^", " two<C-z>", "pone ^"},
        KeyCase{"undo_of_a_sign_leaves_what_was_typed", "p^", "# <C-z>", "p# ^"},
        KeyCase{"undo_of_a_removed_selection", "po^ne\nptwo", "<S-Down><Delete><C-z>", "pone\npt^wo"},
        KeyCase{"redo", "pone^", "x<C-z><C-S-z>", "ponex^"},
        KeyCase{"copied_blocks_come_again", "tone^\n-two", "<Home><C-S-End><C-c><Right><Return><C-v>",
                "tone\n-two\ntone\n-two^"}),
    [](const auto& test) { return std::string(test.param.name); });

TEST_F(BlockEditorTest, lines_from_elsewhere_become_blocks) {
    for (const auto& [text, after] :
         {std::pair("one", "paone^b"), std::pair("# one\n- two\r\n[] three", "pa\nhone\n-two\ntthree^\npb"),
          std::pair("| a | b |\n|---|---|\n| c | d |\n", "pa\n|a,b;c,d\npb")}) {
        start("pa^b");
        QGuiApplication::clipboard()->setText(text);
        press("<C-v>");
        std::string is = now();
        std::string wanted = after;
        if (wanted.find('^') == std::string::npos) {
            std::erase(is, '^');
        }
        EXPECT_EQ(is, wanted);
    }
}

TEST_F(BlockEditorTest, a_request_for_the_focus_is_honoured_once) {
    const Parsed parsed = parse("pone\nptwo");
    id = addNote("Plan", parsed.blocks);
    model->focusBlock = parsed.blocks[1].id; // before there is an editor
    open(id);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !model->focusBlock.value(); }));
    EXPECT_EQ(now(), "pone\nptwo^");
    place(parsed.blocks[0].id, 0, 0);
    QCoreApplication::processEvents();
    EXPECT_EQ(now(), "p^one\nptwo");
    model->focusBlock = parsed.blocks[1].id;
    EXPECT_EQ(now(), "pone\nptwo^");
}

TEST_F(BlockEditorTest, the_hint_stands_in_the_focused_paragraph_only) {
    start("p^\np\nh");
    std::vector<QQuickItem*> shown;
    for (const Block& block : model->note(id)->blocks) {
        for (QQuickItem* child : field(block.id, 0)->childItems()) {
            if (child->isVisible() && !child->property("text").toString().isEmpty()) {
                shown.push_back(child);
            }
        }
    }
    ASSERT_EQ(shown.size(), 2U);
    EXPECT_EQ(shown[0]->property("text"), "Write, or type # heading · [] to-do · - list · question :: answer");
    EXPECT_EQ(shown[1]->property("text"), "Heading");
}

TEST_F(BlockEditorTest, what_changes_elsewhere_leaves_caret_and_typing_where_they_are) {
    start("pone\nptwo^");
    model->update(id, false, [](Note& note) {
        note.blocks.insert(note.blocks.begin(), Block{.text = "above"});
        note.blocks.back().text = "> two";
    });
    press("!");
    EXPECT_EQ(now(), "pabove\npone\np> two!^");
    press("<C-z>");
    EXPECT_EQ(now(), "pabove\npone\np> two^");
}

TEST_F(BlockEditorTest, the_focus_stays_when_its_block_goes) {
    start("pone\nptwo^\npthree");
    model->update(id, false, [](Note& note) { note.blocks.erase(note.blocks.begin() + 1); });
    ASSERT_TRUE(QTest::qWaitFor([this] { return now().find('^') != std::string::npos; }));
    EXPECT_EQ(now(), "pone\npthree^");
}

TEST_F(BlockEditorTest, an_input_method_writes_in_the_place_of_what_is_selected) {
    start("po^ne\nptwo");
    press("<S-Down>");
    QInputMethodEvent composing(QStringLiteral("ni"), {});
    QCoreApplication::sendEvent(view.activeFocusItem(), &composing);
    EXPECT_EQ(now(), "po^wo");
    press("<Return>"); // the method's, as long as it composes
    EXPECT_EQ(now(), "po^wo");
    QInputMethodEvent done;
    done.setCommitString(QStringLiteral("你"));
    QCoreApplication::sendEvent(view.activeFocusItem(), &done);
    EXPECT_EQ(now(), "po你^wo");
}

// A method drops what it composes when the focus moves, and the first letter of it would be lost.
TEST_F(BlockEditorTest, the_focus_is_where_an_input_method_will_write) {
    start("po^ne\nptwo\npthree");
    press("<S-Down><S-Down>");
    const QQuickItem* const focused = view.activeFocusItem();
    QInputMethodEvent composing(QStringLiteral("n"), {});
    QCoreApplication::sendEvent(view.activeFocusItem(), &composing);
    EXPECT_EQ(now(), "po^hree");
    EXPECT_EQ(view.activeFocusItem(), focused);
}

TEST_F(BlockEditorTest, blanks_that_break_no_line_stay) {
    start("pone\u00a0!^");
    press("x");
    EXPECT_EQ(now(), "pone\u00a0!x^");
}

TEST_F(BlockEditorTest, undo_belongs_to_the_toast_that_offers_it) {
    start("pone^");
    press("x");
    model->flash({.text = "Deleted", .symbol = "trash", .undo = [] {}});
    QKeyEvent override(QEvent::ShortcutOverride, Qt::Key_Z, Qt::ControlModifier);
    QCoreApplication::sendEvent(view.activeFocusItem(), &override);
    EXPECT_FALSE(override.isAccepted());
}

TEST_F(BlockEditorTest, a_ragged_table_can_be_typed_in_where_cells_are_missing) {
    id = addNote("Plan", {Block::table({{"a", "b"}, {"c"}})});
    open(id);
    place(model->note(id)->blocks[0].id, 3, 0);
    press("d");
    EXPECT_EQ(now(), "|a,b;c,d^");
}

using Rows = std::vector<std::vector<std::string>>;

struct ShapeCase {
    friend std::ostream& operator<<(std::ostream& out, const ShapeCase& shown) { return out << shown.name; }

    const char* name;
    void (*change)(Rows&);
    std::string after;
};

class Shapes : public BlockEditorTest, public testing::WithParamInterface<ShapeCase> {};

void insertColumn(Rows& rows, int column) {
    for (auto& row : rows) {
        row.insert(row.begin() + column, "-");
    }
}

void eraseColumn(Rows& rows, int column) {
    for (auto& row : rows) {
        row.erase(row.begin() + column);
    }
}

TEST_P(Shapes, leave_the_caret_in_its_cell_or_near) {
    start("|a,b;cc^c,d;e,f\npx");
    model->update(id, false, [](Note& note) { GetParam().change(note.blocks.front().rows); });
    ASSERT_TRUE(QTest::qWaitFor([this] { return now().find('^') != std::string::npos; }));
    press("!");
    EXPECT_EQ(now(), GetParam().after);
}

INSTANTIATE_TEST_SUITE_P(
    BlockEditor, Shapes,
    testing::Values(
        ShapeCase{"a_row_below", [](Rows& rows) { rows.push_back({"", ""}); }, "|a,b;cc!^c,d;e,f;,\npx"},
        ShapeCase{"a_row_above", [](Rows& rows) { rows.insert(rows.begin(), {"-", "-"}); }, "|-,-;a,b;cc!^c,d;e,f\npx"},
        ShapeCase{"a_column_behind", [](Rows& rows) { insertColumn(rows, 2); }, "|a,b,-;cc!^c,d,-;e,f,-\npx"},
        ShapeCase{"a_column_before", [](Rows& rows) { insertColumn(rows, 0); }, "|-,a,b;-,cc!^c,d;-,e,f\npx"},
        ShapeCase{"no_row_above", [](Rows& rows) { rows.erase(rows.begin()); }, "|cc!^c,d;e,f\npx"},
        ShapeCase{"no_column_behind", [](Rows& rows) { eraseColumn(rows, 1); }, "|a;cc!^c;e\npx"},
        ShapeCase{"both_at_once",
                  [](Rows& rows) {
                      insertColumn(rows, 0);
                      rows.erase(rows.begin());
                  },
                  "|-,cc!^c,d;-,e,f\npx"},
        ShapeCase{"not_its_row", [](Rows& rows) { rows.erase(rows.begin() + 1); }, "|a,b;e!^,f\npx"},
        ShapeCase{"not_its_column", [](Rows& rows) { eraseColumn(rows, 0); }, "|b;d!^;f\npx"},
        ShapeCase{"only_its_first_cell", [](Rows& rows) { rows = {{"a"}}; }, "|a!^\npx"},
        ShapeCase{"no_rows", [](Rows& rows) { rows.clear(); }, "|\npx!^"}),
    [](const auto& test) { return std::string(test.param.name); });

TEST_F(BlockEditorTest, the_buttons_of_a_table_leave_the_caret_in_its_cell) {
    start("|a,b;cc^c,d");
    for (const auto& [button, after] :
         {std::pair("Row", "|a,b;cc!^c,d;,"), std::pair("Column", "|a,b,;cc!!^c,d,;,,")}) {
        QQuickItem* pressed = nullptr;
        visitShown(view.rootObject(), [&, text = button](QQuickItem* item) {
            if (item->property("text") == text && item->inherits("QQuickAbstractButton")) {
                pressed = item;
            }
        });
        ASSERT_NE(pressed, nullptr);
        QTest::mouseClick(&view, Qt::LeftButton, {},
                          pressed->mapToScene({pressed->width() / 2, pressed->height() / 2}).toPoint());
        press("!");
        EXPECT_EQ(now(), after);
    }
    press("<C-z><C-z>?"); // what was typed last, and the column
    EXPECT_EQ(now(), "|a,b;cc!?^c,d;,");
}

/// A table of more columns than the page has room for.
class WideTable : public BlockEditorTest {
protected:
    static constexpr int columns = 16;

    void SetUp() override {
        ASSERT_NO_FATAL_FAILURE(openTableOf("word"));
        place(model->note(id)->blocks.front().id, 0, 0);
        ASSERT_EQ(scrolled(), 0);
    }

    void openTableOf(const char* word) {
        const std::vector<std::string> row(columns, word);
        id = addNote("Plan", {Block::table({row, row}), Block{.text = std::string(20'000, 'x')}});
        open(id);
        ASSERT_TRUE(QTest::qWaitFor([this] { return !model->focusBlock.value(); }));
    }

    qreal scrolled() { return find<QQuickItem>("sideways")->property("contentX").toReal(); }

    /// Whether all of a cell's text is in sight.
    bool isSeen(const QQuickItem& text) {
        auto* const table = find<QQuickItem>("sideways");
        return table->boundingRect().contains(text.mapRectToItem(table, text.boundingRect()));
    }

    /// A place in the cell of the caret, before its words.
    QPoint caretCell() {
        return view.activeFocusItem()->mapToScene(QPointF(2, view.activeFocusItem()->height() / 2)).toPoint();
    }

    /// Over the cell of the caret, in eighths of a degree.
    void wheel(QPoint angle) {
        QWheelEvent event(caretCell(), view.mapToGlobal(caretCell()), {}, angle, Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&view, &event);
    }
};

TEST_F(WideTable, is_scrolled_to_the_cell_of_the_caret) {
    EXPECT_GE(view.activeFocusItem()->width(), 50);
    for (int i = 1; i < columns; ++i) {
        press("<Tab>");
    }
    EXPECT_EQ(view.activeFocusItem()->property("part"), columns - 1);
    EXPECT_GT(scrolled(), 0);
    EXPECT_TRUE(isSeen(*view.activeFocusItem()));
    press("<Tab>");
    EXPECT_EQ(scrolled(), 0);
    EXPECT_TRUE(isSeen(*view.activeFocusItem()));
}

TEST_F(WideTable, begins_at_the_right_where_its_words_do) {
    openTableOf("מילה");
    EXPECT_TRUE(QTest::qWaitFor([this] { return scrolled() > 0; }));
    QQuickItem* first = nullptr;
    visitShown(find<QQuickItem>("sideways"), [&](QQuickItem* item) {
        first = item->property("part") == 0 && item->inherits("QQuickTextEdit") ? item : first;
    });
    ASSERT_NE(first, nullptr);
    EXPECT_TRUE(isSeen(*first));
}

TEST_F(WideTable, text_is_selected_with_the_mouse) {
    const QPoint from = caretCell();
    QTest::mousePress(&view, Qt::LeftButton, {}, from);
    for (int x = 0; x <= 40; x += 8) {
        QTest::mouseMove(&view, from + QPoint(x, 0));
    }
    QTest::mouseRelease(&view, Qt::LeftButton, {}, from + QPoint(40, 0));
    EXPECT_EQ(view.activeFocusItem()->property("selectedText").toString().toStdString(), "word");
    EXPECT_EQ(scrolled(), 0);
}

TEST_F(WideTable, press_beside_the_words_of_a_cell_puts_the_caret_in) {
    const qreal first = view.activeFocusItem()->width();
    QTest::mouseClick(&view, Qt::LeftButton, {}, caretCell() + QPoint(static_cast<int>(first) + 10, 0));
    press("!");
    EXPECT_EQ(view.activeFocusItem()->property("part"), 1);
    EXPECT_EQ(view.activeFocusItem()->property("text").toString().toStdString(), "!word");
}

TEST_F(WideTable, wheel_scrolls_the_page_over_it) {
    auto* const sheet = find<QQuickItem>("sheet");
    const qreal before = sheet->property("contentY").toReal();
    wheel({-240, 0});
    EXPECT_TRUE(QTest::qWaitFor([this] { return scrolled() > 20; }));
    EXPECT_EQ(sheet->property("contentY").toReal(), before);
    wheel({0, -240});
    EXPECT_TRUE(QTest::qWaitFor([&] { return sheet->property("contentY").toReal() > before + 20; }));
}

TEST_F(BlockEditorTest, a_table_without_rows_is_gone_over) {
    const std::vector<Block> blocks{Block{.id = Uuid::random(), .text = "one"}, Block::table({}),
                                    Block{.id = Uuid::random(), .text = "two"}};
    id = addNote("Plan", blocks);
    open(id);
    for (const auto& [keys, after] : {std::pair("<Down>", "pone\n|\nptwo^"), std::pair("<Right>", "pone\n|\np^two"),
                                      std::pair("<Tab>", "pone\n|\nptwo^"), std::pair("<Down><Up>", "pone^\n|\nptwo"),
                                      std::pair("<Tab><S-Backtab>", "pone^\n|\nptwo")}) {
        place(blocks[0].id, 0, 3);
        press(keys);
        EXPECT_EQ(now(), after) << keys;
    }
    place(blocks[0].id, 0, 3);
    press("<S-Down><S-Down><Delete>");
    EXPECT_EQ(now(), "pone^");
}

TEST_F(BlockEditorTest, rows_are_told_in_their_order) {
    start("pone^\npfour");
    press("<Return>two<Return>three<A-Up>");
    const std::vector<std::string> order{"one", "three", "two", "four"};
    std::vector<std::string> told;
    const auto isInOrder = [&] {
        told.clear();
        visitShown(find<QQuickItem>("sheet"), [&told](const QQuickItem* item) {
            if (item->metaObject()->indexOfProperty("stored") >= 0) {
                told.push_back(item->property("stored").toString().toStdString());
            }
        });
        return told == order;
    };
    EXPECT_TRUE(QTest::qWaitFor(isInOrder)) << joined(told, " ");
}

TEST_F(BlockEditorTest, pages_are_selected_one_after_another) {
    start(lines(100));
    std::vector<std::size_t> left;
    for (const char* const keys : {"<S-PgDown>", "<S-PgDown><S-PgDown>", "<S-PgDown><S-PgDown><S-PgUp>"}) {
        press(std::string(keys) + "<Delete>");
        left.push_back(model->note(id)->blocks.size());
        press("<C-z><C-Home>");
    }
    EXPECT_LT(left[0], 85U);
    EXPECT_GT(left[0], 50U);
    EXPECT_NEAR(static_cast<double>(100 - left[1]), 2.0 * static_cast<double>(100 - left[0]), 1);
    EXPECT_NEAR(static_cast<double>(left[2]), static_cast<double>(left[0]), 1);
}

TEST_F(BlockEditorTest, scrolling_leaves_the_caret_behind) {
    start(lines(100));
    auto* const sheet = find<QQuickItem>("sheet");
    const auto place = [sheet] { return sheet->property("contentY").toReal() - sheet->property("originY").toReal(); };
    sheet->setProperty("contentY", 1'500); // as a wheel does
    QCoreApplication::processEvents();
    EXPECT_EQ(sheet->property("contentY"), 1'500);
    press("x");
    EXPECT_LT(place(), 100) << "typing is seen";
    press("<C-a><C-a>");
    EXPECT_GT(place(), 1'000);
    press("<C-Home>");
    EXPECT_EQ(place(), 0) << "with the title";
}

TEST_F(BlockEditorTest, what_a_long_deletion_leaves_is_shown) {
    constexpr int many = 150;
    start(lines(many));
    press("<Down><Down><C-S-End>");
    view.grabWindow(); // lays the end out
    press("<Delete>");
    const std::vector<Block> left = model->note(id)->blocks;
    ASSERT_EQ(left.size(), 3U);
    for (const Block& block : left) {
        EXPECT_TRUE(QTest::qWaitFor([&] { return field(block.id, 0) != nullptr; })) << block.text;
    }
}

TEST_F(BlockEditorTest, rows_out_of_sight_are_not_made) {
    std::vector<Block> blocks(2000, Block{.text = "one"});
    for (Block& block : blocks) {
        block.id = Uuid::random();
    }
    id = addNote("Plan", blocks);
    open(id);
    ASSERT_TRUE(QTest::qWaitFor([&] { return field(blocks[0].id, 0) != nullptr; }));
    const auto isMade = [this](const Block& block) { return field(block.id, 0) != nullptr; };
    EXPECT_LT(std::ranges::count_if(blocks | std::views::take(200), isMade), 100);
    place(blocks[0].id, 0, 0);
    press("<C-End>!");
    EXPECT_EQ(model->note(id)->blocks.back().text, "one!");
}

} // namespace
} // namespace varnic
