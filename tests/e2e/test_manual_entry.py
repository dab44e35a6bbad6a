# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""Metadata that is typed where there is no slate."""

import datetime
import unittest

from harness import rolls, tags
from harness.accessible import BUTTON, CHECK_BOX, LABEL
from harness.case import WindowCase
from harness.waiting import WORK_DEADLINE, wait_until

EMBED = "EMBED METADATA  →"
REQUIRED = {"MAKE *": "Kestrel", "MODEL *": "K2", "BRAND *": "Vela", "STOCK *": "Nova 400",
            "ISO *": "400"}
OPTIONAL = {"PUSH/PULL": "-1", "MAKE": "Optar", "MODEL": "50mm f/2", "FOCAL (mm)": "50",
            "PROJECT": "夜明け", "LOCATION": "Grünerløkka", "ROLL NAME": "Roll 12",
            "NOTES": "Fog = \"5:40\"", "ARTIST": "Zoë Ångström", "©": "© 2026 Zoë"}
# What the two come to in a payload, the identifier aside.
PAYLOAD = {
    "version": 2,
    "camera_make": "Kestrel", "camera_model": "K2", "film_brand": "Vela",
    "film_stock": "Nova 400", "iso": 400,
    "push_pull": -1, "lens_make": "Optar", "lens_model": "50mm f/2", "focal_length": 50,
    "project": "夜明け", "location": "Grünerløkka", "roll_name": "Roll 12",
    "notes": "Fog = \"5:40\"", "artist": "Zoë Ångström", "copyright": "© 2026 Zoë",
    "app_version": tags.GENERATOR,
}
SESSION = r"^manual-[0-9a-f]{8}(-[0-9a-f]{4}){3}-[0-9a-f]{12}$"


