# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""Slates and rolls from which something else than a plain ingest could come."""

import os
import unittest

from harness import rolls
from harness.case import WindowCase
from harness.waiting import WORK_DEADLINE

# Markup, options, redirections, formats, line breaks, and texts that turn others around.
HOSTILE = {
    **rolls.PAYLOAD,
    "session_id": "# -execute",
    "camera_make": "<Model",
    "camera_model": "<b>K2</b><br>",
    "film_brand": "@/etc/passwd",
    "film_stock": "-o x",
    "lens_make": "=",
    "lens_model": "%f $Model",
    "location": "\u202eOslo <img src=x>",
    "project": "one\ntwo\u2028three",
    "notes": "<a href='file:///etc/passwd'>press</a>\n-o\nx\n\u05e9\u05dc\u05d5\u05dd \u2067",
    "roll_name": "[x](http://127.0.0.1:9/)",
    "artist": "${Make;`id`}",
    "copyright": "&copy; <script>1</script>",
}
SHOWN = ["<Model <b>K2</b><br>", "@/etc/passwd -o x", "= %f $Model", HOSTILE["location"],
         HOSTILE["project"], HOSTILE["notes"], HOSTILE["roll_name"], HOSTILE["artist"],
         HOSTILE["copyright"], HOSTILE["session_id"]]


class OddRolls(WindowCase):
    def test_hostile_slate_is_shown_and_written_as_it_is(self):
        roll = self.make_roll(frames=2, slate_at=1, payload=HOSTILE)
        program = self.open()

        self.drop_and_plan(program, roll)

        names = [item.name for item in program.tree.descendants()]  # those to scroll to as well
        for text in SHOWN:
            self.assertIn(text, names)
        self.embed(program)
        self.assert_tagged(rolls.frames(roll), HOSTILE)
        self.assertEqual(len(rolls.frames(roll)), 2)

    def test_slate_with_a_text_that_cannot_be_handed_on_is_refused(self):
        roll = self.make_roll(frames=2, slate_at=1,
                              payload={**rolls.PAYLOAD, "notes": "seen\0unseen"})
        before = rolls.checksums(rolls.frames(roll))
        program = self.open()
        self.drop_and_plan(program, roll)

        program.press("EMBED METADATA  →")

        self.wait_for_error(program,
                            "exiftool exited with code -1\n\nNo file was tagged, because exiftool "
                            "cannot be given a text that holds the character U+0000: Notes")
        self.assertEqual(rolls.checksums(rolls.frames(roll)), before)

    def test_pipe_in_the_place_of_a_frame_blocks_nothing(self):
        roll = self.make_roll(frames=2, slate_at=2)
        os.mkfifo(roll / "a.jpg")
        program = self.open()
        self.drop_and_plan(program, roll)
        self.assertIn("3", program.texts())

        program.press("EMBED METADATA  →")

        self.wait_for_error(program, f"Could not copy “{roll}/a.jpg” to "
                            f"“{roll}/_originals/a.jpg”: Operation not supported")
        (roll / "a.jpg").unlink()
        program.press("TRY AGAIN")
        program.wait_for("01 / INGEST A ROLL")
        self.drop_and_plan(program, roll)
        self.embed(program)
        self.assert_tagged(rolls.frames(roll))

    def test_all_of_twenty_thousand_files_are_tried(self):
        roll = self.make_roll(frames=1, slate_at=0)
        empty = roll / "empty"
        empty.touch()
        for number in range(19_999):
            os.link(empty, roll / f"{number:05}.jpg")
        program = self.open()

        self.drop(program, roll)

        program.wait_for("02 / SLATE NOT FOUND", WORK_DEADLINE)
        self.assertIn("Tried 20000 images — none contained a decodable Quillmark QR. Pick the "
                      "slate frame yourself, or skip the slate and enter the metadata manually.",
                      program.texts())


if __name__ == "__main__":
    unittest.main()
