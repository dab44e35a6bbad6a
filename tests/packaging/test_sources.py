# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""The packages that the portable folder is made of, their terms and their sources."""

import pathlib
import subprocess
import unittest

from places import ROOT

import bundled  # isort: skip
import portable  # isort: skip

HEADERS = pathlib.Path("/usr/include")


def shown(package, form):
    return subprocess.run(["dpkg-query", "--show", "--showformat", form, package], check=True,
                          capture_output=True, text=True).stdout


class Sources(unittest.TestCase):
    def setUp(self):
        self.sources = bundled.Sources()
        self.library = portable.qt_folder("QT_INSTALL_LIBS") / "libQt6Core.so.6"
        self.header = portable.qt_folder("QT_INSTALL_HEADERS") / "QtCore" / "qglobal.h"

    def named(self):
        return {package.name: package.places for package in self.sources.packages()}

    def test_package_has_the_places_of_its_files(self):
        self.sources.add(self.library, "lib/libQt6Core.so.6")
        self.sources.add(self.library, "lib/again")
        self.sources.add(ROOT / "packaging" / "portable.fonts.conf", "etc/fonts/fonts.conf")

        self.assertEqual(self.named(), {"libqt6core6": ["lib/again", "lib/libQt6Core.so.6"]})

    def test_headers_without_a_library_are_named(self):
        self.sources.add(self.library, "lib/libQt6Core.so.6")
        self.sources.add_headers([self.header, HEADERS / "eigen3/Eigen/Core",
                                  HEADERS / "stdio.h", HEADERS / "linux/fs.h"])

        self.assertEqual(self.named(), {"libqt6core6": ["lib/libQt6Core.so.6"],
                                        "libeigen3-dev": [bundled.COMPILED_IN]})
        self.assertIn("libeigen3-dev", dict(self.sources.terms()))

    def test_file_of_no_package_is_refused(self):
        self.sources.add(__file__, "lib/stray")

        with self.assertRaisesRegex(OSError, "in no package: .*test_sources"):
            self.sources.packages()

    def test_source_is_told_with_its_exact_version(self):
        self.sources.add(self.library, "lib/libQt6Core.so.6")

        text = self.sources.whereabouts()

        version = shown("libqt6core6", "${Version}")
        source = shown("libqt6core6", "${source:Package} ${source:Version}")
        self.assertIn(f"\nlibqt6core6 {version}\n  source: {source}\n  https://snapshot.", text)
        self.assertIn("\n    lib/libQt6Core.so.6\n", text)

    def test_terms_bring_the_licences_that_they_refer_to(self):
        self.sources.add(self.library, "lib/libQt6Core.so.6")

        self.assertIn("common/LGPL-3", dict(self.sources.terms()))


if __name__ == "__main__":
    unittest.main()
