"""Recording calls, from outside: what two programs play becomes two aligned tracks and a note, whatever goes wrong.

Usage: record_test.py PROGRAM FIXTURES MAKE_CALL [TEST...]

Every test has a sound system and a library of its own and mostly waits, so that they run side by side. Each is a
process in a mount namespace, which takes its small disks with it when it ends.
"""

import concurrent.futures
import errno
import fcntl
import json
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import termios
import threading
import time
import unittest
from datetime import datetime
from pathlib import Path

PROGRAM, FIXTURES, MAKE_CALL = sys.argv[1:4]
sys.path.insert(0, FIXTURES)

import ai_server  # noqa: E402
from sound_system import SoundSystem, die_with_parent  # noqa: E402
from tracks import Track, frames  # noqa: E402
from words import word_errors, words  # noqa: E402

PATIENCE = 60  # seconds that anything may take
AT_ONCE = int(os.environ.get("VARNIC_TESTS_AT_ONCE", 4))
CLOSE = 0.1  # seconds that a line may be from where it was played
CALL = "VARNIC_TEST_CALL"  # names the folder of the call that all tests play


def as_from_a_terminal():
    die_with_parent()
    signal.signal(signal.SIGINT, signal.SIG_DFL)  # what a shell runs in the background ignores it, and so do its children


class Recorder:
    """`varnic-cli record`, with what it says and when. The words are those of the model that every developer has."""

    def __init__(self, library: Path, environment: dict, *arguments):
        environment = os.environ | environment | {"VARNIC_DATA_DIR": str(library), "TZ": "UTC", "LC_ALL": "C.UTF-8"}
        self.library = library
        self.process = subprocess.Popen(
            [PROGRAM, "record", "--json", "--model", "fastest", *arguments], text=True, stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE, stderr=subprocess.PIPE, preexec_fn=as_from_a_terminal,
            env={name: value for name, value in environment.items() if value})
        self.said = []
        self.output = ""
        self.changed = threading.Condition()
        self.listeners = [threading.Thread(target=listen) for listen in (self.listen, self.take_output)]
        for listener in self.listeners:
            listener.start()

    def listen(self):
        for line in self.process.stderr:
            with self.changed:
                self.said.append(line.rstrip("\n"))
                self.changed.notify_all()

    def take_output(self):
        self.output = self.process.stdout.read()

    @property
    def error(self):
        return "\n".join(self.said)

    def expect(self, text: str, seconds=PATIENCE):
        """Waits until it says this."""
        with self.changed:
            if not self.changed.wait_for(lambda: text in self.error, seconds):
                raise AssertionError(f"“{text}” was not said in {seconds} s, but:\n{self.error}")

    def started(self):
        self.expect("Recording. Ctrl-C stops.")
        return self

    def signal(self, number):
        self.process.send_signal(number)

    def end(self):
        """Its exit code, when it has ended by itself."""
        code = self.process.wait(PATIENCE)
        for listener in self.listeners:
            listener.join()
        self.process.stdout.close()
        self.process.stderr.close()
        return code

    def stop(self):
        """Its exit code after Ctrl-C."""
        self.signal(signal.SIGINT)
        return self.end()

    def close(self):
        self.process.kill()
        self.end()

    def note(self):
        return json.loads(self.output)


