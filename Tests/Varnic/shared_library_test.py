"""Whole programs on one library: killed at any moment they lose nothing, and two at once lose no edit.

Usage: shared_library_test.py LIBRARY_WORKER. KILLS is how often each phase of a call is killed, SECONDS how long the
two programs edit.
"""

import json
import os
import random
import subprocess
import sys
import tempfile
import time
import unittest
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

WORKER = sys.argv.pop(1)
KILLS = int(os.environ.get("KILLS", "3"))
SECONDS = float(os.environ.get("SECONDS", "5"))
ID = "0B5D6A1E-5B1C-4B57-9C43-7C6F2A7B8E1"


def environment(library):
    return os.environ | {"VARNIC_DATA_DIR": str(library), "XDG_CONFIG_HOME": str(library.parent / "config")}


def start(library, *words):
    return subprocess.Popen([WORKER, *map(str, words)], env=environment(library), stdout=subprocess.PIPE, text=True)


def load(library):
    run = subprocess.run([WORKER, "load"], env=environment(library), capture_output=True, text=True, check=True)
    told = json.loads(run.stdout)
    told["notes"].sort(key=lambda note: note["id"])
    return told


def make_note(library, number, title):
    (library / "notes").mkdir(parents=True, exist_ok=True)
    (library / "notes" / f"{ID}{number}.json").write_text(json.dumps({"id": f"{ID}{number}", "title": title}))


class SharedLibrary(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def kill_in(self, phase, number):
        """What the library holds after a kill in the phase of a call."""
        library = self.folder / f"{phase}-{number}" / "library"
        make_note(library, 0, "Kept")
        with start(library, "record", self.folder / "you.wav", self.folder / "them.wav") as run:
            for line in run.stdout:
                if line.strip() == phase:
                    break
            least = random.random() * {"starting": 0.1, "recording": 3, "padding": 0.4, "transcribing": 0.9,
                                       "saving": 0.02}[phase]
            time.sleep(least)
            run.kill()
        first = load(library)
        return library, least, first, load(library)

    def check(self, phase, library, least, first, second):
        self.assertEqual(first, second, "a restart finds what the one before it found")
        self.assertEqual(first["problem"], "")
        calls = [note for note in first["notes"] if "segments" in note]
        self.assertEqual([note["title"] for note in first["notes"] if "segments" not in note], ["Kept"])
        deleted = sorted(library.glob("Deleted/*"))
        if not calls:
            # Killed ahead of the first second of sound, or of its being on disk, or even of its mark.
            self.assertIn((phase, len(deleted)), (("starting", 0), ("starting", 1), ("recording", 1)))
            self.assertEqual(list(library.glob("audio/*")), [])
            return
        self.assertEqual((len(calls), deleted), (1, []))
        [call] = calls
        self.assertEqual([path.name for path in library.glob("audio/*")], [call["id"]])
        self.assertEqual(list(library.glob("audio/*/recording.json")), [])
        # What is recorded is on disk after two seconds.
        recorded = {"starting": 0, "recording": least}.get(phase, 3)
        self.assertGreater(min(call["tracks"]), max(recorded - 2, 0))
        if phase in ("transcribing", "saving"):
            for track in call["tracks"]:
                self.assertAlmostEqual(track, call["duration"], delta=0.05)

    def test_a_kill_in_any_phase_of_a_call_loses_nothing(self):
        for side, tone in ("you", 440), ("them", 660):
            subprocess.run(["ffmpeg", "-v", "error", "-f", "lavfi", "-i", f"sine={tone}:r=48000", "-t", "5",
                            self.folder / f"{side}.wav"], check=True)
        jobs = [(phase, number) for phase in ("starting", "recording", "padding", "transcribing", "saving")
                for number in range(KILLS)]
        with ThreadPoolExecutor(8) as pool:
            for (phase, number), result in zip(jobs, pool.map(lambda job: self.kill_in(*job), jobs)):
                with self.subTest(phase=phase, number=number):
                    self.check(phase, *result)

    def test_two_programs_at_once_lose_no_edit(self):
        library = self.folder / "library"
        for number in range(3):
            make_note(library, number, f"Note {number}")
        with start(library, "edit", "left", SECONDS) as left, start(library, "edit", "right", SECONDS) as right:
            counts = {"left": int(left.communicate()[0]), "right": int(right.communicate()[0])}
        files = [json.loads(file.read_text()) for file in library.glob("notes/*.json")]
        kept = {block.get("text") for note in files for block in note["blocks"]}
        for name, count in counts.items():
            self.assertGreater(count, 0)
            self.assertEqual([n for n in range(1, count + 1) if f"{name} {n}" not in kept], [])
        self.assertEqual(len(files), 3, "what both add comes together, without a copy")
        self.assertEqual(len(load(library)["notes"]), len(files))
        print(f"edits {counts}, notes {len(files)}", file=sys.stderr)


if __name__ == "__main__":
    unittest.main()
