"""The packages from outside: what checks them, and a user's way with them in a bare Debian.

Usage: packages_test.py PACKAGES [TEST...]    as root; PACKAGES holds what ./dev package DEB TXZ RPM made

A bare Debian is made by mmdebstrap, from where this system's apt takes its packages; VARNIC_BARE_ROOT names a tar of one that
is there already, and VARNIC_APT_CACHE a folder that keeps what is downloaded.
"""

import hashlib
import os
import re
import shutil
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

HERE = Path(__file__).resolve().parent
SOURCE = HERE.parent.parent
FIXTURES = SOURCE / "Tests/fixtures"
PACKAGES = Path(sys.argv[1]).resolve()
OWN = ["varnic", "varnic-models"]
# What the walk needs besides the packages, whose dependencies are tried before.
TOOLS = ["at-spi2-core", "dbus", "desktop-file-utils", "libglib2.0-bin", "openbox", "python3", "python3-pyatspi", "trayer",
         "wireplumber", "x11-utils", "xdg-utils", "xdotool", "xvfb", "imagemagick", "xz-utils"]


def packages(pattern):
    found = sorted(PACKAGES.glob(pattern))
    assert found, f"there is no {pattern} in {PACKAGES}"
    return found


def said(*arguments, **options):
    """What a command prints, however it ends, and its exit code."""
    run = subprocess.run(list(map(str, arguments)), stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, **options)
    return run.stdout, run.returncode


class Checks(unittest.TestCase):
    def expect_clean(self, *arguments, **options):
        output, code = said(*arguments, **options)
        self.assertEqual(code, 0, output)
        return output

    def test_lintian(self):
        output = self.expect_clean("lintian", "--allow-root", "-I", "--fail-on", "error,warning,info",
                                   "--tag-display-limit", "0", *packages("*.deb"))
        self.assertEqual(output, "")

    def test_metadata_of_the_desktop(self):
        with tempfile.TemporaryDirectory() as folder:
            self.expect_clean("dpkg-deb", "-x", packages("varnic_*.deb")[0], folder)
            share = Path(folder) / "usr/share"
            metainfo = share / "metainfo/app.brevin.Varnic.metainfo.xml"
            self.expect_clean("appstreamcli", "validate", "--no-net", "--pedantic", metainfo)
            self.expect_clean("appstream-util", "validate-strict", "--nonet", metainfo)
            self.expect_clean("desktop-file-validate", share / "applications/app.brevin.Varnic.desktop")
            for program in ["varnic", "varnic-cli"]:
                warnings = self.expect_clean("man", "--warnings", "-E", "UTF-8", "-l", "-Tutf8", "-Z",
                                             share / f"man/man1/{program}.1.gz")
                self.assertNotIn("warning", warnings)

    def test_rpmlint(self):
        output, _ = said("rpmlint", "-c", SOURCE / "packaging/rpmlint.toml", *packages("*.rpm"))
        self.assertRegex(output, r"\b0 errors, 0 warnings\b", output)

    def test_flatpak(self):
        with tempfile.TemporaryDirectory() as folder:
            # It leaves a folder where it runs.
            self.expect_clean("flatpak-builder", "--show-manifest", SOURCE / "packaging/flatpak/app.brevin.Varnic.yml", cwd=folder)

    def test_programs_look_for_their_own_libraries_beside_themselves(self):
        with tempfile.TemporaryDirectory() as folder:
            self.expect_clean("tar", "-xf", packages("*.tar.xz")[0], "-C", folder)
            programs = list(Path(folder).glob("*/bin/*"))
            self.assertEqual({program.name for program in programs}, {"varnic", "varnic-cli"})
            for program in programs:
                runpath = re.search(r"R(?:UN)?PATH.*\[(.*)\]", said("readelf", "-d", program)[0])[1]
                self.assertTrue(runpath.startswith("$ORIGIN/"), runpath)
            self.assertFalse(list(Path(folder).rglob("*.service")), "it would name a folder")


