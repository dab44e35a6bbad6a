# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""Waiting for something to become true."""

import time

# Seconds for anything that the window itself does.
DEADLINE = 20.0
# Seconds for a scan or a run over a few small frames, on a busy machine.
WORK_DEADLINE = 90.0
_PAUSE = 0.02


class TimedOut(AssertionError):
    """What was waited for did not come about in time."""


def wait_until(condition, what, deadline=DEADLINE, details=None):
    """Asks `condition` again and again until it gives something true, and returns that.

    `what` says what is waited for, and `details` (called once, on failure) what there was
    instead. Raises TimedOut after `deadline` seconds.
    """
    end = time.monotonic() + deadline
    while True:
        result = condition()
        if result:
            return result
        if time.monotonic() > end:
            found = f"\n{details()}" if details else ""
            raise TimedOut(f"after {deadline:g} s still waiting for {what}{found}")
        time.sleep(_PAUSE)
