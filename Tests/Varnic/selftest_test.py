"""The self-test of the desktop program from outside: what it prints, what it refuses, and that it leaves alone what is
the user's: library, settings, key ring, clipboard, devices and network.

Usage: selftest_test.py PROGRAM FIXTURES [TEST...]     (the system’s own Python has pyatspi)
"""

import ctypes
import json
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

PROGRAM, FIXTURES = sys.argv[1:3]
sys.path.insert(0, FIXTURES)

from desktop import Desktop, Program, wait_for  # noqa: E402

OWN = ["app.brevin.varnic.selftest", ".cache"]  # what it may write in a home
NOTE = {"id": "6E0B7B39-6C0A-4E0C-9C53-0A6A1B0D7F11", "title": "Mine", "created": "2026-03-14T09:26:53.589Z",
        "modified": "2026-03-14T09:26:53.589Z", "blocks": [], "pinned": False}


class Home:
    """A user's home, with a library and settings."""

    def __init__(self, folder: Path):
        self.folder = folder
        library = folder / "data/Varnic/Library/notes"
        library.mkdir(parents=True)
        (library / f"{NOTE['id']}.json").write_text(json.dumps(NOTE))
        (folder / "config/Varnic").mkdir(parents=True)
        (folder / "config/Varnic/settings.ini").write_text("[General]\nyourName=Somebody\n")
        self.environment = {"HOME": str(folder), "XDG_CACHE_HOME": str(folder / ".cache")} | {
            f"XDG_{kind.upper()}_HOME": str(folder / kind) for kind in ["data", "config", "state"]}

    def contents(self):
        """Everything but what a self-test may write."""
        return {str(path): path.read_bytes() if path.is_file() else None for path in self.folder.rglob("*")
                if not any(part in OWN for part in path.parts)}


class SelfTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.fixture = Path(tempfile.mkdtemp(prefix="varnic-fixture-"))
        cls.addClassCleanup(shutil.rmtree, cls.fixture, ignore_errors=True)

    def setUp(self):
        self.folder = Path(tempfile.mkdtemp(prefix="varnic-selftest-"))
        self.addCleanup(shutil.rmtree, self.folder, ignore_errors=True)
        self.home = Home(self.folder / "home")
        self.library = self.folder / "library"

    def run_mode(self, mode, **environment):
        """The lines that it prints."""
        environment = os.environ | self.home.environment | {
            "VARNIC_SELFTEST": mode, "VARNIC_DATA_DIR": str(self.library), "VARNIC_FIXTURE_DIR": str(self.fixture),
            "LC_ALL": "C.UTF-8"} | environment
        ended = subprocess.run([PROGRAM], env={name: value for name, value in environment.items() if value is not None},
                               stdout=subprocess.PIPE, text=True, timeout=300)
        self.assertEqual(ended.returncode, 0)
        return ended.stdout.splitlines()

    def expect_success(self, lines, checks):
        told = "\n".join(lines)
        self.assertEqual(lines[0], f"Varnic self-test ({self.library})")
        self.assertEqual(lines[-1], f"SELFTEST OK ({checks} checks)", told)
        self.assertEqual(sum(line.startswith("PASS ") for line in lines), checks, told)
        self.assertFalse([line for line in lines if line.startswith("FAIL ")])

    def test_flowAndPersist_withoutAScreen(self):
        offscreen = {"QT_QPA_PLATFORM": "offscreen", "DISPLAY": None, "WAYLAND_DISPLAY": None}
        flow = self.run_mode("1", **offscreen)
        self.expect_success(flow, 58)
        notes = len(list(self.library.glob("notes/*.json")))
        self.assertEqual([line for line in flow if line.startswith("INFO ")], [f"INFO {notes} notes in the library"])
        before = {file: file.read_bytes() for file in self.library.glob("notes/*.json")}
        persist = self.run_mode("persist", **offscreen)
        self.expect_success(persist, 9)
        self.assertEqual(persist[1], f"PASS the library reloads ({notes} notes)")
        # Another journey would mix with what is there.
        dirty = self.run_mode("1", **offscreen)
        self.assertEqual(dirty[1], f"FAIL a fresh library is empty notes={notes}")
        self.assertEqual(dirty[-1], "SELFTEST 1 FAILURES (2 passed)")
        self.assertEqual({file: file.read_bytes() for file in self.library.glob("notes/*.json")}, before)

    def test_withoutDataFolder_refusesAndOpensNoLibrary(self):
        for folder in [None, ""]:
            before = self.home.contents()
            lines = self.run_mode("1", VARNIC_DATA_DIR=folder, QT_QPA_PLATFORM="offscreen")
            self.assertEqual(lines, ["FAIL refusing to run without VARNIC_DATA_DIR"])
            self.assertEqual(self.home.contents(), before)

    def test_withoutVoices_failsAndEndsWithoutANote(self):
        lines = self.run_mode("1", QT_QPA_PLATFORM="offscreen", PATH="/nowhere", VARNIC_FIXTURE_DIR=str(self.folder / "none"))
        self.assertIn("FAIL fixture call audio is ready", lines)
        self.assertIn("FAIL accepting starts the recording", lines)
        self.assertRegex(lines[-1], r"^SELFTEST \d+ FAILURES \(\d+ passed\)$")
        self.assertFalse(list(self.library.glob("notes/*")))

    def test_flow_leavesTheUsersThingsAlone(self):
        marker = self.folder / "key-ring-was-started"
        services = self.home.folder / "data/dbus-1/services"
        services.mkdir(parents=True)
        (services / "org.freedesktop.secrets.service").write_text(
            f"[D-BUS Service]\nName=org.freedesktop.secrets\nExec=/usr/bin/touch {marker}\n")
        os.environ.update(XDG_DATA_HOME=str(self.home.folder / "data"))
        with Desktop(pulse=False) as desktop:
            watch = self.watch_sound(desktop)
            clipboard = Clipboard()
            before = self.home.contents()
            packets = unroutable()
            self.expect_success(self.run_mode("1"), 58)
            self.assertEqual(unroutable(), packets, "something was sent")
            self.assertEqual(self.home.contents(), before)
            self.assertTrue(clipboard.is_untouched())
            self.assertFalse(marker.exists(), "the key ring was asked")
            self.assertNotIn(Path(PROGRAM).name, watch(), "the sound system was reached")
            self.check_watches(clipboard, marker, packets)

    def test_demo_showsALibraryAndWritesNothing(self):
        os.environ.update(XDG_DATA_HOME=str(self.home.folder / "data"))
        with Desktop(pulse=False) as desktop:
            before, packets = self.home.contents(), unroutable()
            scratch = self.folder / "temporary"
            scratch.mkdir()
            program = Program(desktop, PROGRAM, **self.home.environment, VARNIC_DEMO="1", TMPDIR=str(scratch))
            self.addCleanup(program.close)
            program.expect("…Library design review…")
            wait_for(lambda: desktop.xdotool("getactivewindow"), "an active window")
            desktop.xdotool("key", "ctrl+n")
            wait_for(lambda: program.find("…Untitled…"), "a new note")
            desktop.xdotool("key", "ctrl+q")
            self.assertEqual(program.end(), 0)
            self.assertEqual(self.home.contents(), before)
            self.assertEqual(list(scratch.iterdir()), [])
            self.assertEqual(unroutable(), packets, "something was sent")

    def watch_sound(self, desktop):
        """Gives what tells, once, which programs came to the sound system."""
        log = self.folder / "sound.txt"
        with open(log, "w") as output:
            monitor = desktop.spawn(["pw-mon"], stdout=output)

        def told():
            desktop.sound.tool("pw-cli", "info", "0")
            monitor.send_signal(signal.SIGINT)
            monitor.wait(30)
            text = log.read_text()
            self.assertIn("pw-cli", text)  # it does see who comes
            return text

        return told

    def check_watches(self, clipboard, marker, packets):
        """What was watched would have told."""
        subprocess.run(["dbus-send", "--session", "--print-reply", "--dest=org.freedesktop.secrets", "/",
                        "org.freedesktop.DBus.Peer.Ping"], capture_output=True)
        wait_for(marker.exists, "a start of the key ring")
        other = Clipboard()
        self.assertFalse(clipboard.is_untouched())
        self.assertTrue(other.is_untouched())
        asked = subprocess.run([sys.executable, "-c", "import socket; socket.create_connection(('192.0.2.1', 443))"],
                               capture_output=True)
        self.assertNotEqual(asked.returncode, 0)
        self.assertGreater(unroutable(), packets)


