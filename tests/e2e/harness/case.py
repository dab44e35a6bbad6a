# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""What the tests of the window start from."""

import atexit
import os
import re
import signal
import sys
import unittest

from . import rolls, tags
from .desktop import Desktop
from .drag import drop_files
from .program import Program
from .waiting import WORK_DEADLINE

# Said by Qt 6.4 when a screen reader asks for the rows of a file list that is still loading, or
# for an item that has just gone.
_QT_NOISE = re.compile(r"QAccessibleTable::child: Invalid index at: \d+ \d+\n"
                       r"|qt\.accessibility\.atspi: WARNING Qt AtSpiAdaptor: "
                       r"Accessible invalid: .*\n"
                       # What the surroundings of a program that was installed make Qt say.
                       + os.environ.get("QUILLMARK_INSTALLED_NOISE", ""))

_shared = None


def shared_desktop(kind=Desktop):
    """The process's desktop, started when it is first asked for."""
    global _shared
    if _shared is None:
        signal.signal(signal.SIGTERM, lambda *_: sys.exit("terminated"))
        _shared = kind().start()
        atexit.register(_shared.stop)
    if type(_shared) is not kind:
        raise RuntimeError(f"a process has one desktop: here a {type(_shared).__name__}")
    return _shared


class WindowCase(unittest.TestCase):
    """A test with a desktop, and a fresh home for the program's settings."""

    maxDiff = None
    desktop_kind = Desktop

    def setUp(self):
        self.desktop = shared_desktop(self.desktop_kind)
        self.screen = self.desktop.screen
        self.home = self.desktop.folder("home")
        self.place = self.desktop.folder("scans")

    def open(self, executable=None, wrapper=(), **environment):
        """Opens the program; it ends with the test. A second call finds the same settings.

        It has nothing to say to a terminal, whatever the test does with it.
        """
        program = Program(self.desktop, executable, wrapper=wrapper,
                          environment={"HOME": str(self.home),
                                       "XDG_CONFIG_HOME": str(self.home / ".config"),
                                       **environment})
        self.addCleanup(lambda: self.assertEqual(_QT_NOISE.sub("", program.output), ""))
        self.addCleanup(program.stop)
        return program

    def make_roll(self, name="roll", *arguments, **options):
        return rolls.make_roll(self.place / name, *arguments, **options)

    def drop(self, program, *files):
        """Drops files on the window, which takes them."""
        self.assertTrue(drop_files(self.screen, program.window, *files))

    def drop_and_plan(self, program, folder):
        """Drops a roll with a slate on the window and waits for the plan."""
        self.drop(program, folder)
        program.wait_for("02 / SLATE DETECTED", WORK_DEADLINE)

    def drop_and_fail(self, program, folder):
        """Drops a roll without a slate on the window and waits for what follows."""
        self.drop(program, folder)
        program.wait_for("02 / SLATE NOT FOUND", WORK_DEADLINE)

    def embed(self, program):
        """Presses the button that starts the run and waits for its end."""
        program.press("EMBED METADATA  →")
        program.wait_for("METADATA EMBEDDED", WORK_DEADLINE)

    def wait_for_error(self, program, message):
        """Waits for the error screen with exactly this message."""
        program.wait_for("INGESTION FAILED", WORK_DEADLINE)
        self.assertEqual(program.texts()[-2:], [message, "TRY AGAIN"])

    def assert_tagged(self, files, payload=None):
        """Checks that every file carries every tag of a payload."""
        wanted = tags.expected_tags(payload or rolls.PAYLOAD)
        found = tags.read_tags(files)
        self.assertEqual(len(found), len(files))
        for each in found:
            self.assertEqual({name: each.get(name) for name in wanted}, wanted,
                             each["SourceFile"])
