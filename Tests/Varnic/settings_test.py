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
from screen_reader import ScreenReader  # noqa: E402

# A window of settings is small; no chain of stops for the Tab key is as long as this.
MANY_STOPS = 40


def in_capitals(token):
    """A token of a model, which stands in base64, unless it is no text."""
    text = base64.b64decode(token)
    return token if text.startswith(b"<") else base64.b64encode(text.upper()).decode()


class Settings:
    """The settings window of a program, by keyboard alone."""

    def __init__(self, program):
        self.program = program
        self.key("ctrl+comma")
        self.window = wait_for(self.find_window, "the settings window")
        wait_for(lambda: self.state(self.window, "ACTIVE"), "the settings window in front")

    def find_window(self):
        return next((window for window in self.program.root if window and window.name == "Settings"), None)

    def key(self, *keys):
        self.program.desktop.xdotool("key", *keys)

    def state(self, node, name):
        return node.getState().contains(getattr(self.program.pyatspi, f"STATE_{name}"))

    def nodes(self):
        queue = [self.window]
        while queue:
            node = queue.pop(0)
            try:
                if node is self.window or self.state(node, "SHOWING"):
                    yield node
                    queue += [child for child in node if child]
            except Exception:  # it went away while we looked
                continue

    def focused(self):
        """What the keyboard is on; a field for secrets has a description in place of a name."""
        found = [node for node in self.nodes() if node is not self.window and self.state(node, "FOCUSED")]
        return found[-1] if found else None

    def at(self):
        node = self.focused()
        return (node.name or node.description) if node else ""

    def tab(self, name):
        """Goes to a tab by the arrow keys."""
        self.go_to(lambda node: node.getRoleName() == "page tab", "a tab")
        while self.at() != name:
            before = self.at()
            self.key("Right")
            wait_for(lambda: self.at() != before, f"a tab after {before}")

    def go_to(self, condition, what):
        for _ in range(MANY_STOPS):
            node = self.focused()
            if node and condition(node):
                return node
            before = node
            self.key("Tab")
            wait_for(lambda: self.focused() != before, f"a stop after {before and before.name}, towards {what}")
        raise AssertionError(f"{what} is not reached by the Tab key")

    def control(self, name, role):
        return self.go_to(lambda node: (node.name or node.description) == name and node.getRoleName() == role, name)

    def press(self, name):
        self.control(name, "push button")
        self.key("space")

    def turn(self, name):
        """Turns a switch to its other value, which it gives."""
        switch = self.control(name, "check box")
        before = self.state(switch, "CHECKED")
        self.key("space")
        wait_for(lambda: self.state(switch, "CHECKED") != before, name)
        return not before

    def choose(self, name, choice):
        """Chooses from a list by the arrow keys."""
        picker = self.control(name, "combo box")
        self.key("Home")
        for _ in range(MANY_STOPS):
            if picker.description == choice:
                return
            before = picker.description
            self.key("Down")
            wait_for(lambda: picker.description != before, f"{name}: something after {before}, towards {choice}")
        raise AssertionError(f"{choice} is not among “{name}”")

    def type(self, name, text):
        field = self.control(name, "text")
        self.key("ctrl+a")
        self.program.desktop.xdotool("type", "--clearmodifiers", text)
        wait_for(lambda: self.value(field) == text, f"{name}: “{text}”")

    @staticmethod
    def value(field):
        text = field.queryText()
        return text.getText(0, text.characterCount)

    def holds(self, name):
        """What a control holds, to which it goes."""
        node = self.go_to(lambda node: node.name == name and node.getRoleName() in ("check box", "combo box", "text"), name)
        if node.getRoleName() == "check box":
            return self.state(node, "CHECKED")
        return node.description if node.getRoleName() == "combo box" else self.value(node)

    def close(self):
        self.key("Escape")
        wait_for(lambda: not self.find_window() or not self.state(self.window, "SHOWING"), "the settings window gone")


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

    def add_model(self, locale):
        """Installs the English model once more, as one for another language that is written in capitals."""
        model = Path(PROGRAM).parent.parent / "share/varnic/models/moonshine-tiny-en"
        copy = self.folder / "data/varnic/models" / locale
        copy.mkdir(parents=True)
        manifest = json.loads((model / "model.json").read_text()) | {"id": locale, "name": locale, "locales": [locale]}
        (copy / "model.json").write_text(json.dumps(manifest))
        tokens = [line.rpartition(" ")[::2] for line in (model / "tokens.txt").read_text().splitlines()]
        (copy / "tokens.txt").write_text("".join(f"{in_capitals(token)} {number}\n" for token, number in tokens))
        for name in manifest["files"].values():
            if not (copy / name).exists():
                (copy / name).symlink_to(model / name)

    def start(self):
        program = Program(self.desktop, PROGRAM, XDG_CONFIG_HOME=str(self.folder / "config"), VARNIC_DATA_DIR="",
                          XDG_DATA_HOME=str(self.folder / "data"), XDG_STATE_HOME=str(self.folder / "state"))
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
        choose("General", "Shortcut", "Ctrl+Shift+R")
        for name in ["Show a floating recording pill", "Start in the background when I log in",
                     "Remind me before every recording"]:
            turn("General", name)
        choose("General", "Heads-up message", "Formal")

        settings.tab("Recording")
        settings.press("Allow")
        choose("Recording", "Your microphone", "Virtual headset")
        choose("Recording", "Their side", "Virtual speakers")
        choose("Recording", "Language", "German")
        for name in ["Show the transcript live while recording", "Keep call audio after transcribing"]:
            turn("Recording", name)

        settings.tab("Summaries")
        turn("Summaries", "Also offer AI summaries with my own API key")
        choose("Summaries", "Model", "Claude Sonnet 5.5")
        choose("Summaries", "Provider", "OpenAI-compatible")
        del wanted["Summaries"]["Model"]
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

    def test_settings_showInTheNextCall(self):
        program = self.start()
        server = self.enterContext(Server())
        settings = Settings(program)
        settings.tab("General")
        settings.type("Your name", "Ada")
        settings.choose("Shortcut", "Ctrl+Shift+R")
        settings.turn("Show a floating recording pill")
        settings.tab("Recording")
        settings.press("Allow")
        settings.choose("Your microphone", "Virtual headset")
        settings.choose("Language", "German")
        settings.turn("Keep call audio after transcribing")
        settings.close()

        self.desktop.xdotool("key", "ctrl+shift+r")
        program.press("Start Recording")
        program.expect("Stop recording")
        self.assertEqual(self.windows("Varnic is recording"), "", "the pill is off")
        # The default microphone is silent; your words come from the one that was chosen.
        for name in [self.sound.feed(str(self.call / "you.caf"), "headset"), self.sound.play(str(self.call / "them.caf"))]:
            self.addCleanup(self.sound.stop, name)
        wait_for(lambda: any("DESIGNS" in name for name in program.names()), "a live line in capitals")
        self.desktop.xdotool("key", "ctrl+shift+r")
        program.expect("Record call")
        note = wait_for(lambda: next((note for note in self.notes() if note["call"].get("digest")), None), "the call")
        self.assertEqual({segment["speaker"] for segment in note["call"]["segments"]}, {"you", "them"})
        self.assertTrue(all(segment["text"].isupper() for segment in note["call"]["segments"]), note["call"]["segments"])
        self.assertIn("Ada", json.dumps(note["call"]["digest"]["email"]))
        wait_for(lambda: not list(self.library.glob("audio/*/*.m4a")), "no audio kept")

        settings = Settings(program)
        settings.tab("Summaries")
        settings.turn("Also offer AI summaries with my own API key")
        settings.choose("Provider", "OpenAI-compatible")
        settings.type("Server", f"http://127.0.0.1:{server.server_port}/good")
        settings.type("Model", "tiny")
        settings.close()
        program.press("Summarise with tiny")
        wait_for(lambda: self.notes()[0]["title"] == "Launch plan", "the AI’s summary")

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
