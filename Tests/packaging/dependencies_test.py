"""Whether the packages name what the programs use and no tool finds in them: modules that QML files import, fonts, files
of other packages. Those that are linked are found when a package is made.

Usage: dependencies_test.py SOURCES QML_MODULES DEPENDS RECOMMENDS    (lists with semicolons)
"""

import json
import re
import subprocess
import sys
import unittest
from pathlib import Path

SOURCES, MODULES = Path(sys.argv[1]), Path(sys.argv[2])
DEPENDS, RECOMMENDS = sys.argv[3].split(";"), sys.argv[4].split(";")
del sys.argv[1:5]

QT = Path("/usr/lib/qt6")
# What PipeWire's library reads before it connects to anything, and without which icon themes are not found.
FILES = ["/usr/share/pipewire/client.conf", "/usr/share/icons/hicolor/index.theme"]


def output(*arguments):
    return subprocess.run(arguments, capture_output=True, text=True, check=True).stdout


def owner(file) -> str:
    """The package that a file is of."""
    return output("dpkg-query", "--search", str(Path(file).resolve())).split(":")[0]


def imported_modules():
    """The packages of the QML modules that the program's own import, and those that these do."""
    system = output("/usr/lib/qt6/bin/qmake6", "-query", "QT_INSTALL_QML").strip()
    scanned = json.loads(output(QT / "libexec/qmlimportscanner", "-rootPath", MODULES, "-importPath", MODULES,
                                "-importPath", system))
    paths = {Path(module["path"]) for module in scanned if module.get("path")}
    return {owner(path / "qmldir") for path in paths if path.is_relative_to(system)}


def named_fonts():
    """The packages of the fonts that the theme and the exports name, and which of them are only a stand-in's."""
    theme = "".join(file.read_text() for file in [SOURCES / "Varnic/Views/Theme/Typo.qml",
                                                  SOURCES / "Varnic/Views/Theme/Native/Fonts.cpp",
                                                  SOURCES / "VarnicCore/Export/ParagraphLines.cpp"])
    families = [family for family in re.findall(r'"((?:Vollkorn|Inter|JetBrains|Noto Color)[A-Za-z ]*)', theme)]
    found = {}
    for family in families:
        files = output("fc-list", f":family={family}", "file").split(":")
        found[family] = owner(files[0].strip())
    return found


class PackageDependencies(unittest.TestCase):
    def test_modules_are_named_and_no_others(self):
        modules = imported_modules()
        self.assertIn("qml6-module-qtquick", modules)
        self.assertEqual(modules, {name for name in DEPENDS if name.startswith("qml6-module-")})

    def test_fonts_are_named_and_no_others(self):
        fonts = named_fonts()
        self.assertGreaterEqual(set(fonts), {"Vollkorn", "Inter", "JetBrains Mono", "Noto Color Emoji"})
        self.assertEqual({package for family, package in fonts.items() if "Emoji" not in family},
                         {name for name in DEPENDS if name.startswith("fonts-")})
        self.assertIn(fonts["Noto Color Emoji"], RECOMMENDS)

    def test_owners_of_files_are_named(self):
        for file in FILES:
            self.assertIn(owner(file), DEPENDS, file)


if __name__ == "__main__":
    unittest.main()
