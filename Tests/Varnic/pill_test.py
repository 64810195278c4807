"""The floating pill of a running recording, and the window beside it, from outside: what window managers are told, where
the two lie, and what the pointer does to them.

Usage: pill_test.py PROGRAM FIXTURES [TEST...]     (the system's own Python has pyatspi)
"""

import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

PROGRAM, FIXTURES = sys.argv[1:3]
sys.path.insert(0, FIXTURES)

from desktop import Desktop, Program, wait_for  # noqa: E402

HOTKEY = "ctrl+alt+super+r"
SCREEN = (1366, 768)
STOP = (278, 22)  # the pill's button
BODY = (100, 22)  # where it can be got hold of


def output(*command):
    return subprocess.run(list(map(str, command)), capture_output=True, text=True).stdout


class PillTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.desktop = Desktop(screen="{}x{}".format(*SCREEN), pulse=False)
        cls.addClassCleanup(cls.desktop.close)

    def setUp(self):
        self.folder = Path(tempfile.mkdtemp(prefix="varnic-pill-"))
        self.addCleanup(shutil.rmtree, self.folder, ignore_errors=True)
        self.environment = {"XDG_DATA_HOME": str(self.folder), "XDG_CONFIG_HOME": str(self.folder)}

    def start(self):
        program = Program(self.desktop, PROGRAM, **self.environment)
        self.addCleanup(program.close)
        program.expect("Record call")
        self.window = wait_for(lambda: self.desktop.xdotool("getactivewindow"), "an active window")
        return program

    def record(self, program):
        """The first time the reminder is answered; that makes the window active."""
        program.press("Record call")
        if wait_for(lambda: program.find("Start Recording") or program.find("Stop recording"), "an answer").name != "Stop recording":
            program.press("Start Recording")
        program.expect("…Recording, …")

    def visible(self, name="Varnic is recording"):
        return self.desktop.xdotool("search", "--onlyvisible", "--name", name)

    def pill(self):
        return wait_for(self.visible, "the pill")

    def go_to_call(self):
        """Brings a window of another program to the front, in the lower half of the screen."""
        if not self.visible("^call$"):
            call = self.desktop.spawn(["xev", "-geometry", "600x200+100+500", "-name", "call"])
            self.addCleanup(call.wait)
            self.addCleanup(call.kill)
        window = wait_for(lambda: self.visible("^call$"), "another window")
        self.activate(window)
        return window

    def activate(self, window):
        self.desktop.xdotool("windowactivate", window)
        wait_for(lambda: self.desktop.xdotool("getactivewindow") == window, "it in front")

    def state(self, window):
        return re.findall(r"_NET_WM_STATE_(\w+)", output("xprop", "-id", window, "_NET_WM_STATE"))

    def place(self, window):
        """Left, top, width and height of a window without its frame."""
        told = output("xwininfo", "-id", window)
        return tuple(int(re.search(rf"{name}: +(-?\d+)", told)[1])
                     for name in ["Absolute upper-left X", "Absolute upper-left Y", "Width", "Height"])

    def maximize(self):
        left, top, width, _ = self.place(self.window)
        self.desktop.xdotool("mousemove", left + width // 4, top - 8, "click", "--repeat", 2, "--delay", 60, 1)
        wait_for(lambda: "MAXIMIZED_VERT" in self.state(self.window), "a maximised window")

    def move_pointer(self, window, point, *then):
        left, top, *_ = self.place(window)
        self.desktop.xdotool("mousemove", left + point[0], top + point[1], *then)

    def test_firstStart_fitsTheScreen(self):
        self.start()
        frame = [int(side) for side in re.findall(r"\d+", output("xprop", "-id", self.window, "_NET_FRAME_EXTENTS"))]
        left, top, width, height = self.place(self.window)
        self.assertGreaterEqual((left - frame[0], top - frame[2]), (0, 0))
        self.assertLessEqual(left + width + frame[1], SCREEN[0])
        self.assertLessEqual(top + height + frame[3], SCREEN[1])

    def test_maximisedWindow_staysSo(self):
        program = self.start()
        normal = self.place(self.window)
        self.maximize()
        self.record(program)
        self.assertIn("MAXIMIZED_VERT", self.state(self.window))
        second = self.desktop.spawn([PROGRAM], env=os.environ | self.environment)
        self.assertEqual(second.wait(30), 0)
        self.assertIn("MAXIMIZED_VERT", self.state(self.window))
        self.desktop.xdotool("key", "ctrl+q")
        self.assertEqual(program.end(), 0)

        self.start()
        wait_for(lambda: "MAXIMIZED_VERT" in self.state(self.window), "the window as it was")
        left, top, width, _ = self.place(self.window)
        self.desktop.xdotool("mousemove", left + width // 4, top - 8, "click", "--repeat", 2, "--delay", 60, 1)
        wait_for(lambda: self.place(self.window)[2:] == normal[2:], "its size before")

    def test_recordingByKey_leavesTheCallInFront(self):
        program = self.start()
        self.record(program)
        program.press("Stop recording")
        program.expect("Record call")
        call = self.go_to_call()
        self.desktop.xdotool("key", HOTKEY)
        pill = self.pill()
        stacking = [str(int(window, 16)) for window in
                    re.findall(r"0x\w+", output("xprop", "-root", "_NET_CLIENT_LIST_STACKING"))]
        self.assertEqual(stacking[-1], pill)
        self.assertLess(stacking.index(self.window), stacking.index(call))
        self.assertEqual(self.desktop.xdotool("getactivewindow"), call)
        self.desktop.xdotool("windowminimize", self.window)
        wait_for(lambda: "HIDDEN" in self.state(self.window), "a minimised window")
        self.assertEqual(self.visible(), pill)

    def test_pill_isOnEveryWorkspaceAlsoWhenItComesBack(self):
        program = self.start()
        for _ in range(2):
            self.activate(self.window)
            self.record(program)
            self.go_to_call()
            pill = self.pill()
            self.assertIn("4294967295", output("xprop", "-id", pill, "_NET_WM_DESKTOP"))
            self.assertLessEqual({"ABOVE", "SKIP_TASKBAR"}, set(self.state(pill)))
            self.desktop.xdotool("key", HOTKEY)
            wait_for(lambda: not self.visible(), "no pill")

    def test_pill_makesWayForTheWindowThatTheUserWorksIn(self):
        program = self.start()
        self.record(program)
        self.go_to_call()
        self.pill()
        self.activate(self.window)
        wait_for(lambda: not self.visible(), "the window's own buttons free")
        self.go_to_call()
        pill = self.pill()
        self.move_pointer(pill, BODY, "mousedown", 1, "mousemove_relative", 0, 40, "mousemove_relative", 0, 40, "mouseup", 1)
        self.activate(self.window)
        self.assertEqual(self.visible(), pill, "where the user has put it, it stays")

    def test_drag_endsWithTheButton(self):
        program = self.start()
        self.record(program)
        self.go_to_call()
        pill = self.pill()
        left, top, *_ = self.place(pill)
        for steps in [1, 2, 8]:
            step = 80 // steps
            moves = ["mousemove_relative", step, step] * steps
            self.move_pointer(pill, BODY, "mousedown", 1, *moves, "mouseup", 1)
            left, top = left + 80, top + 80
            wait_for(lambda: self.place(pill)[:2] == (left, top), f"the pill at its new place ({steps} steps)")
            self.desktop.xdotool("mousemove", 20, 700)
            self.desktop.xdotool("mousemove", 30, 710)
            self.assertEqual(self.place(pill)[:2], (left, top))

    def test_stop_worksWhileItsTipIsOpen(self):
        program = self.start()
        self.record(program)
        self.go_to_call()
        pill = self.pill()
        self.move_pointer(pill, STOP)
        tip = wait_for(lambda: program.find("Stop recording and save", "tool tip"), "the tip")
        box = tip.queryComponent().getExtents(program.pyatspi.DESKTOP_COORDS)
        _, top, _, height = self.place(pill)
        self.assertGreaterEqual(box.y, top + height, "the tip below the pill")
        self.desktop.xdotool("click", 1)
        program.expect("Record call")
        wait_for(lambda: not self.visible(), "no pill")

    def test_pill_isCutToItsOutlineWithoutACompositor(self):
        program = self.start()
        self.record(program)
        self.go_to_call()
        pill = self.pill()
        shape = lambda: re.search(r"shape extents: +(\S+)", output("xwininfo", "-shape", "-id", pill))
        self.assertEqual(shape()[1], "296x40+2+2")
        compositor = self.desktop.spawn(["picom", "--backend", "xrender"])
        wait_for(lambda: not shape(), "a window that can be seen through")
        compositor.terminate()
        wait_for(shape, "the outline again")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + sys.argv[3:], verbosity=2)
