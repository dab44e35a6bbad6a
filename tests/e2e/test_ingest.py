# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""A roll goes from the drop to its tags, in every backup mode."""

import json
import os
import unittest

from harness import rolls, tags
from harness.accessible import BUTTON, RADIO_BUTTON
from harness.case import WindowCase
from harness.install import install
from harness.waiting import WORK_DEADLINE

EMBED = "EMBED METADATA  →"
ANOTHER = "INGEST ANOTHER  →"

PLAN_TEXTS = [
    "Quillmark", "Quillmark",
    "02 / SLATE DETECTED", "ROLL 12 B", "frame-02.jpg",
    "PAYLOAD",
    "CAMERA", "Kestrel K2",
    "FILM", "Vela Nova 400",
    "ISO", "400",
    "LENS", "Optar 50mm f/2",
    "FOCAL", "50mm",
    "PUSH/PULL", "+1 stops",
    "LOCATION", "Grünerløkka",
    "PROJECT", "夜明け",
    "DATE", "2026-05-01",
    "ROLL", "Roll 12",
    "NOTES", "Fog; \"first light\" = 5:40",
    "ARTIST", "Zoë Ångström",
    "©", "© 2026 Zoë Ångström",
    "SESSION", "7c9e6679-7425-40de-944b-e07fc1f90ae7",
    "ROLL", "3", "IMAGES",
    "BACKUP MODE", "BACKUP ORIGINALS",
    "Originals are copied to _originals/ before metadata is written. Recommended.",
    "CANCEL", EMBED,
]


