# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""Folders and frames that are chosen instead of dropped."""

import unittest

from harness import rolls
from harness.case import WindowCase
from harness.waiting import WORK_DEADLINE

INGEST = "Ingest"
USE = "Use as slate"


class Choosers(WindowCase):
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

    def test_photo_that_is_no_picture_keeps_its_name(self):
        roll = self.make_roll(frames=1, slate_at=0)
        (roll / "torn.jpg").write_bytes(b"\xff\xd8\xff\xe0 torn")
        program = self.open()
        self.drop_and_fail(program, roll)
        program.press("ENTER MANUALLY  →")

        program.press("ATTACH SLATE PHOTO")
        program.choose(USE, roll / "torn.jpg")

        program.wait_for("torn.jpg")
        program.wait_for("NO SLATE PHOTO ATTACHED")
        program.wait_for("CHANGE")


if __name__ == "__main__":
    unittest.main()
