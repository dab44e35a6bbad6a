# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""Runs that fail, and what is left behind."""

import shutil
import subprocess
import unittest

from harness import rolls
from harness.case import WindowCase
from harness.install import BUNDLE, can_hide_programs, install, without, without_exiftool
from harness.program import build_folder

MISSING = ("exiftool not found. The app bundle is missing its vendored exiftool — please "
           "reinstall Quillmark.")


class Failures(WindowCase):
    def setUp(self):
        super().setUp()
        self.roll = self.make_roll(frames=2, slate_at=1)
        self.before = rolls.checksums(rolls.frames(self.roll))
        self.prefix = self.desktop.folder("prefix")

    def run_to_error(self, program, message):
        self.drop_and_plan(program, self.roll)
        program.press("EMBED METADATA  →")
        self.wait_for_error(program, message)

    def test_failing_exiftool_is_quoted(self):
        script = 'printf "Error: <b>no room</b>\\n  on device" >&2; exit 3'
        program = self.open(install(self.prefix, script))

        self.run_to_error(program,
                          "exiftool exited with code 3\n\nError: <b>no room</b>\n  on device")

        # What was made before the failure stays.
        self.assertEqual(rolls.checksums(rolls.frames(self.roll / "_originals")), self.before)
        program.press("TRY AGAIN")
        program.wait_for("01 / INGEST A ROLL")

    def test_warnings_are_no_failure(self):
        program = self.open(install(self.prefix, "echo 'Warning: odd' >&2; exit 0"))
        self.drop_and_plan(program, self.roll)

        self.embed(program)

    def test_shipped_exiftool_gets_every_file_in_one_call(self):
        log = self.prefix / "calls"
        script = f'for part; do printf "%s\\n" "$part"; done >> "{log}"'
        program = self.open(install(self.prefix, script))
        self.drop_and_plan(program, self.roll)
        self.embed(program)

        arguments = log.read_text(encoding="utf-8").splitlines()

        self.assertEqual(arguments.count("-config"), 1)
        self.assertEqual(arguments[0], "-config")
        self.assertEqual(arguments[2:6], ["-overwrite_original", "-codedcharacterset=utf8",
                                          "-charset", "iptc=UTF8"])
        self.assertEqual(arguments[-2:], [str(file) for file in rolls.frames(self.roll)])

    @unittest.skipUnless(can_hide_programs(), "no leave to make a mount namespace")
    def test_missing_exiftool_is_reported(self):
        program = self.open(install(self.prefix), without_exiftool())

        self.run_to_error(program, MISSING)

    def test_missing_configuration_is_reported(self):
        program = self.open(install(self.prefix, configuration=False))

        self.run_to_error(program,
                          "exiftool exited with code -1\n\nBundled quillmark.config missing")

    @unittest.skipUnless(can_hide_programs(), "no leave to make a mount namespace")
    def test_missing_resources_end_the_program(self):
        executable = install(self.prefix)
        place = self.prefix / "share" / "quillmark" / BUNDLE
        shutil.rmtree(place)

        ended = subprocess.run([*without(build_folder()), executable], check=False,
                               env=self.desktop.environment, capture_output=True, text=True,
                               timeout=60)

        self.assertNotEqual(ended.returncode, 0)
        self.assertEqual(ended.stderr, "could not load resource bundle: from "
                         f"{place} or {build_folder() / BUNDLE}\n")

    def test_folder_that_vanishes_before_the_run(self):
        program = self.open()
        self.drop_and_plan(program, self.roll)
        shutil.rmtree(self.roll)

        program.press("EMBED METADATA  →")

        program.wait_for("INGESTION FAILED")
        message = program.texts()[-2]
        self.assertIn(str(self.roll), message)
        self.assertIn("No such file or directory", message)
        program.press("TRY AGAIN")
        program.wait_for("01 / INGEST A ROLL")

    def test_file_that_vanishes_before_the_run(self):
        program = self.open()
        self.drop_and_plan(program, self.roll)
        (self.roll / "frame-02.jpg").unlink()

        program.press("EMBED METADATA  →")

        program.wait_for("INGESTION FAILED")
        self.assertIn("frame-02.jpg", program.texts()[-2])
        self.assertEqual(rolls.checksums([self.roll / "frame-01.jpg"]),
                         {"frame-01.jpg": self.before["frame-01.jpg"]})

    def test_file_in_the_place_of_the_backup_folder(self):
        (self.roll / "_originals").write_text("in the way", encoding="utf-8")
        program = self.open()
        self.drop_and_plan(program, self.roll)

        program.press("EMBED METADATA  →")

        program.wait_for("INGESTION FAILED")
        self.assertIn("_originals", program.texts()[-2])
        after = rolls.checksums(rolls.frames(self.roll))
        self.assertEqual({name: after[name] for name in self.before}, self.before)

    def test_torn_frames_do_not_stop_the_scan(self):
        (self.roll / "a-torn.jpg").write_bytes(b"\xff\xd8\xff\xe0 torn")
        (self.roll / "b-empty.tif").touch()
        program = self.open()

        self.drop(program, self.roll)

        program.wait_for("02 / SLATE DETECTED")
        self.assertIn("frame-01.jpg", program.texts())
        self.assertIn("4", program.texts())


if __name__ == "__main__":
    unittest.main()