class RecordTest(unittest.TestCase):
    def setUp(self):
        self.folder = Path(tempfile.mkdtemp(prefix="varnic-record-"))
        self.addCleanup(shutil.rmtree, self.folder, ignore_errors=True)
        self.library = self.folder / "library"
        self.call = Path(os.environ[CALL])

    def sound_system(self, **options):
        sound = SoundSystem(**({"pulse": False, "quantum": 2048} | options))
        self.addCleanup(sound.close)
        return sound

    def record(self, sound, *arguments, library=None):
        environment = sound.environment if isinstance(sound, SoundSystem) else sound
        recorder = Recorder(library or self.library, environment, *arguments)
        self.addCleanup(recorder.close)
        return recorder

    def no_sound_system(self):
        return {"XDG_RUNTIME_DIR": str(self.folder), "PIPEWIRE_REMOTE": "", "PIPEWIRE_RUNTIME_DIR": "",
                "XDG_CONFIG_HOME": str(self.folder)}

    def run_cli(self, *arguments, sound=None, library=None):
        environment = os.environ | (sound or {}) | {"VARNIC_DATA_DIR": str(library or self.library), "TZ": "UTC",
                                                    "LC_ALL": "C.UTF-8"}
        return subprocess.run([PROGRAM, *map(str, arguments)], capture_output=True, text=True, timeout=PATIENCE,
                              env={name: value for name, value in environment.items() if value})

    @staticmethod
    def stored(library: Path):
        return sorted(str(path.relative_to(library)) for path in library.rglob("*") if path.is_file())

    def cut(self, side: str, start: float, end: float) -> Path:
        """A stretch of one side of the call."""
        piece = self.folder / f"{side}-{start}-{end}.wav"
        subprocess.run(["ffmpeg", "-v", "error", "-y", "-i", self.call / f"{side}.caf", "-af",
                        f"atrim={start}:{end},asetpts=PTS-STARTPTS", piece], check=True)
        return piece

    @staticmethod
    def play_out(sound: SoundSystem, *players: str):
        for player in players:
            sound.players[player].wait(PATIENCE * 2)

    def tracks(self, note: dict, library: Path | None = None):
        """Both tracks, which have the very same length."""
        folder = (library or self.library) / "audio" / note["id"]
        files = [folder / "you.m4a", folder / "them.m4a"]
        lengths = [frames(file) for file in files]
        self.assertEqual(*lengths)
        self.assertAlmostEqual(lengths[0] / 48000, note["call"]["duration"], delta=0.0001)
        return [Track(file) for file in files]

    def assert_filed(self, note: dict, tracks=("them", "you"), library: Path | None = None):
        name = note["id"]
        library = library or self.library
        self.assertEqual([file for file in self.stored(library) if name in file],
                         [*(f"audio/{name}/{track}.m4a" for track in tracks), f"notes/{name}.json"])
        self.assertEqual(json.loads((library / "notes" / f"{name}.json").read_text()), note)

    def assert_found(self, track: Track, piece, earliest: float, latest: float):
        """Where a piece lies in the track, between these seconds or CLOSE to them."""
        at, likeness = track.find(piece, earliest - CLOSE, latest + CLOSE)
        self.assertGreater(likeness, 0.6, f"not between {earliest} and {latest}; best at {at}")
        return at


def since(note: dict, moment: float) -> float:
    """Where on the note's tracks a moment of time.time() lies."""
    return moment - datetime.fromisoformat(note["call"]["startedAt"].replace("Z", "+00:00")).timestamp()


