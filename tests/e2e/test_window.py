# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""The window itself, and those who use it without a pointer or without an eye for it."""

import unittest

from harness.accessible import BUTTON, CHECK_BOX, RADIO_BUTTON
from harness.case import WindowCase
from harness.waiting import WORK_DEADLINE, wait_until

# The window, its menu, and what is on the idle screen.
IDLE_TEXTS = [
    "Quillmark", "Quillmark",
    "01 / INGEST A ROLL", "DROP A FOLDER\nOF SCANS",
    "Quillmark finds the slate frame, decodes the QR, and embeds the\n"
    "metadata directly into every image — EXIF, IPTC, and XMP.",
    "CHOOSE FOLDER",
    "BACKUP MODE", "BACKUP ORIGINALS", "WRITE COPIES", "IN PLACE",
    "RECURSE INTO SUBFOLDERS",
]
MODES = ["BACKUP ORIGINALS", "WRITE COPIES", "IN PLACE"]


class Window(WindowCase):
    def selected(self, program):
        return [name for name in MODES if program.find(name, RADIO_BUTTON).is_checked]

    def test_idle_screen_can_be_read_whole(self):
        self.assertEqual(self.open().texts(), IDLE_TEXTS)

    def test_window_is_dark(self):
        program = self.open()

        x, y, width, height = self.screen.geometry(program.window)

        for place in [(x + 5, y + 5), (x + width - 5, y + height - 5)]:
            self.assertEqual(self.screen.colour(*place), "#0E0E0E")

    def test_window_keeps_its_smallest_size(self):
        program = self.open()
        self.assertLess(program.bar_height(), 40)

        self.shrink(program)

    def shrink(self, program):
        """Asks for less than there may be: the content keeps 720 x 560 below the menu bar."""
        smallest = (720, 560 + program.bar_height())
        self.screen.resize_window(program.window, 300, 200)
        wait_until(lambda: self.screen.geometry(program.window)[2:] == smallest,
                   f"the window to be {smallest}",
                   details=lambda: self.screen.geometry(program.window))

    def test_everything_stays_inside_the_smallest_window(self):
        program = self.open()
        self.shrink(program)

        self.assert_inside(program, IDLE_TEXTS[1:])
        self.drop_and_plan(program, self.make_roll(frames=1, slate_at=1))
        self.assert_inside(program, ["02 / SLATE DETECTED", "CANCEL", "EMBED METADATA  →"])

    def assert_inside(self, program, names):
        x, y, width, height = self.screen.geometry(program.window)
        for name in names:
            left, top, wide, high = program.find(name).bounds
            self.assertTrue(x <= left and left + wide <= x + width
                            and y <= top and top + high <= y + height,
                            f"{name!r} at {(left, top, wide, high)} of {(x, y, width, height)}")

    def test_window_can_grow(self):
        program = self.open()

        self.screen.resize_window(program.window, 1500, 1100)

        wait_until(lambda: self.screen.geometry(program.window)[2:] == (1500, 1100),
                   "the window to be 1500 x 1100")

    def test_modes_exclude_each_other(self):
        program = self.open()
        self.assertEqual(self.selected(program), ["BACKUP ORIGINALS"])

        for name in ["IN PLACE", "WRITE COPIES", "WRITE COPIES", "BACKUP ORIGINALS"]:
            program.press(name, RADIO_BUTTON)
            wait_until(lambda wanted=name: self.selected(program) == [wanted],
                       f"{name!r} alone to be selected")

    def test_switch_moves_there_and_back(self):
        program = self.open()
        switch = program.find("RECURSE INTO SUBFOLDERS", CHECK_BOX)
        self.assertFalse(switch.is_checked)

        program.toggle("RECURSE INTO SUBFOLDERS")
        self.assertTrue(switch.is_checked)
        program.toggle("RECURSE INTO SUBFOLDERS")
        self.assertFalse(switch.is_checked)

    def test_buttons_are_where_they_say_they_are(self):
        program = self.open()

        self.screen.click(*program.find("WRITE COPIES", RADIO_BUTTON).centre)
        wait_until(lambda: self.selected(program) == ["WRITE COPIES"], "the click to select")
        self.screen.click(*program.find("RECURSE INTO SUBFOLDERS", CHECK_BOX).centre)
        wait_until(lambda: program.find("RECURSE INTO SUBFOLDERS", CHECK_BOX).is_checked,
                   "the click to move the switch")
        self.screen.click(*program.find("CHOOSE FOLDER", BUTTON).centre)
        program.cancel_chooser("Ingest")

    def tab_to(self, program, name):
        """Moves the keyboard forward until it is on the item with this name."""
        self.screen.wait_for_focus(program.window)
        for _ in range(20):
            if self.wait_for_focus(program) == name:
                return
            self.screen.key("Tab")
        self.fail(f"the keyboard never came to {name!r}")

    def wait_for_focus(self, program):
        def focused():
            return [item.name for item in program.shown() if "focused" in item.states]

        return wait_until(focused, "anything to have the keyboard", details=program.texts)[0]

    def test_keyboard_alone_is_enough(self):
        roll = self.make_roll(frames=1, slate_at=1)
        program = self.open()

        self.tab_to(program, "BACKUP ORIGINALS")
        self.screen.key("Left")
        wait_until(lambda: self.selected(program) == ["IN PLACE"], "the key to select")
        self.drop_and_plan(program, roll)
        self.tab_to(program, "EMBED METADATA  →")
        self.screen.key("Return")
        program.wait_for("METADATA EMBEDDED", WORK_DEADLINE)
        self.tab_to(program, "INGEST ANOTHER  →")
        self.screen.key("space")
        program.wait_for("01 / INGEST A ROLL")

        self.assert_tagged([roll / "frame-01.jpg"])


if __name__ == "__main__":
    unittest.main()
