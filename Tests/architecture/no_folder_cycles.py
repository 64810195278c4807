"""Fails where folders of sources include each other in a circle. Usage: no_folder_cycles.py SOURCES"""

import re
import sys
from graphlib import CycleError, TopologicalSorter
from pathlib import Path

sources = Path(sys.argv[1])
includes = {}
for file in [*sources.rglob("*.h"), *sources.rglob("*.cpp")]:
    folder = file.parent.relative_to(sources).as_posix()
    named = re.findall(r'^\s*#\s*include\s+"([^"]+)/[^"/]+"', file.read_text(), re.MULTILINE)
    includes.setdefault(folder, set()).update(other for other in named if other != folder)
try:
    order = list(TopologicalSorter(includes).static_order())
except CycleError as error:
    # It names the included one first.
    sys.exit(" includes ".join(reversed(error.args[1])))
print("\n".join(f"{folder}: {', '.join(sorted(includes.get(folder, [])))}" for folder in order))