class WholeCall(RecordTest):
    """One call, recorded by two programs at once into one library, with and without a live transcript. Each line has a
    player of its own, so that it is known when it was played, also on a machine too busy to play a minute smoothly."""

    def setUp(self):
        super().setUp()
        self.lines = json.loads((self.call / "call.json").read_text())
        for line in self.lines:
            line["file"] = self.cut(line["speaker"], line["start"], line["end"] + 0.1)
            line["beginning"] = Track(line["file"]).piece(0, 2)

    def play_call(self, sound):
        """Plays line after line with a pause between them, and notes between which moments each began."""
        pause = 0.7
        for line in self.lines:
            time.sleep(pause)
            before = time.time()
            player = sound.feed(line["file"]) if line["speaker"] == "you" else sound.play(line["file"])
            sound.wait_until_playing(player)
            line["played"] = before, time.time() + 0.1  # the sound server's own delay
            self.play_out(sound, player)

    def record_call(self, with_echo=False):
        sound = self.sound_system()
        if with_echo:
            sound.overhear(volume=0.178, delay=0.03)  # 12 dB down, since both channels of the sink add up
        both = [self.record(sound, "--your-name", "Sam", *more) for more in ([], ["--no-live"])]
        for recorder in both:
            recorder.started()
        self.play_call(sound)
        time.sleep(1)
        for recorder in both:
            recorder.signal(signal.SIGINT)
        for recorder in both:
            self.assertEqual(recorder.end(), 0, recorder.error)
            self.assertNotIn("sound were lost", recorder.error)
        return both

    def places(self, note):
        """Where each line begins on its track: where it was played."""
        tracks = dict(zip(("you", "them"), self.tracks(note)))
        return [self.assert_found(tracks[line["speaker"]], line["beginning"],
                                  *(since(note, moment) for moment in line["played"])) for line in self.lines]

    def check_words(self, segments, places, near: float, errors: float):
        said = [word for line in self.lines for word in words(line["text"])]
        written = [word for segment in segments for word in words(segment["text"])]
        self.assertLess(word_errors(said, written), errors * len(said), written)
        self.assertEqual([segment["start"] for segment in segments], sorted(s["start"] for s in segments))
        for line, start in zip(self.lines, places):
            end = start + line["end"] - line["start"]
            inside = [s for s in segments if s["speaker"] == line["speaker"]
                      and s["start"] < end and s["end"] > start]
            self.assertTrue(inside, (line["text"], [s["text"] for s in segments]))
            self.assertAlmostEqual(inside[0]["start"], start, delta=near, msg=line["text"])
            self.assertAlmostEqual(inside[-1]["end"], end, delta=near, msg=line["text"])
        yours = [word for s in segments if s["speaker"] == "you" for word in words(s["text"])]
        said = [word for line in self.lines if line["speaker"] == "you" for word in words(line["text"])]
        self.assertLess(word_errors(said, yours), (errors + 0.05) * len(said), yours)

    def check_notes(self, both, errors):
        """`errors` is the part of wrong words that each kind of transcript may have; without one it is not looked at."""
        self.assertEqual(len(self.stored(self.library)), 6)
        moments = []
        for recorder, kind in zip(both, ("live", "afterwards")):
            with self.subTest(kind):
                note = recorder.note()
                self.assert_filed(note)
                places = self.places(note)
                moments.append([place - since(note, 0) for place in places])
                if kind not in errors:
                    continue
                self.check_words(note["call"]["segments"], places, 0.5, errors[kind])
                todos = [b["text"] for b in note["blocks"] if b["kind"] == "todo"]
                expected = words("Confirm the launch date next week")
                self.assertLess(min(word_errors(expected, words(todo)) for todo in todos), 2, todos)
                self.assertGreaterEqual(len(todos), 3)
        self.assertEqual(len(moments), 2)
        for line, live, afterwards in zip(self.lines, *moments):
            self.assertAlmostEqual(live, afterwards, delta=CLOSE, msg=line["text"])

    def test_a_call_becomes_two_aligned_tracks_and_its_note(self):
        both = self.record_call()
        self.check_notes(both, {"live": 0.18, "afterwards": 0.15})
        # The live lines were on the terminal as they were said.
        lines = [line for line in both[0].said if " Sam: " in line or " Them: " in line]
        self.assertGreater(len(lines), 8, both[0].said)
        self.assertFalse([line for line in both[1].said if " Sam: " in line])

    def test_what_the_microphone_hears_of_the_other_side_is_not_yours(self):
        self.check_notes(self.record_call(with_echo=True), {"live": 0.18, "afterwards": 0.18})

    def test_what_you_say_over_the_loudspeakers_is_in_the_note_as_it_was_said(self):
        # Which words are misheard where both speak is chance; in too few of them a single one fails the test.
        theirs = 2 * [line for line in self.lines if line["speaker"] == "them"]
        yours = [line for line in self.lines if line["speaker"] == "you"]
        mixes = {"them.wav": "".join(f"[{i}]" for i in range(len(theirs))) + f"concat={len(theirs)}:v=0:a=1",
                 "you.wav": "".join(f"[{i}]adelay={11000 + 7000 * i}[d{i}];" for i in range(len(yours)))
                 + "".join(f"[d{i}]" for i in range(len(yours))) + f"amix={len(yours)}:normalize=0"}
        for (name, mix), lines in zip(mixes.items(), (theirs, yours)):
            subprocess.run(["ffmpeg", "-v", "error", *(word for line in lines for word in ("-i", line["file"])),
                            "-filter_complex", mix, self.folder / name], check=True)
        sound = self.sound_system()
        sound.overhear(volume=0.178, delay=0.03)
        recorder = self.record(sound).started()
        self.play_out(sound, sound.play(self.folder / "them.wav"), sound.feed(self.folder / "you.wav"))
        self.assertEqual(recorder.stop(), 0, recorder.error)
        for speaker, lines in (("you", yours), ("them", theirs)):
            said = [word for line in lines for word in words(line["text"])]
            written = [word for segment in recorder.note()["call"]["segments"] if segment["speaker"] == speaker
                       for word in words(segment["text"])]
            self.assertLess(word_errors(said, written), 0.2 * len(said), written)