class ManualEntry(WindowCase):
    def setUp(self):
        super().setUp()
        self.roll = self.make_roll(frames=2, slate_at=0)

    def open_form(self):
        program = self.open()
        self.drop_and_fail(program, self.roll)
        program.press("ENTER MANUALLY  →")
        program.wait_for("02 / MANUAL ENTRY")
        return program

    def fields(self, program):
        return {name: program.field(name).content for name in [*REQUIRED, *OPTIONAL]}

    def session_of(self, file):
        return tags.read_tags([file])[0]["XMP-quillmark:SessionId"]

    def test_form_filled_through_the_accessibility_tree_is_embedded(self):
        program = self.open_form()
        self.assertEqual(set(self.fields(program).values()), {""})

        for name, text in {**REQUIRED, **OPTIONAL}.items():
            program.fill(name, text)
        self.embed(program)

        session = self.session_of(self.roll / "frame-01.jpg")
        self.assertRegex(session, SESSION)
        self.assert_tagged(rolls.frames(self.roll), {**PAYLOAD, "session_id": session})
        self.assertEqual(len(rolls.frames(self.roll / "_originals")), 2)

    def test_form_typed_on_the_keyboard_is_embedded(self):
        program = self.open_form()

        for name, text in REQUIRED.items():
            program.type_into(name, text)
        program.type_into("NOTES", "Second take")
        program.type_into("FOCAL (mm)", "about 50")
        self.embed(program)

        wanted = {key: PAYLOAD[key] for key in ("version", "camera_make", "camera_model",
                                                "film_brand", "film_stock", "iso", "app_version")}
        wanted["notes"] = "Second take"
        wanted["session_id"] = self.session_of(self.roll / "frame-01.jpg")
        self.assert_tagged(rolls.frames(self.roll), wanted)
        self.assertNotIn("ExifIFD:FocalLength", tags.read_tags(rolls.frames(self.roll))[0])

    def test_nothing_can_be_embedded_until_the_form_is_complete(self):
        program = self.open_form()
        self.assertFalse(program.find(EMBED, BUTTON).is_enabled)
        for name, text in REQUIRED.items():
            program.type_into(name, text)
        wait_until(lambda: program.find(EMBED, BUTTON).is_enabled, "the button to be enabled")

        program.type_into("ISO *", "400 ASA")

        wait_until(lambda: not program.find(EMBED, BUTTON).is_enabled,
                   "the button to be disabled")

    def test_press_on_the_disabled_button_does_nothing(self):
        program = self.open_form()

        x, y = program.find(EMBED, BUTTON).centre
        self.screen.click(x, y)
        program.type_into("MAKE *", "Kestrel")

        self.assertIn("02 / MANUAL ENTRY", program.texts())
        self.assertFalse((self.roll / "_originals").exists())

    def test_date_is_written_once_it_is_switched_on(self):
        program = self.open_form()
        for name, text in REQUIRED.items():
            program.type_into(name, text)
        # The switch has to be seen before it is moved.
        program.field("ROLL NAME").focus()
        before = datetime.datetime.now(datetime.timezone.utc).date()

        program.toggle("DATE")
        self.embed(program)

        after = datetime.datetime.now(datetime.timezone.utc).date()
        found = tags.read_tags(rolls.frames(self.roll))[0]["XMP-quillmark:Date"]
        self.assertIn(found, {str(before), str(after)})

    def test_date_can_be_typed(self):
        program = self.open_form()
        for name, text in REQUIRED.items():
            program.type_into(name, text)
        program.field("ROLL NAME").focus()
        program.toggle("DATE")

        program.type_into("DATE", "1999-12-31")
        self.embed(program)

        found = tags.read_tags(rolls.frames(self.roll))[0]
        self.assertEqual(found["XMP-quillmark:Date"], "1999-12-31")
        self.assertEqual(found["ExifIFD:DateTimeOriginal"], "1999:12:31 12:00:00")

    def test_last_entry_is_offered_again_after_a_restart(self):
        program = self.open_form()
        for name, text in {**REQUIRED, "NOTES": "kept", "PUSH/PULL": "+2"}.items():
            program.type_into(name, text)
        self.embed(program)
        program.close_window()
        self.assertEqual(program.wait_for_end(), 0)

        program = self.open_form()

        found = self.fields(program)
        self.assertEqual({name: text for name, text in found.items() if text},
                         {**REQUIRED, "NOTES": "kept", "PUSH/PULL": "2"})
        self.assertTrue(program.find(EMBED, BUTTON).is_enabled)

    def test_cancelled_entry_is_forgotten(self):
        program = self.open_form()
        program.type_into("MAKE *", "Kestrel")

        program.press("CANCEL")
        program.wait_for("01 / INGEST A ROLL")
        self.drop_and_fail(program, self.roll)
        program.press("ENTER MANUALLY  →")

        self.assertEqual(program.field("MAKE *").content, "")
        self.assertFalse((self.roll / "_originals").exists())

    def test_attached_photo_changes_nothing_that_is_written(self):
        elsewhere = self.make_roll("elsewhere", 1, 1)
        program = self.open_form()
        program.press("ATTACH SLATE PHOTO")
        program.choose("Use as slate", elsewhere / "frame-01.jpg")
        program.wait_for("frame-01.jpg")

        for name, text in REQUIRED.items():
            program.type_into(name, text)
        self.embed(program)

        found = tags.read_tags(rolls.frames(self.roll))
        self.assertEqual(len(found), 2)
        self.assertNotIn("XMP-quillmark:Notes", found[0])
        self.assertEqual(tags.read_tags(rolls.frames(elsewhere))[0].get("XMP-quillmark:Iso"),
                         None)

    def test_form_shows_its_sections_and_fields_in_order(self):
        program = self.open_form()

        labels = [item.name for item in program.tree.descendants()
                  if item.name and item.role == LABEL]

        self.assertEqual(labels, [
            "02 / MANUAL ENTRY", "ROLL",
            "CAMERA", "MAKE *", "MODEL *",
            "FILM", "BRAND *", "STOCK *", "ISO *", "PUSH/PULL", "0",
            "LENS", "MAKE", "MODEL", "FOCAL (mm)",
            "ROLL", "PROJECT", "LOCATION", "ROLL NAME", "DATE", "NOTES",
            "CREDIT", "ARTIST", "©",
            "SLATE REFERENCE", "NO SLATE PHOTO ATTACHED",
        ])

    def test_date_switch_is_a_switch(self):
        program = self.open_form()
        program.field("ROLL NAME").focus()
        self.assertFalse(program.find("DATE", CHECK_BOX, WORK_DEADLINE).is_checked)
        self.assertFalse(program.field("DATE").is_enabled)


if __name__ == "__main__":
    unittest.main()
