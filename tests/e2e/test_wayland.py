# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""The program under a Wayland compositor.

The compositor has no screen and no input devices: everything is done through the accessibility
tree. What takes a pointer or a keyboard (drag and drop, shortcuts) is tested under X alone.
"""

import unittest

from harness import rolls, tags
from harness.accessible import BUTTON, RADIO_BUTTON
from harness.bus import Portal
from harness.case import WindowCase
from harness.program import Program
from harness.wayland import WaylandDesktop
from harness.waiting import WORK_DEADLINE, wait_until

REQUIRED = {"MAKE *": "Kestrel", "MODEL *": "K2", "BRAND *": "Vela", "STOCK *": "Nova 400",
            "ISO *": "400"}


class Wayland(WindowCase):
    desktop_kind = WaylandDesktop

    def choose_folder(self, program, folder):
        program.press("CHOOSE FOLDER")
        program.choose("Ingest", folder)

    def test_chosen_roll_is_tagged(self):
        roll = self.make_roll("Größe 12", 3, 2)
        program = self.open()
        self.assertIn("DROP A FOLDER\nOF SCANS", program.texts())
        program.press("WRITE COPIES", RADIO_BUTTON)
        self.choose_folder(program, roll)
        program.wait_for("02 / SLATE DETECTED", WORK_DEADLINE)
        self.assertIn("GRÖSSE 12", program.texts())

        self.embed(program)

        self.assert_tagged(rolls.frames(roll / "_tagged"))
        program.press("INGEST ANOTHER  →")
        program.wait_for("01 / INGEST A ROLL")

    def test_cancelled_chooser_changes_nothing(self):
        program = self.open()
        before = program.texts()

        program.press("CHOOSE FOLDER")
        program.cancel_chooser("Ingest")

        self.assertEqual(program.texts(), before)

    def test_chooser_of_the_desktop_is_a_window_of_its_own(self):
        roll = self.make_roll(frames=1, slate_at=1)
        with Portal(self.desktop) as portal:
            program = self.open()
            program.press("CHOOSE FOLDER")

            self.assertEqual(portal.wait_for_call()[0], "")
            portal.confirm(roll.as_uri())

            program.wait_for("02 / SLATE DETECTED", WORK_DEADLINE)

    def test_window_names_its_program(self):
        program = Program(self.desktop, environment={"HOME": str(self.home),
                                                     "WAYLAND_DEBUG": "client"})
        self.addCleanup(program.stop)

        self.assertIn('set_app_id("co.larkhollow.quillmark")', program.output)
        self.assertIn('set_title("Quillmark")', program.output)

    def test_typed_form_is_embedded(self):
        roll = self.make_roll(frames=2, slate_at=0)
        program = self.open()
        self.choose_folder(program, roll)
        program.wait_for("02 / SLATE NOT FOUND", WORK_DEADLINE)
        program.press("ENTER MANUALLY  →")
        program.wait_for("02 / MANUAL ENTRY")

        program.press("ATTACH SLATE PHOTO")
        program.choose("Use as slate", roll / "frame-01.jpg")
        program.wait_until_gone("NO SLATE PHOTO ATTACHED")
        for name, text in REQUIRED.items():
            program.fill(name, text)
        wait_until(lambda: program.find("EMBED METADATA  →", BUTTON).is_enabled,
                   "the form to be complete")
        self.embed(program)

        for found in tags.read_tags(rolls.frames(roll)):
            self.assertEqual(found["IFD0:Model"], "K2")

    def test_failure_can_be_tried_again(self):
        program = self.open()
        self.choose_folder(program, self.desktop.folder("empty"))
        self.wait_for_error(program, "Folder contains no JPG or TIFF images.")

        program.press("TRY AGAIN")

        program.wait_for("01 / INGEST A ROLL")
        self.choose_folder(program, self.make_roll(frames=1, slate_at=1))
        program.wait_for("02 / SLATE DETECTED", WORK_DEADLINE)


if __name__ == "__main__":
    unittest.main()
