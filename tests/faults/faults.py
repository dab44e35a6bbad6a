# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""Has every system call of a run fail once, and judges what each run leaves behind.

usage: faults.py DRIVER [--sample N] [--mode MODE] [--roll NAME] [--call FUNCTION] [--jobs N]

A run without a fault is watched first. Then, for each call that it made and each errno that
fits the call, a run over a fresh copy of the same roll has that call fail, once. The listing of
the folder is left out: what it cannot read, it passes over. So are the calls of the child.
"""

import argparse
import collections
import concurrent.futures
import errno
import os
import pathlib
import sys
import tempfile
import time

from judge import Judge
from rolls import ROLLS, Place
from runner import Run, RunFailed

MODES = ("backup-originals", "write-copies", "none")
PART = 0  # in place of an errno: half of the bytes asked for

READING = (errno.EIO, errno.EACCES, errno.EMFILE, errno.EINTR)
CREATING = (errno.EIO, errno.ENOSPC, errno.EACCES, errno.EROFS, errno.EMFILE, errno.EINTR)
CHANGING = (errno.EIO, errno.ENOSPC, errno.EACCES, errno.EROFS)
LOOKING = (errno.EIO, errno.EACCES)

# What each call can fail with, as far as its manual page and the kernel go.
ERRORS = {
    "access": (errno.EIO, errno.EACCES, errno.EROFS),
    "chmod": (errno.EIO, errno.EROFS, errno.EPERM),
    "close": (errno.EIO, errno.EINTR, errno.ENOSPC),
    "closedir": (errno.EIO, errno.EINTR),
    "copy_file_range": (errno.EIO, errno.ENOSPC, errno.EINTR, errno.EXDEV, errno.ENOSYS, PART),
    "fchmod": (errno.EIO, errno.EROFS, errno.EPERM),
    "fcntl": (errno.EIO, errno.EINTR),
    "fdatasync": (errno.EIO, errno.ENOSPC, errno.EROFS, errno.EINTR),
    "fdopendir": (errno.EIO, errno.ENOMEM),
    "flock": (errno.EIO, errno.EINTR, errno.ENOLCK),
    "fork": (errno.EAGAIN, errno.ENOMEM),
    "fstat": LOOKING,
    "fsync": (errno.EIO, errno.ENOSPC, errno.EROFS, errno.EINTR),
    "ftruncate": CHANGING + (errno.EINTR,),
    "futimens": (errno.EIO, errno.EROFS, errno.EACCES, errno.EPERM),
    "getrlimit": (errno.EPERM,),
    "ioctl": (errno.EIO, errno.ENOSPC, errno.EINTR, errno.EXDEV, errno.EOPNOTSUPP),
    "kill": (errno.EPERM,),
    "linkat": CHANGING,
    "lseek": (errno.EIO,),
    "lstat": LOOKING,
    "mkdir": CHANGING,
    "mkdtemp": CHANGING,
    "mkostemp": CREATING,
    "mmap": (errno.EACCES, errno.ENOMEM),
    "opendir": READING,
    "pipe2": (errno.EMFILE, errno.ENFILE),
    "poll": (errno.EINTR, errno.ENOMEM),
    "posix_spawn": (errno.EAGAIN, errno.ENOMEM, errno.EACCES, errno.EIO, errno.EMFILE),
    "read": (errno.EIO, errno.EINTR, PART),
    "readdir": (errno.EIO,),
    "readlink": LOOKING,
    "realpath": LOOKING,
    "remove": CHANGING,
    "rename": CHANGING,
    "renameat2": CHANGING + (errno.EINVAL,),
    "rmdir": CHANGING,
    "setrlimit": (errno.EPERM,),
    "stat": LOOKING,
    "statx": LOOKING,
    "symlink": CHANGING,
    "unlink": CHANGING,
    "unlinkat": CHANGING,
    "waitpid": (errno.EINTR, errno.ECHILD),
    "write": (errno.EIO, errno.ENOSPC, errno.EINTR, PART),
}

Point = collections.namedtuple("Point", "function subject occurrence errors")
Case = collections.namedtuple("Case", "roll mode point error")


def error_name(error):
    return errno.errorcode[error] if error else "part"


def errors_for(function, changes):
    if function in ("open", "openat"):
        return CREATING if changes else READING
    return ERRORS[function]


def points_of(calls):
    """Every call of a run, as what it is known by again in another."""
    first = next(i for i, call in enumerate(calls) if call[1].startswith("settings"))
    seen = collections.Counter()
    points = []
    for function, subject, changes in calls[first:]:
        seen[function, subject] += 1
        points.append(
            Point(function, subject, seen[function, subject], errors_for(function, changes))
        )
    return points


def watched(driver, roll, mode):
    """The points that two runs without a fault have in common: how often a child is looked
    after depends on its speed. And the judge that knows what such a run leaves."""
    common = None
    for _ in range(2):
        with Place(roll) as place:
            with Run(driver, place, mode) as run:
                result = run.first()
                judge = Judge(place, mode, result)
                found = points_of(result["calls"])
                common = found if common is None else [p for p in common if p in found]
    return common, judge


def try_case(driver, judge, case):
    """What is wrong after a case and after the run that follows it; None where the call that
    was to fail was never made."""
    for _ in range(3):
        with Place(case.roll) as place, Run(driver, place, case.mode, case) as run:
            try:
                result = run.first()
                if not result["met"]:
                    continue
                problems = judge.after_fault(place, case, result)
                before = place.files()
                problems += judge.after_next(place, before, run.next())
            except RunFailed as failure:
                return "other", [str(failure)]
            return result["state"], problems
    return "unmet", None


def parse(arguments):
    parser = argparse.ArgumentParser(
        prog="script/faults", description=__doc__.split("\n\n")[0].strip()
    )
    parser.add_argument("driver", type=pathlib.Path, help=argparse.SUPPRESS)
    parser.add_argument("--sample", type=int, metavar="N", help="try N cases, spread evenly")
    parser.add_argument("--mode", choices=MODES, help="one backup mode instead of all three")
    parser.add_argument("--roll", choices=sorted(ROLLS), help="one roll instead of all")
    parser.add_argument("--call", metavar="FUNCTION", help="one function instead of all")
    parser.add_argument("--jobs", type=int, default=os.cpu_count(), help="runs at a time")
    return parser.parse_args(arguments)


def show(rows):
    print(f"{'mode':<17} {'call':<16} {'points':>6} {'tried':>6} {'held':>6} {'done':>6} {'error':>6}")
    for (mode, function), row in rows.items():
        print(
            f"{mode:<17} {function:<16} {len(row['points']):>6} {row['tried']:>6}"
            f" {row['held']:>6} {row['done']:>6} {row['error']:>6}"
        )


def main(arguments):
    options = parse(arguments)
    started = time.monotonic()
    modes = [options.mode] if options.mode else MODES
    rolls = [options.roll] if options.roll else sorted(ROLLS)
    judges = {}
    cases = []
    for roll in rolls:
        for mode in modes:
            points, judges[roll, mode] = watched(options.driver, roll, mode)
            for point in points:
                if options.call in (None, point.function):
                    cases += [Case(roll, mode, point, error) for error in point.errors]
    if options.sample:
        step = max(1, len(cases) // options.sample)
        cases = cases[step // 2 :: step]

    rows = {}
    broken = []
    with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
        verdicts = pool.map(
            lambda case: try_case(options.driver, judges[case.roll, case.mode], case), cases
        )
        for number, (case, (state, problems)) in enumerate(zip(cases, verdicts), start=1):
            if number % 200 == 0:
                print(f"faults: {number} of {len(cases)} tried", file=sys.stderr, flush=True)
            row = rows.setdefault(
                (case.mode, case.point.function),
                {"points": set(), **dict.fromkeys(("tried", "held", "done", "error"), 0)},
            )
            row["points"].add((case.roll, case.point))
            row["tried"] += 1
            row["held"] += problems == []
            if state in row:
                row[state] += 1
            if problems != []:
                name = f"{case.point.function} #{case.point.occurrence} {error_name(case.error)}"
                complaint = problems or ["the call was not made again"]
                broken.append(
                    f"{case.mode}, roll {case.roll}: {name} on {case.point.subject}\n    "
                    + "\n    ".join(complaint)
                )
                print(f"NOT HELD {broken[-1]}", flush=True)

    show(dict(sorted(rows.items(), key=lambda row: (MODES.index(row[0][0]), row[0][1]))))
    points = sum(len(row["points"]) for row in rows.values())
    held = len(cases) - len(broken)
    print(
        f"faults: {points} calls, {len(cases)} faults tried, {held} held"
        f" ({time.monotonic() - started:.0f} s)"
    )
    return 0 if cases and not broken else 1


if __name__ == "__main__":
    tempfile.tempdir = os.path.realpath(tempfile.gettempdir())
    sys.exit(main(sys.argv[1:]))
