"""The packages from outside: what checks them, and a user's way with them in a bare Debian.

Usage: packages_test.py PACKAGES [TEST...]    as root; PACKAGES holds what ./dev package DEB TXZ RPM made

A bare Debian is made by mmdebstrap, from where this system's apt takes its packages; VARNIC_BARE_ROOT names a tar of one that
is there already, and VARNIC_APT_CACHE a folder that keeps what is downloaded.
"""

import hashlib
import json
import os
import re
import shutil
import stat
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
QML_MODULES = PACKAGES.parent / "qml"
MODELS = {"varnic-models": "moonshine-tiny-en", "varnic-models-whisper": "whisper-base"}
SPACE = "VARNIC_PACKAGES_ROOT"
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


def field(package, name):
    """What a package's control file says."""
    return said("dpkg-deb", "--field", package, name)[0].strip()


def names(relations):
    """The packages that a field such as Depends names, the first of alternatives."""
    return [re.match(r"\S+", relation.strip())[0] for relation in relations.split(",")]


class Checks(unittest.TestCase):
    def expect_clean(self, *arguments, **options):
        output, code = said(*arguments, **options)
        self.assertEqual(code, 0, output)
        return output

    def test_lintian(self):
        output = self.expect_clean("lintian", "--allow-root", "-I", "--fail-on", "error,warning,info",
                                   "--tag-display-limit", "0", *packages("*.deb"))
        self.assertEqual(output, "")

    def test_words_that_lintian_is_not_to_tell_of_hide_no_others(self):
        with tempfile.TemporaryDirectory() as folder:
            tree, deb = Path(folder) / "tree", Path(folder) / "varnic.deb"
            self.expect_clean("dpkg-deb", "-R", packages("varnic_*.deb")[0], tree)
            with (tree / "usr/bin/varnic").open("ab") as program:
                program.write(b"\0You will recieve it\0")
            self.expect_clean("dpkg-deb", "-Znone", "--root-owner-group", "-b", tree, deb)
            output = self.expect_clean("lintian", "--allow-root", "--display-info", "--tags", "spelling-error-in-binary", deb)
            self.assertEqual(output.strip(), "I: varnic: spelling-error-in-binary recieve receive [usr/bin/varnic]")

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
        for package in packages("*.rpm"):
            files = self.expect_clean("rpm", "--query", "--list", "--package", package)
            self.assertIn("/usr/share/doc/varnic", files)
            self.assertNotRegex(files, "lintian|changelog", "what is Debian's alone")

    def test_flatpak(self):
        with tempfile.TemporaryDirectory() as folder:
            # It leaves a folder where it runs.
            self.expect_clean("flatpak-builder", "--show-manifest", SOURCE / "packaging/flatpak/app.brevin.Varnic.yml", cwd=folder)

    def test_dependencies_that_no_tool_finds_are_named(self):
        """The test PackageDependencies, on what the package says at last."""
        program = packages("varnic_*.deb")[0]
        depends, recommends = (";".join(names(field(program, kind))) for kind in ["Depends", "Recommends"])
        self.expect_clean(sys.executable, HERE / "dependencies_test.py", SOURCE / "Sources", QML_MODULES, depends, recommends)

    def test_every_library_is_the_package_s_own_or_of_one_that_is_named(self):
        program = packages("varnic_*.deb")[0]
        depends = names(field(program, "Depends"))
        cached = dict(re.findall(r"^\s*(\S+) \(libc6,x86-64.*\) => (\S+)$", said("/sbin/ldconfig", "-p")[0], re.MULTILINE))
        with tempfile.TemporaryDirectory() as folder:
            self.expect_clean("dpkg-deb", "-x", program, folder)
            binaries = [file for file in Path(folder).rglob("*")
                        if file.is_file() and not file.is_symlink() and file.read_bytes()[:4] == b"\x7fELF"]
            self.assertGreaterEqual({file.name for file in binaries}, {"varnic", "varnic-cli", "libonnxruntime.so"})
            own = {file.name for file in binaries}
            for file in binaries:
                needed = re.findall(r"\(NEEDED\).*\[(.*)\]", self.expect_clean("readelf", "-d", file))
                self.assertIn("libc.so.6", needed, file)
                for library in set(needed) - own:
                    # By its name alone: packages name files below /lib, which are below /usr/lib.
                    found = self.expect_clean("dpkg-query", "--search", f"*/{Path(cached[library]).resolve().name}")
                    owners = {line.split(":")[0] for line in found.splitlines()}
                    self.assertTrue(owners & set(depends), f"{file.name} needs {library} of {owners}")

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
    """A bare Debian in the folder that `in_a_space_of_its_own` has made. Its mounts are seen, and are gone, with this
    process and its children alone."""

    DEVICES = {"null": (1, 3), "zero": (1, 5), "full": (1, 7), "random": (1, 8), "urandom": (1, 9), "tty": (5, 0)}

    def __init__(self):
        self.folder = Path(os.environ[SPACE])
        if tar := os.environ.get("VARNIC_BARE_ROOT"):
            subprocess.run(["tar", "-xpf", tar, "-C", self.folder], check=True)
        else:
            subprocess.run(["mmdebstrap", "--quiet", "--variant=minbase", "bookworm", self.folder], check=True)
        shutil.copy("/etc/resolv.conf", self.folder / "etc/resolv.conf")
        # Nothing here outlives a power cut, so nothing waits for the disk.
        (self.folder / "etc/dpkg/dpkg.cfg.d/trial").write_text("force-unsafe-io\n")
        self.make_devices()
        self.mount("--bind", "/proc", "proc")
        if cache := os.environ.get("VARNIC_APT_CACHE"):
            self.mount("--bind", cache, "var/cache/apt/archives")
        self.run("apt-get", "-q", "update")
        self.run("useradd", "--create-home", "guest")
        (self.folder / "trial").mkdir()

    def mount(self, *words):
        (self.folder / words[-1]).mkdir(parents=True, exist_ok=True)
        subprocess.run(["mount", *words[:-1], self.folder / words[-1]], check=True)

    def make_devices(self):
        """Devices of its own, of which this system's do not depend."""
        devices = self.folder / "dev"
        self.mount("-t", "tmpfs", "-o", "mode=755", "tmpfs", "dev")
        for name, number in self.DEVICES.items():
            os.mknod(devices / name, stat.S_IFCHR, os.makedev(*number))
            (devices / name).chmod(0o666)
        (devices / "fd").symlink_to("/proc/self/fd")
        (devices / "shm").mkdir()
        (devices / "shm").chmod(0o1777)
        self.mount("-t", "devpts", "-o", "newinstance,ptmxmode=666", "devpts", "dev/pts")
        (devices / "ptmx").symlink_to("pts/ptmx")

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
        with self.process:  # which closes what leads to it
            self.process.stdin.close()
            self.process.wait(60)