class Faults(RecordTest):
    """What goes wrong with the sound while a call is recorded."""

    def setUp(self):
        super().setUp()
        self.piece = self.cut("them", 0.9, 4.8)
        self.sound_of_piece = Track(self.piece).piece(0, 4)

    def say(self, sound, source="test-mic"):
        """Plays the piece on both sides; gives the moments between which that began."""
        before = time.time()
        players = [sound.feed(self.piece, source), sound.play(self.piece)]
        after = time.time()
        return before, after + 0.5, players

    @staticmethod
    def hears(sound):
        """Waits until the recorder is linked to the microphone."""
        sound.wait_for(lambda: "varnic" in sound.output("pw-link", "-i").lower(), "the recorder")

    def test_a_killed_server_that_returns_leaves_a_gap_of_the_right_length(self):
        sound = self.sound_system()
        recorder = self.record(sound, "--no-live").started()
        first = self.say(sound)
        self.play_out(sound, *first[2])
        sound.kill("pipewire", "KILL")
        recorder.expect("The connection to the sound system was lost.", 10)
        sound.kill("wireplumber", "KILL")
        time.sleep(2)
        sound.start("pipewire")
        sound.start("wireplumber")
        self.hears(sound)
        time.sleep(1)
        second = self.say(sound)
        self.play_out(sound, *second[2])
        self.assertEqual(recorder.stop(), 0, recorder.error)
        note = recorder.note()
        self.assert_filed(note)
        for track in self.tracks(note):
            places = [self.assert_found(track, self.sound_of_piece, since(note, before), since(note, after))
                      for before, after, _ in (first, second)]
            self.assertLess(track.peak(places[0] + 4.2, places[1] - 0.2), 0.01)


