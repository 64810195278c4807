"""The desktop program from outside, as a user meets it: pressed by its accessible names, seen on the screen, heard on the
sound system, read back from the library.

Usage: window_test.py PROGRAM FIXTURES MAKE_CALL [TEST...]     (the system's own Python has pyatspi)
"""

import json
import os
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

PROGRAM, FIXTURES, MAKE_CALL = sys.argv[1:4]
sys.path.insert(0, FIXTURES)

from desktop import Desktop, Program, wait_for  # noqa: E402

HOTKEY = "ctrl+alt+super+r"
YOU, THEM = (0x2E, 0x4F, 0xA6), (0xB0, 0x4A, 0x2E)  # the two inks on light paper


class WindowTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.call = Path(tempfile.mkdtemp(prefix="varnic-call-"))
        cls.addClassCleanup(shutil.rmtree, cls.call)
        subprocess.run([MAKE_CALL, cls.call], check=True, capture_output=True)
        cls.desktop = Desktop(pulse=False, quantum=2048)
        cls.addClassCleanup(cls.desktop.close)
        cls.sound = cls.desktop.sound

    def setUp(self):
        self.folder = Path(tempfile.mkdtemp(prefix="varnic-window-"))
        self.addCleanup(shutil.rmtree, self.folder, ignore_errors=True)
        self.library = self.folder / "library"

    def start(self, *arguments):
        program = Program(self.desktop, PROGRAM, *arguments, VARNIC_DATA_DIR=str(self.library))
        self.addCleanup(program.close)
        program.expect("Record call")
        wait_for(lambda: self.desktop.xdotool("getactivewindow"), "an active window")
        return program

    def say_both_sides(self):
        for name in [self.sound.feed(str(self.call / "you.caf")), self.sound.play(str(self.call / "them.caf"))]:
            self.addCleanup(self.sound.stop, name)

    def record(self, program):
        """Presses Record and tells people."""
        program.press("Record call")
        program.press("Start Recording")
        program.expect("Stop recording")

    def calls(self):
        notes = [json.loads(file.read_text()) for file in self.library.glob("notes/*.json")]
        return [note["call"] for note in notes if note.get("call")]

    def ink(self, program):
        """How many points of the live line are in either ink."""
        points = program.pixels("Live ink line")
        return [sum(max(abs(a - b) for a, b in zip(point, colour)) < 24 for point in points) for colour in (YOU, THEM)]

    def top_window(self):
        stacking = subprocess.run(["xprop", "-root", "_NET_CLIENT_LIST_STACKING"], capture_output=True, text=True).stdout
        return int(stacking.strip().split()[-1], 16)

    def test_call_recordedInTheWindow_isANoteThatPlays(self):
        program = self.start()
        window = self.desktop.xdotool("getactivewindow")
        self.record(program)
        pill = wait_for(lambda: self.desktop.xdotool("search", "--onlyvisible", "--name", "Varnic is recording"), "the pill")
        self.assertEqual(self.top_window(), int(pill))
        self.assertEqual(self.desktop.xdotool("getactivewindow"), window)

        self.say_both_sides()
        wait_for(lambda: all(count > 50 for count in self.ink(program)), "ink in both colours")
        before = program.pixels("Live ink line")
        wait_for(lambda: program.pixels("Live ink line") != before, "ink that moves")
        wait_for(lambda: any("designs" in name for name in program.names()), "a live line")

        self.desktop.xdotool("key", HOTKEY)
        program.expect("Record call")
        call = wait_for(lambda: next((call for call in self.calls() if call.get("segments")), None), "the transcript")
        self.assertEqual({segment["speaker"] for segment in call["segments"]}, {"you", "them"})

        program.press("Transcript", "check box")
        turn = next(segment for segment in call["segments"] if segment["speaker"] == "them")
        program.press(f"…{turn['text'][:20]}…", "list item")
        program.expect("Pause")
        self.desktop.xdotool("key", "alt+p")  # no window manager keeps it for itself
        program.expect("Play")
        self.desktop.xdotool("key", "alt+t")
        wait_for(lambda: not program.find("Turns"), "a page without its transcript")

    def test_quit_whileRecording_savesTheCall(self):
        program = self.start()
        self.record(program)
        self.say_both_sides()
        wait_for(lambda: self.ink(program)[1] > 50, "their ink")
        self.desktop.xdotool("key", "ctrl+q")
        self.assertEqual(program.end(), 0)
        [call] = self.calls()
        # Either live words have come by then, or the call says that it waits for its transcript; never both or neither.
        waits = "choose Transcribe Again" in call.get("problem", "")
        self.assertNotEqual(bool(call.get("segments")), waits)
        self.assertGreater(call["duration"], 0)
        self.assertEqual(len(list(self.library.glob("audio/*/*.m4a"))), 2)

    def test_secondStart_bringsTheFirstToTheFront(self):
        program = self.start()
        window = self.desktop.xdotool("getactivewindow")
        self.desktop.xdotool("windowminimize", window)
        wait_for(lambda: self.desktop.xdotool("getactivewindow") != window, "another window")
        second = self.desktop.spawn([PROGRAM], env=os.environ | {"VARNIC_DATA_DIR": str(self.library)})
        self.assertEqual(second.wait(30), 0)
        wait_for(lambda: self.desktop.xdotool("getactivewindow") == window, "the first window in front")
        self.assertIsNone(program.process.poll())


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + sys.argv[4:], verbosity=2)
