"""The settings window from outside, as a user meets it: everything set by keyboard, found again after a restart, and seen
in what the program does.

Usage: settings_test.py PROGRAM FIXTURES MAKE_CALL [TEST...]     (the system's own Python has pyatspi)
"""

import base64
import json
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

PROGRAM, FIXTURES, MAKE_CALL = sys.argv[1:4]
sys.path.insert(0, FIXTURES)

from ai_server import Server  # noqa: E402
from desktop import Desktop, Program, wait_for  # noqa: E402
from key_ring import KeyRing  # noqa: E402
from screen_reader import ScreenReader  # noqa: E402
from settings_window import Settings  # noqa: E402


def in_capitals(token):
    """A token of a model, which stands in base64, unless it is no text."""
    text = base64.b64decode(token)
    return token if text.startswith(b"<") else base64.b64encode(text.upper()).decode()


class SettingsTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.call = Path(tempfile.mkdtemp(prefix="varnic-call-"))
        cls.addClassCleanup(shutil.rmtree, cls.call)
        subprocess.run([MAKE_CALL, cls.call], check=True, capture_output=True)
        cls.desktop = Desktop(pulse=False, quantum=2048)
        cls.addClassCleanup(cls.desktop.close)
        cls.sound = cls.desktop.sound
        cls.sound.add_source("headset")
        cls.sound.add_sink("speakers")

    def setUp(self):
        self.folder = Path(tempfile.mkdtemp(prefix="varnic-settings-"))
        self.addCleanup(shutil.rmtree, self.folder, ignore_errors=True)
        self.library = self.folder / "data/Varnic/Library"
        self.add_model("de")

    def add_model(self, locale, name=None):
        """Installs the English model once more, as one for another language that is written in capitals."""
        name = name or locale
        model = Path(PROGRAM).parent.parent / "share/varnic/models/moonshine-tiny-en"
        copy = self.folder / "data/varnic/models" / name
        copy.mkdir(parents=True)
        manifest = json.loads((model / "model.json").read_text()) | {"id": name, "name": name, "locales": [locale]}
        (copy / "model.json").write_text(json.dumps(manifest))
        tokens = [line.rpartition(" ")[::2] for line in (model / "tokens.txt").read_text().splitlines()]
        (copy / "tokens.txt").write_text("".join(f"{in_capitals(token)} {number}\n" for token, number in tokens))
        for name in manifest["files"].values():
            if not (copy / name).exists():
                (copy / name).symlink_to(model / name)

    def start(self, **environment):
        places = {"XDG_CONFIG_HOME": str(self.folder / "config"), "XDG_DATA_HOME": str(self.folder / "data"),
                  "XDG_STATE_HOME": str(self.folder / "state"), "VARNIC_DATA_DIR": ""}
        program = Program(self.desktop, PROGRAM, **places | environment)
        self.addCleanup(program.close)
        program.expect("Record call")
        wait_for(lambda: self.desktop.xdotool("getactivewindow"), "an active window")
        return program

    def quit(self, program):
        self.desktop.xdotool("key", "ctrl+q")
        self.assertEqual(program.end(), 0)

    def windows(self, name):
        return self.desktop.xdotool("search", "--onlyvisible", "--name", name)

    def notes(self):
        return [json.loads(file.read_text()) for file in self.library.glob("notes/*.json")]

    def test_everySetting_setByKeyboard_isThereAfterARestart(self):
        self.add_model("de", "another for German")  # with one model there is nothing to choose
        program = self.start()
        settings = Settings(program)
        wanted = {"General": {}, "Recording": {}, "Summaries": {}}

        def turn(tab, name):
            wanted[tab][name] = settings.turn(name)

        def choose(tab, name, choice):
            settings.choose(name, choice)
            wanted[tab][name] = choice

        def write(tab, name, text):
            settings.type(name, text)
            wanted[tab][name] = text

        settings.tab("General")
        write("General", "Your name", "Ada Byron")
        settings.choose("Shortcut", "Ctrl+Shift+R")
        settings.press("Record…")
        settings.key("ctrl+F9")
        settings.turn("“Record call” shortcut")
        for name in ["Show a floating recording pill", "Start in the background when I log in",
                     "Remind me before every recording"]:
            turn("General", name)
        choose("General", "Heads-up message", "Formal")

        settings.tab("Recording")
        settings.press("Allow")
        choose("Recording", "Your microphone", "Virtual headset")
        choose("Recording", "Their side", "Virtual speakers")
        choose("Recording", "Language", "German")
        choose("Recording", "Speech model", "Fastest")
        for name in ["Show the transcript live while recording", "Keep call audio after transcribing"]:
            turn("Recording", name)

        settings.tab("Summaries")
        turn("Summaries", "Also offer AI summaries with my own API key")
        settings.choose("Model", "Claude Sonnet 5.5")
        choose("Summaries", "Provider", "OpenAI-compatible")
        settings.press("LM Studio on this computer")
        wanted["Summaries"]["Server"] = "http://localhost:1234/v1"
        write("Summaries", "Model", "tiny")
        turn("Summaries", "Only when I press “Summarise” on a call")
        settings.close()
        self.quit(program)

        settings = Settings(self.start())
        self.assertEqual(settings.at(), "Summaries", "the window keeps its tab")
        for tab, values in wanted.items():
            settings.tab(tab)
            for name, value in values.items():
                wait_for(lambda: settings.holds(name) == value, f"{name}: {value}")
        # What only shows once another setting is changed.
        settings.tab("General")
        self.assertTrue(settings.turn("“Record call” shortcut"))
        wait_for(lambda: settings.holds("Shortcut") == "Ctrl+F9", "the shortcut that was pressed")
        settings.tab("Summaries")
        settings.choose("Provider", "Anthropic Claude")
        wait_for(lambda: settings.holds("Model") == "Claude Sonnet 5.5", "the other provider’s model")

    def test_library_isMovedAndChanged_isThereAfterARestart(self):
        subprocess.run([sys.executable, Path(FIXTURES) / "make_library.py", self.library, "9"], check=True)
        moved, other = self.folder / "Documents/Calls", self.folder / "Synchronised"
        for folder in [moved, other / "notes"]:
            folder.mkdir(parents=True)
        foreign = other / "notes/0B0E7A60-5D6F-4C57-9D5C-0A4C5C1B9E11.json"
        foreign.write_text(json.dumps({
            "id": foreign.stem, "title": "From elsewhere", "created": "2026-01-01T00:00:00.000Z",
            "modified": "2026-01-01T00:00:00.000Z", "blocks": [], "pinned": False}))
        files = {file.name for file in self.library.glob("notes/*.json")}

        program = self.start()
        settings = Settings(program)
        settings.tab("Recording")
        self.choose_folder(settings, moved)
        program.expect(f"The library is in “{moved}” now.")
        wait_for(lambda: not self.library.exists(), "the original gone")
        self.assertEqual({file.name for file in moved.glob("notes/*.json")}, files)
        settings.close()
        self.quit(program)

        program = self.start()
        program.expect("…Onboarding…", "list item")
        settings = Settings(program)
        self.choose_folder(settings, other)
        program.expect(f"…“{other}” holds a library already.…")
        settings.press("Use This Library")
        program.expect(f"…Varnic uses the library in “{other}” now.…")
        program.expect("…From elsewhere…", "list item")
        self.assertIsNone(program.find("…Onboarding…", "list item"))
        settings.close()
        self.quit(program)
        self.assertEqual({file.name for file in moved.glob("notes/*.json")}, files, "left as it was")

        program = self.start()
        program.expect("…From elsewhere…", "list item")
        self.assertEqual([file.name for file in other.glob("notes/*")], [foreign.name])

    @staticmethod
    def texts(program):
        """What stands in the fields that show."""
        return [told.text for told in ScreenReader(program).showing()]

    def choose_folder(self, settings, folder):
        settings.press("Change Folder…")
        title = "Choose an empty folder"
        wait_for(lambda: title in self.desktop.xdotool("getactivewindow", "getwindowname"), "the dialog")
        self.desktop.xdotool("type", "--clearmodifiers", str(folder))
        wait_for(lambda: str(folder) in self.texts(settings.program), "the folder typed")
        self.desktop.xdotool("key", "Return")
        wait_for(lambda: title not in self.desktop.xdotool("getactivewindow", "getwindowname"), "the dialog’s end")

    def test_key_isKeptInTheKeyRing_whoseStatesAreTold(self):
        ring = KeyRing(self.desktop, self.folder)
        program = self.start(**ring.environment)
        settings = Settings(program)
        settings.tab("Summaries")
        settings.turn("Also offer AI summaries with my own API key")
        settings.control("Paste your key", "password text")
        self.desktop.xdotool("type", "sk-secret")
        settings.key("Return")
        program.expect("•••••••• saved in your key ring")
        self.quit(program)

        program = self.start(**ring.environment)
        settings = Settings(program)
        program.expect("•••••••• saved in your key ring")
        settings.choose("Provider", "OpenAI-compatible")
        settings.press("OpenAI")
        settings.control("Paste your key", "password text")
        settings.choose("Provider", "Anthropic Claude")
        program.expect("•••••••• saved in your key ring")
        ring.lock()
        settings.tab("General")
        settings.tab("Summaries")
        program.expect("…with your API key is locked.…")
        ring.end()
        settings.press("Try Again")
        program.expect("The key can’t be read: No key ring is running. Install one, such as the package gnome-keyring, and log in "
                       "again.")
        self.assertFalse([file for file in (self.folder / "config").rglob("*") if file.is_file()
                          and "sk-secret" in file.read_text()], "in no file of settings")

    def record(self, program, live):
        """Records the call by the key until the live text shows; gives its note."""
        before = {note["id"] for note in self.notes()}
        self.desktop.xdotool("key", "ctrl+shift+r")
        if not before:  # consent is asked for once
            program.press("Start Recording")
        program.expect("Stop recording")
        self.assertEqual(self.windows("Varnic is recording"), "", "the pill is off")
        # The default devices are silent; the words come from those that were chosen.
        playing = [self.sound.feed(str(self.call / "you.caf"), "headset"), self.sound.play(str(self.call / "them.caf"), "speakers")]
        wait_for(lambda: any(live in name for name in program.names()), f"a live line with {live}")
        self.desktop.xdotool("key", "ctrl+shift+r")
        program.expect("Record call")
        for name in playing:
            self.sound.stop(name)
        return wait_for(lambda: next((note for note in self.notes() if note["id"] not in before and note["call"].get("digest")),
                                     None), "the call")

    def test_settings_showInTheNextCall(self):
        self.add_model("de", "another for German")
        program = self.start()
        server = self.enterContext(Server())
        settings = Settings(program)
        settings.tab("General")
        settings.type("Your name", "Ada")
        settings.choose("Shortcut", "Ctrl+Shift+R")
        settings.turn("“Record call” shortcut")
        self.desktop.xdotool("key", "ctrl+shift+r")
        settings.turn("“Record call” shortcut")
        self.assertIsNone(program.find("Start Recording"), "the shortcut was off")
        settings.turn("Show a floating recording pill")
        settings.tab("Recording")
        settings.press("Allow")
        settings.choose("Your microphone", "Virtual headset")
        settings.choose("Their side", "Virtual speakers")
        settings.choose("Language", "German")
        settings.choose("Speech model", "Fastest")
        settings.turn("Keep call audio after transcribing")
        settings.close()

        note = self.record(program, "DESIGNS")
        self.assertEqual({segment["speaker"] for segment in note["call"]["segments"]}, {"you", "them"})
        self.assertTrue(all(segment["text"].isupper() for segment in note["call"]["segments"]), note["call"]["segments"])
        wait_for(lambda: not list(self.library.glob("audio/*/*.m4a")), "no audio kept")

        settings = Settings(program)
        settings.tab("Recording")
        settings.choose("Language", "English")
        settings.close()
        note = self.record(program, "designs")
        self.assertIn("Ada", json.dumps(note["call"]["digest"]["email"]))

        settings = Settings(program)
        settings.tab("General")
        settings.press("Show the Consent Reminder Again Next Time")
        settings.tab("Summaries")
        settings.turn("Also offer AI summaries with my own API key")
        settings.choose("Provider", "OpenAI-compatible")
        settings.type("Server", f"http://127.0.0.1:{server.server_port}/good")
        settings.press("Test")
        program.expect("The server answers and has 2 models.")
        settings.choose("Models of the server", "larger:7b")
        self.assertEqual(settings.holds("Model"), "larger:7b")
        settings.close()
        program.press("Summarise with larger:7b")
        wait_for(lambda: "Launch plan" in [note["title"] for note in self.notes()], "the AI’s summary")
        self.desktop.xdotool("key", "ctrl+shift+r")
        program.expect("Start Recording")

    def test_trayIcon_opensTheLatestCallsBesideIt(self):
        subprocess.run([sys.executable, Path(FIXTURES) / "make_library.py", self.library, "9"], check=True)
        program = self.start()

        def opened():
            """Whether what the icon opens is above it. Clicks while nothing is open, since the icon is late now and then."""
            tray, shown = self.place("--class", "trayer"), self.place("--name", "Varnic in the tray")
            if tray and not shown:
                x, y = tray["X"] + tray["WIDTH"] // 2, tray["Y"] + tray["HEIGHT"] // 2
                self.desktop.xdotool("mousemove", x, y, "click", 1)
            return shown and shown["Y"] + shown["HEIGHT"] <= tray["Y"]

        wait_for(opened, "what the tray icon opens, above the icon")
        reader = ScreenReader(program)
        reader.expect_focus()
        self.assertEqual(reader.complaints(), [])
        self.desktop.xdotool("key", "Escape")
        wait_for(lambda: not self.windows("Varnic in the tray"), "Escape to close it")
        wait_for(opened, "the same once more")
        program.press("Call with Ann", "push button")
        wait_for(lambda: not self.windows("Varnic in the tray"), "the call chosen")
        wait_for(lambda: Settings.value(program.expect("Title")) == "Call with Ann", "the call’s page")

    def place(self, *query):
        """Where a window is, by X, Y, WIDTH and HEIGHT."""
        shell = self.desktop.xdotool("search", "--onlyvisible", *query, "getwindowgeometry", "--shell").split()
        return {name: int(value) for name, _, value in (line.partition("=") for line in shell)}


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + sys.argv[4:], verbosity=2)