class Disk(RecordTest):
    """A library on a disk that gives trouble."""

    def setUp(self):
        super().setUp()
        self.disk = self.folder / "disk"
        self.disk.mkdir()
        self.library = self.disk / "library"

    def mount(self, size: str):
        subprocess.run(["mount", "-t", "tmpfs", "-o", f"size={size}", "tmpfs", self.disk], check=True)
        self.addCleanup(subprocess.run, ["umount", "--lazy", self.disk], check=True)

    def fill(self, left: int):
        """Takes all but so many bytes of the disk."""
        with open(self.disk / "ballast", "wb") as ballast:
            while True:
                space = os.statvfs(self.disk)
                try:
                    os.posix_fallocate(ballast.fileno(), 0, space.f_bavail * space.f_frsize - left)
                    return
                except OSError as error:  # when the recorder has written meanwhile
                    if error.errno != errno.ENOSPC:
                        raise

    def start(self, sound, *arguments):
        recorder = self.record(sound, *arguments).started()
        return recorder, [sound.feed(self.cut("you", 5.4, 30)), sound.play(self.cut("them", 0.5, 30))]

    def stop_playing(self, sound, players):
        for player in players:
            sound.stop(player)

    def test_a_disk_that_gets_full_stops_the_recording_which_is_kept(self):
        self.mount("130m")
        sound = self.sound_system()
        recorder, players = self.start(sound)
        time.sleep(6)
        self.fill(25_000_000)
        recorder.expect("The disk is almost full — less than ten minutes of recording fit.")
        self.assertIsNone(recorder.process.poll())
        self.fill(15_000_000)
        self.assertEqual(recorder.end(), 0, recorder.error)
        self.assertIn("Recording stopped — the disk is full", recorder.error)
        note = recorder.note()
        self.assert_filed(note)
        self.tracks(note)
        self.assertGreater(note["call"]["duration"], 5)
        self.assertTrue(note["call"]["segments"])

    def test_a_disk_that_is_filled_at_once_keeps_what_was_recorded(self):
        self.mount("130m")
        sound = self.sound_system()
        recorder, players = self.start(sound)
        time.sleep(6)
        full = time.monotonic()
        self.fill(0)
        while subprocess.run(["dd", "if=/dev/zero", "of=" + str(self.disk / "more"), "bs=4k", "count=64",
                              "oflag=append", "conv=notrunc"], capture_output=True).returncode == 0:
            pass
        code = recorder.end()
        self.assertIn("the disk is full", recorder.error)
        self.assertEqual(code, 1, recorder.error)
        self.assertIn("`varnic-cli recover` makes its note", recorder.error)
        self.assertEqual([file for file in self.stored(self.library) if file.startswith("notes/")], [])
        self.assertLess(time.monotonic() - full, PATIENCE)
        for ballast in ("ballast", "more"):
            (self.disk / ballast).unlink()
        run = self.run_cli("recover", "--json")
        self.assertEqual(run.returncode, 0, run.stderr)
        [note] = json.loads(run.stdout)
        self.assert_filed(note)
        self.assertGreater(note["call"]["duration"], 4)
        self.assertTrue(note["call"]["segments"])

    def test_a_removed_audio_folder_is_told_while_it_records(self):
        sound = self.sound_system()
        recorder, players = self.start(sound)
        recorder.expect(" Them: ")
        [folder] = self.library.glob("audio/*")
        shutil.rmtree(folder)
        recorder.expect("The sound isn’t being saved: ", 5)
        recorder.expect("there is no such file or folder", 1)
        self.assertIsNone(recorder.process.poll())
        self.assertIn(recorder.stop(), (0, 1), recorder.error)
        # The words that were heard are kept.
        note = recorder.note()
        self.assertTrue(note["call"]["segments"])
        self.assertEqual(self.stored(self.library), [f"notes/{note['id']}.json"])

    def test_an_audio_folder_removed_before_a_word_was_written_ends_with_a_sentence(self):
        sound = self.sound_system()
        recorder, players = self.start(sound, "--no-live")
        time.sleep(3)
        shutil.rmtree(self.library)
        recorder.expect("The sound isn’t being saved: ", 5)
        self.assertEqual(recorder.stop(), 1, recorder.error)
        self.assertRegex(recorder.said[-1], r"\Avarnic-cli: .+\.\Z")

    def test_a_library_that_cannot_be_written_is_named(self):
        (self.folder / "file").write_text("")
        sound = self.sound_system()
        recorder = self.record(sound, library=self.folder / "file" / "library")
        self.assertEqual(recorder.end(), 1)
        self.assertRegex(recorder.error, r"\Avarnic-cli: .*a file stands where a folder should be\..*\Z")


class Missing(RecordTest):
    """What record and devices say where something is missing."""

    def fails(self, sound, says, *arguments):
        recorder = self.record(sound, *arguments)
        self.assertEqual(recorder.end(), 1, recorder.error)
        self.assertEqual(len(recorder.said), 1, recorder.error)
        self.assertRegex(recorder.error, r"\Avarnic-cli: .+\Z")
        for phrase in says:
            self.assertIn(phrase, recorder.error)
        for foreign in ("Mac", "Settings"):
            self.assertNotIn(foreign, recorder.error)
        self.assertEqual(list(self.library.glob("audio/*")), [])
        self.assertEqual(self.run_cli("recover").stdout, "There is nothing to recover.\n")

    def devices(self, sound):
        environment = sound.environment if isinstance(sound, SoundSystem) else sound
        run = self.run_cli("devices", sound=environment)
        return run.returncode, run.stdout + run.stderr

    def test_no_server_and_a_server_without_devices(self):
        for sound, says in ((self.no_sound_system(), "It is in the packages pipewire and wireplumber."),
                            (self.sound_system(nodes=False), "has no sound devices")):
            for arguments in ([], ["--no-live"], ["--mic-only"]):
                self.fails(sound, ["`varnic-cli devices` tells what is missing."], *arguments)
            code, text = self.devices(sound)
            self.assertEqual(code, 1)
            self.assertIn(says, text)

    def test_no_source(self):
        sound = self.sound_system(source=False)
        self.fails(sound, ["`varnic-cli devices` tells what is missing."], "--mic-only")
        code, text = self.devices(sound)
        self.assertEqual(code, 0)
        self.assertIn("There is no microphone: your side is recorded once there is one.", text)
        recorder = self.record(sound, "--no-live").started()
        sound.play(self.cut("them", 0.5, 5))
        recorder.expect("Recording their side only — the microphone is off.")
        time.sleep(5)
        self.assertEqual(recorder.stop(), 0, recorder.error)
        note = recorder.note()
        self.assert_filed(note, ["them"])
        self.assertEqual(note["call"]["tracks"], ["them"])
        self.assertIn("morning", " ".join(s["text"] for s in note["call"]["segments"]))

    def test_only_a_source(self):
        sound = self.sound_system(sink=False)
        code, text = self.devices(sound)
        self.assertEqual(code, 0)
        self.assertIn("no sound output", text)
        recorder = self.record(sound, "--no-live").started()
        self.assertIn("There is no sound output: the other side can’t be heard or recorded.", recorder.error)
        sound.feed(self.cut("you", 5.3, 9))
        time.sleep(5)
        self.assertEqual(recorder.stop(), 0, recorder.error)
        segments = recorder.note()["call"]["segments"]
        self.assertEqual({segment["speaker"] for segment in segments}, {"you"})
        self.assertIn("launch", " ".join(s["text"] for s in segments))


