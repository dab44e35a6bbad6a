# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""Every road from a folder of scans to its tags, screen by screen."""

import unittest

from harness import rolls, tags
from harness.accessible import BUTTON
from harness.case import WindowCase
from harness.install import install
from harness.waiting import WORK_DEADLINE, wait_until

EMBED = "EMBED METADATA  →"
IDLE = "01 / INGEST A ROLL"
FOUND = "02 / SLATE DETECTED"
NOT_FOUND = "02 / SLATE NOT FOUND"
FORM = "02 / MANUAL ENTRY"
NO_PHOTO = "NO SLATE PHOTO ATTACHED"
TYPED = {"MAKE *": "Kestrel", "MODEL *": "K2", "BRAND *": "Vela", "STOCK *": "Nova 400",
         "ISO *": "400", "NOTES": "Fog at dawn"}
# What the form comes to in a payload, the identifier aside.
PAYLOAD = {"version": 2, "camera_make": "Kestrel", "camera_model": "K2", "film_brand": "Vela",
           "film_stock": "Nova 400", "iso": 400, "notes": "Fog at dawn",
           "app_version": tags.GENERATOR}


class Roads(WindowCase):
    def fill_form(self, program):
        self.assertFalse(program.find(EMBED, BUTTON).is_enabled)
        for name, text in TYPED.items():
            program.fill(name, text)
        wait_until(lambda: program.find(EMBED, BUTTON).is_enabled, "the form to be complete")

    def assert_done(self, program, count, originals, roll):
        """Checks the last screen, and that the originals are safe."""
        self.assertEqual(program.texts(), [
            "Quillmark", "Quillmark", "03 / DONE", "METADATA EMBEDDED",
            "MUTATED", str(count), "BACKED UP", str(count), "MODE", "BACKUP ORIGINALS",
            "REVEAL IN FINDER", "INGEST ANOTHER  →"])
        self.assertEqual(rolls.checksums(rolls.frames(roll / "_originals")), originals)
        program.press("INGEST ANOTHER  →")
        program.wait_for(IDLE)

    def assert_typed_tags(self, roll):
        files = rolls.frames(roll)
        session = tags.read_tags(files)[0]["XMP-quillmark:SessionId"]
        self.assertTrue(session.startswith("manual-"), session)
        self.assert_tagged(files, {**PAYLOAD, "session_id": session})

    def test_slate_is_found(self):
        roll = self.make_roll(frames=3, slate_at=2)
        originals = rolls.checksums(rolls.frames(roll))
        program = self.open()

        self.drop(program, roll)
        program.wait_for(FOUND, WORK_DEADLINE)
        self.assertIn("frame-02.jpg", program.texts())
        self.embed(program)

        self.assert_done(program, 3, originals, roll)
        self.assert_tagged(rolls.frames(roll))

    def test_picked_frame_has_the_slate(self):
        roll = self.make_roll(frames=2, slate_at=0)
        elsewhere = self.make_roll("elsewhere", 1, 1)
        originals = rolls.checksums(rolls.frames(roll))
        program = self.open()

        self.drop(program, roll)
        program.wait_for(NOT_FOUND, WORK_DEADLINE)
        program.press("PICK SLATE FRAME")
        program.choose("Use as slate", elsewhere / "frame-01.jpg")
        program.wait_for(FOUND, WORK_DEADLINE)
        self.assertIn("ROLL", program.texts())
        self.assertIn("frame-01.jpg", program.texts())
        self.embed(program)

        self.assert_done(program, 2, originals, roll)
        self.assert_tagged(rolls.frames(roll))

    def test_picked_frame_has_no_slate(self):
        roll = self.make_roll(frames=2, slate_at=0)
        originals = rolls.checksums(rolls.frames(roll))
        program = self.open()

        self.drop(program, roll)
        program.wait_for(NOT_FOUND, WORK_DEADLINE)
        program.press("PICK SLATE FRAME")
        program.choose("Use as slate", roll / "frame-02.jpg")
        program.wait_for(FORM, WORK_DEADLINE)
        program.wait_for("frame-02.jpg")
        program.wait_until_gone(NO_PHOTO)
        self.fill_form(program)
        self.embed(program)

        self.assert_done(program, 2, originals, roll)
        self.assert_typed_tags(roll)

    def test_everything_is_typed_and_offered_again(self):
        roll = self.make_roll(frames=2, slate_at=0)
        originals = rolls.checksums(rolls.frames(roll))
        program = self.open()

        self.drop(program, roll)
        program.wait_for(NOT_FOUND, WORK_DEADLINE)
        program.press("ENTER MANUALLY  →")
        program.wait_for(FORM)
        program.wait_for(NO_PHOTO)
        self.fill_form(program)
        self.embed(program)

        self.assert_done(program, 2, originals, roll)
        self.assert_typed_tags(roll)
        program.close_window()
        self.assertEqual(program.wait_for_end(), 0)

        # A second start, with another roll: what was typed is there, and enough.
        second = self.make_roll("second", 1, 0)
        program = self.open()
        self.drop(program, second)
        program.wait_for(NOT_FOUND, WORK_DEADLINE)
        program.press("ENTER MANUALLY  →")
        program.wait_for(FORM)
        self.assertEqual({name: program.field(name).content for name in TYPED}, TYPED)
        self.embed(program)
        self.assert_typed_tags(second)

    def test_failure_is_tried_again(self):
        roll = self.make_roll(frames=2, slate_at=1)
        broken = self.place / "broken"
        broken.touch()
        program = self.open(install(
            self.desktop.folder("prefix"),
            f"[ -e '{broken}' ] && {{ echo 'no room' >&2; exit 3; }}\n"
            'exec /usr/bin/exiftool "$@"'))

        self.drop(program, roll)
        program.wait_for(FOUND, WORK_DEADLINE)
        program.press(EMBED)
        self.wait_for_error(program, "exiftool exited with code 3\n\nno room\n")
        program.press("TRY AGAIN")
        program.wait_for(IDLE)
        broken.unlink()
        self.drop(program, roll)
        program.wait_for(FOUND, WORK_DEADLINE)
        self.embed(program)

        self.assertEqual(program.texts()[2:4], ["03 / DONE", "METADATA EMBEDDED"])
        self.assert_tagged(rolls.frames(roll))


if __name__ == "__main__":
    unittest.main()