class Root:
    """A bare Debian in a folder of its own, gone with this process's mounts."""

    def __init__(self):
        self.folder = Path(tempfile.mkdtemp(prefix="varnic-root-"))
        self.folder.chmod(0o755)
        tar = os.environ.get("VARNIC_BARE_ROOT")
        if tar:
            subprocess.run(["tar", "-xpf", tar, "-C", self.folder], check=True)
        else:
            subprocess.run(["mmdebstrap", "--quiet", "--variant=minbase", "bookworm", self.folder], check=True)
        shutil.copy("/etc/resolv.conf", self.folder / "etc/resolv.conf")
        for kind in ["--rbind /dev", "--bind /proc"]:
            option, path = kind.split()
            subprocess.run(["mount", option, path, self.folder / path[1:]], check=True)
        if cache := os.environ.get("VARNIC_APT_CACHE"):
            archives = self.folder / "var/cache/apt/archives"
            archives.mkdir(parents=True, exist_ok=True)
            subprocess.run(["mount", "--bind", cache, archives], check=True)
        self.run("apt-get", "-q", "update")
        self.run("useradd", "--create-home", "guest")
        (self.folder / "trial").mkdir()

    def command(self, *arguments, user="root", **environment):
        home = "/root" if user == "root" else f"/home/{user}"
        environment = {"PATH": "/usr/sbin:/usr/bin:/sbin:/bin", "HOME": home, "USER": user, "LC_ALL": "C.UTF-8",
                       "DEBIAN_FRONTEND": "noninteractive"} | environment
        return ["chroot", f"--userspec={user}", self.folder, "/usr/bin/env", "-i", "-C", home,
                *[f"{name}={value}" for name, value in environment.items()], *map(str, arguments)]

    def run(self, *arguments, user="root", **environment):
        output, code = said(*self.command(*arguments, user=user, **environment))
        if code != 0:
            raise AssertionError(f"{' '.join(map(str, arguments))} ended with {code}:\n{output}")
        return output

    def installed(self):
        return self.run("dpkg-query", "-W", "-f", "${Package}\n").split()

    def bring(self, *files):
        """Copies files into the folder of the trial; their places there."""
        for file in files:
            (shutil.copytree if file.is_dir() else shutil.copy)(file, self.folder / "trial" / file.name)
        return [f"/trial/{file.name}" for file in files]

    def close(self):
        subprocess.run(["umount", "--recursive", "--lazy", self.folder / "dev"])
        subprocess.run(["umount", "--lazy", self.folder / "proc", self.folder / "var/cache/apt/archives"],
                       stderr=subprocess.DEVNULL)
        shutil.rmtree(self.folder, ignore_errors=True)


def earlier(package: Path, folder: Path) -> Path:
    """The package under a lower version, as the one that a user has before an upgrade."""
    tree = folder / package.stem
    subprocess.run(["dpkg-deb", "-R", package, tree], check=True)
    control = tree / "DEBIAN/control"
    version = re.search(r"^Version: (.*)$", control.read_text(), re.MULTILINE)[1]
    control.write_text(control.read_text().replace(f"Version: {version}", f"Version: {version}~before")
                       .replace(f"varnic-models (= {version})", f"varnic-models (= {version}~before)"))
    target = folder / f"before-{package.name}"
    subprocess.run(["dpkg-deb", "-Znone", "--root-owner-group", "-b", tree, target], check=True, stdout=subprocess.DEVNULL)
    return target


class Guest:
    """The user's session in the root: guest_session.py, which takes a step a line."""

    def __init__(self, root):
        self.process = subprocess.Popen(root.command("python3", "/trial/guest_session.py", user="guest"), text=True,
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE)

    def do(self, step):
        self.process.stdin.write(step + "\n")
        self.process.stdin.flush()
        told = []
        while (line := self.process.stdout.readline()) != "done\n":
            told.append(line)
            if not line:
                raise AssertionError(f"“{step}” failed: {''.join(told)}")
        return "".join(told).strip()

    def end(self):
        self.process.stdin.close()
        self.process.wait(60)


