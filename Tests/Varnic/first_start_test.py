"""The first start of a user whose computer lacks something that Varnic uses, from outside: the window comes up, it is said
what is missing and what to install, and everything else works.

Usage: first_start_test.py PROGRAM FIXTURES [TEST...]     (the system's own Python has pyatspi)
"""

import json
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
from sound_system import SoundSystem  # noqa: E402

NO_FONTS = "<fontconfig><cachedir>{}</cachedir></fontconfig>"

# Texts have these parts in their order, which are between ellipses.
NO_MODEL = "No speech model is installed. On Debian there is one for English in the package varnic-models, …whisper…"
NO_MICROPHONE = "No microphone was found…"
NO_PIPEWIRE = "PipeWire isn’t running…It is in the packages pipewire and wireplumber…"
NO_CONFIGURATION = "…On Debian it is in the package pipewire-bin…"
NO_TRAY = "…so Varnic ends with its last window…gnome-shell-extension-appindicator…"
NO_PORTAL = "…install xdg-desktop-portal…"
NO_KEY_RING = "…No key ring is running. Install one, such as the package gnome-keyring…"
NO_FONT = "…install fonts-inter, fonts-vollkorn, fonts-jetbrains-mono and fonts-noto-color-emoji…"
SETUP, LIVE = "Before your first call", "…Recording, …"

# What is missing: what the first notice names, what the tabs of the settings say, and what a press of Record leads to.
CASES = {
    "portal keyring": ("", {"General": [NO_PORTAL], "Summaries": [NO_KEY_RING]}, LIVE),
    "models": ("a speech model", {"Recording": [NO_MODEL]}, "No speech model is installed for this language…"),
    "microphone": ("a microphone", {"Recording": [NO_MICROPHONE]}, LIVE),
    "pipewire": ("PipeWire", {"Recording": [NO_PIPEWIRE]}, SETUP),
    "configuration": ("PipeWire", {"Recording": [NO_CONFIGURATION]}, SETUP),
    "fonts": ("some of its fonts", {"General": [NO_FONT]}, LIVE),
    "tray": ("a tray", {"General": [NO_TRAY]}, LIVE),
    "models pipewire fonts tray": (
        "PipeWire, a speech model, a tray and some of its fonts",
        {"General": [NO_TRAY, NO_FONT, NO_PORTAL], "Recording": [NO_PIPEWIRE, NO_MODEL], "Summaries": [NO_KEY_RING]}, SETUP),
}


class FirstStart(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.desktop = Desktop(pulse=False, services=False, quantum=2048)
        cls.addClassCleanup(cls.desktop.close)

    def setUp(self):
        self.folder = Path(tempfile.mkdtemp(prefix="varnic-first-"))
        self.addCleanup(shutil.rmtree, self.folder, ignore_errors=True)

    def home(self, name):
        """The environment of a user who has never started the program, and the folder of the notes."""
        home = self.folder / name.replace(" ", "-")
        home.mkdir()
        variables = {f"XDG_{kind.upper()}_HOME": str(home / kind) for kind in ["data", "config", "state", "cache"]}
        return home, os.environ | variables | {"VARNIC_DATA_DIR": ""}, home / "data/Varnic/Library/notes"

    def without(self, part, home):
        """The environment in which the part is missing."""
        if part == "models":
            return {"XDG_DATA_DIRS": "/nonexistent"}  # and there are none beside the program, see `program`
        if part == "microphone":
            deaf = SoundSystem(source=False, pulse=False)
            self.addCleanup(deaf.close)
            return {"XDG_RUNTIME_DIR": deaf.environment["XDG_RUNTIME_DIR"]}
        if part == "pipewire":
            (home / "run").mkdir(mode=0o700)
            return {"XDG_RUNTIME_DIR": str(home / "run")}
        if part == "configuration":
            return {"PIPEWIRE_CONFIG_DIR": "/nonexistent"}
        if part == "fonts":
            (home / "fonts.conf").write_text(NO_FONTS.format(home / "cache"))
            return {"FONTCONFIG_FILE": str(home / "fonts.conf")}
        if part == "tray":
            self.desktop.tray.kill()
            self.desktop.tray.wait()
        return {}

    def program(self, parts):
        """The program, where models are missing in a place that has none beside it."""
        if "models" not in parts:
            return PROGRAM
        copy = self.folder / "prefix/bin/varnic"
        if not copy.exists():
            copy.parent.mkdir(parents=True)
            shutil.copy(PROGRAM, copy)
        return copy

    def wait_until_active(self):
        wait_for(lambda: self.desktop.xdotool("getactivewindow"), "an active window")

    def write(self):
        """Writes a note by keyboard."""
        self.desktop.xdotool("key", "ctrl+n")
        self.desktop.xdotool("type", "Plans")

    def is_on_disk(self, notes):
        return any("Plans" in file.read_text() for file in notes.glob("*.json"))

    def read(self, program, text):
        pattern = ".*".join(re.escape(part) for part in text.split("…"))
        wait_for(lambda: any(re.fullmatch(pattern, name) for name in program.names()), text)

    def quit(self, program):
        self.desktop.xdotool("key", "ctrl+q")
        self.assertEqual(program.wait(60), 0)

    def test_eachPartMissing_isSaidAndTheRestWorks(self):
        for name, (notice, says, recording) in CASES.items():
            with self.subTest(missing=name):
                home, environment, notes = self.home(name)
                for part in name.split():
                    environment |= self.without(part, home)
                program = Program(self.desktop, self.program(name), **environment)
                self.addCleanup(program.close)
                if notice:
                    self.read(program, f"Varnic doesn’t find {notice} — see Settings for what to install.")
                self.wait_until_active()
                program.expect("Record call")
                self.write()
                wait_for(lambda: self.is_on_disk(notes), "a note on the disk")
                self.record(program, recording, says)
                self.look_into_settings(program, says)
                self.quit(program.process)

    def record(self, program, leads_to, says):
        program.press("Record call")
        program.press("Start Recording")
        self.read(program, leads_to)
        if leads_to == SETUP:
            for sentence in says["Recording"]:
                self.read(program, sentence)
            program.press("Close")
            wait_for(lambda: not program.find("Close"), "the sheet to go")
        else:
            program.press("Stop recording")
            program.expect("Record call")

    def look_into_settings(self, program, says):
        self.desktop.xdotool("key", "ctrl+comma")
        self.read(program, "Settings")
        for tab in ["General", "Recording", "Summaries"]:
            program.press(tab, "page tab")
            if tab == "Summaries" and tab in says:
                program.press("Also offer AI summaries with my own API key", "check box")
            for sentence in says.get(tab, []):
                self.read(program, sentence)

    def test_withoutASessionBus_worksAndSaysSoToASecondStart(self):
        _, environment, notes = self.home("bus")
        environment["DBUS_SESSION_BUS_ADDRESS"] = "unix:path=/nonexistent/bus"
        program = self.desktop.spawn([PROGRAM], env=environment)
        self.wait_until_active()

        def is_written():
            """Tries again, since nothing tells here when the window takes keys."""
            self.write()
            return self.is_on_disk(notes)

        wait_for(is_written, "a note on the disk")
        second = self.desktop.spawn([PROGRAM], env=environment, stderr=subprocess.PIPE, text=True)
        self.assertIn("on Debian, install dbus-user-session", second.stderr.readline())
        second.kill()
        second.wait()
        self.quit(program)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + sys.argv[3:], verbosity=2)