class Clipboard:
    """Owns the X server's clipboard until somebody else takes it."""

    def __init__(self):
        self.x = ctypes.CDLL("libX11.so.6")
        for function, result in {"XOpenDisplay": ctypes.c_void_p, "XDefaultRootWindow": ctypes.c_ulong, "XInternAtom": ctypes.c_ulong,
                                 "XCreateSimpleWindow": ctypes.c_ulong, "XGetSelectionOwner": ctypes.c_ulong}.items():
            getattr(self.x, function).restype = result
        self.display = ctypes.c_void_p(self.x.XOpenDisplay(None))
        root = ctypes.c_ulong(self.x.XDefaultRootWindow(self.display))
        self.window = self.x.XCreateSimpleWindow(self.display, root, 0, 0, 1, 1, 0, ctypes.c_ulong(0), ctypes.c_ulong(0))
        self.name = ctypes.c_ulong(self.x.XInternAtom(self.display, b"CLIPBOARD", 0))
        self.x.XSetSelectionOwner(self.display, self.name, ctypes.c_ulong(self.window), ctypes.c_ulong(0))
        self.x.XSync(self.display, 0)

    def is_untouched(self):
        return self.x.XGetSelectionOwner(self.display, self.name) == self.window


def unroutable():
    """How many packets of this network found no way out. It has no way at all, not even to itself."""
    four = [line.split() for line in Path("/proc/net/snmp").read_text().splitlines() if line.startswith("Ip:")]
    six = dict(line.split() for line in Path("/proc/net/snmp6").read_text().splitlines())
    return int(dict(zip(*four))["OutNoRoutes"]) + int(six["Ip6OutNoRoutes"])


if __name__ == "__main__":
    if os.environ.get("VARNIC_SELFTEST_NETWORK") is None:
        os.environ["VARNIC_SELFTEST_NETWORK"] = "own"
        namespace = ["unshare", "--net"] if os.geteuid() == 0 else ["unshare", "--map-root-user", "--net"]
        os.execvp("unshare", [*namespace, sys.executable, *sys.argv])
    unittest.main(argv=[sys.argv[0], *sys.argv[3:]], verbosity=2)
