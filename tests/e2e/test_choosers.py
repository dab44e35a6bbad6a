# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""Folders and frames that are chosen instead of dropped."""

import unittest

from harness import rolls
from harness.case import WindowCase
from harness.waiting import WORK_DEADLINE, wait_until

INGEST = "Ingest"
USE = "Use as slate"


class Choosers(WindowCase):
    def wait_for_keyboard(self, program, confirm):
        """Waits until the keyboard writes into the chooser that is open."""
        program.find(confirm)
        chooser = wait_until(lambda: [window for window in self.screen.windows(program.pid)
                                      if window != program.window], "the chooser's window")[0]
        self.screen.wait_for_focus(chooser)

    def open_form(self, roll):
        """Opens the program and brings it to the form, without a photo."""
        program = self.open()
        self.drop_and_fail(program, roll)
        program.press("ENTER MANUALLY  →")
        program.wait_for("NO SLATE PHOTO ATTACHED")
        return program

    def test_chosen_folder_is_scanned(self):
        roll = self.make_roll(frames=2, slate_at=1)
        program = self.open()

        program.press("CHOOSE FOLDER")
        program.choose(INGEST, roll)

        program.wait_for("02 / SLATE DETECTED", WORK_DEADLINE)
        self.embed(program)
        self.assert_tagged(rolls.frames(roll))

    def test_cancelled_folder_chooser_changes_nothing(self):
        program = self.open()
        before = program.texts()

        program.press("CHOOSE FOLDER")
        program.cancel_chooser(INGEST)

        self.assertEqual(program.texts(), before)

    def test_folder_is_chosen_on_the_keyboard(self):
        roll = self.make_roll("roll 12", 1, 1)
        program = self.open()

        program.press("CHOOSE FOLDER")
        self.wait_for_keyboard(program, INGEST)
        self.screen.type(str(roll))
        self.screen.key("Return")

        program.wait_for("02 / SLATE DETECTED", WORK_DEADLINE)
        self.assertIn("ROLL 12", program.texts())

    def test_folder_is_chosen_from_the_list(self):
        self.make_roll("roll 12", 1, 1).rename(self.home / "roll 12")
        program = self.open()

        program.press("CHOOSE FOLDER")
        self.screen.click(*program.find("roll 12", "table cell").centre)
        program.press(INGEST)

        program.wait_for("02 / SLATE DETECTED", WORK_DEADLINE)

    def test_folder_chooser_starts_among_the_pictures(self):
        (self.home / "Pictures" / "roll 7").mkdir(parents=True)
        program = self.open()

        program.press("CHOOSE FOLDER")

        program.find("roll 7", "table cell")
        program.cancel_chooser(INGEST)

    def test_folder_that_is_not_there_cannot_be_confirmed(self):
        program = self.open()
        program.press("CHOOSE FOLDER")
        self.wait_for_keyboard(program, INGEST)

        self.screen.type(str(self.place / "nowhere"))
        wait_until(lambda: not program.find(INGEST).is_enabled, "the button to be disabled",
                   details=program.texts)
        program.cancel_chooser(INGEST)

        self.assertIn("01 / INGEST A ROLL", program.texts())

    def test_escape_closes_every_chooser(self):
        roll = self.make_roll(frames=1, slate_at=0)
        program = self.open()

        def escape(button, confirm):
            before = program.texts()
            program.press(button)
            self.wait_for_keyboard(program, confirm)
            self.screen.key("Escape")
            wait_until(lambda: program.texts() == before, f"{button!r} to be left without a trace",
                       details=program.texts)

        escape("CHOOSE FOLDER", INGEST)
        self.drop_and_fail(program, roll)
        escape("PICK SLATE FRAME", USE)
        program.press("ENTER MANUALLY  →")
        escape("ATTACH SLATE PHOTO", USE)
        program.press("ATTACH SLATE PHOTO")
        program.choose(USE, roll / "frame-01.jpg")
        program.wait_until_gone("NO SLATE PHOTO ATTACHED")
        escape("CHANGE", USE)
        self.assertIn("frame-01.jpg", program.texts())

    def test_keys_quit_from_the_chooser(self):
        program = self.open()
        program.press("CHOOSE FOLDER")
        self.wait_for_keyboard(program, INGEST)

        self.screen.key("ctrl+q")

        self.assertEqual(program.wait_for_end(), 0)

    def test_chooser_opens_once(self):
        program = self.open()
        program.press("CHOOSE FOLDER")
        self.wait_for_keyboard(program, INGEST)

        program.press("CHOOSE FOLDER")

        program.cancel_chooser(INGEST)
        self.assertEqual(self.screen.windows(program.pid), [program.window])

    def test_picked_slate_frame_is_read(self):
        roll = self.make_roll(frames=2, slate_at=0)
        elsewhere = self.make_roll("elsewhere", 1, 1)
        program = self.open()
        self.drop_and_fail(program, roll)

        program.press("PICK SLATE FRAME")
        program.choose(USE, elsewhere / "frame-01.jpg")

        program.wait_for("02 / SLATE DETECTED", WORK_DEADLINE)
        self.assertIn("2", program.texts())
        self.embed(program)
        self.assert_tagged(rolls.frames(roll))
        self.assertFalse((elsewhere / "_originals").exists())

    def test_slate_chooser_starts_in_the_folder(self):
        roll = self.make_roll(frames=2, slate_at=0)
        program = self.open()
        self.drop_and_fail(program, roll)

        program.press("PICK SLATE FRAME")

        program.find("frame-01.jpg")
        program.cancel_chooser(USE)

    def test_cancelled_slate_chooser_leaves_the_screen(self):
        program = self.open()
        self.drop_and_fail(program, self.make_roll(frames=2, slate_at=0))
        before = program.texts()

        program.press("PICK SLATE FRAME")
        program.cancel_chooser(USE)

        self.assertEqual(program.texts(), before)

    def test_picked_frame_without_slate_becomes_the_reference(self):
        roll = self.make_roll(frames=2, slate_at=0)
        program = self.open()
        self.drop_and_fail(program, roll)

        program.press("PICK SLATE FRAME")
        program.choose(USE, roll / "frame-02.jpg")

        program.wait_for("02 / MANUAL ENTRY", WORK_DEADLINE)
        program.wait_for("frame-02.jpg")
        self.assertIn("CHANGE", program.texts())
        self.assertNotIn("NO SLATE PHOTO ATTACHED", program.texts())

    def test_reference_photo_is_attached_and_changed(self):
        roll = self.make_roll(frames=2, slate_at=0)
        program = self.open()
        self.drop_and_fail(program, roll)
        program.press("ENTER MANUALLY  →")

        program.press("ATTACH SLATE PHOTO")
        program.choose(USE, roll / "frame-01.jpg")
        program.wait_for("frame-01.jpg")
        program.wait_until_gone("NO SLATE PHOTO ATTACHED")

        program.press("CHANGE")
        program.choose(USE, roll / "frame-02.jpg")
        program.wait_for("frame-02.jpg")

        self.assertNotIn("frame-01.jpg", program.texts())

    def test_photo_choosers_start_in_the_folder_and_can_be_cancelled(self):
        roll = self.make_roll(frames=2, slate_at=0)
        program = self.open_form(roll)
        before = program.texts()

        program.press("ATTACH SLATE PHOTO")
        program.find("frame-02.jpg", "table cell")
        program.cancel_chooser(USE)
        self.assertEqual(program.texts(), before)

        program.press("ATTACH SLATE PHOTO")
        program.choose(USE, roll / "frame-01.jpg")
        program.wait_until_gone("NO SLATE PHOTO ATTACHED")
        program.press("CHANGE")
        program.find("frame-02.jpg", "table cell")
        program.cancel_chooser(USE)
        self.assertIn("frame-01.jpg", program.texts())

    def test_pictures_are_shown_and_other_files_on_request(self):
        roll = self.make_roll(frames=1, slate_at=0)
        (roll / "SCAN.TIFF").touch()
        (roll / "notes.txt").touch()
        program = self.open_form(roll)

        program.press("ATTACH SLATE PHOTO")

        program.find("SCAN.TIFF", "table cell")
        self.assertIn("frame-01.jpg", program.texts())
        self.assertNotIn("notes.txt", program.texts())
        self.wait_for_keyboard(program, USE)
        self.screen.click(*program.find("Pictures", "combo box").centre)
        self.screen.key("End", "Return")
        program.find("notes.txt", "table cell")
        program.cancel_chooser(USE)

    def test_photo_that_is_no_picture_keeps_its_name(self):
        roll = self.make_roll(frames=1, slate_at=0)
        (roll / "torn.jpg").write_bytes(b"\xff\xd8\xff\xe0 torn")
        program = self.open(QT_LOGGING_RULES="qt.gui.imageio.jpeg=false")
        self.drop_and_fail(program, roll)
        program.press("ENTER MANUALLY  →")

        program.press("ATTACH SLATE PHOTO")
        program.choose(USE, roll / "torn.jpg")

        program.wait_for("torn.jpg")
        program.wait_for("NO SLATE PHOTO ATTACHED")
        program.wait_for("CHANGE")


if __name__ == "__main__":
    unittest.main()
