"""The time from a program's start to its first picture, on an X server of its own with the software renderer, against an
empty Qt Quick window. Both start by turns, and the ratio of the medians is printed.

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


def first_frame(program):
    """Milliseconds."""
    rules = {"QT_LOGGING_RULES": "qt.scenegraph.time.renderloop=true", "QT_MESSAGE_PATTERN": "%{category}"}
    begin = time.monotonic()
    with subprocess.Popen([program], env=os.environ | rules, stderr=subprocess.PIPE, text=True) as process:
        seen = any("renderloop" in line for line in process.stderr)
        duration = time.monotonic() - begin
        process.kill()
    assert seen, f"{program} drew nothing"
    return 1000 * duration


with Desktop() as desktop, tempfile.TemporaryDirectory() as library:
    subprocess.run([sys.executable, FIXTURES / "make_library.py", library, NOTES], check=True, stdout=subprocess.DEVNULL)
    os.environ["VARNIC_DATA_DIR"] = library
    del os.environ["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"]
    rounds = [[first_frame(program) for program in PROGRAMS] for _ in range(int(RUNS) + 1)][1:]
    medians = [statistics.median(times) for times in zip(*rounds)]
    for program, times, median in zip(PROGRAMS, zip(*rounds), medians):
        print(f"{Path(program).name}: {median:.0f} ms ({min(times):.0f} to {max(times):.0f})")
    print(f"ratio {medians[0] / medians[1]:.2f}")
