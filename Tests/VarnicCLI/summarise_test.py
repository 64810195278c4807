"""AI digests from outside: the note that is stored changes on success and on nothing else, and keys stay in the ring.

Runs inside a session with an unlocked key ring. Usage: summarise_test.py PROGRAM FIXTURES
"""

import json
import os
import pty
import signal
import socket
import subprocess
import sys
import tempfile
import termios
import time
import unittest
from pathlib import Path

PROGRAM, FIXTURES = sys.argv[1:3]
del sys.argv[1:3]
sys.path.insert(0, FIXTURES)
import ai_server  # noqa: E402

ID = "0B5D6A1E-5B1C-4B57-9C43-7C6F2A7B8E11"
KEY = "sk-private-0123456789"
DIGEST = {"title": "Contract", "summary": ["Old."], "actions": [], "email": {"subject": "", "body": ""},
          "provider": "On this Mac", "isLocal": True, "createdAt": "2026-03-14T10:00:00.000Z"}
NOTE = {
    "id": ID, "title": "Contract", "created": "2026-03-14T10:00:00.000Z", "modified": "2026-03-14T10:00:00.000Z",
    "blocks": [{"id": "1B5D6A1E-5B1C-4B57-9C43-7C6F2A7B8E11", "kind": "paragraph", "text": "Mine, not yours."}],
    "call": {"startedAt": "2026-03-14T09:30:00.000Z", "duration": 60, "source": "Zoom", "themName": "Maya",
             "language": "en-US", "tracks": ["you", "them"], "digest": DIGEST,
             "segments": [{"id": "2B5D6A1E-5B1C-4B57-9C43-7C6F2A7B8E11", "speaker": "you", "start": 1, "end": 3,
                           "text": "I will send the designs."}]},
}


