"""A note typed in the desktop program by the keyboard and the mouse, read back from the screen and from the library, while
other programs share its clipboard and its file.

Usage: editor_test.py PROGRAM FIXTURES CLIPBOARD_WORKER [TEST...]     (the system's own Python has pyatspi)
"""

import json
import os
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

PROGRAM, FIXTURES, CLIPBOARD_WORKER = sys.argv[1:4]
sys.path.insert(0, FIXTURES)

from desktop import Desktop, Program, wait_for  # noqa: E402

NOTE = "0B5D6A1E-5B1C-4B57-9C43-7C6F2A7B8E10"
LETTERS = {"paragraph": "p", "heading": "h", "subheading": "s", "todo": "t", "bullet": "-", "quote": ">", "table": "|",
           "flashcard": "c", "divider": "="}


def brief(block):
    """A block in short: its kind's letter (x for a to-do that is done), and what it holds."""
    if block["kind"] == "table":
        return "| " + "; ".join(", ".join(row) for row in block["rows"])
    if block["kind"] == "flashcard":
        return f"c {block['text']} :: {block['back']}"
    return f"{'x' if block.get('done') else LETTERS[block['kind']]} {block.get('text', '')}".strip()


def block(text, kind="paragraph", number=0, **more):
    return {"id": f"{NOTE[:-4]}{number:04}", "kind": kind, "text": text, **more}


class EditorTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.desktop = Desktop()
        cls.addClassCleanup(cls.desktop.close)

    def setUp(self):
        self.folder = Path(tempfile.mkdtemp(prefix="varnic-editor-"))
        self.addCleanup(shutil.rmtree, self.folder, ignore_errors=True)
        self.library = self.folder / "library"
        self.file = self.library / "notes" / f"{NOTE}.json"

    def start(self, *blocks):
        """The program, with a note of these blocks open, if any."""
        if blocks:
            self.file.parent.mkdir(parents=True)
            self.file.write_text(json.dumps({"id": NOTE, "title": "Plan", "blocks": [
                block(words, number=number) if isinstance(words, str) else words | {"id": f"{NOTE[:-4]}{number:04}"}
                for number, words in enumerate(blocks)]}))
        self.program = Program(self.desktop, PROGRAM, VARNIC_DATA_DIR=str(self.library),
                               XDG_CONFIG_HOME=str(self.folder / "config"))
        self.addCleanup(self.program.close)
        self.program.expect("Record call")
        wait_for(lambda: self.desktop.xdotool("getactivewindow"), "an active window")

    def key(self, *keys):
        self.desktop.xdotool("key", *keys)

    def type(self, text):
        self.desktop.xdotool("type", text)

    def note(self):
        """As it is stored; nothing before the first save."""
        return next((json.loads(file.read_text()) for file in self.library.glob("notes/*.json")), None)

    def expect_stored(self, *lines):
        def stored():
            return [brief(block) for block in (self.note() or {"blocks": []})["blocks"]]
        try:
            wait_for(lambda: stored() == list(lines), "the note")
        except AssertionError:
            self.assertEqual(stored(), list(lines))

    def fields(self):
        """The texts on the page that can be typed in, from top to bottom."""
        found, queue = [], [self.program.root]
        while queue:
            try:
                node = queue.pop()
                queue += [child for child in node if child]
                if node.getRoleName() == "text" and node.name != "Search notes and calls":
                    box = node.queryComponent().getExtents(self.program.pyatspi.DESKTOP_COORDS)
                    found.append(((box.y, box.x), node.queryText().getText(0, -1), node, box))
            except Exception:  # it went away while we looked
                continue
        return sorted(found, key=lambda field: field[0])

    def shown(self):
        return [text for _, text, *_ in self.fields()]

    def field(self, text):
        return wait_for(lambda: next((field for field in self.fields() if field[1] == text), None), f"a field with “{text}”")

    def place(self, text, x=2):
        """A point within the field with that text, so many pixels from its left."""
        box = self.field(text)[3]
        return box.x + x, box.y + min(box.height, 20) // 2

    def click(self, point, button=1):
        self.desktop.xdotool("mousemove", *point, "click", button)

    def drag(self, start, end):
        self.desktop.xdotool("mousemove", *start, "mousedown", 1)
        for step in range(1, 11):
            self.desktop.xdotool("mousemove", *(int(a + (b - a) * step / 10) for a, b in zip(start, end)))
        self.desktop.xdotool("mouseup", 1)

    def focused(self):
        """The text of the field in use and where its caret is."""
        state = self.program.pyatspi.STATE_FOCUSED
        return next(((text, node.queryText().caretOffset) for _, text, node, _ in self.fields()
                     if node.getState().contains(state)), None)

    def go(self, text):
        """Into the field with that text, behind its last letter."""
        self.click(self.place(text))
        self.key("End")
        wait_for(lambda: self.focused() == (text, len(text)), f"the caret behind “{text}”")

    def copied(self, kind):
        return subprocess.run([CLIPBOARD_WORKER, "read", kind], capture_output=True, text=True, check=True).stdout

    def copy_elsewhere(self, kind, text):
        """Another program has it on its clipboard."""
        holder = self.desktop.spawn([CLIPBOARD_WORKER, "hold", kind, text], stdout=subprocess.PIPE, text=True)
        self.addCleanup(holder.kill)
        self.assertEqual(holder.stdout.readline(), "held\n")

    def test_tour_typedInTheWindow_isThereAgain(self):
        self.start()
        self.key("ctrl+n")
        self.program.expect("Title")
        wait_for(self.focused, "a caret in the note")
        self.key("Up")
        self.type("Launch")
        self.key("Return")
        self.type("# Plan")
        self.key("Return")
        self.type("[] Ship it")
        self.key("Return")
        self.type("Call Ann")
        self.key("ctrl+Return", "Return", "Return")
        self.type("Colour of the sky :: Blue")
        self.program.press("Add table")
        wait_for(lambda: self.focused() == ("", 0), "a caret in the table")
        self.type("Who\tWhat\tAnn\tDesign\tKenji\tBuild")
        stored = ["h Plan", "t Ship it", "x Call Ann", "c Colour of the sky :: Blue",
                  "| Who, What; Ann, Design; Kenji, Build"]
        self.expect_stored(*stored)

        self.key("ctrl+5")
        self.program.press("…Study…", "push button")
        self.program.expect("Question: Colour of the sky")
        self.key("space")
        self.program.expect("Answer: Blue")
        self.key("2")
        self.program.expect("All caught up — 1 reviewed")
        self.key("Escape", "ctrl+q")
        self.assertEqual(self.program.end(), 0)
        self.expect_stored(*stored)
        self.assertEqual((self.note()["title"], self.note()["blocks"][3]["card"]["box"]), ("Launch", 2))

        self.start()
        texts = ["Launch", "Plan", "Ship it", "Call Ann", "Colour of the sky", "Blue", "Who", "What", "Ann", "Design",
                 "Kenji", "Build"]
        wait_for(lambda: self.shown() == texts, "all of the note")
        self.assertEqual([self.program.expect(name) is not None for name in ("Not done", "Done")], [True, True])
        self.assertTrue(any(name.startswith("Box 2") for name in self.program.names()))

    def test_severalBlocks_goToOtherProgramsAndComeFromThem(self):
        self.start("one", block("Ship it", "todo"), block("", "table", rows=[["a", "b"], ["c", "d"]]), "end")
        self.drag(self.place("one"), self.place("d", 30))
        self.key("ctrl+c")
        wait_for(lambda: "one" in self.copied("text/plain"), "a copy")
        self.assertEqual(self.copied("text/plain"), "one\n- [ ] Ship it\na\tb\nc\td")
        self.assertEqual(self.copied("text/markdown"), "one\n\n- [ ] Ship it\n\n| a | b |\n| --- | --- |\n| c | d |")

        self.copy_elsewhere("text/markdown", "## Plan\n\n- [x] done\n- item\n")
        self.go("end")
        self.key("Return", "ctrl+v")
        self.expect_stored("p one", "t Ship it", "| a, b; c, d", "p end", "h Plan", "x done", "- item")

    def test_mouse_selectsMovesAndTurnsBlocks_andUndo(self):
        self.start("one", "two", "three", "four")
        self.drag(self.place("one"), self.place("two", 200))
        self.type("x")
        self.expect_stored("p x", "p three", "p four")

        self.go("x")
        box = self.program.expect("Block options").queryComponent().getExtents(self.program.pyatspi.DESKTOP_COORDS)
        grip = (box.x + 8, box.y + 8)
        self.drag(grip, (grip[0], self.place("four")[1] + 10))
        self.expect_stored("p three", "p four", "p x")
        self.type("!")
        self.expect_stored("p three", "p four", "p x!")

        self.program.press("Block options")
        self.program.press("Turn Into", "menu item")
        self.program.press("Quote", "menu item")
        self.expect_stored("p three", "p four", "> x!")
        self.type("?")
        self.expect_stored("p three", "p four", "> x!?")
        self.key("ctrl+z")
        self.expect_stored("p three", "p four", "> x!")
        self.key("ctrl+shift+z")
        self.expect_stored("p three", "p four", "> x!?")

    def test_typing_whileAnotherProgramChangesTheNote_losesNothing(self):
        self.start("first", "mine", "last")
        self.go("mine")
        rounds = range(6)
        for number in rounds:
            self.type(f" {number}")  # and before that is saved:
            note = self.note()
            note["blocks"][0]["text"] += f" {number}"
            note["blocks"].append(block(f"other {number}", number=100 + number))
            fresh = self.file.with_suffix(".fresh")
            fresh.write_text(json.dumps(note))
            os.replace(fresh, self.file)
            mine = f"mine {' '.join(map(str, rounds[:number + 1]))}"
            self.expect_stored("p first" + mine.removeprefix("mine"), f"p {mine}", "p last",
                               *(f"p other {other}" for other in rounds[:number + 1]))
            wait_for(lambda: f"other {number}" in self.shown(), "what the other has written")
            self.assertEqual(self.focused(), (mine, len(mine)))

    def test_pageKeys_takeTheCaretAlong(self):
        self.start(*(f"line {number}" for number in range(200)))
        self.go("line 0")
        places = []
        for key in ("Next", "Next", "Prior", "Prior"):
            before = self.focused()
            self.key(key)
            wait_for(lambda: self.focused() not in (None, before), "the caret elsewhere")
            places.append(int(self.focused()[0].split()[1]))
        self.assertGreater(places[0], 15)
        self.assertEqual(places, [places[0], 2 * places[0], places[0], 0])

    def test_deadKeys_composeLetters(self):
        self.start("caf")
        subprocess.run(["setxkbmap", "us", "-variant", "intl"], check=True)
        self.addCleanup(subprocess.run, ["setxkbmap", "us"])
        self.go("caf")
        self.key("dead_acute", "e", "dead_tilde", "n")
        self.expect_stored("p caféñ")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + sys.argv[4:], verbosity=2)
