# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""What a desktop and a software centre learn of the program."""

import configparser
import struct
import subprocess
import unittest
from xml.etree import ElementTree

from places import APP_ID, BUILD, ICON_SIZES, ROOT, VERSION

DESKTOP = ROOT / "resources" / f"{APP_ID}.desktop"
METAINFO = BUILD / "packaging" / f"{APP_ID}.metainfo.xml"
ICONS = ROOT / "resources" / "icons"


def size_of(png):
    """Width and height of a PNG file, as its header has them."""
    header = png.read_bytes()[:24]
    if header[:8] != b"\x89PNG\r\n\x1a\n":
        raise AssertionError(f"{png} is no PNG file")
    return struct.unpack(">II", header[16:24])


class Desktop(unittest.TestCase):
    def test_entry_is_valid(self):
        answer = subprocess.run(["desktop-file-validate", DESKTOP], check=False,
                                capture_output=True, text=True)
        self.assertEqual((answer.returncode, answer.stdout + answer.stderr), (0, ""))

    def test_entry_names_program_window_and_icon(self):
        entry = configparser.ConfigParser(interpolation=None)
        entry.read(DESKTOP, encoding="utf-8")
        group = entry["Desktop Entry"]
        self.assertEqual(group["Exec"], "quillmark")
        # The class of the window under X11; under Wayland it is the name of the file.
        self.assertEqual(group["StartupWMClass"], "Quillmark")
        self.assertEqual(group["Icon"], APP_ID)


class Metainfo(unittest.TestCase):
    def setUp(self):
        self.component = ElementTree.parse(METAINFO).getroot()

    def test_metainfo_is_valid(self):
        # The network is left alone: pictures are published with a version, not before.
        answer = subprocess.run(["appstreamcli", "validate", "--no-net", "--pedantic",
                                 "--no-color", METAINFO],
                                check=False, capture_output=True, text=True)
        self.assertEqual(answer.returncode, 0, answer.stdout + answer.stderr)

    def test_newest_release_is_the_programs(self):
        self.assertEqual(self.component.find("releases/release").get("version"), VERSION)

    def test_pictures_are_those_of_the_documentation(self):
        images = self.component.findall("screenshots/screenshot/image")
        self.assertGreaterEqual(len(images), 3)
        for image in images:
            file = ROOT / "docs" / "screenshots" / image.text.rpartition("/")[2]
            self.assertEqual((str(size_of(file)[0]), str(size_of(file)[1])),
                             (image.get("width"), image.get("height")), file)


class Icons(unittest.TestCase):
    def test_each_has_its_size(self):
        for size in ICON_SIZES:
            self.assertEqual(size_of(ICONS / f"{size}.png"), (size, size))

    def test_each_looks_like_its_drawing(self):
        answer = subprocess.run([ROOT / "script" / "icons", "--check"], check=False,
                                capture_output=True, text=True)
        self.assertEqual((answer.returncode, answer.stdout),
                         (0, f"icons: {len(ICON_SIZES)} are as drawn\n"), answer.stderr)

    def test_drawings_are_square(self):
        for name in (f"{APP_ID}.svg", "small.svg"):
            drawing = ElementTree.parse(ICONS / name).getroot()
            _, _, width, height = drawing.get("viewBox").split()
            self.assertEqual(width, height)


if __name__ == "__main__":
    unittest.main()