class Stopping(RecordTest):
    def start(self, *arguments):
        sound = self.sound_system()
        recorder = self.record(sound, *arguments).started()
        sound.feed(self.call / "you.caf")
        sound.play(self.call / "them.caf")
        return recorder

    def test_a_polite_kill_files_the_call(self):
        recorder = self.start()
        time.sleep(6)
        recorder.signal(signal.SIGTERM)
        self.assertEqual(recorder.end(), 0, recorder.error)
        self.assert_filed(recorder.note())
        self.assertIn("morning", " ".join(s["text"] for s in recorder.note()["call"]["segments"]))

    def test_a_closed_terminal_and_a_reader_that_goes_away_end_it_and_the_call_is_filed(self):
        sound = self.sound_system()
        for end, make in (("terminal", os.openpty), ("reader", os.pipe)):
            with self.subTest(end):
                library = self.folder / end
                ours, theirs = make()
                process = subprocess.Popen(
                    [PROGRAM, "record"], stdin=theirs if end == "terminal" else subprocess.DEVNULL,
                    stdout=theirs if end == "terminal" else subprocess.DEVNULL, stderr=theirs, start_new_session=True,
                    preexec_fn=lambda: end == "terminal" and fcntl.ioctl(0, termios.TIOCSCTTY, 0),
                    env={name: value for name, value in (os.environ | sound.environment).items() if value}
                    | {"VARNIC_DATA_DIR": str(library)})
                self.addCleanup(process.kill)
                os.close(theirs)
                said = b""
                while b"Recording." not in said:
                    said += os.read(ours, 1000)
                player = sound.play(self.call / "them.caf")
                while b" Them: " not in said:
                    said += os.read(ours, 1000)
                os.close(ours)
                self.assertIn(process.wait(PATIENCE), (0, 1))
                sound.stop(player)
                [note] = map(json.loads, map(Path.read_text, library.glob("notes/*.json")))
                self.assert_filed(note, library=library)
                self.assertIn("morning", " ".join(s["text"] for s in note["call"]["segments"]))

    def test_a_second_interrupt_keeps_the_audio_and_says_why_there_is_no_transcript(self):
        recorder = self.start("--no-live")
        time.sleep(20)
        recorder.signal(signal.SIGINT)
        end = time.monotonic() + PATIENCE
        while not list(self.library.glob("notes/*.json")) and time.monotonic() < end:
            time.sleep(0.001)  # that is written when the transcription starts
        recorder.signal(signal.SIGINT)
        self.assertEqual(recorder.end(), 1)
        note = recorder.note()
        self.assertEqual(note["call"]["segments"], [])
        self.assertTrue(note["call"]["problem"])
        self.assertEqual(recorder.said[-2:], [f"varnic-cli: {note['call']['problem']}",
                                              f"Here that is: varnic-cli transcribe --note {note['id'][:8]}"])
        self.assert_filed(note)
        self.assertGreater(self.tracks(note)[0].peak(0, 20), 0.1)

    def test_an_interrupt_ends_the_wait_for_an_ai_summary(self):
        sound = self.sound_system()
        server = self.enterContext(ai_server.Server())
        ai = {"enabled": True, "askEachTime": False, "provider": "openAICompatible", "anthropicModel": "",
              "compatBaseURL": f"http://127.0.0.1:{server.server_port}/silent", "compatModel": "small"}
        settings = Path(sound.environment["XDG_CONFIG_HOME"]) / "app.brevin.varnic.selftest/settings.ini"
        settings.parent.mkdir()
        settings.write_text(f"[General]\nai={json.dumps(f'@ByteArray({json.dumps(ai)})')}\n")
        recorder = self.record(sound.environment | {"VARNIC_SELFTEST": "persist"}).started()
        sound.play(self.call / "them.caf")
        recorder.expect(" Them: ")
        recorder.signal(signal.SIGINT)
        end = time.monotonic() + PATIENCE
        while not server.requests and time.monotonic() < end:
            time.sleep(0.01)
        self.assertEqual(len(server.requests), 1)
        self.assertEqual(recorder.stop(), 0, recorder.error)
        self.assertIn("morning", " ".join(s["text"] for s in recorder.note()["call"]["segments"]))
        self.assertEqual(len(server.requests), 1)

    def test_a_time_limit_stops_it(self):
        for arguments in (["--for", "5"], ["--for", "5", "--no-live"]):
            recorder = self.start(*arguments)
            self.assertEqual(recorder.end(), 0, recorder.error)
            self.assertAlmostEqual(recorder.note()["call"]["duration"], 5, delta=0.3)

    def test_a_side_that_is_not_wanted_is_not_missed(self):
        run = self.run_cli("record", "--for", "1", "--mic-only", "--no-live", sound=self.sound_system().environment)
        self.assertIn("Recording. Ctrl-C stops.", run.stderr)
        self.assertNotIn("your side only", run.stderr)

    def test_an_interrupt_while_it_starts_leaves_nothing_half_done(self):
        sound = self.sound_system()
        for wait in (0.02, 0.1, 0.2, 0.4):
            recorder = self.record(sound, "--no-live")
            time.sleep(wait)
            self.assertIn(recorder.stop(), (0, 1, -signal.SIGINT), recorder.error)
        notes = {path.stem for path in self.library.glob("notes/*")}
        self.assertEqual({path.name for path in self.library.glob("audio/*")}, notes)
        self.assertEqual(self.run_cli("recover").stdout, "There is nothing to recover.\n")


