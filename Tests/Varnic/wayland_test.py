"""The desktop program under Wayland, from outside: in sway, whose keyboard and mouse are worked here.

Usage: wayland_test.py PROGRAM FIXTURES MAKE_CALL DRAG_WORKER [TEST...]     (the system's own Python has pyatspi)
"""

import contextlib
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

PROGRAM, FIXTURES, MAKE_CALL, DRAG_WORKER = sys.argv[1:5]
sys.path.insert(0, FIXTURES)

from desktop import Program, wait_for  # noqa: E402
from wayland import WaylandDesktop  # noqa: E402


def output(*command, **options):
    return subprocess.run(list(map(str, command)), capture_output=True, **options)


class Wayland(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.desktop = WaylandDesktop(pulse=False, services=False, quantum=2048)
        cls.addClassCleanup(cls.desktop.close)

    def setUp(self):
        self.folder = Path(tempfile.mkdtemp(prefix="varnic-wayland-"))
        self.addCleanup(shutil.rmtree, self.folder, ignore_errors=True)
        self.library = self.folder / "library"

    def spawn(self, *command, **options):
        process = self.desktop.spawn(list(map(str, command)), **options)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        return process

    def start(self, **environment):
        program = Program(self.desktop, PROGRAM, VARNIC_DATA_DIR=str(self.library), **environment)
        self.addCleanup(program.close)
        program.expect("Record call")
        return program

    def notes(self):
        return [json.loads(file.read_text()) for file in self.library.glob("notes/*.json")]

    def focus(self, name):
        wait_for(lambda: self.desktop.focused() == name, f"{name} in front")

    def start_in_front(self):
        program = self.start()
        self.focus("Varnic")
        return program

    def second_start(self):
        """What a launcher does."""
        token = self.desktop.seat.activation_token()
        environment = os.environ | {"VARNIC_DATA_DIR": str(self.library), "XDG_ACTIVATION_TOKEN": token}
        self.assertEqual(output(PROGRAM, env=environment).returncode, 0)

    def write(self, text):
        self.desktop.seat.key("ctrl+n")
        self.desktop.seat.type(text)
        wait_for(lambda: self.texts() == [text], "the note on the disk")

    def texts(self):
        return [block.get("text", "") for note in self.notes() for block in note["blocks"]]

    def test_note_isTypedCopiedAndPastedInto(self):
        self.start_in_front()
        self.write("plans")
        self.desktop.seat.key("ctrl+a")
        self.desktop.seat.key("ctrl+c")
        wait_for(lambda: output("wl-paste", "--no-newline", text=True).stdout == "plans", "the text on the clipboard")
        subprocess.run(["wl-copy", "from elsewhere"], check=True, stdout=subprocess.DEVNULL)
        self.desktop.seat.key("ctrl+v")
        wait_for(lambda: self.texts() == ["from elsewhere"], "the pasted text")

    def test_secondStart_bringsTheFirstToTheFront(self):
        self.start_in_front()
        self.desktop.message("workspace", "another")
        wait_for(lambda: self.desktop.focused() is None, "another workspace")
        self.second_start()
        self.focus("Varnic")

    def test_closedWindow_livesInTheTrayAndComesBack(self):
        program = self.start_in_front()
        self.desktop.message("[title=Varnic]", "kill")
        wait_for(lambda: not self.desktop.windows(), "no window")
        self.second_start()
        self.focus("Varnic")
        self.assertIsNone(program.process.poll())

    def test_fileDroppedOntoTheWindow_isWrittenDown(self):
        call = self.folder / "call"
        subprocess.run([MAKE_CALL, call], check=True, capture_output=True)
        self.start()
        told = self.folder / "told"
        with open(told, "w") as stdout:
            self.spawn(DRAG_WORKER, call / "them.caf", stdout=stdout)
        self.focus("files")
        places = {name: window["rect"] for name, window in self.desktop.windows().items()}
        middle = {name: (place["x"] + place["width"] // 2, place["y"] + place["height"] // 2) for name, place in places.items()}

        def is_held():
            # On a busy computer the windows come to their places later than the compositor tells of them.
            self.desktop.seat.release()
            self.desktop.seat.move(*middle["files"])
            self.desktop.seat.press()
            with contextlib.suppress(AssertionError):
                return wait_for(lambda: "held" in told.read_text(), "the press", seconds=2)

        def is_welcome():
            for aside in [0, 5]:
                self.desktop.seat.move(middle["Varnic"][0] + aside, middle["Varnic"][1])
            return "welcome" in told.read_text()

        wait_for(is_held, "the file in hand")
        wait_for(is_welcome, "the window to take the file")
        self.desktop.seat.release()
        wait_for(lambda: "dropped" in told.read_text(), "the file dropped")
        wait_for(lambda: [note for note in self.notes() if note.get("call", {}).get("segments")], "the call as a note")

    def toggle_recording(self):
        """What a user binds to a key of the desktop."""
        environment = os.environ | {"VARNIC_DATA_DIR": str(self.library)}
        self.assertEqual(output(PROGRAM, "--toggle-recording", env=environment).returncode, 0)

    def displayed(self):
        """How many notifications are on the screen."""
        return output("dunstctl", "count", "displayed", text=True).stdout.strip()

    def test_recording_isStartedByACommandAndStoppedInItsNotification(self):
        config = self.folder / "dunstrc"
        config.write_text("[global]\ndmenu = grep Stop\n")
        self.spawn("dunst", "-conf", config)
        wait_for(lambda: self.displayed() == "0", "who shows notifications")
        program = self.start()
        self.toggle_recording()
        program.press("Start Recording")
        wait_for(lambda: self.displayed() == "1", "the notification")
        program.expect("Stop recording")
        self.assertEqual(output("dunstctl", "context").returncode, 0)
        wait_for(self.notes, "the recording as a note")
        wait_for(lambda: self.displayed() == "0", "the notification gone")
        # Consent is asked for once.
        self.toggle_recording()
        wait_for(lambda: self.displayed() == "1", "the notification of the second recording")
        self.toggle_recording()
        wait_for(lambda: len(self.notes()) == 2, "the second recording as a note")

    def test_settings_nameTheCommandForAKey(self):
        program = self.start_in_front()
        self.desktop.seat.key("ctrl+comma")
        program.expect("…In its keyboard settings, set a shortcut for the command “varnic --toggle-recording”…")
        pill = program.expect("Show a floating recording pill")
        wait_for(lambda: "Wayland keeps no window in front of the others" in pill.description, "what the pill’s switch tells")

    def test_scaledScreen_isDrawnInItsOwnPoints(self):
        self.addCleanup(self.desktop.message, "output", "*", "scale", "1")
        program = self.start_in_front()
        self.desktop.message("output", "*", "scale", "2")

        def is_sharp():
            """Whether the picture is more than a smaller one with each point twice as wide and as high."""
            picture = output("grim", "-t", "ppm", "-").stdout
            width, height, *_ = map(int, re.match(rb"P6\s(\d+) (\d+)\s255\s", picture).groups())
            rows = [picture[-3 * width * (height - y):][:3 * width] for y in range(0, height - 1)]
            return any(rows[y] != rows[y + 1] for y in range(0, height - 2, 2))

        wait_for(is_sharp, "a sharp picture")
        self.desktop.message("output", "*", "scale", "1.5")
        window = self.desktop.windows()["Varnic"]["rect"]
        wait_for(lambda: self.width(program) == window["width"], "a window of the screen’s size in points")

    def width(self, program):
        return program.root[0].queryComponent().getExtents(program.pyatspi.WINDOW_COORDS).width


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + sys.argv[5:], verbosity=2)
