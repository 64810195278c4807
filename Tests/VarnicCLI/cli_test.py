"""The command-line program from outside: a call becomes a note, and bad input becomes a sentence.

Usage: cli_test.py PROGRAM FIXTURES MAKE_CALL RECORDINGS
"""

import json
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import unicodedata
import unittest
from pathlib import Path

PROGRAM, FIXTURES, MAKE_CALL, RECORDINGS = sys.argv[1:5]
del sys.argv[1:5]
sys.path.insert(0, FIXTURES)

from sound_system import SoundSystem  # noqa: E402
from words import word_errors, words  # noqa: E402


class CommandLine(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.library = self.folder / "library"
        self.environment = os.environ | {"VARNIC_DATA_DIR": str(self.library), "TZ": "UTC", "LC_ALL": "C.UTF-8"}

    def run_cli(self, *args, input=None, library=None):
        environment = self.environment | ({"VARNIC_DATA_DIR": str(library)} if library else {})
        return subprocess.run([PROGRAM, *map(str, args)], input=input, capture_output=True, text=True, env=environment)

    def at_terminal(self, *args):
        """All that a terminal without colours gets."""
        master, terminal = os.openpty()
        environment = self.environment | {"NO_COLOR": "1"}
        with subprocess.Popen([PROGRAM, *map(str, args)], stdout=terminal, stderr=subprocess.PIPE, env=environment) as run:
            os.close(terminal)
            shown = b""
            try:
                while more := os.read(master, 65536):
                    shown += more
            except OSError:
                pass  # how a terminal ends
            shown += run.stderr.read()
        os.close(master)
        return shown.decode()

    def succeed(self, *args, **options):
        run = self.run_cli(*args, **options)
        self.assertEqual(run.returncode, 0, run.stderr)
        return run.stdout

    def stored(self):
        return sorted(str(path.relative_to(self.library)) for path in self.library.rglob("*") if path.is_file())


class Transcribe(CommandLine):
    def test_a_call_of_two_voices_becomes_a_note(self):
        subprocess.run([MAKE_CALL, self.folder], check=True)
        call = json.loads((self.folder / "call.json").read_text())
        output = self.succeed("transcribe", "--you", self.folder / "you.caf", "--them", self.folder / "them.caf",
                              "--your-name", "Sam", "--their-name", "Maya", "--source", "Zoom", "--model", "fastest",
                              "--json")  # what other models hear of these voices is not known
        note = json.loads(output)
        segments = note["call"]["segments"]

        said = [word for line in call for word in words(line["text"])]
        written = [word for segment in segments for word in words(segment["text"])]
        self.assertLess(word_errors(said, written), 0.15 * len(said), written)

        self.assertEqual([segment["start"] for segment in segments], sorted(s["start"] for s in segments))
        for line in call:
            inside = [s for s in segments if s["speaker"] == line["speaker"]
                      and s["start"] < line["end"] and s["end"] > line["start"]]
            self.assertTrue(inside, line)
            self.assertAlmostEqual(inside[0]["start"], line["start"], delta=0.5, msg=line)
            self.assertAlmostEqual(inside[-1]["end"], line["end"], delta=0.5, msg=line)
            heard = words(" ".join(s["text"] for s in inside))
            self.assertLess(word_errors(words(line["text"]), heard), 4, (line, heard))

        todos = [(b["text"], b.get("owner"), b.get("due")) for b in note["blocks"] if b["kind"] == "todo"]
        for expected in [
            ("Send them the revised designs by Friday", "you", "Friday"),
            ("Update the pricing page tomorrow", "you", "tomorrow"),
            ("Confirm the launch date next week", None, "next week"),
        ]:
            self.assertIn(expected, todos)
        self.assertEqual(note["title"], note["call"]["digest"]["title"])
        self.assertGreaterEqual(len(note["call"]["digest"]["summary"]), 3)

        name = note["id"]
        self.assertEqual(self.stored(), [f"audio/{name}/them.caf", f"audio/{name}/you.caf", f"notes/{name}.json"])
        self.assertEqual((self.library / "notes" / f"{name}.json").read_text().strip(), output.strip())
        shown = self.succeed("show", name[:8].lower())
        self.assertIn(note["title"], shown)
        self.assertIn("Maya", shown)
        self.assertNotIn("Mac", shown)
        [row] = json.loads(self.succeed("list", "--json"))
        self.assertEqual((row["id"], row["isCall"]), (name, True))
        self.assertIn(note["title"], self.succeed("list"))

        transcript = self.folder / "transcript.json"
        transcript.write_text(json.dumps(segments))
        digest = json.loads(self.succeed("digest", transcript, "--json"))
        self.assertEqual(digest["summary"], note["call"]["digest"]["summary"])
        self.assertIn("Follow-up", self.succeed("digest", "-", input=transcript.read_text()))

    def test_an_interrupted_transcription_leaves_nothing_behind(self):
        with subprocess.Popen([PROGRAM, "transcribe", "--them", f"{RECORDINGS}/two_cities.wav"], env=self.environment,
                              stderr=subprocess.PIPE, text=True) as run:
            while run.poll() is None and not list(self.library.glob("audio/*")):
                pass
            run.send_signal(signal.SIGINT)
            _, error = run.communicate()
        self.assertEqual((run.returncode, error), (1, "varnic-cli: Stopped. Nothing was filed.\n"))
        self.assertEqual(self.stored(), [])

    def test_a_silent_track_says_that_nobody_was_heard(self):
        silent = self.folder / "silent.wav"
        subprocess.run(["ffmpeg", "-v", "error", "-f", "lavfi", "-i", "anullsrc=r=48000:cl=mono", "-t", "3", silent],
                       check=True)
        os.utime(silent, (1e9, 1e9))
        run = self.run_cli("transcribe", "--you", silent, "--json")
        self.assertEqual(run.returncode, 1)
        self.assertEqual(run.stderr, "varnic-cli: Nobody was heard on this recording.\n")
        self.assertEqual(json.loads(run.stdout)["call"]["startedAt"], "2001-09-09T01:46:40.000Z")
        self.assertEqual(len([file for file in self.stored() if file.startswith("notes/")]), 1)


class Recover(CommandLine):
    ID = "0B5D6A1E-5B1C-4B57-9C43-7C6F2A7B8E11"

    def cut_off(self, name, track=None, mark=None):
        """The audio folder of a recording whose program died."""
        folder = self.library / "audio" / name
        folder.mkdir(parents=True)
        if track:
            (folder / "them.wav").write_bytes(Path(track).read_bytes())
        if mark is not None:
            (folder / "recording.json").write_text(mark)
        return folder

    def test_a_cut_off_recording_becomes_a_note_once(self):
        mark = {"id": self.ID, "startedAt": "2026-03-14T09:26:53.589Z", "source": "Zoom", "sides": ["them"],
                "process": 1}
        self.cut_off(self.ID, f"{RECORDINGS}/beckett.wav", json.dumps(mark))
        self.assertRegex(self.succeed("recover", "--your-name", "Sam"),
                         r"\ARecovered a recording of under a minute\n\n(.+\n)+")
        self.assertEqual(self.stored(), [f"audio/{self.ID}/them.wav", f"notes/{self.ID}.json"])
        note = json.loads(self.succeed("show", self.ID, "--json"))
        self.assertEqual((note["call"]["startedAt"], note["call"]["source"]), (mark["startedAt"], "Zoom"))
        self.assertIn("try again", " ".join(s["text"] for s in note["call"]["segments"]).lower())
        self.assertEqual(self.succeed("recover"), "There is nothing to recover.\n")
        self.assertEqual(json.loads(self.succeed("recover", "--json")), [])

    def test_a_killed_transcription_is_recovered_without_a_model_and_keeps_its_audio(self):
        track = Path(f"{RECORDINGS}/two_cities.wav")
        with subprocess.Popen([PROGRAM, "transcribe", "--them", track], env=self.environment,
                              stdout=subprocess.DEVNULL) as run:
            while run.poll() is None and not any(copy.stat().st_size == track.stat().st_size
                                                 for copy in self.library.glob("audio/*/them.wav")):
                pass
            run.send_signal(signal.SIGSTOP)
            self.assertEqual(self.succeed("recover"), "There is nothing to recover.\n", "it lives")
            run.kill()
        run = self.run_cli("recover", "--language", "tlh", "--json")
        self.assertEqual(run.returncode, 1)
        self.assertIn("Klingon", run.stderr)
        [note] = json.loads(run.stdout)
        self.assertIn("Klingon", note["call"]["problem"])
        self.assertEqual(self.stored(), [f"audio/{note['id']}/them.wav", f"notes/{note['id']}.json"])

    def test_a_recording_without_sound_goes_to_the_deleted_ones(self):
        self.cut_off(self.ID, mark="{")
        run = self.run_cli("recover")
        self.assertEqual((run.returncode, run.stdout), (0, "There is nothing to recover.\n"))
        self.assertIn("before it held any sound", run.stderr)
        self.assertEqual(self.stored(), [f"Deleted/{self.ID}/audio/recording.json"])

    def test_an_interrupted_recovery_files_the_call_for_another_try(self):
        self.cut_off(self.ID, f"{RECORDINGS}/two_cities.wav", "")
        with subprocess.Popen([PROGRAM, "recover"], env=self.environment, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE,
                              text=True) as run:
            # From the moment on that the models are open it listens.
            while run.poll() is None and not list(Path(f"/proc/{run.pid}/task").glob("*"))[1:]:
                pass
            run.send_signal(signal.SIGINT)
            _, error = run.communicate()
        self.assertEqual((run.returncode, error), (1, "varnic-cli: Varnic was quit before this call was transcribed — "
                                                      "choose Transcribe Again.\n"
                                                      f"Here that is: varnic-cli transcribe --note {self.ID[:8]}\n"))
        self.assertEqual(self.stored(), [f"audio/{self.ID}/them.wav", f"notes/{self.ID}.json"])

    def file_without_words(self, **call):
        """A call whose program died before its words came."""
        self.cut_off(self.ID, f"{RECORDINGS}/beckett.wav")
        (self.library / "notes").mkdir()
        blocks = [{"id": self.ID[:-1] + "2", "kind": "paragraph", "text": "Mine."}]
        (self.library / "notes" / f"{self.ID}.json").write_text(json.dumps(
            {"id": self.ID, "title": "My title", "created": "2026-03-14T09:26:53.589Z", "blocks": blocks,
             "call": {"startedAt": "2026-03-14T09:26:53.589Z", "duration": 9, "source": "Zoom", "tracks": ["them"],
                      "themName": "", "language": "en-US", "segments": [], "audioFolder": self.ID} | call}))

    def check_words(self, note):
        self.assertIn("try again", " ".join(s["text"] for s in note["call"]["segments"]).lower())
        self.assertEqual(note["title"], "My title")
        self.assertIn("Mine.", [block.get("text") for block in note["blocks"]])

    def test_a_call_that_was_filed_ahead_of_its_words_gets_them(self):
        self.file_without_words()
        [note] = json.loads(self.succeed("recover", "--json"))
        self.check_words(note)
        self.assertEqual(self.succeed("recover"), "There is nothing to recover.\n")

    def test_a_call_of_the_library_is_transcribed_again(self):
        lost = "The recording of your side lacks sound from 0:05 on: the disk is faulty."
        self.file_without_words(problem=f"Transcription failed: once. {lost}")
        self.assertEqual(self.succeed("recover"), "There is nothing to recover.\n")
        self.assertIn("Klingon", self.run_cli("transcribe", "--note", self.ID, "--language", "tlh").stderr)
        run = self.run_cli("transcribe", "--note", self.ID[:6].lower(), "--json")
        self.assertEqual((run.returncode, run.stderr), (0, f"varnic-cli: {lost}\n"))
        self.check_words(json.loads(run.stdout))
        for args, code in ((["--note", self.ID, "--you", "x.wav"], 2), (["--note", "FFFF"], 1)):
            self.assertEqual(self.run_cli("transcribe", *args).returncode, code)
        (self.library / "audio" / self.ID / "them.wav").unlink()
        run = self.run_cli("transcribe", "--note", self.ID)
        self.assertEqual((run.returncode, run.stderr), (1, "varnic-cli: The recording’s audio file is missing.\n"))

    def test_a_deleted_call_comes_back_with_its_recording(self):
        self.file_without_words(problem="Transcription failed: once.")
        before = self.stored()
        self.assertIn(f"varnic-cli restore {self.ID[:8]}", self.succeed("delete", self.ID[:4]))
        self.assertEqual(self.stored(), [f"Deleted/{self.ID}/audio/them.wav", f"Deleted/{self.ID}/note.json"])
        self.assertIn("My title", self.succeed("restore"))
        [row] = json.loads(self.succeed("restore", "--json"))
        self.assertEqual((row["id"], row["isCall"]), (self.ID, True))
        self.assertEqual(self.run_cli("delete", self.ID).returncode, 1)
        self.assertEqual(self.run_cli("restore", "FFFF").returncode, 1)
        self.assertIn("My title", self.succeed("restore", self.ID[:4].lower()))
        self.assertEqual(self.stored(), before)
        self.assertEqual(json.loads(self.succeed("restore", "--json")), [])


class Tools(CommandLine):
    """Search, roll-up, decks, export and import over notes that came from Markdown."""

    NOTE = """# Garden plan

## Beds

- [ ] Order seeds _(@You, due Friday)_
- [x] Measure the café terrace

**Q:** What do beans need?
**A:** Warm soil
"""

    def setUp(self):
        super().setUp()
        notes = self.folder / "notes"
        (notes / "deep").mkdir(parents=True)
        (notes / ".trash").mkdir()
        (notes / "garden.md").write_text(self.NOTE)
        (notes / "deep" / "Untitled thoughts.md").write_bytes("\ufeffA thought about the terrace.\r\n".encode())
        (notes / ".trash" / "old.md").write_text("# Old\n")
        (notes / "other.txt").write_text("terrace")
        self.notes = notes

    def test_a_folder_of_markdown_becomes_notes_that_are_searched_rolled_up_and_exported(self):
        imported = json.loads(self.succeed("import", self.notes, "--json"))
        self.assertEqual(sorted(one["title"] for one in imported), ["Garden plan", "Untitled thoughts"])
        garden = next(one["id"] for one in imported if one["title"] == "Garden plan")

        found = json.loads(self.succeed("search", "CAFE", "--json"))
        self.assertEqual([match["noteID"] for match in found], [garden])
        [hit] = found[0]["hits"]
        self.assertEqual((hit["field"], hit["snippet"], hit["highlights"]),
                         ("todo", "Measure the café terrace", [[12, 16]]))
        self.assertIn("terrace", self.succeed("search", "terrace"))
        self.assertEqual(self.succeed("search", "zeppelin"), "")

        [todo] = json.loads(self.succeed("todos", "--json"))
        self.assertEqual((todo["noteTitle"], todo["block"]["text"]), ("Garden plan", "Order seeds"))
        self.assertIn("Order seeds", self.succeed("todos"))
        [deck] = json.loads(self.succeed("decks", "--json"))
        self.assertEqual((deck["title"], deck["due"], deck["total"]), ("Garden plan", 1, 1))
        self.assertIn("Garden plan", self.succeed("decks"))

        text = self.succeed("export", garden[:8])
        self.assertIn("- [x] Measure the café terrace\n", text)
        self.succeed("export", garden, "--format", "markdown", "-o", self.folder)
        self.assertEqual((self.folder / "Garden plan.md").read_text(), text)
        self.assertEqual(json.loads(self.succeed("export", garden, "--json")),
                         {"fileName": "Garden plan.md", "text": text})

    def test_what_notes_cannot_hold_is_told(self):
        (self.notes / "garden.md").write_text("---\ntitle: Plot\ndate: 2026-03-14\n---\n- a\n  - b\n")
        run = self.run_cli("import", self.notes, "--json")
        self.assertEqual(run.stderr, "Simplified in 1 file: 1 item of a list in a list is an item of one list now.\n")
        by_title = {one["title"]: one for one in json.loads(run.stdout)}
        self.assertEqual(by_title["Plot"]["simplified"], {"nestedItems": 1, "codeLines": 0})
        self.assertEqual(by_title["Plot"]["file"], str(self.notes / "garden.md"))
        self.assertNotIn("simplified", by_title["Untitled thoughts"])
        note = json.loads(self.succeed("show", by_title["Plot"]["id"], "--json"))
        self.assertEqual(note["created"], "2026-03-14T00:00:00.000Z")

    def test_a_folder_that_cannot_be_read_is_named_and_the_rest_comes_in(self):
        (self.notes / "deep").chmod(0)
        user = None
        if os.geteuid() == 0:  # whom no permission stops
            user = 65534
            for path in (self.folder, *self.folder.rglob("*")):
                os.chown(path, user, user)
        environment = self.environment | {"HOME": str(self.folder)}
        run = subprocess.run([PROGRAM, "import", self.notes], capture_output=True, text=True, env=environment,
                             user=user)
        (self.notes / "deep").chmod(0o700)
        self.assertEqual(run.returncode, 1)
        self.assertIn("deep” can’t be read", run.stderr)
        self.assertIn("Garden plan", run.stdout)

    def test_an_interrupt_ends_an_import_between_two_files(self):
        for i in range(3000):
            (self.notes / f"{i}.md").write_text("Text")
        with subprocess.Popen([PROGRAM, "import", self.notes, "--json"], env=self.environment, stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, text=True) as run:
            while run.poll() is None and not list(self.library.glob("notes/*.json")):
                pass
            run.send_signal(signal.SIGINT)
            output, error = run.communicate()
        imported = json.loads(output)
        self.assertEqual((run.returncode, error),
                         (1, f"varnic-cli: Stopped. {len(imported)} of 3002 files are in the library.\n"))
        self.assertEqual({path.stem for path in self.library.glob("notes/*.json")}, {one["id"] for one in imported})
        self.assertGreater(len(imported), 0)

    def test_no_control_character_reaches_a_terminal(self):
        (self.notes / "bad\x1b[2J.md").write_bytes(b"# \x1b]0;owned\x07 caf\xe9\n")
        (self.notes / "garden.md").write_text("# H\x1b[2Jeron\x9b31m\u0090\r\n\nText\x07\tmore\x7f\n")
        note = None
        for args in (["import", self.notes], ["list"], ["show"], ["show", "--json"], ["export"], ["search", "eron"],
                     ["delete"], ["restore"]):
            with self.subTest(args):
                if args[0] in ("show", "export", "delete"):
                    args.insert(1, note)
                shown = self.at_terminal(*args)
                self.assertIn("eron", shown)
                self.assertEqual([c for c in shown if unicodedata.category(c) == "Cc" and c not in "\r\n\t"], [], shown)
                if note is None:
                    [note] = [one["id"] for one in json.loads(self.succeed("list", "--json")) if "eron" in one["title"]]

    def test_what_cannot_be_imported_is_named_and_the_rest_comes_in(self):
        (self.notes / "latin.md").write_bytes(b"# caf\xe9\n")
        run = self.run_cli("import", self.notes)
        self.assertEqual(run.returncode, 1)
        self.assertEqual(run.stderr, "varnic-cli: “latin.md” isn’t UTF-8 text.\n")
        self.assertEqual(len(json.loads(self.succeed("list", "--json"))), 2)
        self.assertEqual(self.run_cli("import", self.folder / "missing.md").returncode, 1)
        self.assertEqual(self.run_cli("export", "0000").returncode, 1)

    def test_every_format_is_written_to_files_folders_and_pipes(self):
        imported = json.loads(self.succeed("import", self.notes, "--json"))
        garden = next(one["id"] for one in imported if one["title"] == "Garden plan")
        for kind, start in (("pdf", b"%PDF-"), ("rtf", b"{\\rtf1"), ("docx", b"PK\x03\x04")):
            with self.subTest(kind):
                self.succeed("export", garden, "--format", kind, "-o", self.folder)
                written = (self.folder / f"Garden plan.{kind}").read_bytes()
                self.assertTrue(written.startswith(start))
                for more in ([], ["-o", "/dev/stdout"]):
                    piped = subprocess.run([PROGRAM, "export", garden, "--format", kind, *more], capture_output=True,
                                           env=self.environment, check=True)
                    self.assertEqual(piped.stdout, written)
                named = self.folder / f"by its name.{kind.upper()}"
                self.succeed("export", garden, "-o", named)
                self.assertEqual(named.read_bytes(), written)
                named.unlink()
        self.assertEqual(sorted(path.suffix for path in self.folder.iterdir() if path.is_file()),
                         [".docx", ".pdf", ".rtf"])

    def test_an_exported_file_has_the_usual_permissions_and_replaces_what_a_link_leads_to(self):
        imported = json.loads(self.succeed("import", self.notes / "garden.md", "--json"))
        new, old, link = self.folder / "new.md", self.folder / "old.md", self.folder / "link.md"
        old.write_text("old")
        old.chmod(0o640)
        link.symlink_to(old)
        mask = os.umask(0o027)
        self.addCleanup(os.umask, mask)
        self.succeed("export", imported[0]["id"], "-o", new)
        self.succeed("export", imported[0]["id"], "-o", link)
        self.assertEqual(new.stat().st_mode & 0o777, 0o640)
        self.assertEqual(old.stat().st_mode & 0o777, 0o640)
        self.assertTrue(link.is_symlink())
        self.assertEqual(old.read_text(), new.read_text())

    def test_an_export_that_cannot_be_is_refused_with_a_sentence(self):
        [note] = json.loads(self.succeed("import", self.notes / "garden.md", "--json"))
        for args, code in ((["--format", "odt"], 2), (["--format", "pdf", "--json"], 2),
                           (["--format", "pdf", "-o", self.folder / "missing" / "x.pdf"], 1),
                           (["--format", "pdf", "-o", "/dev/full"], 1)):
            with self.subTest(args):
                run = self.run_cli("export", note["id"], *args)
                self.assertEqual(run.returncode, code)
                self.assertRegex(run.stderr, r"\Avarnic-cli: .+\n\Z")
        master, terminal = os.openpty()
        self.addCleanup(os.close, master)
        run = subprocess.run([PROGRAM, "export", note["id"], "--format", "pdf"], stdout=terminal,
                             stderr=subprocess.PIPE, text=True, env=self.environment)
        os.close(terminal)
        self.assertEqual(run.returncode, 2)
        self.assertIn("terminal", run.stderr)


class Devices(CommandLine):
    def devices(self, environment, *args):
        environment = {name: value for name, value in (os.environ | environment).items() if value}
        return subprocess.run([PROGRAM, "devices", *args], capture_output=True, text=True, env=environment)

    def test_models_are_listed_and_broken_ones_named(self):
        models = self.folder / "data/varnic/models"
        shutil.copytree(next(Path(PROGRAM).parents[1].glob("share/varnic/models/moonshine*")), models / "cut")
        manifest = json.loads((models / "cut/model.json").read_text()) | {"id": "cut", "name": "Cut"}
        (models / "cut/model.json").write_text(json.dumps(manifest))
        os.truncate(models / "cut" / manifest["files"]["encoder"], 1000)
        # The engine ends the process that it is in, given such a file.
        (models / "other").mkdir()
        shutil.copy(next(Path(PROGRAM).parents[1].glob("share/varnic/vad/*.onnx")), models / "other/model.onnx")
        (models / "other/model.json").write_text(json.dumps(
            {"id": "other", "name": "Other", "engine": "whisper", "locales": ["tlh"],
             "files": {"encoder": "model.onnx", "decoder": "model.onnx", "tokens": "model.onnx"}}))
        (models / "none").mkdir()
        (models / "none/model.json").write_text("[1, 2")
        self.environment["XDG_DATA_HOME"] = str(self.folder / "data")

        run = self.run_cli("models", "--check", "--json")
        self.assertEqual(run.returncode, 1)
        listed = json.loads(run.stdout)
        self.assertLessEqual({"cut", "other", "moonshine-tiny-en"}, {model["id"] for model in listed["models"]})
        self.assertEqual(len(listed["faults"]), 3, listed["faults"])
        for folder in ("cut", "other", "none"):
            self.assertTrue(any(str(models / folder) in fault for fault in listed["faults"]), folder)

        track = Path(RECORDINGS) / "beckett.wav"
        run = self.run_cli("transcribe", "--them", track, "--language", "tlh")
        self.assertEqual(run.returncode, 1)
        self.assertIn("“Other”", run.stderr)
        for wish, sentence in (("cut", "“Cut”"), ("nowhere", "no speech model “nowhere”")):
            run = self.run_cli("transcribe", "--them", track, "--model", wish)
            self.assertEqual(run.returncode, 1)
            self.assertIn(sentence, run.stderr)
        self.assertIn("again", self.succeed("transcribe", "--them", track, "--model", "fastest").lower())

    def test_a_language_that_a_model_only_claims_is_told(self):
        whisper = next(Path(PROGRAM).parents[1].glob("share/varnic/models/whisper*"), None)
        if whisper is None:
            self.skipTest("there is no Whisper; ./dev setup models brings it")
        folder = self.folder / "data/varnic/models/claims"
        shutil.copytree(whisper, folder)
        manifest = json.loads((folder / "model.json").read_text()) | {"id": "claims", "locales": ["en", "tlh"]}
        (folder / "model.json").write_text(json.dumps(manifest))
        self.environment["XDG_DATA_HOME"] = str(self.folder / "data")
        track = Path(RECORDINGS) / "beckett.wav"
        # The engine ends the process that it is in, asked for such a language.
        run = self.run_cli("transcribe", "--them", track, "--language", "tlh")
        self.assertEqual(run.returncode, 1)
        self.assertIn("without the language “tlh”", run.stderr)
        self.assertIn("again", self.succeed("transcribe", "--them", track, "--model", "claims").lower())

    def test_each_damaged_file_of_a_model_is_told(self):
        models = self.folder / "data/varnic/models"
        sound = next(Path(PROGRAM).parents[1].glob("share/varnic/models/moonshine*"))
        detector = next(Path(PROGRAM).parents[1].glob("share/varnic/vad/*.onnx"))
        damages = {
            "half": lambda file: os.truncate(file, file.stat().st_size // 2),
            "empty": lambda file: os.truncate(file, 0),
            "text": lambda file: file.write_text("nothing of the kind\n" * 100),
            "other": lambda file: shutil.copy(detector, file),
        }
        manifest = json.loads((sound / "model.json").read_text())
        expected = set()
        for role, name in manifest["files"].items():
            for kind, damage in damages.items():
                folder = models / f"{role}-{kind}"
                shutil.copytree(sound, folder)
                (folder / "model.json").write_text(json.dumps(manifest | {"id": folder.name, "name": folder.name}))
                damage(folder / name)
                expected.add(folder.name)
        self.environment["XDG_DATA_HOME"] = str(self.folder / "data")
        faults = json.loads(self.run_cli("models", "--check", "--json").stdout)["faults"]
        self.assertEqual({folder for folder in expected if any(f"“{folder}”" in fault for fault in faults)}, expected)
        self.assertEqual(len(faults), len(expected), faults)

    def test_a_damaged_noise_reduction_is_done_without(self):
        installed = next(Path(PROGRAM).parents[1].glob("share/varnic/noise"), None)
        if installed is None:
            self.skipTest("no noise reduction is installed")
        noise = self.folder / "data/varnic/noise"
        shutil.copytree(installed, noise)
        # The library ends the process that it is in, given such a file.
        os.truncate(next(noise.glob("*.tar.gz")), 1000)
        self.environment["XDG_DATA_HOME"] = str(self.folder / "data")
        self.assertIn(f"noise reduction in {noise}", self.run_cli("models", "--check").stderr)
        track = self.folder / "noisy.wav"
        subprocess.run(["ffmpeg", "-v", "error", "-i", Path(RECORDINGS) / "beckett.wav", "-f", "lavfi", "-i",
                        "anoisesrc=d=20:a=0.02:seed=7", "-filter_complex", "amix=2:normalize=0:duration=first", track],
                       check=True)
        self.assertIn("again", self.succeed("transcribe", "--them", track, "--model", "fastest").lower())

    def test_languages_are_told_apart_where_a_model_can(self):
        track = Path(RECORDINGS) / "beckett.wav"
        shown = self.run_cli("transcribe", "--them", track, "--language", "auto", "--json")
        if any(Path(PROGRAM).parents[1].glob("share/varnic/models/whisper*")):
            self.assertEqual(json.loads(shown.stdout)["call"]["language"][:2], "en", shown.stderr)
        else:
            self.assertEqual(shown.returncode, 1)
            self.assertIn("tell languages apart", shown.stderr)

    def test_a_sound_system_is_described(self):
        with SoundSystem(pulse=False) as sound:
            run = self.devices(sound.environment, "--json")
            self.assertEqual(run.returncode, 0, run.stderr)
            self.assertEqual(json.loads(run.stdout), {"microphone": "Virtual test-mic", "output": "Virtual test-sink",
                                                      "playing": [], "missing": []})
            self.assertIn("Virtual test-mic", self.devices(sound.environment).stdout)

    def test_a_missing_configuration_is_told_in_our_words_alone(self):
        nowhere = {"XDG_RUNTIME_DIR": str(self.folder), "PIPEWIRE_CONFIG_DIR": str(self.folder), "PIPEWIRE_REMOTE": ""}
        for command in ("devices", "record"):
            run = subprocess.run([PROGRAM, command], capture_output=True, text=True,
                                 env=self.environment | nowhere)
            self.assertEqual((run.returncode, run.stdout), (1, ""))
            self.assertEqual(run.stderr, "varnic-cli: The computer’s sound couldn’t be captured: PipeWire’s configuration "
                                         "for programs can’t be read; on Debian it is in the package pipewire-bin.\n")


class BadInput(CommandLine):
    def fails(self, *args, **options):
        run = self.run_cli(*args, **options)
        self.assertEqual(run.returncode, 1, run.stderr)
        self.assertEqual(run.stdout, "")
        self.assertRegex(run.stderr, r"\Avarnic-cli: .+\n\Z")
        return run.stderr

    def test_recordings_that_hold_no_sound_leave_nothing_behind(self):
        (self.folder / "empty.m4a").write_bytes(b"")
        (self.folder / "text.wav").write_text("This is no sound.\n" * 50)
        (self.folder / "noise.mp3").write_bytes(os.urandom(5000))
        (self.folder / "folder.wav").mkdir()
        (self.folder / "list.m3u8").write_text("#EXTM3U\n#EXTINF:1,\nhttp://127.0.0.1/x.ts\n")
        os.mkfifo(self.folder / "pipe.wav")
        good = f"{RECORDINGS}/beckett.wav"
        for name in ("missing.wav", "empty.m4a", "text.wav", "noise.mp3", "folder.wav", "list.m3u8", "pipe.wav"):
            with self.subTest(name):
                error = self.fails("transcribe", "--you", good, "--them", self.folder / name)
                self.assertIn(name, error)
                self.assertEqual("There is no “" in error, name == "missing.wav")
                self.assertFalse(self.library.exists() and self.stored())

    def test_a_library_that_cannot_be_made_is_named(self):
        (self.folder / "file").write_text("")
        self.fails("transcribe", "--you", f"{RECORDINGS}/beckett.wav", library=self.folder / "file" / "library")

    def test_a_library_that_cannot_be_looked_into_is_not_taken_for_an_empty_one(self):
        below_a_file = self.folder / "file" / "library"
        below_a_file.parent.write_text("")
        going_in_circles = self.folder / "circles"
        going_in_circles.mkdir()
        (going_in_circles / "notes").symlink_to("notes")
        for library in below_a_file, going_in_circles:
            for command in ["list"], ["search", "x"], ["todos"], ["decks"], ["show", "AB"], ["recover"]:
                with self.subTest(command):
                    self.assertIn("notes” couldn’t be read: ", self.fails(*command, library=library))

    def test_a_library_that_was_moved_is_found_and_a_missing_one_is_not_begun_anew(self):
        moved = self.folder / "synchronised" / "Varnic"
        self.environment |= {"XDG_CONFIG_HOME": str(self.folder / "config"), "XDG_DATA_HOME": str(self.folder / "data")}
        (self.folder / "note.md").write_text("# Moved along\n\nHere.\n")
        self.succeed("import", self.folder / "note.md", library=moved)
        settings = self.folder / "config" / "Varnic" / "settings.ini"
        settings.parent.mkdir(parents=True)
        settings.write_text(f"[General]\nlibraryFolder={moved}\n")
        del self.environment["VARNIC_DATA_DIR"]
        self.assertIn("Moved along", self.succeed("list"))
        self.assertNotIn("Moved along", self.succeed("list", library=self.folder / "other"))
        moved.rename(self.folder / "unplugged")
        error = self.fails("list")
        self.assertIn("isn’t there now", error)
        self.assertIn(str(settings), error)
        self.assertFalse(moved.exists())

    def test_damaged_notes_are_told_and_left_alone_and_the_others_load(self):
        notes = self.library / "notes"
        notes.mkdir(parents=True)
        (notes / "good.json").write_text('{"id": "0B5D6A1E-5B1C-4B57-9C43-7C6F2A7B8E11", "title": "Good"}')
        damaged = {"empty.json": b"", "brace.json": b"{", "deep.json": b"[" * 100000, "latin.json": b'{"id": "\xe4"}'}
        for name, content in damaged.items():
            (notes / name).write_bytes(content)
        run = self.run_cli("list", "--json")
        self.assertEqual([row["title"] for row in json.loads(run.stdout)], ["Good"])
        for name, content in damaged.items():
            self.assertIn(name, run.stderr)
            self.assertEqual((notes / name).read_bytes(), content)

    def test_wrong_transcripts_and_ids(self):
        for text in ("", "{}", "[1]", '[{"speaker": "me"}]', "\x00"):
            with self.subTest(text):
                self.fails("digest", "-", input=text)
        self.fails("digest", self.folder)
        self.fails("show", "ABCD")

    def test_wrong_usage_exits_with_2(self):
        for args in ((), ("dance",), ("transcribe",), ("transcribe", "--who", "x"), ("transcribe", "--you"),
                     ("list", "more"), ("show",), ("show", "a", "b"), ("digest", "--json=yes", "f")):
            with self.subTest(args):
                run = self.run_cli(*args)
                self.assertEqual((run.returncode, run.stdout), (2, ""))
                if args and args[0] != "dance":
                    self.assertRegex(run.stderr, f"; see varnic-cli {args[0]} --help\n$")
        self.assertEqual(self.succeed("-h"), self.succeed("--help"))
        self.assertRegex(self.succeed("--version"), r"\Avarnic-cli \d+\.\d+\.\d+\n\Z")
        for command in ("transcribe", "list", "show", "digest"):
            self.assertIn("usage: varnic-cli " + command, self.succeed(command, "--help"))


if __name__ == "__main__":
    unittest.main()
