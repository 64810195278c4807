"""What packages are told of the project, made of the files that say it already.

Usage: texts.py changelog CHANGELOG DATE MAINTAINER    Debian's form of the changes
       texts.py rpm-changelog CHANGELOG DATE MAINTAINER   the same for RPM
       texts.py releases CHANGELOG DATE                the releases of AppStream's metadata
       texts.py copyright TEMPLATE ROOT DEPS           Debian's form of the licences

CHANGELOG has a section "## VERSION, DATE" a release; DATE stands for that of the one which isn't released yet. In TEMPLATE
a line "@FILE@" stands for the text of that file of ROOT, or of DEPS if it begins with "deps:".
"""

import re
import sys
from datetime import datetime, timezone
from pathlib import Path
from xml.sax.saxutils import escape


def releases(changelog: Path, date: str):
    """Version, date and entries of each release, the newest first."""
    for section in re.split(r"^## ", changelog.read_text(), flags=re.MULTILINE)[1:]:
        heading, _, body = section.partition("\n")
        version, _, when = heading.partition(", ")
        entries = [" ".join(entry.split()) for entry in re.split(r"^- ", body, flags=re.MULTILINE)[1:]]
        yield version, when if re.fullmatch(r"\d{4}-\d\d-\d\d", when) else date, entries


def wrapped(text: str, indent: str, width=78) -> str:
    lines, line = [], ""
    for word in text.split():
        if line and len(indent) + len(line) + 1 + len(word) > width:
            lines.append(line)
            line = word
        else:
            line = f"{line} {word}".strip()
    return ("\n" + indent).join([*lines, line])


def debian_changelog(changelog: Path, date: str, maintainer: str) -> str:
    parts = []
    for version, when, entries in releases(changelog, date):
        day = datetime.fromisoformat(when).replace(tzinfo=timezone.utc).strftime("%a, %d %b %Y %H:%M:%S +0000")
        items = "\n".join("  * " + wrapped(entry, "    ") for entry in entries)
        parts.append(f"varnic ({version}) stable; urgency=medium\n\n{items}\n\n -- {maintainer}  {day}\n")
    return "\n".join(parts)


def rpm_changelog(changelog: Path, date: str, maintainer: str) -> str:
    parts = []
    for version, when, entries in releases(changelog, date):
        day = datetime.fromisoformat(when).strftime("%a %b %d %Y")
        items = "\n".join("- " + wrapped(entry, "  ") for entry in entries)
        parts.append(f"* {day} {maintainer} - {version}-1\n{items}\n")
    return "\n".join(parts)


def appstream_releases(changelog: Path, date: str) -> str:
    parts = []
    for version, when, entries in releases(changelog, date):
        items = "\n".join(f"          <li>{escape(entry.replace('`', '').removesuffix('.'))}</li>" for entry in entries)
        parts.append(f'    <release version="{version}" date="{when}">\n      <description>\n        <p>What is new:</p>\n        <ul>\n{items}\n'
                     f"        </ul>\n      </description>\n    </release>")
    return "\n".join(parts)


def folded(text: str) -> str:
    """A text as a field of a control file goes on with it."""
    return "\n".join(" " + (line.rstrip() or ".") for line in text.strip().splitlines())


def copyright(template: Path, root: Path, deps: Path) -> str:
    def text(match):
        name = match[1]
        file = deps / name.removeprefix("deps:") if name.startswith("deps:") else root / name
        return folded(file.read_text())

    return re.sub(r"^ @(.+)@$", text, template.read_text(), flags=re.MULTILINE)


def main():
    kind, *arguments = sys.argv[1:]
    if kind == "changelog":
        print(debian_changelog(Path(arguments[0]), *arguments[1:]), end="")
    elif kind == "rpm-changelog":
        print(rpm_changelog(Path(arguments[0]), *arguments[1:]), end="")
    elif kind == "releases":
        print(appstream_releases(Path(arguments[0]), arguments[1]))
    elif kind == "copyright":
        print(copyright(*map(Path, arguments)), end="")
    else:
        sys.exit(__doc__)


if __name__ == "__main__":
    main()
