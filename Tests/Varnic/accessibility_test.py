"""The desktop program as a screen reader and a keyboard find it: every screen's tree has names, roles, states and
actions, nothing that doesn't show is told, and the keyboard is somewhere at every moment.

Usage: accessibility_test.py PROGRAM FIXTURES MAKE_CALL [TEST...]     (the system's own Python has pyatspi)
"""

import json
import shutil
import subprocess
import sys
import tempfile
import unittest
import uuid
from contextlib import contextmanager
from pathlib import Path
from typing import NamedTuple

PROGRAM, FIXTURES, MAKE_CALL = sys.argv[1:4]
sys.path.insert(0, FIXTURES)

from desktop import Desktop, Program, wait_for  # noqa: E402
from screen_reader import SOON, ScreenReader  # noqa: E402


class Screen(NamedTuple):
    """How a screen opens from the main window, what tells that it is there, and what must be read on it."""

    name: str
    steps: tuple  # of key:, type:, and press: and focus:, of a name, or role/name
    shows: str
    reads: tuple = ()
    escapes: int = 0  # close it, and lead back


FULL = [
    Screen("all notes", ("key:ctrl+1",), "list/All Notes", ("Calls and notes stay on this computer.", "Varnic", "Level 1")),
    Screen("calls", ("key:ctrl+2",), "list/Calls"),
    Screen("notes", ("key:ctrl+3",), "list/Notes"),
    Screen("to-dos", ("key:ctrl+4",), "list/To-dos", ("Mark done", "tomorrow")),
    Screen("flashcards", ("key:ctrl+5",), "list/Flashcards", ("1 card", "1 due")),
    Screen("search", ("key:ctrl+1", "key:ctrl+f", "type:numbers"), "list/Search results", ("0:01",)),
    Screen("search without results", ("key:ctrl+f", "type:zzz"), "Nothing matches “zzz”", ("Search covers titles",)),
    Screen("note", ("key:ctrl+3", "press:list item/…Reading list…"), "Not done", ("Thanks for making", "Edited", "words")),
    Screen("call", ("key:ctrl+2", "press:list item/…Weekly review…"), "Call timeline", ("You spoke", "Call timeline", "Position 0:00")),
    Screen("transcript", ("press:Transcript",), "panel/Transcript", ("turns", "Them, 0:01")),
    Screen("note with all kinds of blocks", ("key:ctrl+3", "press:list item/…Every kind…"), "separator/Divider",
           ("Level 3", "A first step", "Row 2, column 1", "Who asks", "The board", "Add table")),
    Screen("block’s menu", ("focus:text/Quote", "key:Menu"), "popup menu/Block options", ("Turn Into", "Delete Block"), 1),
    Screen("kinds to turn a block into", ("focus:text/Bulleted list", "key:shift+F10", "press:menu item/Turn Into"),
           "popup menu/Turn Into", ("Subheading",), 2),
    Screen("cell’s menu", ("focus:text/Row 2, column 1", "key:Menu"), "popup menu/Cell options", ("Add Row",), 1),
    Screen("main menu", ("key:F10",), "popup menu/Main menu", ("Ctrl+N", "Flashcards", "Show Transcript"), 1),
    Screen("menu of a note in the list", ("key:ctrl+1", "focus:list item/…Every kind…", "key:shift+F10"), "popup menu/Note", ("Export", "Delete"), 1),
    Screen("export menu", ("press:Export",), "popup menu/Export", ("Markdown",), 1),
    Screen("more menu", ("press:More",), "popup menu/More", ("Delete Note",), 1),
    Screen("decks", ("key:ctrl+5",), "list/Flashcards"),
    Screen("card", ("press:push button/…Study…",), "dialog/…Flashcards: …",
           ("Question: Who asks for the numbers?", "1 to go", "Show Answer"), 1),
    Screen("its answer", ("press:push button/…Study…", "press:Show Answer"), "dialog/…Flashcards: …",
           ("Answer: The board", "Again", "Good", "Easy"), 1),
    Screen("all caught up", ("press:push button/…Study…", "press:Show Answer", "press:Good"),
           "dialog/…Flashcards: …", ("All caught up",), 1),
    Screen("set-up", ("key:F10", "press:menu item/Recording Permissions…"), "dialog/Before your first call",
           ("Microphone", "Allow"), 1),
    Screen("set-up, allowed", ("key:F10", "press:menu item/Recording Permissions…", "press:Allow"),
           "dialog/Before your first call", ("Microphone: Allowed",), 1),
    Screen("consent", ("key:ctrl+shift+r",), "dialog/Let people know you’re recording",
           ("Paste into the chat", "Varnic never records in the background", "Remind me before every recording"), 1),
    Screen("notice", ("key:ctrl+1", "key:Delete"), "alert/…Deleted…", ("Undo",)),
]
SETTINGS = [
    Screen("general settings", ("key:ctrl+comma", "press:page tab/General"), "text/Your name",
           ("Starting a recording", "Remind me before every recording"), 1),
    Screen("recording settings", ("key:ctrl+comma", "press:page tab/Recording"), "combo box/Language",
           ("Microphone", "Your side of the call.", "Their side"), 1),
    Screen("settings of summaries", ("key:ctrl+comma", "press:page tab/Summaries"), "check box/…Also offer AI summaries…",
           ("AI summaries are optional",), 1),
    Screen("about", ("key:ctrl+comma", "press:page tab/About"), "What comes from others", ("Licence",), 1),
    Screen("licence", ("key:ctrl+comma", "press:Licence"), "push button/Back", ("GNU",), 1),
    Screen("what comes from others", ("key:ctrl+comma", "press:page tab/About", "press:What comes from others"),
           "push button/Back", ("Varnic itself is free software", "Shipped with the programs"), 1),
]
LIVE = [
    Screen("live recording", ("key:ctrl+shift+r", "press:Start Recording"), "Stop & Save",
           ("Recording now", "Live ink line", "microphone", "Recording both sides.", "Pause", "Varnic is recording")),
    Screen("question before discarding", ("press:Discard",), "dialog/Throw this recording away?",
           ("won’t be saved", "Keep Recording"), 1),
    Screen("recorded call", ("press:Stop & Save",), "slider/Call timeline", ("Record call",)),
    Screen("playback speeds", ("focus:…Playback speed…", "key:Return"), "popup menu/Playback speed", ("1.5×",), 1),
]
NOTE = [{"kind": "heading", "text": "Steps"}, {"kind": "subheading", "text": "A first step"},
        {"kind": "paragraph", "text": "What was said."}, {"kind": "todo", "text": "Call back", "done": True},
        {"kind": "bullet", "text": "One of several"}, {"kind": "quote", "text": "In these words"},
        {"kind": "table", "text": "", "rows": [["What", "When"], ["Review", "Friday"]]},
        {"kind": "flashcard", "text": "Who asks for the numbers?", "back": "The board"}, {"kind": "divider", "text": ""}]
