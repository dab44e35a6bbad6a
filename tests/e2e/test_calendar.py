# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""The shooting date, chosen in a calendar."""

import unittest

from harness import rolls, tags
from harness.accessible import BUTTON
from harness.case import WindowCase
from harness.events import Events
from harness.waiting import WORK_DEADLINE, wait_until

CELL = "table cell"
TABLE = "table"
OPEN = "Choose a date"
EMBED = "EMBED METADATA  →"
DESCRIBED = "object:property-change:accessible-description"
REQUIRED = {"MAKE *": "Kestrel", "MODEL *": "K2", "BRAND *": "Vela", "STOCK *": "Nova 400",
            "ISO *": "400"}


class Calendar(WindowCase):
    def setUp(self):
        super().setUp()
        self.roll = self.make_roll(frames=2, slate_at=0)

    def open_form(self):
        """The form with all that it needs, and the shooting date of 1 May 2026."""
        # Names of days and months are the locale's.
        program = self.open(LC_ALL="C.UTF-8")
        self.drop_and_fail(program, self.roll)
        program.press("ENTER MANUALLY  →")
        for name, text in REQUIRED.items():
            program.fill(name, text)
        # The switch has to be seen before it is moved.
        program.field("ROLL NAME").focus()
        program.toggle("DATE")
        program.fill("DATE", "2026-05-01")
        return program

    def day(self, program, name):
        return program.find(name, CELL)

    def wait_until_focused(self, program, name):
        wait_until(lambda: "focused" in self.day(program, name).states,
                   f"the keyboard to come to {name!r}")

    def written_date(self):
        found = tags.read_tags(rolls.frames(self.roll))
        self.assertEqual(len(found), 2)
        self.assertEqual(found[0]["XMP-quillmark:Date"], found[1]["XMP-quillmark:Date"])
        return found[0]["XMP-quillmark:Date"]

    def test_day_chosen_through_the_accessibility_tree_is_embedded(self):
        program = self.open_form()

        program.press(OPEN)
        program.find("May 2026", TABLE)
        first = self.day(program, "Friday, 1 May 2026")
        self.wait_until_focused(program, first.name)
        self.assertEqual([item.name for item in program.shown() if "focused" in item.states],
                         [first.name])
        self.assertIn("selected", first.states)
        other = self.day(program, "Wednesday, 20 May 2026")
        self.assertIn("selectable", other.states)
        self.assertNotIn("selected", other.states)
        other.press()

        program.wait_until_gone("May 2026")
        field = program.field("DATE")
        self.assertEqual(field.content, "2026-05-20")
        wait_until(lambda: "focused" in field.states, "the keyboard to come back")
        self.embed(program)
        self.assertEqual(self.written_date(), "2026-05-20")

    def test_what_is_no_day_is_not_embedded(self):
        program = self.open_form()
        field = program.field("DATE")
        wrong = "Type a day as yyyy-MM-dd"

        with Events(program, DESCRIBED) as events:
            program.type_into("DATE", "2026-5-1")
            events.wait_for(DESCRIBED, "DATE", 0)
            self.assertEqual(field.description, wrong)
            events.forget()
            self.screen.click(*program.find(EMBED, BUTTON).centre)
            wait_until(lambda: field.selected_text == "2026-5-1", "the day to be asked for again")
            program.fill("DATE", "2026-13-45")
            program.field("MAKE *").focus()
            wait_until(lambda: field.content == "2026-05-01", "the last day to come back")
            program.fill("DATE", "2026-13-45")
            program.press(EMBED)
            program.wait_for_focus("DATE")
            wait_until(lambda: field.selected_text == "2026-13-45", "the day to be asked for again")
            self.assertTrue(field.is_shown)
            self.assertFalse((self.roll / "_originals").exists())
            self.assertNotIn("XMP-quillmark:Date", tags.read_tags(rolls.frames(self.roll))[0])
            events.forget()
            self.screen.type("2026-05-02")
            events.wait_for(DESCRIBED, "DATE", 0)
            self.assertEqual(field.description, "")

        self.screen.click(*program.find(EMBED, BUTTON).centre)
        program.wait_for("METADATA EMBEDDED", WORK_DEADLINE)
        self.assertEqual(self.written_date(), "2026-05-02")

    def test_day_chosen_on_the_keyboard_is_embedded(self):
        program = self.open_form()
        program.field("DATE").focus()

        self.screen.key("F4")
        self.wait_until_focused(program, "Friday, 1 May 2026")
        self.screen.key("Page_Down")
        self.wait_until_focused(program, "Monday, 1 June 2026")
        self.screen.key("Left")
        self.wait_until_focused(program, "Sunday, 31 May 2026")
        self.screen.key("shift+Prior")
        self.wait_until_focused(program, "Saturday, 31 May 2025")
        self.screen.key("Return")

        program.wait_until_gone("May 2025")
        self.embed(program)
        self.assertEqual(self.written_date(), "2025-05-31")

    def test_other_months_can_be_turned_to(self):
        program = self.open_form()

        program.press(OPEN)
        program.press("Next year")
        program.press("Previous month")

        program.wait_for("APRIL 2027")
        self.assertTrue(self.day(program, "Thursday, 1 April 2027").is_shown)

    def test_escape_closes_the_calendar_and_leaves_the_form(self):
        program = self.open_form()
        program.press(OPEN)
        self.wait_until_focused(program, "Friday, 1 May 2026")

        self.screen.key("Right", "Escape")

        program.wait_until_gone("May 2026")
        self.assertIn("02 / MANUAL ENTRY", program.texts())
        self.assertEqual(program.field("DATE").content, "2026-05-01")

    def test_press_beside_the_calendar_closes_it(self):
        program = self.open_form()
        x, y = program.find("CANCEL", BUTTON).centre
        program.press(OPEN)
        program.find("May 2026", TABLE)

        self.screen.click(x, y)

        program.wait_until_gone("May 2026")
        self.assertIn("02 / MANUAL ENTRY", program.texts())

    def test_calendar_stays_shut_without_a_date(self):
        program = self.open_form()
        program.toggle("DATE")

        self.assertFalse(program.find(OPEN, BUTTON).is_enabled)
        self.assertFalse(program.field("DATE").is_enabled)


if __name__ == "__main__":
    unittest.main()
