# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""What `cmake --install` puts where."""

import gzip
import pathlib
import subprocess
import tempfile
import unittest

from places import APP_ID, BUILD, ICON_SIZES, VERSION

BUNDLE = "share/quillmark/Quillmark_Quillmark.bundle"
DOCUMENTS = "share/doc/quillmark"
EXPECTED = {
    "bin/quillmark",
    f"{BUNDLE}/quillmark.config",
    f"share/applications/{APP_ID}.desktop",
    f"share/metainfo/{APP_ID}.metainfo.xml",
    f"share/icons/hicolor/scalable/apps/{APP_ID}.svg",
    *(f"share/icons/hicolor/{size}x{size}/apps/{APP_ID}.png" for size in ICON_SIZES),
    "share/man/man1/quillmark.1.gz",
    f"{DOCUMENTS}/changelog.Debian.gz",
    f"{DOCUMENTS}/changelog.gz",
    f"{DOCUMENTS}/copyright",
    "share/lintian/overrides/quillmark",
}


class Staging(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.folder.cleanup)
        cls.prefix = pathlib.Path(cls.folder.name)
        subprocess.run(["cmake", "--install", BUILD, "--prefix", cls.prefix, "--strip"],
                       check=True, stdout=subprocess.DEVNULL)

    def test_every_file_has_its_place_and_mode(self):
        found = {str(file.relative_to(self.prefix)): file.stat().st_mode & 0o777
                 for file in self.prefix.rglob("*") if file.is_file()}
        # Of builds that look for versions.
        found.pop(f"{BUNDLE}/updates.json", None)
        self.assertEqual(found, {name: 0o755 if name == "bin/quillmark" else 0o644
                                 for name in EXPECTED})

    def test_page_and_changelog_tell_the_version(self):
        page = gzip.decompress((self.prefix / "share/man/man1/quillmark.1.gz").read_bytes())
        self.assertIn(f"Quillmark {VERSION}", page.decode())
        text = gzip.decompress((self.prefix / DOCUMENTS / "changelog.Debian.gz").read_bytes())
        self.assertTrue(text.decode().startswith(f"quillmark ({VERSION}-1) "), text[:80])

    def test_compressed_files_tell_no_time_and_no_name(self):
        for file in self.prefix.rglob("*.gz"):
            header = file.read_bytes()[:8]
            self.assertEqual((header[3], header[4:8]), (0, b"\0\0\0\0"), file)

    def test_page_is_well_formed(self):
        page = self.prefix / "share/man/man1/quillmark.1.gz"
        text = gzip.decompress(page.read_bytes())
        answer = subprocess.run(["groff", "-man", "-Tutf8", "-ww", "-z"], check=True, input=text,
                                capture_output=True)
        self.assertEqual(answer.stderr, b"")


if __name__ == "__main__":
    unittest.main()
