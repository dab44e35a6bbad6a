# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""What the desktop around the window learns of it."""

import unittest

from harness.case import WindowCase


class DesktopAround(WindowCase):
    def test_window_names_its_program(self):
        program = self.open()

        self.assertEqual(self.screen.window_class(program.window), ("quillmark", "Quillmark"))

    def test_window_brings_its_icon(self):
        program = self.open()

        self.assertEqual(self.screen.icon_sizes(program.window), [(64, 64)])

    def test_program_starts_and_ends_without_a_word(self):
        program = self.open()

        program.close_window()

        self.assertEqual(program.wait_for_end(), 0)
        self.assertEqual(program.output, "")


if __name__ == "__main__":
    unittest.main()
