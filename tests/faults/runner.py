# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""Drives the program that makes the runs."""

import json
import subprocess
import threading

PATIENCE = 120  # seconds for a run, which takes less than one on an idle machine


class RunFailed(Exception):
    """The program crashed, or did not come to an end."""


class Run:
    """One process, which makes a run and, when asked, another."""

    def __init__(self, driver, place, mode, faults=()):
        command = [str(driver)]
        if place.has_settings:
            command.append("--earlier")
        command += [str(place.roll), str(place.settings), mode]
        command += [str(part) for fault in faults for part in fault]
        self._process = subprocess.Popen(
            command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.PIPE
        )

    def __enter__(self):
        return self

    def __exit__(self, *_):
        # Not killed where it can be helped: a build that counts lines writes the counts at its end.
        try:
            self._process.communicate(timeout=PATIENCE)
        except subprocess.TimeoutExpired:
            self._process.kill()
            self._process.communicate()

    def first(self):
        return self._answer()

    def next(self):
        try:
            self._process.stdin.write(b"next\n")
            self._process.stdin.flush()
        except BrokenPipeError:
            pass
        return self._answer()

    def _answer(self):
        watchdog = threading.Timer(PATIENCE, self._process.kill)
        watchdog.start()
        line = self._process.stdout.readline()
        watchdog.cancel()
        if not line:
            errors = self._process.communicate()[1].decode(errors="replace").strip()
            raise RunFailed(f"the run did not end in a state ({self._process.returncode}): {errors}")
        return json.loads(line)
