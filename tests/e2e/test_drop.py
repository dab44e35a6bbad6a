# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""What is dragged over the window, and what is dropped on it."""

import unittest

from harness.case import WindowCase
from harness.drag import Drag, file_drag, text_drag
from harness.waiting import WORK_DEADLINE, wait_until

NO_IMAGES = "Folder contains no JPG or TIFF images."

FILL, FILL_HOVERED = "#161514", "#1F1D1B"
BORDER, BORDER_HOVERED = "#44403C", "#EABF8D"
# From the window's edge to the drop zone's.
MARGIN = 40


class Drop(WindowCase):
    def wait_for_look(self, program, fill, border, width):
        """Waits until the drop zone has this fill and a border of this width."""
        x, y, _, height = self.screen.geometry(program.window)
        middle = y + height // 2

        def look():
            return [self.screen.colour(x + MARGIN + inside, middle) for inside in (0, 1, 2)]

        wanted = [border] * width + [fill] * (3 - width)
        wait_until(lambda: look() == wanted, f"the drop zone to look like {wanted}", details=look)

    def middle(self, program):
        x, y, width, height = self.screen.geometry(program.window)
        return x + width // 2, y + height // 2

    def test_zone_lights_up_under_a_drag_and_goes_out_after_it(self):
        roll = self.make_roll(frames=1, slate_at=0)
        program = self.open()
        self.wait_for_look(program, FILL, BORDER, 1)

        with file_drag(self.screen, roll) as drag:
            drag.pick_up()
            drag.move_to(*self.middle(program))
            self.assertTrue(drag.is_accepted)
            self.assertEqual(drag.proposed_action, "XdndActionCopy")
            self.wait_for_look(program, FILL_HOVERED, BORDER_HOVERED, 2)
            drag.leave()

        self.wait_for_look(program, FILL, BORDER, 1)
        self.assertIn("01 / INGEST A ROLL", program.texts())

    def test_drag_can_come_back(self):
        roll = self.make_roll(frames=1, slate_at=1)
        program = self.open()

        with file_drag(self.screen, roll) as drag:
            drag.pick_up()
            drag.move_to(*self.middle(program))
            drag.move_to(5, 5)
            self.wait_for_look(program, FILL, BORDER, 1)
            drag.move_to(*self.middle(program))
            self.wait_for_look(program, FILL_HOVERED, BORDER_HOVERED, 2)
            self.assertTrue(drag.drop())

        program.wait_for("02 / SLATE DETECTED", WORK_DEADLINE)

    def test_text_is_not_taken(self):
        program = self.open()

        with text_drag(self.screen, "file:///tmp") as drag:
            drag.pick_up()
            drag.move_to(*self.middle(program))
            self.assertFalse(drag.is_accepted)
            self.assertFalse(drag.drop())

        self.wait_for_look(program, FILL, BORDER, 1)
        self.assertIn("01 / INGEST A ROLL", program.texts())

    def test_nothing_is_taken_by_another_screen(self):
        roll = self.make_roll(frames=1, slate_at=1)
        program = self.open()
        self.drop_and_plan(program, roll)

        with file_drag(self.screen, roll) as drag:
            drag.pick_up()
            drag.move_to(*self.middle(program))
            self.assertFalse(drag.is_accepted)

        self.assertIn("02 / SLATE DETECTED", program.texts())

    def test_only_the_first_of_several_folders_is_scanned(self):
        first = self.make_roll("first", 1, 1)
        second = self.make_roll("second", 1, 1)
        program = self.open()

        self.drop(program, first, second)
        program.wait_for("02 / SLATE DETECTED", WORK_DEADLINE)
        self.assertIn("FIRST", program.texts())
        self.embed(program)

        self.assert_tagged([first / "frame-01.jpg"])
        self.assertFalse((second / "_originals").exists())

    def test_file_is_no_folder(self):
        roll = self.make_roll(frames=1, slate_at=1)
        program = self.open()

        self.drop(program, roll / "frame-01.jpg")

        self.wait_for_error(program, NO_IMAGES)
        program.press("TRY AGAIN")
        program.wait_for("01 / INGEST A ROLL")

    def test_empty_folder_can_be_followed_by_another(self):
        program = self.open()

        self.drop(program, self.desktop.folder("empty"))
        self.wait_for_error(program, NO_IMAGES)
        program.press("TRY AGAIN")
        program.wait_for("01 / INGEST A ROLL")

        self.drop_and_plan(program, self.make_roll(frames=1, slate_at=1))

    def test_folder_with_signs_that_urls_escape(self):
        roll = self.make_roll("50% off #2 – Größe?", 1, 1)
        program = self.open()

        self.drop_and_plan(program, roll)

        self.assertIn("50% OFF #2 – GRÖSSE?", program.texts())

    def test_folder_named_with_a_slash_at_its_end(self):
        roll = self.make_roll(frames=1, slate_at=1)
        program = self.open()

        with Drag(self.screen, {"text/uri-list": f"{roll.as_uri()}/\r\n".encode()}) as drag:
            drag.pick_up()
            drag.move_to(*self.middle(program))
            self.assertTrue(drag.drop())

        program.wait_for("02 / SLATE DETECTED", WORK_DEADLINE)
        self.assertIn("ROLL", program.texts())
        self.embed(program)
        self.assert_tagged([roll / "frame-01.jpg"])


if __name__ == "__main__":
    unittest.main()
