# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""What is dragged over the window, and what is dropped on it."""

import os
import unittest

from harness.case import WindowCase
from harness.drag import Drag, file_drag
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

    def drop_list(self, program, uri_list):
        """Drops a list of locations, byte for byte, on the middle of the window."""
        with Drag(self.screen, {"text/uri-list": uri_list}) as drag:
            drag.pick_up()
            drag.move_to(*self.middle(program))
            self.assertTrue(drag.drop())

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

    def refused(self, program, offers):
        """Checks that something is dragged over the zone and let go there without a trace."""
        with Drag(self.screen, offers) as drag:
            drag.pick_up()
            drag.move_to(*self.middle(program))
            self.assertFalse(drag.is_accepted)
            self.wait_for_look(program, FILL, BORDER, 1)
            self.assertFalse(drag.drop())
        self.wait_for_look(program, FILL, BORDER, 1)
        self.assertIn("01 / INGEST A ROLL", program.texts())

    def test_what_is_no_file_is_refused(self):
        program = self.open()
        for offers in (
                {"UTF8_STRING": b"file:///tmp", "text/plain": b"file:///tmp"},
                {"text/html": b"<img src='file:///tmp'>", "text/plain": b"file:///tmp"},
                {"image/png": b"\x89PNG\r\n\x1a\n", "image/jpeg": b"\xff\xd8\xff\xe0"},
                {"text/uri-list": b"https://example.org/roll\r\n"},
                {"text/uri-list": b"https://example.org/roll\r\nfile:///tmp\r\n"},
                {"text/uri-list": b"file://elsewhere/tmp\r\n"},
                {"text/uri-list": b"# nothing\r\n"},
                {"text/uri-list": b"\r\n"},
                {"text/uri-list": b""},
                {"application/x-odd": b"\0"}):
            with self.subTest(offers):
                self.refused(program, offers)

        # It has not lost its taste for files over that.
        self.drop_and_plan(program, self.make_roll(frames=1, slate_at=1))

    def test_lists_as_all_kinds_of_file_browsers_write_them(self):
        program = self.open()
        roll = self.make_roll("roll 50% – ø", 1, 1)
        uri = roll.as_uri()
        path = uri.removeprefix("file://")
        for text in (f"{uri}\r\n", f"{uri}\n", uri, f"{uri}\r\n\0",
                     f"# dragged: from here\r\n{uri}\r\n", f"#\n# roll\n{uri}\n",
                     f"file://localhost{path}\r\n", f"file:{path}\r\n", f"{uri}/\r\n",
                     f"FILE://{path}\r\n", f"{uri.replace('%20', ' ').replace('%C3%B8', 'ø')}\n"):
            with self.subTest(text):
                self.drop_list(program, text.encode())
                program.wait_for("02 / SLATE DETECTED", WORK_DEADLINE)
                self.assertIn("ROLL 50% – Ø", program.texts())
                program.press("CANCEL")
                program.wait_for("01 / INGEST A ROLL")

    def test_folder_whose_name_is_not_utf8(self):
        roll = self.make_roll("named-later", 1, 1)
        odd = roll.rename(os.fsdecode(os.fsencode(roll.parent) + b"/caf\xe9 #1"))
        program = self.open()

        self.drop_and_plan(program, odd)
        self.embed(program)

        self.assertTrue((odd / "_originals").is_dir())

    def test_drag_that_is_called_off_leaves_no_trace(self):
        roll = self.make_roll(frames=1, slate_at=1)
        program = self.open()

        with file_drag(self.screen, roll) as drag:
            drag.pick_up()
            drag.move_to(*self.middle(program))
            self.wait_for_look(program, FILL_HOVERED, BORDER_HOVERED, 2)
            drag.leave()
        self.wait_for_look(program, FILL, BORDER, 1)

        self.drop_and_plan(program, roll)

    def test_nothing_is_taken_behind_an_open_chooser(self):
        roll = self.make_roll(frames=1, slate_at=1)
        program = self.open()
        program.press("CHOOSE FOLDER")
        program.find("Ingest")
        x, y, _, _ = self.screen.geometry(program.window)

        with file_drag(self.screen, roll) as drag:
            drag.pick_up()
            drag.move_to(x + MARGIN + 10, y + MARGIN + 10)
            self.assertFalse(drag.is_accepted)
            self.wait_for_look(program, FILL, BORDER, 1)
            self.assertFalse(drag.drop())

        self.assertIn("01 / INGEST A ROLL", program.texts())
        program.cancel_chooser("Ingest")
        self.drop_and_plan(program, roll)

    def test_nothing_is_taken_by_another_screen(self):
        roll = self.make_roll(frames=1, slate_at=1)
        blank = self.make_roll("blank", 1, 0)
        program = self.open()

        def refuse(step):
            with self.subTest(step), file_drag(self.screen, roll) as drag:
                drag.pick_up()
                drag.move_to(*self.middle(program))
                self.assertFalse(drag.is_accepted)
                self.assertFalse(drag.drop())
                self.assertIn(step, program.texts())

        self.drop_and_plan(program, roll)
        refuse("02 / SLATE DETECTED")
        self.embed(program)
        refuse("03 / DONE")
        program.press("INGEST ANOTHER  →")
        program.wait_for("01 / INGEST A ROLL")
        self.drop_and_fail(program, blank)
        refuse("02 / SLATE NOT FOUND")
        program.press("ENTER MANUALLY  →")
        program.wait_for("02 / MANUAL ENTRY")
        refuse("02 / MANUAL ENTRY")

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

        self.drop_list(program, f"{roll.as_uri()}/\r\n".encode())

        program.wait_for("02 / SLATE DETECTED", WORK_DEADLINE)
        self.assertIn("ROLL", program.texts())
        self.embed(program)
        self.assert_tagged([roll / "frame-01.jpg"])


if __name__ == "__main__":
    unittest.main()
