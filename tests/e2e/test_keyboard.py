# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""The program in the hands of somebody who has no pointer."""

import unittest

from harness import rolls
from harness.accessible import BUTTON, RADIO_BUTTON
from harness.case import WindowCase
from harness.waiting import WORK_DEADLINE, wait_until

CHOOSE = "CHOOSE FOLDER"
EMBED = "EMBED METADATA  →"
ANOTHER = "INGEST ANOTHER  →"
MANUALLY = "ENTER MANUALLY  →"
REQUIRED = ["Kestrel", "K2", "Vela", "Nova 400", "400"]
FIELDS = ["MAKE *", "MODEL *", "BRAND *", "STOCK *", "ISO *", "PUSH/PULL", "MAKE", "MODEL",
          "FOCAL (mm)", "PROJECT", "LOCATION", "ROLL NAME", "DATE", "NOTES", "ARTIST", "©"]
# How far apart the upper edges of what stands in one line may be, in pixels.
LINE = 24


class Keyboard(WindowCase):
    def setUp(self):
        super().setUp()
        self.program = self.open()
        self.screen.wait_for_focus(self.program.window)

    def ready(self):
        """Waits for the keyboard to be in the window, after a drag, say."""
        self.screen.wait_for_focus(self.program.window)

    def choose(self, confirm, path):
        """Types a path into the chooser that opens, and confirms it with a key."""
        self.program.find(confirm, BUTTON)
        wait_until(lambda: self.program.focused() and self.program.focused().role == "text",
                   "the chooser to take the keyboard")
        self.screen.type(str(path))
        self.screen.key("Return")

    def visited(self):
        """Every stop of the Tab key from the first to the last, with its place."""
        stops = []
        self.program.find("Quillmark", "menu item").focus()
        while True:
            item = wait_until(self.program.focused, "anything to have the keyboard")
            stop = (item.role, item.name, item.bounds)
            if stops and item.role == "menu item":
                return stops
            # A place changes when what is focused scrolls: names and order tell.
            self.assertNotIn(stop[:2], [each[:2] for each in stops])
            stops.append(stop)
            self.screen.key("Tab")
            wait_until(lambda before=item: "focused" not in before.states,
                       f"the keyboard to leave {item}", details=self.program.texts)

    def assert_reading_order(self, *names):
        """Checks that Tab visits exactly these, from the top line to the lowest, left to right."""
        stops = self.visited()
        self.assertEqual([name for _, name, _ in stops], ["Quillmark", *names])
        ordered = sorted(stops, key=lambda stop: (stop[2][1] // LINE, stop[2][0]))
        self.assertEqual([stop[1] for stop in stops], [stop[1] for stop in ordered])

    def test_idle_screen_is_visited_in_reading_order(self):
        self.assert_reading_order(CHOOSE, "BACKUP ORIGINALS", "RECURSE INTO SUBFOLDERS")

    def test_plan_is_visited_in_reading_order(self):
        self.drop_and_plan(self.program, self.make_roll(frames=1, slate_at=1))
        self.ready()
        stops = [name for _, name, _ in self.visited() if name]
        self.assertEqual(stops, ["Quillmark", "CANCEL", EMBED])

    def test_failed_detection_and_form_are_visited_in_reading_order(self):
        self.drop_and_fail(self.program, self.make_roll(frames=1, slate_at=0))
        self.ready()
        self.assert_reading_order("CANCEL", "PICK SLATE FRAME", MANUALLY)
        self.program.press(MANUALLY)
        self.program.wait_for_focus("MAKE *")
        stops = [name for _, name, _ in self.visited()]
        self.assertEqual(stops, ["Quillmark", *FIELDS, "ATTACH SLATE PHOTO", "CANCEL"])

    def test_result_and_error_are_visited_in_reading_order(self):
        self.drop_and_plan(self.program, self.make_roll(frames=1, slate_at=1))
        self.embed(self.program)
        self.ready()
        self.assert_reading_order("REVEAL IN FINDER", ANOTHER)
        self.program.press(ANOTHER)
        self.program.wait_for(CHOOSE)
        self.drop(self.program, self.desktop.folder("empty"))
        self.program.wait_for("INGESTION FAILED")
        self.ready()
        self.assert_reading_order("Folder contains no JPG or TIFF images.", "TRY AGAIN")

    def test_a_roll_is_embedded_with_keys_alone(self):
        roll = self.make_roll(frames=2, slate_at=1)

        self.screen.key("ctrl+o")
        self.choose("Ingest", roll)
        self.program.wait_for("02 / SLATE DETECTED", WORK_DEADLINE)
        self.ready()
        self.program.wait_for_focus(EMBED)
        self.screen.key("Return")
        self.program.wait_for("METADATA EMBEDDED", WORK_DEADLINE)
        self.program.wait_for_focus(ANOTHER)
        self.screen.key("space")

        self.program.wait_for_focus(CHOOSE)
        self.assert_tagged(rolls.frames(roll))

    def test_a_form_is_filled_with_keys_alone(self):
        roll = self.make_roll(frames=2, slate_at=0)

        self.screen.key("space")
        self.choose("Ingest", roll)
        self.program.wait_for("02 / SLATE NOT FOUND", WORK_DEADLINE)
        self.ready()
        self.program.wait_for_focus(MANUALLY)
        self.screen.key("KP_Enter")
        self.program.wait_for_focus("MAKE *")
        for text in REQUIRED:
            self.screen.type(text)
            self.screen.key("Tab")
        self.screen.key("shift+Tab", *["Tab"] * 13)
        wait_until(lambda: self.program.find(EMBED, BUTTON).is_enabled,
                   "the button to be enabled")
        self.program.wait_for_focus("CANCEL")
        self.screen.key("Tab")
        self.program.wait_for_focus(EMBED)
        self.screen.key("Return")

        self.program.wait_for("METADATA EMBEDDED", WORK_DEADLINE)
        self.assertEqual(len(rolls.frames(roll / "_originals")), 2)

    def test_prefilled_form_is_submitted_with_one_key(self):
        self.test_a_form_is_filled_with_keys_alone()
        self.screen.key("Return")
        self.program.wait_for_focus(CHOOSE)
        self.drop_and_fail(self.program, self.make_roll("second", frames=1, slate_at=0))
        self.ready()
        self.screen.key("Return")
        self.program.wait_for_focus(EMBED)
        self.screen.key("Return")
        self.program.wait_for("METADATA EMBEDDED", WORK_DEADLINE)

    def test_keyboard_is_not_lost_with_the_button_that_attaches_a_photo(self):
        roll = self.make_roll(frames=1, slate_at=0)
        self.drop_and_fail(self.program, roll)
        self.ready()
        self.screen.key("Return")
        self.program.wait_for_focus("MAKE *")
        self.program.find("ATTACH SLATE PHOTO", BUTTON).focus()
        self.program.wait_for_focus("ATTACH SLATE PHOTO")
        self.screen.key("space")
        self.choose("Use as slate", roll / "frame-01.jpg")

        self.program.wait_until_gone("ATTACH SLATE PHOTO")
        self.ready()
        self.program.wait_for_focus("CHANGE")

    def test_arrows_choose_the_mode(self):
        strip = ["BACKUP ORIGINALS", "WRITE COPIES", "IN PLACE"]
        self.program.find(strip[0], RADIO_BUTTON).focus()
        for key, name in [("Right", 1), ("Right", 2), ("Right", 0), ("Left", 2), ("Up", 1),
                          ("Down", 2)]:
            self.screen.key(key)
            item = self.program.wait_for_focus(strip[name])
            wait_until(lambda each=item: each.is_checked, f"{item} to be chosen")
        # The strip is one stop, wherever the choice is.
        self.screen.key("Tab")
        self.program.wait_for_focus("RECURSE INTO SUBFOLDERS")
        self.screen.key("shift+Tab")
        self.program.wait_for_focus("IN PLACE")
        self.screen.key("shift+Tab")
        self.program.wait_for_focus(CHOOSE)

    def test_escape_is_cancel_where_there_is_one(self):
        self.drop_and_plan(self.program, self.make_roll(frames=1, slate_at=1))
        self.ready()
        self.screen.key("Escape")
        self.program.wait_for_focus(CHOOSE)

        self.drop_and_fail(self.program, self.make_roll("none", frames=1, slate_at=0))
        self.ready()
        self.screen.key("Return")
        self.program.wait_for_focus("MAKE *")
        self.screen.key("Escape")
        self.program.wait_for_focus(CHOOSE)

    def test_escape_closes_the_chooser_only(self):
        self.drop_and_fail(self.program, self.make_roll(frames=1, slate_at=0))
        self.ready()
        self.program.press("PICK SLATE FRAME")
        self.program.find("Use as slate", BUTTON)
        wait_until(lambda: self.program.focused() and self.program.focused().role == "text",
                   "the chooser to take the keyboard")
        self.screen.key("Escape")
        self.program.wait_until_gone("Use as slate")
        self.ready()
        self.assertIn("02 / SLATE NOT FOUND", self.program.texts())


if __name__ == "__main__":
    unittest.main()
