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
    f"{DOCUMENTS}/changelog.gz",
    f"{DOCUMENTS}/copyright",
}
# Of a Debian package alone.
DEBIAN = {
    f"{DOCUMENTS}/changelog.Debian.gz",
    "share/lintian/overrides/quillmark",
}


def install(prefix, *options):
    """Installs what was built, and gives the names and modes of all files."""
    subprocess.run(["cmake", "--install", BUILD, "--prefix", prefix, "--strip", *options],
                   check=True, stdout=subprocess.DEVNULL)
    return {str(file.relative_to(prefix)): file.stat().st_mode & 0o777
            for file in prefix.rglob("*") if file.is_file()}


class Staging(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.folder.cleanup)
        cls.prefix = pathlib.Path(cls.folder.name, "all")
        cls.found = install(cls.prefix)
        cls.debian_prefix = pathlib.Path(cls.folder.name, "debian")
        cls.found_of_debian = install(cls.debian_prefix, "--component", "debian")

    def test_every_file_has_its_place_and_mode(self):
        # The last is of builds that look for versions.
        found = {name: mode for name, mode in self.found.items()
                 if name != f"{BUNDLE}/updates.json"}
        self.assertEqual(found, {name: 0o755 if name == "bin/quillmark" else 0o644
                                 for name in EXPECTED})

    def test_debian_package_has_files_of_its_own(self):
        self.assertEqual(self.found_of_debian, {name: 0o644 for name in DEBIAN})

    def test_page_and_changelog_tell_the_version(self):
        self.assertIn(f"Quillmark {VERSION}", self.page())
        text = gzip.decompress((self.debian_prefix / DOCUMENTS / "changelog.Debian.gz").read_bytes())
        self.assertTrue(text.decode().startswith(f"quillmark ({VERSION}-1) "), text[:80])

    def test_page_tells_both_places_of_the_resources(self):
        places = [line for line in self.page().splitlines() if line.endswith(".bundle")]
        self.assertEqual(len(set(places)), 2, places)
        self.assertTrue(places[0].endswith("/share/quillmark/Quillmark_Quillmark.bundle"), places)

    def test_compressed_files_tell_no_time_and_no_name(self):
        files = sorted(pathlib.Path(self.folder.name).rglob("*.gz"))
        self.assertEqual(len(files), 3)
        for file in files:
            header = file.read_bytes()[:8]
            self.assertEqual((header[3], header[4:8]), (0, b"\0\0\0\0"), file)

    def test_page_is_well_formed(self):
        answer = subprocess.run(["groff", "-man", "-Tutf8", "-ww", "-z"], check=True,
                                input=self.page(), capture_output=True, text=True)
        self.assertEqual(answer.stderr, "")

    def page(self):
        page = self.prefix / "share/man/man1/quillmark.1.gz"
        return gzip.decompress(page.read_bytes()).decode()


if __name__ == "__main__":
    unittest.main()
