# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""What somebody hears who does not see the window."""

import unittest

from harness import rolls
from harness.accessible import BUTTON, LABEL, PROGRESS_BAR
from harness.case import WindowCase
from harness.events import Events
from harness.install import HeldExiftool, install
from harness.waiting import WORK_DEADLINE, wait_until

FOCUSED = "object:state-changed:focused"
CHECKED = "object:state-changed:checked"
ENABLED = "object:state-changed:enabled"
SELECTED = "object:text-selection-changed"
EMPTY = "Folder contains no JPG or TIFF images."
EMBED = "EMBED METADATA  →"


class ScreenReader(WindowCase):
    def show_error(self):
        program = self.open()
        self.drop(program, self.desktop.folder("empty"))
        program.wait_for("INGESTION FAILED")
        self.screen.wait_for_focus(program.window)
        return program

    def test_each_screen_is_announced(self):
        exiftool = HeldExiftool(self.desktop.folder("held"))
        program = self.open(install(self.desktop.folder("prefix"), exiftool.script()))
        self.assertIn("DROP A FOLDER\nOF SCANS", program.wait_for_focus("CHOOSE FOLDER").description)
        with Events(program, FOCUSED) as events:
            self.drop_and_plan(program, self.make_roll("roll 12", frames=1, slate_at=1))
            events.wait_for(FOCUSED, EMBED, 1)
            plan = program.wait_for_focus(EMBED)
            self.assertEqual(plan.description, "02 / SLATE DETECTED\nROLL 12\nframe-01.jpg")
            program.press(EMBED)
            exiftool.wait_until_started()
            events.wait_for(FOCUSED, "EMBEDDING ROLL 12", 1)
            writing = program.wait_for_focus("EMBEDDING ROLL 12")
            self.assertEqual((writing.role, writing.description),
                             (PROGRESS_BAR, "exiftool · 1 image(s)"))
            exiftool.let_go()
            program.wait_for("METADATA EMBEDDED", WORK_DEADLINE)
            events.wait_for(FOCUSED, "INGEST ANOTHER  →", 1)
            self.assertEqual(program.wait_for_focus("INGEST ANOTHER  →").description,
                             "03 / DONE\nMETADATA EMBEDDED")

    def test_failures_are_announced_with_their_message(self):
        program = self.show_error()

        description = program.wait_for_focus("TRY AGAIN").description

        self.assertEqual(description, f"ERROR\nINGESTION FAILED\n{EMPTY}")

    def test_failed_detection_and_form_are_announced(self):
        program = self.open()
        self.drop_and_fail(program, self.make_roll("roll 12", frames=1, slate_at=0))
        description = program.wait_for_focus("ENTER MANUALLY  →").description
        self.assertEqual(description, "02 / SLATE NOT FOUND\nNO READABLE SLATE\nIN ROLL 12")
        program.press("ENTER MANUALLY  →")
        self.assertEqual(program.wait_for_focus("MAKE *").description,
                         "02 / MANUAL ENTRY\nROLL 12")

    def test_changes_of_state_are_told(self):
        program = self.open()
        with Events(program, CHECKED, ENABLED) as events:
            program.toggle("RECURSE INTO SUBFOLDERS")
            events.wait_for(CHECKED, "RECURSE INTO SUBFOLDERS", 1)
            program.press("IN PLACE", "radio button")
            events.wait_for(CHECKED, "BACKUP ORIGINALS", 0)
            events.wait_for(CHECKED, "IN PLACE", 1)
            self.drop_and_fail(program, self.make_roll(frames=1, slate_at=0))
            program.press("ENTER MANUALLY  →")
            for name in ["MAKE *", "MODEL *", "BRAND *", "STOCK *"]:
                program.fill(name, "x")
            program.fill("ISO *", "400")
            events.wait_for(ENABLED, EMBED, 1)
            program.fill("ISO *", "x")
            events.wait_for(ENABLED, EMBED, 0)

    def test_texts_are_no_stops_of_the_keyboard(self):
        program = self.open()
        labels = [item for item in program.shown() if item.role == LABEL]
        self.assertEqual([item for item in labels if "focusable" in item.states], [])
        self.assertGreater(len(labels), 3)

    def test_what_is_scrolled_away_does_not_claim_to_be_seen(self):
        program = self.open()
        self.screen.resize_window(program.window, 720, 560)
        self.drop_and_fail(program, self.make_roll(frames=1, slate_at=0))
        program.press("ENTER MANUALLY  →")
        first = program.field("MAKE *")
        last = program.field("©")
        self.assertTrue(first.is_shown)
        self.assertFalse(last.is_shown)

        last.focus()

        wait_until(lambda: last.is_shown and not first.is_shown, "the form to scroll")
        cancel = program.find("CANCEL", BUTTON)
        self.assertLess(last.bounds[1] + last.bounds[3], cancel.bounds[1])

    def test_texts_stay_readable_where_they_are_scrolled_away(self):
        program = self.open()
        self.drop_and_plan(program, self.make_roll(frames=1, slate_at=1))
        last = program.find(rolls.PAYLOAD["session_id"])
        cancel = program.find("CANCEL", BUTTON)
        self.assertGreater(last.bounds[1] + last.bounds[3], cancel.bounds[1] - 24)

    def test_error_is_read_in_parts_and_selected(self):
        program = self.show_error()
        message = program.find(EMPTY)
        self.assertEqual(message.content, EMPTY)
        with Events(program, SELECTED) as events:
            message.select_text(7, 15)
            events.wait_for(SELECTED, EMPTY, 0)
        self.assertEqual(message.selected_text, "contains")

    def paste_into_form(self, program):
        """What the clipboard holds, as the form's notes take it."""
        program.press("TRY AGAIN")
        program.wait_for("CHOOSE FOLDER")
        self.drop_and_fail(program, self.make_roll(frames=1, slate_at=0))
        program.press("ENTER MANUALLY  →")
        notes = program.field("NOTES")
        notes.focus()
        program.wait_for_focus("NOTES")
        self.screen.wait_for_focus(program.window)
        self.screen.key("ctrl+v")
        return wait_until(lambda: notes.content, "the clipboard to be pasted")

    def test_error_is_copied_with_the_keyboard(self):
        program = self.show_error()
        program.wait_for_focus("TRY AGAIN")
        self.screen.key("shift+Tab")
        program.wait_for_focus(EMPTY)

        self.screen.key("ctrl+a", "ctrl+c")

        self.assertEqual(self.paste_into_form(program), EMPTY)

    def test_a_part_of_the_error_is_copied_with_the_keyboard(self):
        program = self.show_error()
        program.wait_for_focus("TRY AGAIN")
        self.screen.key("shift+Tab")
        message = program.wait_for_focus(EMPTY)

        self.screen.key(*["shift+Right"] * 6)
        self.assertEqual(message.selected_text, "Folder")
        self.screen.key("ctrl+c")

        self.assertEqual(self.paste_into_form(program), "Folder")

    def test_error_is_selected_with_the_pointer(self):
        program = self.show_error()
        message = program.find(EMPTY)
        left, top, width, height = message.bounds
        middle = top + height // 2

        self.screen.move_pointer(left + 2, middle)
        self.screen.press_button()
        self.screen.move_pointer(left + width // 2, middle)
        self.screen.move_pointer(left + width - 2, middle)
        self.screen.release_button()
        wait_until(lambda: message.selected_text == EMPTY, "the drag to select")

        self.screen.key("ctrl+c")
        self.assertEqual(self.paste_into_form(program), EMPTY)


if __name__ == "__main__":
    unittest.main()
