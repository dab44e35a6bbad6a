# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""The program that is killed, seen from outside."""

import os
import select
import signal
import subprocess
import time

MODES = ("backup-originals", "write-copies", "none")
OUTPUT_FOLDERS = {"backup-originals": b"_originals", "write-copies": b"_tagged"}

# Seconds that anything may take that is sure to come about.
DEADLINE = 120.0
# Seconds between two looks at a run, far below what any of its phases takes.
_LOOK = 0.0005


class Run:
    """One run of the program over a folder of images, in a backup mode.

    `subject` is the path of kill-subject, `folder` a path in bytes.
    """

    def __init__(self, subject, folder, mode):
        self._lines = []
        self._unread = b""
        self._mutated = os.path.join(folder, OUTPUT_FOLDERS["write-copies"]) \
            if mode == "write-copies" else folder
        self._names = images(folder)
        self._before = None
        self.child_seen = False
        self._program = subprocess.Popen([subject, "run", folder, mode], stdin=subprocess.PIPE,
                                         stdout=subprocess.PIPE, bufsize=0)

    # --- What it says

    def line(self, *words):
        """Waits for a line that begins with one of the words, and gives it."""
        until = time.monotonic() + DEADLINE
        while True:
            for line in self._lines:
                if line.split(" ")[0] in words:
                    return line
            if not self._read(until - time.monotonic()):
                raise TimeoutError(f"no {' or '.join(words)} after: {self._lines}")

    def has_said(self, word):
        self._read(0)
        return any(line.split(" ")[0] == word for line in self._lines)

    def _read(self, seconds):
        output = self._program.stdout
        if not select.select([output], [], [], max(0.0, seconds))[0]:
            return False
        block = os.read(output.fileno(), 4096)
        *lines, self._unread = (self._unread + block).split(b"\n")
        self._lines += [line.decode("utf-8", "replace") for line in lines]
        return bool(block)

    # --- What it has come to

    def child(self):
        """The process id of its exiftool while that runs, else None."""
        tasks = f"/proc/{self._program.pid}/task"
        try:
            for task in os.listdir(tasks):
                with open(f"{tasks}/{task}/children", encoding="ascii") as children:
                    for child in children.read().split():
                        if _is_running(child):
                            self.child_seen = True
                            return int(child)
        except OSError:
            pass  # a thread or a child that has just ended
        return None

    def await_child(self):
        """Waits until exiftool has been started."""
        self._wait(lambda: self.child() is not None, "exiftool")
        self._before = self._stamps()

    def await_first_file(self):
        """Waits until exiftool has replaced one of the files."""
        self._wait(lambda: self.replaced() > 0, "the first file")

    def await_last_file(self):
        """Waits until exiftool has replaced all of the files."""
        self._wait(lambda: self.replaced() == len(self._names), "the last file")

    def replaced(self):
        """How many of the files exiftool has replaced."""
        if self._before is None:
            return 0
        return sum(now != before for now, before
                   in zip(self._stamps(), self._before, strict=True))

    def _stamps(self):
        """What changes with each file when exiftool replaces it."""
        states = [os.stat(os.path.join(self._mutated, name)) for name in self._names]
        return [(state.st_ino, state.st_mtime_ns) for state in states]

    def _wait(self, condition, what):
        until = time.monotonic() + DEADLINE
        while not condition():
            if time.monotonic() > until:
                raise TimeoutError(f"{what} did not come about after: {self._lines}")
            time.sleep(_LOOK)

    # --- Its end

    def kill(self, child=None, program=False):
        """Whether those that were to be killed were there."""
        if child is not None:
            try:
                os.kill(child, signal.SIGKILL)
            except ProcessLookupError:
                return False
        if program:
            self._program.kill()
        return True

    def end(self):
        """Closes the program where it still runs, and gives its exit status."""
        self._program.stdin.close()
        status = self._program.wait(DEADLINE)
        self._program.stdout.close()
        return status


def images(folder):
    """The files in a folder of images and in those of its folders that have an image's name."""
    found = []
    for where, folders, files in os.walk(folder):
        folders[:] = [name for name in folders if name.lower().endswith((b".jpg", b".tif"))]
        found += [os.path.relpath(os.path.join(where, name), folder) for name in files]
    return found


def seconds_until_gone(child):
    """Waits for the end of a child whose program was killed; None where it takes too long."""
    started = time.monotonic()
    while time.monotonic() - started < DEADLINE:
        try:
            if os.waitpid(child, os.WNOHANG)[0] == child:
                return time.monotonic() - started
        except ChildProcessError:
            return time.monotonic() - started  # the program was there to see it end
        time.sleep(_LOOK)
    return None


def _is_running(process):
    """Whether it has not yet come to its end. What ended and was not asked after is a Z."""
    with open(f"/proc/{process}/stat", encoding="utf-8", errors="replace") as stat:
        return stat.read().rpartition(")")[2].split()[0] not in "ZX"
