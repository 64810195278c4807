"""The time from a program's start to its first picture, on an X server of its own with the software renderer, against an
empty Qt Quick window. Both start by turns, and the ratio of the medians is printed: with all files in memory, and, for
root, who may drop them, from the disk as after a restart.

    first_frame.py PROGRAM EMPTY_WINDOW [NOTES=1000 [RUNS=21]]     (the system's own Python)
"""

import os
import statistics
import subprocess
import sys
import tempfile
import time
from pathlib import Path

FIXTURES = Path(__file__).resolve().parent.parent / "Tests" / "fixtures"
sys.path.insert(0, str(FIXTURES))

from desktop import Desktop  # noqa: E402

PROGRAMS = sys.argv[1:3]
NOTES, RUNS = (sys.argv[3:] + ["1000", "21"][len(sys.argv) - 3:])[:2]


def first_frame(program, cold):
    """Milliseconds."""
    if cold:
        os.sync()
        Path("/proc/sys/vm/drop_caches").write_text("3")
    rules = {"QT_LOGGING_RULES": "qt.scenegraph.time.renderloop=true", "QT_MESSAGE_PATTERN": "%{category}"}
    begin = time.monotonic()
    with subprocess.Popen([program], env=os.environ | rules, stderr=subprocess.PIPE, text=True) as process:
        seen = any("renderloop" in line for line in process.stderr)
        duration = time.monotonic() - begin
        process.kill()
    assert seen, f"{program} drew nothing"
    return 1000 * duration


def measure(name, runs, cold):
    rounds = [[first_frame(program, cold) for program in PROGRAMS] for _ in range(runs + 1)][1:]
    medians = [statistics.median(times) for times in zip(*rounds)]
    for program, times, median in zip(PROGRAMS, zip(*rounds), medians):
        print(f"{name}, {Path(program).name}: {median:.0f} ms ({min(times):.0f} to {max(times):.0f})")
    print(f"{name}, ratio: {medians[0] / medians[1]:.2f}")


with Desktop() as desktop, tempfile.TemporaryDirectory() as library:
    subprocess.run([sys.executable, FIXTURES / "make_library.py", library, NOTES], check=True, stdout=subprocess.DEVNULL)
    os.environ["VARNIC_DATA_DIR"] = library
    del os.environ["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"]
    measure("warm", int(RUNS), cold=False)
    if os.access("/proc/sys/vm/drop_caches", os.W_OK):
        measure("cold", int(RUNS) // 3, cold=True)
