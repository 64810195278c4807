"""The page of the manual, and the completions in real shells: bash, and zsh and fish where they are installed.

Usage: completion_test.py PROGRAM COMPLETIONS
"""

import json
import os
import pty
import re
import select
import shutil
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

PROGRAM, COMPLETIONS = (Path(word).resolve() for word in sys.argv[1:3])
del sys.argv[1:3]

PATIENCE = 60  # seconds that anything may take
NOTES = {"0A000000-0000-4000-8000-000000000001": "Launch: plan\twith a tab",
         "0B000000-0000-4000-8000-000000000002": "Groceries"}


class Completion(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        for place in ["bin", "my bin"]:
            (self.folder / place).mkdir()
            (self.folder / place / "varnic-cli").symlink_to(PROGRAM)
        (self.folder / "some call.m4a").touch()
        notes = self.folder / "library/notes"
        notes.mkdir(parents=True)
        for id, title in NOTES.items():
            (notes / f"{id}.json").write_text(json.dumps(
                {"id": id, "title": title, "created": "2026-03-14T09:26:53.589Z", "modified": "2026-03-14T09:26:53.589Z",
                 "blocks": [], "pinned": False}))
        # The model beside the program is found by the program's own place.
        self.environment = os.environ | {
            "PATH": f"{self.folder / 'bin'}:{os.environ['PATH']}", "HOME": str(self.folder), "LC_ALL": "C.UTF-8",
            "VARNIC_DATA_DIR": str(self.folder / "library"), "TERM": "dumb", "PS1": "$ "}

    def run_cli(self, *words):
        return subprocess.run(["varnic-cli", *words], capture_output=True, text=True, env=self.environment)

    def complete(self, *words):
        """What the program offers, by what it is called."""
        lines = self.run_cli("complete", "--", *words).stdout.splitlines()
        return dict(line.split("\t", 1) for line in lines)

    def commands(self):
        help = self.run_cli("--help").stdout
        return re.findall(r"^  ([a-z]+) +\w", help, re.MULTILINE)

    def options(self, command):
        return re.findall(r"^  (?:-\w, )?(--[a-z-]+)", self.run_cli(command, "--help").stdout, re.MULTILINE)


class Table(Completion):
    def test_every_command_and_option_of_the_help_is_in_the_manual_and_completed(self):
        page = self.folder / "varnic-cli.1"
        page.write_text(self.run_cli("--manual").stdout)
        manual = subprocess.run(["man", "--warnings", "-E", "UTF-8", "-l", page], capture_output=True, text=True,
                                env=self.environment | {"MANWIDTH": "500"})
        self.assertEqual((manual.returncode, manual.stderr), (0, ""))
        sections = re.split(r"^   (?=\w)", manual.stdout, flags=re.MULTILINE)
        commands = self.commands()
        self.assertGreater(len(commands), 15)
        self.assertEqual([section.split()[0] for section in sections[1:]], commands)
        self.assertEqual(list(self.complete("")), ["--help", "--version", *commands])
        for command, section in zip(commands, sections[1:]):
            with self.subTest(command):
                options = self.options(command)
                self.assertEqual(re.findall(r"^ +(?:-\w, )?(--[a-z-]+)", section, re.MULTILINE), options)
                self.assertEqual(list(self.complete(command, "--")), ["--help", *options])

    def test_words_and_values_are_completed_by_what_they_are(self):
        notes = {"0A000000": "Launch: plan with a tab", "0B000000": "Groceries"}
        for words, offered in {
                ("sh",): {"show": "show one note"}, ("nothing", ""): {}, ("show", ""): notes,
                ("show", "0b"): {"0B000000": "Groceries"}, ("show", "0A000000", ""): {}, ("search", ""): {},
                ("transcribe", "--note", "0a"): {"0A000000": notes["0A000000"]}, ("restore", ""): {},
                ("export", "0A", "--format", "p"): {"pdf": "PDF"}, ("export", "--format=p"): {"--format=pdf": "PDF"},
                ("export", "-o", ""): {":files": ""}, ("transcribe", "--you=x"): {":files": ""}, ("import", ""): {":files": ""},
                ("key", ""): {"set": "keep a key", "remove": "forget it"}, ("export", "--json", "--", "0b"): {"0B000000": "Groceries"},
                ("export", "--json", "0b"): {"0B000000": "Groceries"}}.items():
            with self.subTest(words):
                self.assertEqual(self.complete(*words), offered)
        self.assertEqual(list(self.complete("key", "set", "")), ["anthropic", "openAICompatible"])
        self.assertIn("en", self.complete("record", "--language", ""))
        self.run_cli("delete", "0B")
        self.assertEqual(self.complete("restore", ""), {"0B000000": "Groceries"})
        self.assertEqual(self.complete("show", ""), {"0A000000": notes["0A000000"]})

    def test_where_nothing_can_be_told_nothing_is_said(self):
        self.environment["VARNIC_DATA_DIR"] = "/dev/null/library"
        run = self.run_cli("complete", "--", "show", "")
        self.assertEqual((run.stdout, run.stderr), ("", ""))


class Shell:
    """A shell at a terminal of its own that one types into."""

    def __init__(self, test, *arguments):
        pid, self.terminal = pty.fork()
        if pid == 0:
            os.chdir(test.folder)
            os.execvpe(arguments[0], arguments, test.environment)
        test.addCleanup(os.waitpid, pid, 0)
        test.addCleanup(os.close, self.terminal)
        self.shown = ""

    def type(self, text):
        self.shown = ""
        os.write(self.terminal, text.encode())

    def expect(self, pattern):
        end = time.monotonic() + PATIENCE
        while not re.search(pattern, self.shown):
            ready, _, _ = select.select([self.terminal], [], [], max(0, end - time.monotonic()))
            if not ready:
                raise AssertionError(f"{pattern} was not shown, but {self.shown!r}")
            self.shown += os.read(self.terminal, 65536).decode()


class InShells(Completion):
    def walk(self, shell):
        """Types into a shell that is set up."""
        for typed, shown in [("varnic-cli sho\t", "show "), ("0b\t", "B000000 "), ("\x15varnic-cli export 0A --form\t", "--format"),
                             (" pd\t", "pdf"), ("\x15varnic-cli transcribe --you som\t", r"some\\ call\.m4a"),
                             ("\x15~/my\\ bin/varnic-cli sho\t", "show "),
                             ("\x15varnic-cli show 0\t\t", r"Launch: plan with a tab[\s\S]*Groceries")]:
            shell.type(typed)
            shell.expect(shown)

    def test_bash(self):
        shell = Shell(self, "bash", "--norc", "-i")
        shell.type(f"source '{COMPLETIONS}/varnic-cli.bash'; bind 'set bell-style none'; echo rea''dy\n")
        shell.expect("ready")
        self.walk(shell)
        shell.type("\x15varnic-cli export 0A --format=do\t")
        shell.expect("--format=docx")

    @unittest.skipUnless(shutil.which("zsh"), "no zsh")
    def test_zsh(self):
        shell = Shell(self, "zsh", "-f", "-i")
        shell.type(f"fpath=('{COMPLETIONS}' $fpath); autoload -Uz compinit; compinit -u -D; unsetopt zle_bracketed_paste; "
                   "echo rea''dy\n")
        shell.expect("ready")
        self.walk(shell)

    @unittest.skipUnless(shutil.which("fish"), "no fish")
    def test_fish(self):
        def offered(line):
            run = subprocess.run(["fish", "--no-config", "-c", f"source '{COMPLETIONS}/varnic-cli.fish'; complete -C $LINE"],
                                 capture_output=True, text=True, env=self.environment | {"LINE": line}, cwd=self.folder)
            self.assertEqual(run.stderr, "")
            return run.stdout.splitlines()

        for line, lines in {"varnic-cli sho": ["show\tshow one note"], "varnic-cli show 0b": ["0B000000\tGroceries"],
                            "varnic-cli export --format=do": ["--format=docx\tWord (.docx)"],
                            "~/bin/varnic-cli sho": ["show\tshow one note"], "gone/varnic-cli sho": [],
                            "varnic-cli transcribe --you some\\ c": ["some call.m4a"],
                            "varnic-cli transcribe --you=som": ["--you=some call.m4a"],
                            "varnic-cli transcribe --you ~/my": ["~/my bin/"]}.items():
            with self.subTest(line):
                self.assertEqual(offered(line), lines)


if __name__ == "__main__":
    unittest.main()