class AI(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        # Not VARNIC_DATA_DIR, with which no key ring is touched.
        self.environment = os.environ | {"XDG_DATA_HOME": folder.name, "TZ": "UTC", "LC_ALL": "C.UTF-8"}
        self.server = ai_server.Server()
        self.enterContext(self.server)
        self.file = self.folder / "Varnic" / "Library" / "notes" / f"{ID}.json"
        self.store(NOTE)

    def store(self, note):
        self.file.parent.mkdir(parents=True, exist_ok=True)
        self.file.write_text(json.dumps(note))

    def run_cli(self, *args, input=None):
        return subprocess.run([PROGRAM, *args], input=input, capture_output=True, text=True, env=self.environment)

    def url(self, scenario):
        return f"http://127.0.0.1:{self.server.server_port}/{scenario}"

    def summarise(self, scenario, *args):
        return self.run_cli("summarise", ID[:4], "--server", self.url(scenario), *args)

    def set_key(self, provider, key=KEY):
        run = self.run_cli("key", "set", provider, input=key + "\n")
        self.assertEqual((run.returncode, run.stdout, run.stderr), (0, "", ""))
        self.addCleanup(self.run_cli, "key", "remove", provider)


class Summarise(AI):
    def test_a_good_answer_replaces_the_digest_and_keeps_what_the_user_wrote(self):
        run = self.summarise("fenced", "--model", "small", "--json")
        self.assertEqual(run.returncode, 0, run.stderr)
        self.assertIn(f"127.0.0.1:{self.server.server_port} — a server on this computer", run.stderr)
        self.assertEqual(self.file.read_text().strip(), run.stdout.strip())
        note = json.loads(run.stdout)
        digest = note["call"]["digest"]
        self.assertEqual((note["title"], digest["provider"], digest["isLocal"]), ("Launch plan", "small", False))
        texts = [json.dumps(block) for block in note["blocks"]]
        for text in ("Mine, not yours.", "Send the designs", "The launch moves to May."):
            self.assertTrue(any(text in one for one in texts), texts)
        self.assertEqual(note["call"]["segments"][0]["text"], NOTE["call"]["segments"][0]["text"])
        for title, digest in (("Contract", DIGEST), (note["title"], digest)):
            undone = json.loads(self.run_cli("undo", ID[:4], "--json").stdout)
            self.assertEqual((undone["title"], undone["call"]["digest"]), (title, digest))
            self.assertIn("Mine, not yours.", json.dumps(undone["blocks"]))
            self.assertEqual(json.loads(self.file.read_text()), undone)

    def test_the_key_goes_to_the_provider_and_nowhere_else(self):
        self.set_key("anthropic")
        run = self.summarise("echo", "--provider", "anthropic", "--json")
        self.assertEqual(run.returncode, 0, run.stderr)
        request = json.loads(json.loads(run.stdout)["call"]["digest"]["summary"][0])
        self.assertEqual((request["path"], self.server.keys), ("/echo/v1/messages", [KEY]))
        self.assertIn("x-api-key", request["headers"])
        self.assertNotIn(KEY, run.stdout)
        self.assertNotIn(KEY, self.file.read_text())
        self.assertEqual(request["body"]["model"], "claude-haiku-5-5")
        self.assertNotIn("Mine, not yours.", json.dumps(request))
        self.assertNotIn(KEY, run.stderr)

    def test_a_failure_leaves_the_note_byte_for_byte(self):
        self.set_key("anthropic")
        before = self.file.read_bytes()
        failures = {"cut-off": "The summary was cut off. Try a larger model.",
                    "status-401": "The provider didn’t accept your API key.",
                    "cut-in-body": "Couldn’t reach the provider — you seem to be offline."}
        for provider in ("anthropic", "openAICompatible"):
            for scenario, sentence in failures.items():
                with self.subTest(provider=provider, scenario=scenario):
                    run = self.summarise(scenario, "--provider", provider, "--model", "small")
                    self.assertEqual((run.returncode, run.stdout), (1, ""))
                    self.assertIn(f"varnic-cli: {sentence}\n", run.stderr)
                    self.assertNotIn(KEY, run.stderr)
                    self.assertEqual(self.file.read_bytes(), before)
        self.assertEqual([path.name for path in self.file.parent.iterdir()], [self.file.name])

    def test_a_server_on_this_computer_that_is_not_there_is_asked_for(self):
        with socket.socket() as unused:
            unused.bind(("127.0.0.1", 0))  # and listens to nobody
            address = f"http://127.0.0.1:{unused.getsockname()[1]}/v1"
            run = self.run_cli("summarise", ID, "--server", address, "--model", "m")
        self.assertEqual(run.returncode, 1)
        self.assertIn(f"\nIs the server at {address} running?\n", run.stderr)

    def test_what_cannot_work_sends_nothing(self):
        before = self.file.read_bytes()
        for sentence, args in {
            "Add your API key in Settings › Summaries.": ("--provider", "anthropic", "--server", self.url("good")),
            "Pick a model in Settings › Summaries.": ("--server", self.url("good")),
            "The server address in Settings › Summaries isn’t a valid URL.": ("--server", "ftp://127.0.0.1"),
        }.items():
            run = self.run_cli("summarise", ID, *args)
            self.assertEqual(run.returncode, 1)
            self.assertTrue(run.stderr.startswith(f"varnic-cli: {sentence}\nHere that is: "), run.stderr)
        self.assertEqual(self.run_cli("summarise", ID, "--provider", "somebody").returncode, 2)
        self.assertEqual(self.run_cli("undo", ID).stderr, "varnic-cli: No earlier version of this note is kept.\n")
        self.store(NOTE | {"call": None})
        self.assertEqual(self.summarise("good", "--model", "m").stderr, "varnic-cli: This note has no transcript.\n")
        self.store(NOTE)
        self.assertEqual((self.server.requests, self.file.read_bytes()), ([], before))

    def test_an_interrupt_ends_it_while_the_server_is_silent(self):
        before = self.file.read_bytes()
        with subprocess.Popen([PROGRAM, "summarise", ID, "--server", self.url("silent"), "--model", "m"],
                              env=self.environment, stderr=subprocess.PIPE, text=True) as run:
            while run.poll() is None and not self.server.requests:
                time.sleep(0.01)
            run.send_signal(signal.SIGINT)
            _, error = run.communicate(timeout=60)
        self.assertEqual(run.returncode, 1)
        self.assertTrue(error.endswith("varnic-cli: Stopped. The note is as it was.\n"), error)
        self.assertEqual(self.file.read_bytes(), before)


class Key(AI):
    def key_of(self, provider):
        """The key as the provider gets it; None where there is none."""
        run = self.summarise("echo", "--provider", provider, "--model", "m", "--json")
        if run.returncode:
            self.assertIn("Add your API key", run.stderr)
            return None
        return self.server.keys[-1]

    def test_each_provider_has_its_own_and_removing_removes(self):
        self.set_key("anthropic", "a")
        self.set_key("openAICompatible", "  o\r")
        self.assertEqual((self.key_of("anthropic"), self.key_of("openAICompatible")), ("a", "o"))
        self.set_key("anthropic", "b")
        self.assertEqual(self.key_of("anthropic"), "b")
        for provider in ("anthropic", "openAICompatible"):
            self.assertEqual(self.run_cli("key", "remove", provider).returncode, 0)
        self.assertEqual((self.key_of("anthropic"), self.key_of("openAICompatible")), (None, ""))
        run = self.run_cli("key", "remove", "anthropic")
        self.assertEqual((run.returncode, run.stderr),
                         (0, "There is no key for Anthropic Claude, so nothing was removed.\n"))

    def test_a_scratch_library_touches_no_key_ring(self):
        self.set_key("anthropic")
        self.environment["VARNIC_DATA_DIR"] = str(self.file.parent.parent)
        for args in (("set", "anthropic"), ("remove", "anthropic")):
            run = self.run_cli("key", *args, input="other")
            self.assertEqual(run.returncode, 1)
            self.assertIn("no key ring is touched", run.stderr)
        self.assertEqual(self.key_of("anthropic"), None)
        self.assertEqual(self.server.keys, [])
        del self.environment["VARNIC_DATA_DIR"]
        self.assertEqual(self.key_of("anthropic"), KEY)

    def test_what_is_no_key_changes_nothing(self):
        self.set_key("anthropic")
        for input in ("", " \n", "two\nlines", "clé", "k" * 20000):
            run = self.run_cli("key", "set", "anthropic", input=input)
            self.assertEqual(run.returncode, 1, input[:9])
            self.assertRegex(run.stderr, r"\Avarnic-cli: .+\n\Z")
        for args in (("set",), ("set", KEY), ("set", "anthropic", KEY), ("show", "anthropic"), ()):
            run = self.run_cli("key", *args)
            self.assertEqual(run.returncode, 2, args)
            self.assertNotIn(KEY, run.stderr)
        self.assertEqual(self.key_of("anthropic"), KEY)

    def test_without_a_key_ring_the_sentence_says_so(self):
        environment = self.environment | {"DBUS_SESSION_BUS_ADDRESS": f"unix:path={self.folder}/nothing"}
        for word, sentence in (("set", "The key couldn’t be saved in the key ring: "),
                               ("remove", r"No key ring is running, so nothing was removed\.|"
                                          r"Could not connect.*, so nothing was removed\.")):
            run = subprocess.run([PROGRAM, "key", word, "anthropic"], input=KEY, capture_output=True, text=True,
                                 env=environment)
            self.assertEqual(run.returncode, 1)
            self.assertRegex(run.stderr, r"\Avarnic-cli: (" + sentence + ")")
            self.assertNotIn(KEY, run.stderr)

    def at_terminal(self, typed):
        """Types at the prompt; gives the exit code and all that the terminal showed."""
        process, terminal = pty.fork()
        if process == 0:
            os.execve(PROGRAM, [PROGRAM, "key", "set", "anthropic"], self.environment)
        while termios.tcgetattr(terminal)[3] & termios.ECHO:
            time.sleep(0.01)
        os.write(terminal, typed)
        shown = b""
        try:
            while more := os.read(terminal, 1024):
                shown += more
        except OSError:
            pass  # How a terminal ends.
        _, status = os.waitpid(process, 0)
        os.close(terminal)
        return os.waitstatus_to_exitcode(status), shown.decode()

    def test_a_terminal_does_not_show_it(self):
        code, shown = self.at_terminal(KEY.encode() + b"\n")
        self.addCleanup(self.run_cli, "key", "remove", "anthropic")
        self.assertEqual(code, 0, shown)
        self.assertNotIn(KEY, shown)
        self.assertEqual(self.key_of("anthropic"), KEY)

    def test_an_interrupt_at_the_terminal_changes_nothing(self):
        code, shown = self.at_terminal(b"half\x03")
        self.assertEqual(code, 1, shown)
        self.assertIn("Stopped. Nothing was changed.", shown)
        self.assertEqual(self.key_of("anthropic"), None)


if __name__ == "__main__":
    unittest.main()