class Walk(unittest.TestCase):
    def setUp(self):
        self.began = time.monotonic()
        self.root = Root()
        self.library = self.root.folder / "home/guest/.local/share/Varnic/Library"

    def tell(self, text):
        print(f"{time.monotonic() - self.began:5.0f} s  {text}", flush=True)

    def install(self, *what):
        self.root.run("apt-get", "-q", "-y", "--no-install-recommends", "install", *what)

    def models(self):
        """The speech models that the user has, each tried out."""
        return {model["id"] for model in json.loads(self.root.run("varnic-cli", "models", "--check", "--json", user="guest"))["models"]}

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

    def versions(self, own):
        return set(self.root.run("dpkg-query", "-W", "-f", "${Version}\n", *own).split())

    def leftovers(self):
        """Files of the packages that are still there."""
        ours = self.root.run("find", "/usr", "/etc", "/var", "/opt", "-xdev", "-iname", "*varnic*", "-not", "-path",
                             "/var/cache/apt/*").split()
        return [path for path in ours if not path.startswith("/var/log")]

    def test_install_use_upgrade_remove(self):
        self.tell("a bare Debian is there")
        debs = packages("*.deb")
        own = [field(deb, "Package") for deb in debs]
        with tempfile.TemporaryDirectory() as folder:
            before = self.root.bring(*[earlier(deb, Path(folder)) for deb in debs])
        all_told = len(re.findall("^Inst ", self.root.run("apt-get", "-s", "install", *before), re.MULTILINE))
        there = self.root.installed()
        self.install(*before)
        brought = len(self.root.installed()) - len(there)
        sizes = ", ".join(f"{deb.name} {deb.stat().st_size / 1e6:.1f} MB ({int(field(deb, 'Installed-Size')) / 1e3:.0f} MB "
                          "installed)" for deb in debs)
        self.tell(f"installed: {sizes}; {brought} packages with those that they need, {all_told} with what they recommend")
        self.assertRegex(self.root.run("varnic-cli", "--version", user="guest"), r"^varnic-cli \d")
        self.assertEqual(self.models(), {model for package, model in MODELS.items() if package in own})

        # Nothing but the packages and what they ask for, and voices for the call.
        self.install("flite")
        self.selftest()

        self.install(*TOOLS)
        self.root.bring(HERE / "guest_session.py", FIXTURES)
        guest = Guest(self.root)
        self.addCleanup(guest.process.kill)
        self.tell(guest.do("prove"))
        self.tell(guest.do("start"))
        call = guest.do("record")
        self.tell(f"recorded a call: {call}")
        guest.do("links")
        self.tell("addresses lead to the call")

        kept = self.contents()
        self.root.run("apt-get", "-q", "-y", "install", *self.root.bring(*debs))
        self.assertEqual(self.versions(own), {field(deb, "Version") for deb in debs})
        self.assertEqual(self.contents(), kept)
        guest.do("goon")
        self.tell("upgraded under a running program, which goes on; the new one has the library")
        guest.do("activate")
        self.tell("started by the message bus with an action of the desktop entry")
        guest.end()

        kept = self.contents()
        self.assertGreaterEqual(len(kept), 4)
        self.root.run("apt-get", "-q", "-y", "remove", *own)
        self.assertEqual(self.leftovers(), [])
        self.assertNotIn("varnic", self.root.installed())
        self.root.run("dpkg", "--purge", *own)
        self.assertEqual(self.leftovers(), [])
        self.assertEqual(self.contents(), kept)
        self.tell("removed and purged; the library stays")

        archive = self.root.bring(*packages("*.tar.xz"))[0]
        self.root.run("mkdir", "/home/guest/a folder of mine", user="guest")
        self.root.run("tar", "-xf", archive, "-C", "/home/guest/a folder of mine", "--strip-components=1", user="guest")
        self.selftest("/home/guest/a folder of mine/bin/varnic")


def in_a_space_of_its_own():
    """Runs this program again where its mounts and processes end with it, and takes the folder of its root away after them."""
    folder = Path(tempfile.mkdtemp(prefix="varnic-root-"))
    folder.chmod(0o755)
    try:
        return subprocess.run(["unshare", "--mount", "--pid", "--fork", "--kill-child", "--mount-proc", sys.executable, *sys.argv],
                              env=os.environ | {SPACE: str(folder)}).returncode
    finally:
        subprocess.run(["rm", "-rf", "--one-file-system", folder], check=True)


if __name__ == "__main__":
    if SPACE not in os.environ:
        sys.exit(in_a_space_of_its_own())
    unittest.main(argv=[sys.argv[0], *sys.argv[2:]], verbosity=2)
