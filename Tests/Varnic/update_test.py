"""The desktop program updates itself from a publisher's server, as a user meets it: a bundle in a folder of the user's own,
with a library and settings.

Usage: update_test.py BUILD MAKE_UPDATE FIXTURES [TEST...]     (the system's own Python has pyatspi)
"""

import os
import plistlib
import shutil
import signal
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

BUILD, MAKE_UPDATE, FIXTURES = sys.argv[1:4]
sys.path.insert(0, FIXTURES)

import ai_server  # noqa: E402
import update_server  # noqa: E402
from desktop import Desktop, Program, wait_for  # noqa: E402
from screen_reader import ScreenReader  # noqa: E402
from settings_window import Settings  # noqa: E402


class UpdateTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.scratch = Path(tempfile.mkdtemp(prefix="varnic-update-"))
        cls.addClassCleanup(shutil.rmtree, cls.scratch, ignore_errors=True)
        cls.served = cls.scratch / "served"
        cls.served.mkdir()
        context, certificate = ai_server.tls(cls.scratch)
        cls.state = update_server.State(cls.served)
        server = update_server.Server(cls.state, context)
        server.__enter__()
        cls.addClassCleanup(server.__exit__)
        cls.url = f"https://localhost:{server.server_port}"
        cls.key = cls.scratch / "secret.key"
        subprocess.run([f"{BUILD}/bin/brevin-publish", "new-key", cls.key], check=True, capture_output=True)
        cls.old = cls.publish("0.1.0")
        cls.publish("0.1.1")
        os.environ["SSL_CERT_FILE"] = str(certificate)
        cls.desktop = Desktop(pulse=False)
        cls.addClassCleanup(cls.desktop.close)

    @classmethod
    def publish(cls, version):
        """Puts a release on the server; gives its app."""
        out, notes = cls.scratch / version, cls.scratch / "notes.txt"
        notes.write_text(f"What is new in {version}.")
        subprocess.run([MAKE_UPDATE, "--build", BUILD, "--key", cls.key, "--feed", f"{cls.url}/feed.json", "--download",
                        cls.url, "--page", "https://example.org/varnic", "--out", out, "--version", version, "--notes",
                        notes], check=True, capture_output=True)
        for file in [*out.glob("*.zip"), out / "feed.json"]:
            shutil.copy(file, cls.served)
        return out / "Varnic.app"

    def setUp(self):
        self.home = Path(tempfile.mkdtemp(prefix="varnic-home-"))
        self.addCleanup(shutil.rmtree, self.home, ignore_errors=True)
        self.app = self.home / "Apps and more/Varnic.app"
        self.app.parent.mkdir()
        subprocess.run(["cp", "-a", self.old, self.app], check=True)
        self.library = self.home / "data/Varnic/Library"
        subprocess.run([sys.executable, f"{FIXTURES}/make_library.py", self.library, "5"], check=True, capture_output=True)
        self.settings = self.home / "config/Varnic/settings.ini"
        self.settings.parent.mkdir(parents=True)
        self.settings.write_text("[General]\nyourName=Ada\nhotkeyEnabled=false\n")
        self.places = {"HOME": str(self.home), "XDG_DATA_HOME": str(self.home / "data"),
                       "XDG_CONFIG_HOME": str(self.home / "config"), "XDG_CACHE_HOME": str(self.home / "cache")}

    def start(self, app):
        program = Program(self.desktop, app / "Contents/bin/varnic", **self.places)
        self.addCleanup(program.close)
        return program

    def click(self, control):
        box = control.queryComponent().getExtents(0)  # on the screen
        self.desktop.xdotool("mousemove", box.x + box.width // 2, box.y + box.height // 2, "click", 1)

    def version(self):
        return plistlib.loads((self.app / "Contents/Info.plist").read_bytes())["CFBundleShortVersionString"]

    def notes(self):
        return {file.name: file.read_bytes() for file in (self.library / "notes").glob("*.json")}

    def running(self):
        """The processes of the program at its place."""
        found = []
        for process in Path("/proc").glob("[0-9]*"):
            try:
                if os.readlink(process / "exe") == str(self.app / "Contents/bin/varnic"):
                    found.append(int(process.name))
            except OSError:
                pass
        return found

    def test_update_foundAndRestarted_keepsLibraryAndSettings(self):
        notes = self.notes()
        program = self.start(self.app)
        window = wait_for(lambda: self.desktop.xdotool("search", "--onlyvisible", "--name", "Software Update"),
                          "the update’s window")
        program.expect("Varnic 0.1.1 is ready")
        program.expect("It installs automatically the next time you quit Varnic.")
        program.expect("What is new in 0.1.1.")
        reader = ScreenReader(program)
        self.assertEqual(reader.complaints(), [])
        self.assertEqual(self.version(), "0.1.0")
        self.assertEqual(program.process.poll(), None)
        self.desktop.xdotool("windowactivate", "--sync", window)
        button = reader.expect_focus(lambda told: told.name == "Restart Now", "the keyboard on the default button")
        self.assertIn("Later", [told.name for told in reader.go_around()])
        reader.expect_focus(lambda told: told == button)
        self.desktop.xdotool("key", "Return")
        self.assertEqual(program.end(), 0)
        wait_for(self.running, "the new program")
        self.addCleanup(lambda: [os.kill(process, signal.SIGKILL) for process in self.running()])
        self.assertEqual(self.version(), "0.1.1")
        self.assertEqual(os.listdir(self.app.parent), ["Varnic.app"])
        self.assertFalse((self.home / "cache/app.brevin.Varnic/BrevinUpdate").exists())
        wait_for(lambda: self.desktop.xdotool("search", "--onlyvisible", "--name", "^Varnic$"), "its window")
        feeds = self.state.asked["feed.json"]
        wait_for(lambda: self.state.asked["feed.json"] > feeds, "its first check")
        self.assertEqual(self.notes(), notes)
        self.assertIn("yourName=Ada", self.settings.read_text())
        os.kill(self.running()[0], signal.SIGTERM)
        wait_for(lambda: not self.running(), "the end")
        self.assertEqual(self.version(), "0.1.1")

    def test_update_ofAProgramThatIsKilledPolitely_isThereAtTheNextStart(self):
        program = self.start(self.app)
        program.expect("Varnic 0.1.1 is ready")
        program.process.send_signal(signal.SIGTERM)
        self.assertEqual(program.end(), 0)
        wait_for(lambda: self.version() == "0.1.1", "the new version")
        self.assertEqual(self.running(), [])

    def test_automaticDownload_switchedOffByKeyboard_isOffAfterARestart(self):
        feed = self.served / "feed.json"
        away = feed.rename(self.scratch / "feed.json")
        self.addCleanup(lambda: away.exists() and away.rename(feed))
        program = self.start(self.app)
        program.expect("Record call")
        wait_for(lambda: self.desktop.xdotool("getactivewindow"), "an active window")
        settings = Settings(program)
        settings.tab("About")
        self.assertFalse(settings.turn("Download and install updates automatically"))
        settings.close()
        self.desktop.xdotool("key", "ctrl+q")
        self.assertEqual(program.end(), 0)

        away.rename(feed)
        archives = self.state.asked["Varnic-0.1.1.zip"]
        program = self.start(self.app)
        program.expect("Varnic 0.1.1 is available")
        program.expect("Download & Install")
        self.assertEqual(self.state.asked["Varnic-0.1.1.zip"], archives)

    def test_programBesideItsEmptyPlace_goesBackThere(self):
        old = Path(f"{self.app}.brevin-old")
        self.app.rename(old)
        program = self.start(old)
        program.expect("Record call")
        self.assertEqual(self.running(), [program.process.pid])
        self.assertFalse(old.exists())

    def test_aPlaceThatCannotBeWrittenTo_isOnlyTold(self):
        fixed = self.home / "Fixed"
        fixed.mkdir()
        subprocess.run(["mount", "-t", "tmpfs", "tmpfs", fixed], check=True)
        self.addCleanup(subprocess.run, ["umount", "--lazy", fixed])
        subprocess.run(["cp", "-a", self.old, fixed], check=True)
        subprocess.run(["mount", "-o", "remount,ro", fixed], check=True)
        archives = self.state.asked["Varnic-0.1.1.zip"]
        program = self.start(fixed / "Varnic.app")
        program.expect("Varnic 0.1.1 is available")
        program.expect("Move Varnic to a folder of your own to get updates automatically.")
        program.expect("Open Download Page")
        self.assertEqual(self.state.asked["Varnic-0.1.1.zip"], archives)

    def test_aDiskThatIsFull_isTold(self):
        cache = self.home / "cache"
        cache.mkdir()
        subprocess.run(["mount", "-t", "tmpfs", "-o", "size=60m", "tmpfs", cache], check=True)
        self.addCleanup(subprocess.run, ["umount", "--lazy", cache])
        feeds = self.state.asked["feed.json"]
        program = self.start(self.app)
        # Whether the download begins depends on the length of the archive.
        wait_for(lambda: self.state.asked["feed.json"] > feeds, "its first check")
        program.press("Main menu")
        self.click(program.expect("Check for Updates…"))
        program.expect("Update problem")
        program.expect("The update couldn’t be downloaded. No space left on device.")
        self.assertEqual(self.version(), "0.1.0")
        program.press("OK")


if __name__ == "__main__":
    if os.environ.get("VARNIC_UPDATE_NAMESPACE") is None:
        # Disks of our own, which nobody else sees.
        os.environ["VARNIC_UPDATE_NAMESPACE"] = "own"
        namespace = ["unshare", "--mount"] if os.geteuid() == 0 else ["unshare", "--map-root-user", "--mount"]
        os.execvp("unshare", [*namespace, sys.executable, *sys.argv])
    unittest.main(argv=[sys.argv[0], *sys.argv[4:]], verbosity=2)
