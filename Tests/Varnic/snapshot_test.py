"""The pictures that the desktop program takes of its screens: which there are, how large, and that they come out the same
whoever takes them.

Usage: snapshot_test.py PROGRAM [TEST...]
"""

import os
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

PROGRAM = sys.argv[1]

WINDOW = (1000, 640)
SETTINGS = (600, 720)
SIZES = {  # in points
    **dict.fromkeys(["call", "call-no-transcript", "call-ai", "call-ai-offer", "call-ai-error", "note-cards-table",
                     "note-todos", "note-venues", "calls", "todos", "flashcards", "search", "search-empty",
                     "call-processing", "call-problem", "live", "live-start", "study", "empty", "todos-empty",
                     "cards-empty", "call-min", "note-min"], WINDOW),
    **dict.fromkeys(["settings-general", "settings-recording", "settings-summaries-off", "settings-summaries",
                     "settings-summaries-local", "settings-about"], SETTINGS),
    "pill": (304, 48), "menubar-recording": (300, 330), "menubar": (300, 290), "consent": (500, 470), "setup": (540, 430)}
SCALE = 2
FEW = ["call", "search", "live", "pill", "consent", "settings-recording"]


def size(png: Path):
    head = png.read_bytes()[:24]
    assert head[:8] == b"\x89PNG\r\n\x1a\n", f"{png.name} is no PNG"
    return struct.unpack(">II", head[16:24])


class Snapshots(unittest.TestCase):
    def setUp(self):
        self.folder = Path(tempfile.mkdtemp(prefix="varnic-snapshots-"))
        self.addCleanup(shutil.rmtree, self.folder, ignore_errors=True)
        self.home = self.folder / "home"
        (self.home / "config/Varnic").mkdir(parents=True)
        (self.home / "config/Varnic/settings.ini").write_text("[General]\nyourName=Somebody\n")
        (self.home / "data/Varnic/Library/notes").mkdir(parents=True)

    def start(self, folder, **environment):
        homes = {f"XDG_{kind.upper()}_HOME": str(self.home / kind) for kind in ["data", "config", "state"]}
        environment = os.environ | homes | {"HOME": str(self.home), "XDG_CACHE_HOME": str(self.folder / "cache"),
                                            "VARNIC_SNAPSHOT_DIR": str(folder)} | environment
        return subprocess.Popen([PROGRAM], env=environment, stderr=subprocess.PIPE, text=True)

    def expect_success(self, program):
        _, told = program.communicate(timeout=300)
        self.assertEqual(program.returncode, 0, told)

    def test_all_haveTheirNamesAndSizesAndAreTheSameForEverybody(self):
        before = sorted(self.home.rglob("*"))
        everything, few = self.folder / "new/all", self.folder / "few"
        programs = [self.start(everything, VARNIC_SNAPSHOT_LOOK="light"),
                    self.start(few, VARNIC_SNAPSHOT_SHOTS=",".join(FEW), TZ="Asia/Tokyo", LC_ALL="de_DE.UTF-8",
                               QT_SCALE_FACTOR="1.5", XDG_CURRENT_DESKTOP="KDE")]
        for program in programs:
            self.expect_success(program)
        expected = {f"{name}.png": (width * SCALE, height * SCALE) for name, (width, height) in SIZES.items()}
        self.assertEqual({picture.name: size(picture) for picture in everything.iterdir()}, expected)
        self.assertEqual(sorted(picture.name for picture in few.iterdir()),
                         sorted(f"{name}{look}.png" for name in FEW for look in ["", "-dark"]))
        for name in FEW:
            light, dark = (few / f"{name}{look}.png" for look in ["", "-dark"])
            self.assertEqual(light.read_bytes(), (everything / f"{name}.png").read_bytes(), f"{name} differs")
            self.assertNotEqual(light.read_bytes(), dark.read_bytes(), name)
        self.assertEqual(sorted(self.home.rglob("*")), before)
        self.assertEqual((self.home / "config/Varnic/settings.ini").read_text(), "[General]\nyourName=Somebody\n")

    def test_everyShot_showsSomethingElse(self):
        self.expect_success(self.start(self.folder, VARNIC_SNAPSHOT_LOOK="dark"))
        alike = {}
        for picture in sorted(self.folder.glob("*.png")):
            alike.setdefault(picture.read_bytes(), []).append(picture.name)
        self.assertEqual([names for names in alike.values() if len(names) > 1], [])
        self.assertEqual(sorted(name for names in alike.values() for name in names), sorted(f"{n}-dark.png" for n in SIZES))

    def test_folderThatCannotBe_isTold(self):
        (self.folder / "file").write_text("")
        program = self.start(self.folder / "file", VARNIC_SNAPSHOT_SHOTS="pill")
        _, told = program.communicate(timeout=300)
        self.assertEqual(program.returncode, 1)
        self.assertIn(str(self.folder / "file"), told)


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[2:]], verbosity=2)
