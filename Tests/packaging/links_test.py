"""Whether what the pages and the metainfo show and point to is in the project.

Usage: links_test.py PROJECT METAINFO
"""

import re
import struct
import sys
import unittest
import xml.etree.ElementTree as ElementTree
from pathlib import Path

PROJECT, METAINFO = Path(sys.argv[1]), Path(sys.argv[2])
del sys.argv[1:3]

PICTURES = PROJECT / "docs/pictures"


def size(png: Path):
    """Width and height, which follow the signature and the first chunk's length and name."""
    return struct.unpack(">II", png.read_bytes()[16:24])


class Links(unittest.TestCase):
    def test_pages_point_to_what_is_there(self):
        pages = [*PROJECT.glob("*.md"), *PROJECT.glob("docs/*.md")]
        links = [(page, link) for page in pages for link in re.findall(r"\]\(([^)#]+)", page.read_text()) if "://" not in link]
        self.assertGreater(len(links), 10)
        for page, link in links:
            self.assertTrue((page.parent / link).exists(), f"{page.name}: {link}")

    def test_the_metainfo_s_screenshots_are_the_project_s_pictures(self):
        images = ElementTree.parse(METAINFO).findall(".//screenshot/image")
        self.assertGreater(len(images), 3)
        for image in images:
            picture = PICTURES / image.text.rpartition("/")[2]
            self.assertTrue(picture.exists(), image.text)
            self.assertEqual((int(image.get("width")), int(image.get("height"))), size(picture), image.text)


if __name__ == "__main__":
    unittest.main()
