# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""The changelog and the forms that it takes."""

import subprocess
import unittest
from xml.etree import ElementTree

from places import ROOT, VERSION

import changelog  # isort: skip

TEXT = """# What changed

Words before the versions.

## 1.10 (2027-02-28)

- Reads `quillmark.config` & more, a point that
  goes on.
- Second.

## 1.9.1 (2026-12-31)

- First.
"""


class Changelog(unittest.TestCase):
    def test_newest_version_is_the_programs(self):
        text = (ROOT / "CHANGELOG.md").read_text(encoding="utf-8")
        self.assertEqual(changelog.releases(text)[0].version, VERSION)

    def test_points_go_on_over_lines(self):
        found = changelog.releases(TEXT)
        self.assertEqual([release.version for release in found], ["1.10", "1.9.1"])
        self.assertEqual(found[0].points,
                         ["Reads quillmark.config & more, a point that goes on.", "Second."])

    def test_what_is_no_version_is_refused(self):
        for text in ("# Only a title\n", "# T\n## 1.0\n- No day.\n", "# T\n## 1.0 (2026-13-01)\n",
                     "# T\n## 1.0 (2026-01-01)\n", "# T\n## 1.0 (2026-01-01)\nNo point.\n"):
            with self.subTest(text), self.assertRaises(ValueError):
                changelog.releases(text)

    def test_metainfo_escapes(self):
        element = ElementTree.fromstring(changelog.metainfo(changelog.releases(TEXT)))
        self.assertEqual([(release.get("version"), release.get("date"))
                          for release in element.iter("release")],
                         [("1.10", "2027-02-28"), ("1.9.1", "2026-12-31")])
        self.assertIn("Reads quillmark.config & more, a point that goes on.",
                      [point.text for point in element.iter("li")])

    def test_debian_form_is_read_by_its_tools(self):
        text = changelog.debian(changelog.releases(TEXT), "1", "Quillmark authors <q@example.org>")
        answer = subprocess.run(["dpkg-parsechangelog", "-l-", "--format", "rfc822", "--all"],
                                check=True, input=text, capture_output=True, text=True)
        self.assertEqual(answer.stderr, "")
        self.assertIn("Version: 1.10-1\n", answer.stdout)
        self.assertIn("Maintainer: Quillmark authors <q@example.org>\n", answer.stdout)
        self.assertIn("Date: Sun, 28 Feb 2027 12:00:00 +0000\n", answer.stdout)


if __name__ == "__main__":
    unittest.main()