EMPTY = [
    Screen("no notes", ("key:ctrl+1",), "Nothing recorded yet", ("Pick a note, or record a call", "then press Record")),
    Screen("no calls", ("key:ctrl+2",), "list/Calls", ("Nothing recorded yet",)),
    Screen("no written notes", ("key:ctrl+3",), "No notes yet"),
    Screen("no to-dos", ("key:ctrl+4",), "Nothing left to do", ("To-dos from your calls and notes gather here.",)),
    Screen("no flashcards", ("key:ctrl+5",), "No flashcards yet", ("question :: answer",)),
]


class AccessibilityTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.desktop = Desktop(pulse=False, quantum=2048)
        cls.addClassCleanup(cls.desktop.close)

    def start(self, notes, written=()):
        """With so many notes of all kinds, and those of these titles and blocks."""
        folder = Path(tempfile.mkdtemp(prefix="varnic-accessibility-"))
        self.addCleanup(shutil.rmtree, folder, ignore_errors=True)
        if notes:
            subprocess.run([sys.executable, f"{FIXTURES}/make_library.py", folder, str(notes)], check=True)
            self.write_note(folder, "Every kind", NOTE)
        for title, blocks in written:
            self.write_note(folder, title, blocks)
        self.program = Program(self.desktop, PROGRAM, VARNIC_DATA_DIR=str(folder))
        self.addCleanup(self.program.close)
        self.reader = ScreenReader(self.program)
        wait_for(lambda: self.desktop.xdotool("getactivewindow"), "an active window")
        self.reader.expect_focus(lambda told: told.role in ("list", "list item"), "the keyboard in the list")

    @staticmethod
    def write_note(folder, title, blocks):
        """The oldest note of a library."""
        then, blocks = "2020-01-01T10:00:00.000Z", [block | {"id": str(uuid.uuid4()).upper()} for block in blocks]
        note = {"id": str(uuid.uuid4()).upper(), "title": title, "created": then, "modified": then, "blocks": blocks}
        (folder / "notes").mkdir(exist_ok=True)
        (folder / "notes" / f"{note['id']}.json").write_text(json.dumps(note))

    def key(self, *keys):
        self.desktop.xdotool("key", *keys)

    def take(self, *steps):
        """Gives the place at which the last of the steps with "focus:" put the keyboard."""
        place = None
        for step in steps:
            kind, _, what = step.partition(":")
            control = tuple(reversed(what.rpartition("/")[::2]))
            if kind == "key":
                self.key(what)
            elif kind == "type":
                self.key("ctrl+a")
                self.desktop.xdotool("type", what)
            elif kind == "focus":
                place = wait_for(lambda: self.focus(*control), f"the keyboard on {what}", SOON)
            else:
                wait_for(lambda: self.program.find(*control), what, SOON)
                self.program.press(*control)
        return place

    def focus(self, *control):
        node = self.program.find(*control)
        if not node:
            return None
        node.queryComponent().grabFocus()
        told = self.reader.focus()
        return told if told and told[:2] == (node.getRoleName(), node.name) else None

    @contextmanager
    def on(self, screen):
        """A screen that is not as it should be leaves the others theirs."""
        with self.subTest(screen.name):
            try:
                yield
            except BaseException:
                self.key(*["Escape"] * 3)
                raise

    def open(self, screen):
        """Gives where Escape leads back to from it."""
        before = self.reader.expect_focus()
        before = self.take(*screen.steps) or before
        shown = wait_for(lambda: self.is_there(screen), f"{screen.name}: {screen.shows}", SOON)
        window = self.window_around(shown)
        self.reader.expect_focus(lambda told: told.path[0] == window, f"{screen.name}: the keyboard in its window")
        return before

    def is_there(self, screen):
        return self.program.find(*reversed(screen.shows.rpartition("/")[::2]))

    def window_around(self, node):
        """Which of the program's windows it is in."""
        while node.parent.getRoleName() != "application":
            node = node.parent
        return node.getIndexInParent()

    def close(self, screen, before):
        """Escape leads out of a popup or window, and back to where the keyboard was."""
        if screen.escapes:
            self.key(*["Escape"] * screen.escapes)
            wait_for(lambda: not self.is_there(screen), f"{screen.name} closed", SOON)
            self.reader.expect_focus(lambda told: told[:2] == before[:2], f"the keyboard back on {before}")

    def read(self, screens):
        for screen in screens:
            with self.on(screen):
                before = self.open(screen)
                try:
                    wait_for(lambda: not self.reader.complaints() and not self.reader.misses(screen.reads), "", SOON)
                except AssertionError:
                    self.assertEqual(self.reader.complaints(), [])
                    self.assertEqual(self.reader.misses(screen.reads), [])
                self.close(screen, before)

    def test_everyScreen_isTold(self):
        self.start(12)
        self.read(FULL)

    def test_everyTabOfTheSettings_isTold(self):
        self.start(0)
        self.read(SETTINGS)

    def test_everyLiveScreen_isTold(self):
        self.start(12)
        self.read(LIVE)

    def test_everyEmptyScreen_isTold(self):
        self.start(0)
        self.read(EMPTY)

    def test_states_areTold(self):
        self.start(12)
        self.take("key:ctrl+2", "press:list item/…Weekly review…")
        play = self.read_text("Play", "push button")  # there is no audio
        self.assertEqual((play.has("enabled"), play.actions), (False, ()))
        for name, name_after in [("Transcript", "Transcript"), ("Not done", "Done")]:
            was_on = self.read_text(name, "check box").has("checked")
            self.take(f"press:check box/{name}")
            wait_for(lambda: self.read_text(name_after, "check box").has("checked") != was_on, f"{name} the other way", SOON)

    def test_rowsOutOfSight_areNotTold(self):
        count = 60
        errands = [{"kind": "todo", "text": f"Errand {number}"} for number in range(count)]
        self.start(0, [("Errands", errands)] + [(f"Deck {number:02}", [{"kind": "flashcard", "text": "Q", "back": "A"}])
                                                for number in range(count)])
        for key, last in [("ctrl+4", f"Errand {count - 1}"), ("ctrl+5", f"Deck {count - 1}")]:
            with self.subTest(last):
                self.take("key:" + key)
                wait_for(lambda: self.reader.focus(), "the keyboard in the list", SOON)
                self.key(*["Down"] * (count + 1))
                self.reader.expect_focus(lambda told: told.name == last, last)
                wait_for(lambda: not self.reader.complaints(), "", SOON)

    def test_everyScreen_keepsTheKeyboard(self):
        self.start(12)
        for screen in FULL + SETTINGS + LIVE:
            with self.on(screen):
                before = self.open(screen)
                if "menu" in screen.shows:
                    for key in ("Down", "Down", "Up", "End", "Home"):
                        self.key(key)
                        self.reader.expect_focus(lambda told: told.role == "menu item", f"an entry after {key}")
                else:
                    self.assertGreater(len(self.reader.go_around()), 1)
                self.close(screen, before)
                self.key("Escape")
                self.reader.expect_focus()

    def test_focus_afterEachChange_isWhereItWasOrNear(self):
        """What is done one after another, and what has the keyboard then."""
        self.start(12)
        row = ("list item", "…")
        for what, steps, (role, name) in [
            ("a menu closed", ("key:F10", "key:Down", "key:Escape"), row),
            ("a search left", ("key:ctrl+f", "type:numbers", "key:Escape", "key:Escape"), row),
            ("another section", ("key:ctrl+4",), ("", "…")),
            ("the first again", ("key:ctrl+1",), row),
            ("the settings opened", ("key:ctrl+comma",), ("page tab", "General")),
            ("another tab", ("key:Right",), ("page tab", "Recording")),
            ("the settings closed", ("key:Escape",), row),
            ("its note deleted", ("key:Delete",), row),
            ("brought back by key", ("key:ctrl+z",), row),
            ("deleted again and brought back by the button", ("key:Delete", "focus:push button/Undo", "key:space"), row),
            ("deleted by the page’s menu", ("focus:More", "key:Return", "press:menu item/Delete Note"), row),
            ("a sheet put off", ("focus:Record call", "key:Return", "key:Escape"), ("push button", "Record call")),
            ("a recording begun", ("key:Return", "key:Return"), ("push button", "Stop recording")),
            ("a question put off", ("focus:Discard", "key:Return", "key:Escape"), ("push button", "Discard")),
            ("the recording stopped", ("focus:Stop & Save", "key:Return"), ("", "…")),
        ]:
            with self.subTest(what):
                self.take(*steps)
                self.reader.expect_focus(lambda told: role in ("", told.role) and name in ("…", told.name), what)

    def click(self, told):
        left, top, right, bottom = told.box
        self.desktop.xdotool("mousemove", (left + right) // 2, (top + bottom) // 2, "click", 1)

    def read_text(self, words, role=None):
        """A text of the page with these words."""
        return wait_for(lambda: next((told for told in self.reader.showing() if words in (told.name + told.text)
                                      and (told.role == role or role is None and told.role != "list item")), None), words)

    def test_shortcuts_inText_work(self):
        self.start(12)
        self.take("key:ctrl+3", "press:list item/…Reading list…")
        for key, sign in [("F10", "popup menu/Main menu"), ("ctrl+4", "list/To-dos"), ("ctrl+n", "…Untitled…")]:
            self.click(self.read_text("Thanks for making the time"))
            self.key(key)
            wait_for(lambda: self.is_there(Screen(key, (), sign)), f"{sign} after {key}", SOON)
            self.key("Escape")

    def test_shortcuts_inLiveLine_work(self):
        self.start(0)
        call = Path(tempfile.mkdtemp(prefix="varnic-call-"))
        self.addCleanup(shutil.rmtree, call)
        subprocess.run([MAKE_CALL, call], check=True, capture_output=True)
        self.take("press:Record call", "press:Start Recording")
        self.program.expect("Stop recording")
        self.addCleanup(self.desktop.sound.stop, self.desktop.sound.play(str(call / "them.caf")))
        self.click(self.read_text("designs", "list item"))
        self.key("ctrl+period")
        self.program.expect("Record call")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + sys.argv[4:], verbosity=2)
