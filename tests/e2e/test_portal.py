# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""The choosers that a desktop offers to every program, and what happens where they fail."""

import os
import unittest

from harness.bus import Portal
from harness.case import WindowCase
from harness.waiting import WORK_DEADLINE, wait_until

INGEST = "Ingest"
USE = "Use as slate"
# Makes Qt's own dialogs go through the portal, too.
THEME = {"QT_QPA_PLATFORMTHEME": "xdgdesktopportal"}


class PortalChoosers(WindowCase):
    def open_failed(self, roll):
        """Opens the program and brings it to where a slate frame can be picked."""
        program = self.open()
        self.drop_and_fail(program, roll)
        return program

    def test_folder_is_asked_for_and_scanned(self):
        roll = self.make_roll("50% off #2 – Größe?", 1, 1)
        with Portal(self.desktop) as portal:
            program = self.open()

            program.press("CHOOSE FOLDER")

            parent, title, options = portal.wait_for_call()
            self.assertEqual(parent, f"x11:{program.window:x}")
            self.assertEqual(title, "Quillmark")
            self.assertEqual({name: options[name] for name in options if name != "handle_token"},
                             {"accept_label": INGEST, "directory": True, "modal": True,
                              "multiple": False})
            self.assertEqual([item.role for item in program.tree.children], ["frame"])
            portal.confirm(roll.as_uri())
            program.wait_for("02 / SLATE DETECTED", WORK_DEADLINE)
            self.assertIn("50% OFF #2 – GRÖSSE?", program.texts())

    def test_folder_whose_name_is_not_utf8(self):
        roll = self.make_roll("named-later", 1, 1)
        odd = roll.rename(os.fsdecode(os.fsencode(roll.parent) + b"/caf\xe9"))
        with Portal(self.desktop) as portal:
            program = self.open()
            program.press("CHOOSE FOLDER")

            portal.confirm(odd.as_uri())

            program.wait_for("02 / SLATE DETECTED", WORK_DEADLINE)

    def test_slate_frame_is_asked_for_in_the_folder(self):
        roll = self.make_roll("roll 3 – é", 2, 0)
        elsewhere = self.make_roll("elsewhere", 1, 1)
        with Portal(self.desktop) as portal:
            program = self.open_failed(roll)

            program.press("PICK SLATE FRAME")

            _, _, options = portal.wait_for_call()
            self.assertEqual(options["accept_label"], USE)
            self.assertFalse(options["directory"])
            self.assertFalse(options["multiple"])
            self.assertEqual(bytes(options["current_folder"]), os.fsencode(roll) + b"\0")
            names = {title: {pattern for _, pattern in rules}
                     for title, rules in options["filters"]}
            self.assertLessEqual({"*.jpg", "*.JPG", "*.tif", "*.TIFF"}, names["Pictures"])
            self.assertEqual(names["All files"], {"*"})
            portal.confirm((elsewhere / "frame-01.jpg").as_uri())
            program.wait_for("02 / SLATE DETECTED", WORK_DEADLINE)

    def test_reference_photo_is_attached_and_changed(self):
        roll = self.make_roll(frames=2, slate_at=0)
        with Portal(self.desktop) as portal:
            program = self.open_failed(roll)
            program.press("ENTER MANUALLY  →")

            program.press("ATTACH SLATE PHOTO")
            portal.confirm((roll / "frame-01.jpg").as_uri())
            program.wait_for("frame-01.jpg")
            program.press("CHANGE")
            self.assertEqual(portal.wait_for_call(1)[2]["accept_label"], USE)
            portal.cancel()
            program.press("CHANGE")
            portal.wait_for_call(2)
            self.assertIn("frame-01.jpg", program.texts())
            portal.confirm((roll / "frame-02.jpg").as_uri())
            program.wait_for("frame-02.jpg")

    def test_cancelling_changes_nothing(self):
        with Portal(self.desktop) as portal:
            program = self.open()
            before = program.texts()

            program.press("CHOOSE FOLDER")
            portal.wait_for_call()
            portal.cancel()

            # The chooser is over when it can be opened again.
            wait_until(lambda: program.press("CHOOSE FOLDER") or portal.calls[1:],
                       "another chooser")
            self.assertEqual(program.texts(), before)

    def test_chooser_opens_once(self):
        with Portal(self.desktop) as portal:
            program = self.open()

            for _ in range(3):
                program.press("CHOOSE FOLDER")
            portal.wait_for_call()
            program.toggle("RECURSE INTO SUBFOLDERS")

            self.assertEqual(len(portal.calls), 1)

    def test_chooser_goes_away_with_its_question(self):
        roll = self.make_roll(frames=1, slate_at=1)
        with Portal(self.desktop) as portal:
            program = self.open()
            program.press("CHOOSE FOLDER")
            portal.wait_for_call()

            self.drop_and_plan(program, roll)

            wait_until(lambda: portal.closed == 1, "the chooser to be closed")

    # --- without a portal that works -------------------------------------------------

    def choose_in_built_in(self, program):
        """Chooses a roll in the program's own chooser, which is to be the one that opens."""
        roll = self.make_roll(frames=1, slate_at=1)
        program.choose(INGEST, roll)
        program.wait_for("02 / SLATE DETECTED", WORK_DEADLINE)

    def test_failing_portal_is_made_up_for(self):
        for environment in ({}, THEME):
            with self.subTest(environment), Portal(self.desktop, fails=True) as portal:
                program = self.open(**environment)

                program.press("CHOOSE FOLDER")

                portal.wait_for_call()
                self.choose_in_built_in(program)

    def test_hanging_portal_is_made_up_for(self):
        with Portal(self.desktop, hangs=True) as portal:
            program = self.open()

            program.press("CHOOSE FOLDER")

            self.choose_in_built_in(program)
            wait_until(lambda: portal.closed == 1, "the chooser to be called off")

    def test_failing_backend_is_made_up_for(self):
        with Portal(self.desktop) as portal:
            program = self.open()
            program.press("CHOOSE FOLDER")

            portal.respond(2, {})

            self.choose_in_built_in(program)

    def test_portal_that_ends_is_made_up_for(self):
        with Portal(self.desktop) as portal:
            program = self.open()
            program.press("CHOOSE FOLDER")
            portal.wait_for_call()

            portal.stop()

            self.choose_in_built_in(program)

    def test_portal_without_folders_is_not_asked_for_one(self):
        with Portal(self.desktop, version=2) as portal:
            program = self.open()

            program.press("CHOOSE FOLDER")

            self.choose_in_built_in(program)
            self.assertEqual(portal.calls, [])

    def test_missing_portal_is_made_up_for(self):
        program = self.open(**THEME)

        program.press("CHOOSE FOLDER")

        self.choose_in_built_in(program)

    def test_portal_of_the_platform_theme_is_asked_once(self):
        roll = self.make_roll(frames=1, slate_at=1)
        with Portal(self.desktop) as portal:
            program = self.open(**THEME)
            program.press("CHOOSE FOLDER")

            portal.confirm(roll.as_uri())

            program.wait_for("02 / SLATE DETECTED", WORK_DEADLINE)
            self.assertEqual(len(portal.calls), 1)


if __name__ == "__main__":
    unittest.main()
