"""A user's session in a bare Debian with the packages installed: a screen, a sound system and a message bus of its own.

Each line of its input is the name of a step below; "done" follows what the step tells. It ends with the first that fails,
or with the input.
"""

import json
import os
import shutil
import signal
import subprocess
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent / "fixtures"))

from desktop import Desktop, Program, wait_for  # noqa: E402

HOME = Path.home()
CALL = HOME / "call"  # what the self-test has left
LIBRARY = HOME / ".local/share/Varnic/Library"


class Session:
    def __init__(self):
        self.desktop = Desktop(pulse=False, quantum=2048)
        # The settings last longer than the sound system's.
        os.environ["XDG_CONFIG_HOME"] = str(HOME / ".config")
        os.environ["XDG_DATA_DIRS"] = "/usr/local/share:/usr/share"

    def run(self, *arguments):
        ended = subprocess.run(arguments, capture_output=True, text=True)
        if ended.returncode != 0:
            raise AssertionError(f"{arguments}: {ended.stdout}{ended.stderr}")
        return ended.stdout

    def open_program(self):
        self.program = Program(self.desktop, "varnic")
        self.program.expect("Record call")
        wait_for(lambda: self.desktop.xdotool("getactivewindow"), "an active window")

    def notes(self):
        return [json.loads(file.read_text()) for file in LIBRARY.glob("notes/*.json")]

    def quit(self):
        self.desktop.xdotool("key", "ctrl+q")
        if (code := self.program.end()) != 0:
            raise AssertionError(f"it ended with {code}")

    def prove(self):
        """The program's own test, on this screen and with this sound."""
        library = HOME / "selftest"
        verdicts = []
        for mode in ["flow", "persist"]:
            told = self.run("env", f"VARNIC_SELFTEST={mode}", f"VARNIC_DATA_DIR={library}", f"VARNIC_FIXTURE_DIR={CALL}", "varnic")
            verdicts.append(told.splitlines()[-1])
            if not verdicts[-1].startswith("SELFTEST OK "):
                raise AssertionError(told)
        shutil.rmtree(library)
        return f"under X with sound: {', '.join(verdicts)}"

    def start(self):
        self.open_program()
        return json.loads(self.run("varnic-cli", "devices", "--json"))["microphone"]

    def record(self):
        """A call of two voices, recorded in the window and written down."""
        self.program.press("Record call")
        self.program.press("Start Recording")
        self.program.expect("Stop recording")
        playing = [self.desktop.sound.feed(str(CALL / "you.caf")), self.desktop.sound.play(str(CALL / "them.caf"))]
        wait_for(lambda: any("designs" in name for name in self.program.names()), "a live line")
        self.program.press("Stop recording")
        self.program.expect("Record call")
        for name in playing:
            self.desktop.sound.stop(name)
        self.call = wait_for(lambda: next((note for note in self.notes() if note.get("call", {}).get("digest")), None),
                             "the transcript and its digest, after which nothing more is written", seconds=600)
        speakers = {segment["speaker"] for segment in self.call["call"]["segments"]}
        if speakers != {"you", "them"}:
            raise AssertionError(f"only {speakers} were heard")
        return self.call["title"]

    def links(self):
        """The address of the call, copied from its menu and opened by the desktop, shows it at its second; a wrong one is
        told."""
        address = f"varnic:{self.call['id']}"
        self.program.press("More")
        self.program.press("Copy Link")
        subprocess.run(["varnic", "--new-note"], check=True)
        wait_for(lambda: len(self.notes()) == 2, "a new note")
        self.program.expect("…Untitled…")
        self.desktop.xdotool("key", "ctrl+v")
        wait_for(lambda: any(block.get("text") == address for note in self.notes() for block in note["blocks"]), "the address")
        self.run("xdg-open", address + "?t=3")
        self.program.expect("Turns")
        self.program.expect("…0:03…")
        # What is told goes again after some seconds, which xdg-open may take to end.
        with subprocess.Popen(["xdg-open", "varnic:nothing"]):
            self.program.expect("…is no address of a note…")

    def goon(self):
        """The program that was running while it was replaced still works; the new one has what was there."""
        before = len(self.notes())
        self.desktop.xdotool("key", "ctrl+n")
        wait_for(lambda: len(self.notes()) == before + 1, "a note of the old program")
        self.quit()
        self.open_program()
        self.program.expect(f"…{self.call['title']}…")
        self.quit()

    def activate(self):
        """An action of the desktop entry starts the program by the message bus."""
        before = len(self.notes())
        self.run("gapplication", "action", "app.brevin.Varnic", "new-note")
        wait_for(lambda: len(self.notes()) == before + 1, "a new note")
        def ask(method):
            return self.run("dbus-send", "--session", "--print-reply=literal", "--dest=org.freedesktop.DBus", "/",
                            f"org.freedesktop.DBus.{method}", "string:app.brevin.Varnic").split()[-1]

        os.kill(int(ask("GetConnectionUnixProcessID")), signal.SIGTERM)
        wait_for(lambda: ask("NameHasOwner") == "false", "its end")


if __name__ == "__main__":
    session = Session()
    for line in sys.stdin:
        told = getattr(session, line.strip())()
        print(*([told] if told else []), "done", sep="\n", flush=True)
    session.desktop.close()
