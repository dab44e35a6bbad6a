# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""Child processes that never outlive this one."""

import ctypes
import os
import pathlib
import signal
import subprocess

from .waiting import TimedOut, wait_until

_PR_SET_PDEATHSIG = 1
_PR_SET_CHILD_SUBREAPER = 36
_libc = ctypes.CDLL(None, use_errno=True)


def _end_with_parent():
    # Not SIGKILL: the launcher of the accessibility bus has that bus to end.
    _libc.prctl(_PR_SET_PDEATHSIG, signal.SIGTERM)


def start(command, **options):
    """Starts a child that the kernel ends should this process die without ending it."""
    return subprocess.Popen(
        [os.fspath(part) for part in command],
        stdin=subprocess.DEVNULL,
        preexec_fn=_end_with_parent,
        **options,
    )


def stop(process, patience=10.0):
    """Asks a child to end, and ends it where it does not."""
    if process.poll() is None:
        process.terminate()
        try:
            process.wait(patience)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()


def adopt_orphans():
    """From now on the children of ended children become children of this process."""
    _libc.prctl(_PR_SET_CHILD_SUBREAPER, 1)


def stop_adopted():
    """Ends every child that is left, the adopted ones too."""
    for action in (signal.SIGTERM, signal.SIGKILL):
        for child in _children():
            os.kill(child, action)
        try:
            wait_until(_reaped_all, "the desktop's helpers to end", deadline=5.0)
            return
        except TimedOut:
            continue


def _children():
    task = pathlib.Path("/proc/self/task") / str(os.getpid()) / "children"
    return [int(child) for child in task.read_text(encoding="ascii").split()]


def _reaped_all():
    try:
        while os.waitpid(-1, os.WNOHANG)[0]:
            pass
    except ChildProcessError:
        return True
    return False