class Walk(unittest.TestCase):
    def setUp(self):
        self.began = time.monotonic()
        self.root = Root()
        self.addCleanup(self.root.close)
        self.library = self.root.folder / "home/guest/.local/share/Varnic/Library"

    def tell(self, text):
        print(f"{time.monotonic() - self.began:5.0f} s  {text}", flush=True)

    def install(self, *what):
        self.root.run("apt-get", "-q", "-y", "--no-install-recommends", "install", *what)

    def selftest(self, program="varnic"):
        for mode in ["flow", "persist"]:
            lines = self.root.run(program, user="guest", VARNIC_SELFTEST=mode, VARNIC_DATA_DIR="/home/guest/selftest",
                                  VARNIC_FIXTURE_DIR="/home/guest/call", QT_QPA_PLATFORM="offscreen").splitlines()
            self.assertRegex(lines[-1], r"^SELFTEST OK \(\d+ checks\)$", "\n".join(lines))
            self.tell(f"{program} {mode}: {lines[-1]}")
        shutil.rmtree(self.root.folder / "home/guest/selftest")

    def contents(self):
        return {str(file.relative_to(self.library)): hashlib.sha256(file.read_bytes()).hexdigest()
                for file in self.library.rglob("*") if file.is_file()}

    def versions(self):
        return self.root.run("dpkg-query", "-W", "-f", "${Version}\n", *OWN).split()

    def leftovers(self):
        """Files of the packages that are still there."""
        ours = self.root.run("find", "/usr", "/etc", "/var", "/opt", "-xdev", "-iname", "*varnic*", "-not", "-path",
                             "/var/cache/apt/*").split()
        return [path for path in ours if not path.startswith("/var/log")]

    def test_install_use_upgrade_remove(self):
        self.tell("a bare Debian is there")
        debs = packages("*.deb")
        with tempfile.TemporaryDirectory() as folder:
            before = self.root.bring(*[earlier(deb, Path(folder)) for deb in debs])
        there = self.root.installed()
        self.install(*before)
        brought = len(self.root.installed()) - len(there)
        sizes = ", ".join(f"{deb.name} {deb.stat().st_size / 1e6:.1f} MB" for deb in debs)
        self.tell(f"installed: {sizes}; {brought} packages with those that they need")
        self.assertRegex(self.root.run("varnic-cli", "--version", user="guest"), r"^varnic-cli \d")

        # Nothing but the packages and what they ask for, and voices for the call.
        self.install("flite")
        self.selftest()

        self.install(*TOOLS)
        self.root.bring(HERE / "guest_session.py", FIXTURES)
        guest = Guest(self.root)
        self.addCleanup(guest.process.kill)
        self.tell(guest.do("start"))
        call = guest.do("record")
        self.tell(f"recorded a call: {call}")
        guest.do("links")
        self.tell("addresses lead to the call")

        kept = self.contents()
        self.root.run("apt-get", "-q", "-y", "install", *self.root.bring(*debs))
        self.assertFalse([version for version in self.versions() if "~before" in version])
        self.assertEqual(self.contents(), kept)
        guest.do("goon")
        self.tell("upgraded under a running program, which goes on; the new one has the library")
        guest.do("activate")
        self.tell("started by the message bus with an action of the desktop entry")
        guest.end()

        kept = self.contents()
        self.assertGreaterEqual(len(kept), 4)
        self.root.run("apt-get", "-q", "-y", "remove", *OWN)
        self.assertEqual(self.leftovers(), [])
        self.assertNotIn("varnic", self.root.installed())
        self.root.run("dpkg", "--purge", *OWN)
        self.assertEqual(self.leftovers(), [])
        self.assertEqual(self.contents(), kept)
        self.tell("removed and purged; the library stays")

        archive = self.root.bring(*packages("*.tar.xz"))[0]
        self.root.run("mkdir", "/home/guest/a folder of mine", user="guest")
        self.root.run("tar", "-xf", archive, "-C", "/home/guest/a folder of mine", "--strip-components=1", user="guest")
        self.selftest("/home/guest/a folder of mine/bin/varnic")


if __name__ == "__main__":
    if os.environ.get("VARNIC_PACKAGES_MOUNTS") is None:
        os.environ["VARNIC_PACKAGES_MOUNTS"] = "own"
        os.execvp("unshare", ["unshare", "--mount", "--pid", "--fork", "--kill-child", "--mount-proc", sys.executable, *sys.argv])
    unittest.main(argv=[sys.argv[0], *sys.argv[2:]], verbosity=2)
