# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""A program that was installed, used by somebody with a home of their own.

Started by tests/install, which says in the environment what starts the program, what its version
is and whose home it finds; no test of the build.
"""

import os
import unittest

from harness import rolls, tags
from harness.accessible import MENU_ITEM
from harness.case import WindowCase

TYPED = {"MAKE *": "Kestrel", "MODEL *": "K2", "BRAND *": "Vela", "STOCK *": "Nova 400",
         "ISO *": "400"}


class Installed(WindowCase):
    def open_at_home(self):
        """Opens the program with nothing said about where settings are to be kept."""
        return self.open(HOME=os.environ["QUILLMARK_INSTALLED_HOME"], XDG_CONFIG_HOME="",
                         XDG_CACHE_HOME="", XDG_DATA_HOME="")

    def test_menu_tells_the_version(self):
        program = self.open_at_home()
        self.screen.wait_for_focus(program.window)

        self.screen.key("F10")
        program.press("About Quillmark", MENU_ITEM)

        program.wait_for(f"Version {os.environ['QUILLMARK_INSTALLED_VERSION']}")

    def test_roll_is_backed_up_and_tagged(self):
        roll = self.make_roll(frames=3, slate_at=2)
        before = rolls.checksums(rolls.frames(roll))
        program = self.open_at_home()

        self.drop_and_plan(program, roll)
        self.embed(program)

        self.assert_tagged(rolls.frames(roll))
        self.assertEqual(rolls.checksums(rolls.frames(roll / "_originals")), before)

    def test_roll_of_tiff_files_is_tagged(self):
        roll = self.make_roll("tiff", 2, 1, "--format", "tiff16")
        program = self.open_at_home()

        self.drop_and_plan(program, roll)
        self.embed(program)

        self.assert_tagged(rolls.frames(roll))

    def test_what_is_typed_is_remembered(self):
        first = self.make_roll("first", 1, 0)
        program = self.open_at_home()
        self.drop_and_fail(program, first)
        program.press("ENTER MANUALLY  →")
        for name, text in TYPED.items():
            program.type_into(name, text)
        self.embed(program)
        self.assertEqual(tags.read_tags(rolls.frames(first))[0]["IFD0:Model"], "K2")
        program.close_window()
        self.assertEqual(program.wait_for_end(), 0)

        second = self.make_roll("second", 1, 0)
        program = self.open_at_home()
        self.drop_and_fail(program, second)
        program.press("ENTER MANUALLY  →")

        self.assertEqual({name: program.field(name).content for name in TYPED}, TYPED)


if __name__ == "__main__":
    unittest.main()
