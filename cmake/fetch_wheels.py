"""Downloads the pinned wheels, each once: what an earlier run brought is not fetched again.

Usage: fetch_wheels.py REQUIREMENTS FOLDER

REQUIREMENTS has a line a wheel, "NAME==VERSION --hash=sha256:DIGEST  # SIZE MB".
"""

import hashlib
import re
import subprocess
import sys
from pathlib import Path

LINE = re.compile(r"(?P<name>[\w-]+)==(?P<version>\S+) --hash=sha256:(?P<digest>[0-9a-f]{64})\s+# (?P<size>\d+ MB)")


def is_there(folder: Path, digest: str) -> bool:
    return any(hashlib.sha256(file.read_bytes()).hexdigest() == digest for file in folder.glob("*.whl"))


def reason(output: str, wheel: str, requirements: str) -> str:
    """pip's complaint as a sentence with what to do."""
    if "DO NOT MATCH THE HASHES" in output:
        return (f"{wheel} isn't the file that {requirements} names: its checksum is another. Don't use it; try "
                "another network or package index.")
    if re.search(r"from versions: (?!none)", output):
        return f"{wheel} isn't offered any more for this system (Linux on x86-64). See {requirements}."
    if "No space left" in output:
        return f"the disk is full, so that {wheel} couldn't be stored. Make room and run this again."
    return (f"{wheel} couldn't be downloaded. Is there a network, and does pip reach its package index? Run this again "
            "later: what has been downloaded is kept.")


def fetch(wheel: re.Match, line: str, requirements: str, folder: Path) -> None:
    name = f"{wheel['name']} {wheel['version']}"
    print(f"dev: downloading {name}, {wheel['size']}", flush=True)
    requirement = folder / "wanted.txt"
    requirement.write_text(line)
    run = subprocess.run(
        [sys.executable, "-m", "pip", "--disable-pip-version-check", "download", "--retries", "2", "--require-hashes",
         "--no-deps", "--only-binary", ":all:", "-q", "-r", requirement, "-d", folder],
        stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    requirement.unlink()
    if run.returncode != 0:
        sys.exit(f"{run.stdout.strip()}\ndev: {reason(run.stdout, name, requirements)}")


def main() -> None:
    folder = Path(sys.argv[2])
    folder.mkdir(parents=True, exist_ok=True)
    for line in Path(sys.argv[1]).read_text().splitlines():
        if line and not line.startswith("#"):
            wheel = LINE.fullmatch(line)
            if wheel is None:
                sys.exit(f"dev: {sys.argv[1]} has a line that isn't understood: {line}")
            if not is_there(folder, wheel["digest"]):
                fetch(wheel, line, sys.argv[1], folder)


if __name__ == "__main__":
    main()
