# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""The folder is shown in the file browser, whatever the desktop has of one."""

import os
import unittest

from harness.bus import FileManager
from harness.case import WindowCase
from harness.waiting import wait_until

REVEAL = "REVEAL IN FINDER"


class Reveal(WindowCase):
    def setUp(self):
        super().setUp()
        # What opens folders on a desktop without a file manager on the bus.
        self.opened = self.desktop.folder("browser") / "opened"
        opener = self.opened.parent / "xdg-open"
        opener.write_text(f'#!/bin/sh\nprintf "%s" "$*" > "{self.opened}.new"\n'
                          f'mv "{self.opened}.new" "{self.opened}"\n', encoding="utf-8")
        opener.chmod(0o755)

    def open_done(self, roll):
        """Brings the program to the end of an ingest."""
        path = f"{self.opened.parent}:{self.desktop.environment['PATH']}"
        program = self.open(PATH=path)
        self.drop_and_plan(program, roll)
        self.embed(program)
        return program

    def assert_opened(self, roll):
        wait_until(self.opened.exists, "the folder to be opened")
        self.assertEqual(self.opened.read_text(encoding="utf-8"), roll.as_uri())

    def test_file_manager_shows_the_folder(self):
        roll = self.make_roll("roll #1 Größe", 1, 1)
        with FileManager(self.desktop) as manager:
            program = self.open_done(roll)

            program.press(REVEAL)

            self.assertEqual(manager.wait_for_call(), ("ShowFolders", [roll.as_uri()], ""))
            program.press(REVEAL)
            manager.wait_for_call(1)
            self.assertFalse(self.opened.exists())
            self.assertIn("METADATA EMBEDDED", program.texts())

    def test_folder_whose_name_is_not_utf8(self):
        roll = self.make_roll("named-later", 1, 1)
        odd = roll.rename(os.fsdecode(os.fsencode(roll.parent) + b"/caf\xe9 %"))
        with FileManager(self.desktop) as manager:
            program = self.open_done(odd)

            program.press(REVEAL)

            [uri] = manager.wait_for_call()[1]
            self.assertTrue(uri.endswith("/caf%E9%20%25"), uri)

    def test_failing_file_manager_is_made_up_for(self):
        roll = self.make_roll("roll #1", 1, 1)
        with FileManager(self.desktop, fails=True) as manager:
            program = self.open_done(roll)

            program.press(REVEAL)

            manager.wait_for_call()
            self.assert_opened(roll)

    def test_folder_is_opened_where_there_is_no_file_manager(self):
        roll = self.make_roll("roll #1", 1, 1)
        program = self.open_done(roll)

        program.press(REVEAL)

        self.assert_opened(roll)
        self.assertIn("METADATA EMBEDDED", program.texts())

    def test_another_roll_can_be_taken_before_the_file_manager_answers(self):
        roll = self.make_roll(frames=1, slate_at=1)
        with SlowFileManager(self.desktop) as manager:
            program = self.open_done(roll)

            program.press(REVEAL)
            manager.wait_for_call()
            program.press("INGEST ANOTHER  →")
            program.wait_for("01 / INGEST A ROLL")
            manager.fail()

            self.assert_opened(roll)
            self.assertIn("01 / INGEST A ROLL", program.texts())


class SlowFileManager(FileManager):
    """Does not answer until it is told to."""

    _call = None

    def answer(self, method, arguments, invocation):
        self._call = invocation
        self.calls.append((method, *arguments))

    def fail(self):
        self.do(lambda: self._call.return_dbus_error("org.freedesktop.DBus.Error.Failed", "No."))


if __name__ == "__main__":
    unittest.main()
