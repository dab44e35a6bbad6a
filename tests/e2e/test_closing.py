# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""The window is closed at one moment or another."""

import os
import signal
import time
import unittest

from harness import rolls
from harness.case import WindowCase
from harness.install import HeldExiftool, install, is_running
from harness.waiting import WORK_DEADLINE, wait_until

# Seconds that a program may take to end whatever it was looking for: a small part of what the
# scan here would take.
AT_ONCE = 4.0


class Closing(WindowCase):
    def open_writing(self, exiftool, script):
        """Opens the program and brings it to the moment where exiftool has been started."""
        program = self.open(install(self.desktop.folder("prefix"), script))
        self.drop_and_plan(program, self.roll)
        program.press("EMBED METADATA  →")
        child = exiftool.wait_until_started()
        program.wait_for("EMBEDDING")
        return program, child

    def close_while_writing(self, program, child):
        program.close_window()
        wait_until(lambda: not program.is_shown, "the window to hide")
        # The run goes on as it is: nothing has reached the files yet.
        self.assertTrue(is_running(child))
        self.assertTrue(program.is_running)

    def assert_it_moves(self, program):
        """Checks that the window goes on drawing while it waits."""
        area = self.screen.geometry(program.window)
        first = self.screen.pixels(*area)
        wait_until(lambda: self.screen.pixels(*area) != first, "the progress indicator to turn")

    def setUp(self):
        super().setUp()
        self.roll = self.make_roll(frames=3, slate_at=1)

    def test_idle_program_ends(self):
        program = self.open()

        program.close_window()

        self.assertEqual(program.wait_for_end(), 0)

    def test_plan_is_dropped(self):
        before = rolls.checksums(rolls.frames(self.roll))
        program = self.open()
        self.drop_and_plan(program, self.roll)

        program.close_window()

        self.assertEqual(program.wait_for_end(), 0)
        self.assertEqual(rolls.checksums(rolls.frames(self.roll)), before)

    def test_long_scan_is_given_up_at_once(self):
        long_roll = self.make_roll("long", 1, 0, "--megapixels", "12")
        rolls.multiply(long_roll / "frame-01.jpg", 999)
        program = self.open()
        self.drop(program, long_roll)
        program.wait_for("SCANNING")
        self.assertEqual(program.texts(),
                         ["Quillmark", "Quillmark", "SCANNING LONG",
                          "SCANNING", "LONG", "Locating slate frame…"])
        started = time.monotonic()

        program.close_window()

        self.assertEqual(program.wait_for_end(), 0)
        self.assertLess(time.monotonic() - started, AT_ONCE)

    def test_run_is_finished_behind_a_closed_window(self):
        exiftool = HeldExiftool(self.desktop.folder("held"))
        originals = rolls.checksums(rolls.frames(self.roll))
        program, child = self.open_writing(exiftool, exiftool.script())
        self.close_while_writing(program, child)

        exiftool.let_go()

        self.assertEqual(program.wait_for_end(WORK_DEADLINE), 0)
        self.assertFalse(is_running(child))
        self.assert_tagged(rolls.frames(self.roll))
        self.assertEqual(rolls.checksums(rolls.frames(self.roll / "_originals")), originals)
        self.assertEqual({entry.name for entry in self.roll.iterdir()},
                         {*originals, "_originals"})

    def test_failure_behind_a_closed_window_is_shown(self):
        exiftool = HeldExiftool(self.desktop.folder("held"))
        program, child = self.open_writing(exiftool,
                                           exiftool.script("echo 'no room' >&2; exit 1"))
        self.close_while_writing(program, child)

        exiftool.let_go()

        wait_until(lambda: program.is_shown, "the window to come back")
        self.wait_for_error(program, "exiftool exited with code 1\n\nno room\n")
        program.close_window()
        self.assertEqual(program.wait_for_end(), 0)

    def test_killed_program_takes_exiftool_with_it(self):
        exiftool = HeldExiftool(self.desktop.folder("held"))
        originals = rolls.checksums(rolls.frames(self.roll))
        program, child = self.open_writing(exiftool, exiftool.script())

        os.kill(program.pid, signal.SIGKILL)

        program.wait_for_end()
        wait_until(lambda: not is_running(child), "exiftool to end")
        self.assertEqual(rolls.checksums(rolls.frames(self.roll)), originals)
        program = self.open()
        self.drop_and_plan(program, self.roll)
        self.embed(program)
        self.assert_tagged(rolls.frames(self.roll))

    def test_window_shows_the_run_while_it_lasts(self):
        exiftool = HeldExiftool(self.desktop.folder("held"))
        program, _ = self.open_writing(exiftool, exiftool.script())

        self.assertEqual(program.texts(),
                         ["Quillmark", "Quillmark", "EMBEDDING ROLL",
                          "EMBEDDING", "ROLL", "exiftool · 3 image(s)"])
        self.assert_it_moves(program)
        exiftool.let_go()

        program.wait_for("METADATA EMBEDDED", WORK_DEADLINE)
        program.close_window()
        self.assertEqual(program.wait_for_end(), 0)


if __name__ == "__main__":
    unittest.main()