def run_apart(test: str):
    """Runs one test in a process of its own; its exit code and what it said."""
    namespace = ["unshare", "--mount"] if os.geteuid() == 0 else ["unshare", "--map-root-user", "--mount"]
    began = time.monotonic()
    run = subprocess.run([*namespace, sys.executable, *sys.argv[:4], test], stdout=subprocess.PIPE,
                         stderr=subprocess.STDOUT, text=True)
    return run.returncode, f"== {test}, {time.monotonic() - began:.0f} s\n{run.stdout}"


def names(suite):
    for test in suite:
        yield from names(test) if isinstance(test, unittest.TestSuite) else [test.id().removeprefix("__main__.")]


def run_all():
    tests = list(names(unittest.defaultTestLoader.loadTestsFromModule(sys.modules["__main__"])))
    tests.sort(key=lambda test: not test.startswith("WholeCall"))  # the long ones first
    with tempfile.TemporaryDirectory() as call:
        subprocess.run([MAKE_CALL, call], check=True)
        os.environ[CALL] = call
        with concurrent.futures.ThreadPoolExecutor(AT_ONCE) as pool:
            results = []
            for result in pool.map(run_apart, tests):
                print(result[1], flush=True)
                results.append(result[0])
    failed = [test for test, code in zip(tests, results) if code != 0]
    print(f"{len(tests)} tests, {len(failed)} failed", *failed)
    return 1 if failed else 0


if __name__ == "__main__":
    if CALL in os.environ:
        unittest.main(argv=[sys.argv[0], *sys.argv[4:]])
    sys.exit(run_all())