class Ingest(WindowCase):
    def test_dropped_roll_is_backed_up_and_tagged(self):
        roll = self.make_roll("roll 12 b")
        originals = rolls.checksums(rolls.frames(roll))
        program = self.open()

        self.drop_and_plan(program, roll)
        self.assertEqual(program.texts(), PLAN_TEXTS)
        self.assertEqual(rolls.checksums(rolls.frames(roll)), originals)

        self.embed(program)
        self.assertEqual(program.texts(), [
            "Quillmark", "Quillmark", "03 / DONE", "METADATA EMBEDDED",
            "MUTATED", "3", "BACKED UP", "3", "MODE", "BACKUP ORIGINALS",
            "REVEAL IN FINDER", ANOTHER,
        ])
        self.assert_tagged(rolls.frames(roll))
        self.assertEqual(rolls.checksums(rolls.frames(roll / "_originals")), originals)
        self.assertEqual({entry.name for entry in roll.iterdir()}, {*originals, "_originals"})

        program.press(ANOTHER)
        program.wait_for("01 / INGEST A ROLL")

    def test_whole_payload_can_be_read_back_from_a_frame(self):
        roll = self.make_roll(frames=1, slate_at=1)
        program = self.open()
        self.drop_and_plan(program, roll)
        self.embed(program)

        raw = tags.read_tags(rolls.frames(roll))[0]["XMP-quillmark:RawPayload"]

        self.assertEqual(json.loads(raw), rolls.PAYLOAD)

    def test_copies_are_tagged_and_originals_kept(self):
        roll = self.make_roll()
        originals = rolls.checksums(rolls.frames(roll))
        program = self.open()
        program.press("WRITE COPIES", RADIO_BUTTON)

        self.drop_and_plan(program, roll)
        self.assertIn("Tagged copies are written to _tagged/. Originals are never touched.",
                      program.texts())
        self.embed(program)

        self.assertEqual(program.texts()[4:-2], ["MUTATED", "3", "MODE", "WRITE COPIES"])
        self.assertEqual(rolls.checksums(rolls.frames(roll)), originals)
        self.assertEqual(set(rolls.checksums(rolls.frames(roll / "_tagged"))), set(originals))
        self.assert_tagged(rolls.frames(roll / "_tagged"))

    def test_files_in_place_leave_no_folder(self):
        roll = self.make_roll()
        originals = rolls.checksums(rolls.frames(roll))
        program = self.open()
        program.press("IN PLACE", RADIO_BUTTON)

        self.drop_and_plan(program, roll)
        self.assertIn("Files are mutated in place. Fastest, no extra disk — but originals are "
                      "gone.", program.texts())
        self.embed(program)

        self.assertEqual(program.texts()[4:-2], ["MUTATED", "3", "MODE", "IN PLACE"])
        self.assertEqual({entry.name for entry in roll.iterdir()}, set(originals))
        self.assert_tagged(rolls.frames(roll))

    def test_roll_of_tiff_files(self):
        roll = self.make_roll("tiffs", 3, 2, "--format", "mixed")
        self.assertEqual([file.suffix for file in rolls.frames(roll)], [".jpg", ".tif", ".tif"])
        program = self.open()

        self.drop_and_plan(program, roll)
        self.embed(program)

        self.assert_tagged(rolls.frames(roll))

    def test_negatives_scanned_from_their_back(self):
        roll = self.make_roll("strip", 2, 2, "--negative", "--mirrored", "--tilt", "7")
        program = self.open()

        self.drop_and_plan(program, roll)
        self.embed(program)

        self.assert_tagged(rolls.frames(roll))

    def test_double_click_runs_once(self):
        calls = self.place / "calls"
        script = f'echo >> "{calls}"; exec /usr/bin/exiftool "$@"'
        program = self.open(install(self.desktop.folder("prefix"), script))
        roll = self.make_roll()
        self.drop_and_plan(program, roll)

        place = program.find(EMBED, BUTTON).centre
        self.screen.click(*place)
        self.screen.click(*place)
        program.wait_for("METADATA EMBEDDED", WORK_DEADLINE)

        self.assertEqual(len(calls.read_text(encoding="ascii")), 1)
        self.assert_tagged(rolls.frames(roll))

    def test_exiftool_finds_the_environment_as_it_was(self):
        found = self.place / "environment"
        script = f'env > "{found}"; exec /usr/bin/exiftool "$@"'
        program = self.open(install(self.desktop.folder("prefix"), script), MARKED="yes")
        self.drop_and_plan(program, self.make_roll())
        self.embed(program)

        lines = found.read_text(encoding="utf-8").splitlines()
        self.assertIn("MARKED=yes", lines)
        self.assertFalse([line for line in lines if "TEXT_INPUT" in line])

    def test_text_input_that_was_asked_for_stays(self):
        found = self.place / "environment"
        script = f'env > "{found}"; exec /usr/bin/exiftool "$@"'
        program = self.open(install(self.desktop.folder("prefix"), script),
                            QT_WAYLAND_TEXT_INPUT_PROTOCOL="zwp_text_input_v2")
        self.drop_and_plan(program, self.make_roll())
        self.embed(program)

        self.assertIn("QT_WAYLAND_TEXT_INPUT_PROTOCOL=zwp_text_input_v2",
                      found.read_text(encoding="utf-8").splitlines())

    def test_subfolders_are_taken_on_request(self):
        roll = self.make_roll("box", 1, 0)
        self.make_roll("box/strip", 2, 1)
        program = self.open()
        program.toggle("RECURSE INTO SUBFOLDERS")

        self.drop_and_plan(program, roll)
        self.embed(program)

        # The first frames of both folders have one name, and so one backup.
        self.assertEqual(program.texts()[4:8], ["MUTATED", "3", "BACKED UP", "3"])
        self.assert_tagged([*rolls.frames(roll), *rolls.frames(roll / "strip")])

    def test_subfolders_are_left_alone_otherwise(self):
        roll = self.make_roll("box", 1, 0)
        self.make_roll("box/strip", 2, 1)
        program = self.open()

        self.drop_and_fail(program, roll)

        self.assertEqual(program.texts(), [
            "Quillmark", "Quillmark", "02 / SLATE NOT FOUND", "NO READABLE SLATE\nIN BOX",
            "Tried 1 image — none contained a decodable Quillmark QR. Pick the slate frame "
            "yourself, or skip the slate and enter the metadata manually.",
            "CANCEL", "PICK SLATE FRAME", "ENTER MANUALLY  →",
        ])
        program.press("CANCEL")
        program.wait_for("01 / INGEST A ROLL")

    def test_cancelled_plan_writes_nothing(self):
        roll = self.make_roll()
        before = rolls.checksums(rolls.frames(roll))
        program = self.open()
        self.drop_and_plan(program, roll)

        program.press("CANCEL")

        program.wait_for("01 / INGEST A ROLL")
        self.assertEqual({entry.name for entry in roll.iterdir()}, set(before))
        self.assertEqual(rolls.checksums(rolls.frames(roll)), before)

    def test_settings_outlast_an_ingest_but_not_the_program(self):
        roll = self.make_roll(frames=1, slate_at=1)
        program = self.open()
        program.press("IN PLACE", RADIO_BUTTON)
        program.toggle("RECURSE INTO SUBFOLDERS")
        self.drop_and_plan(program, roll)
        self.embed(program)
        program.press(ANOTHER)
        self.assertTrue(program.find("IN PLACE", RADIO_BUTTON).is_checked)
        self.assertTrue(program.find("RECURSE INTO SUBFOLDERS").is_checked)
        program.close_window()
        self.assertEqual(program.wait_for_end(), 0)

        program = self.open()

        self.assertTrue(program.find("BACKUP ORIGINALS", RADIO_BUTTON).is_checked)
        self.assertFalse(program.find("RECURSE INTO SUBFOLDERS").is_checked)

    def test_names_that_are_not_utf8(self):
        roll = self.make_roll()
        odd = [b"-overwrite.jpg", b"@list \xff.jpg", b"caf\xe9 'n' $HOME.jpg"]
        for file, name in zip(rolls.frames(roll), odd):
            file.rename(roll / os.fsdecode(name))
        program = self.open()

        self.drop_and_plan(program, roll)
        self.embed(program)

        renamed = rolls.frames(roll)
        self.assertEqual(len(renamed), 3)
        for number, file in enumerate(renamed):
            file.rename(roll / f"{number}.jpg")
        self.assert_tagged(rolls.frames(roll))


if __name__ == "__main__":
    unittest.main()
