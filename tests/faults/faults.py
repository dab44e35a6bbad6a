# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""Has every system call of a run fail once, and judges what each run leaves behind.

usage: faults.py DRIVER [--sample N] [--mode MODE] [--roll NAME] [--call FUNCTION] [--jobs N]

A run without a fault is watched first. Then, for each call that it made and each errno that
fits the call, a run over a fresh copy of the same roll has that call fail, once. So it is for the
further calls of runs in which something fails always: where files cannot share blocks, where the
kernel cannot copy them, where names cannot change places, where the program cannot be started. The listing of the folder is left
out: what it cannot read, it passes over. So are the calls of the child once it is its program.
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

from errors import error_name, errors_for
from judge import CHILD_ITSELF, Judge
from rolls import ROLLS, Place
from runner import Run, RunFailed

MODES = ("backup-originals", "write-copies", "none")

# What fails in every call of a run, so that it goes another way: as FUNCTION SUBJECT OCCURRENCE
# ERRNO of the program that makes the runs, where no subject is any and occurrence 0 is every one.
# "anew" are the functions that do something else there under the name of a call of the usual way.
Way = collections.namedtuple("Way", "name always anew")
USUAL = Way("usual", (), ())
NOT_STARTED = Way("not started", (("execve", CHILD_ITSELF, 0, errno.EIO),), ())
WAYS = (
    USUAL,
    Way("in the kernel", (("ioctl(FICLONE)", "", 0, errno.EOPNOTSUPP),), ()),
    Way(
        "through memory",
        (("ioctl(FICLONE)", "", 0, errno.EOPNOTSUPP), ("copy_file_range", "", 0, errno.ENOSYS)),
        ("read", "write"),
    ),
    Way("in two steps", (("renameat2", "", 0, errno.EINVAL),), ()),
    NOT_STARTED,
)

# How often a run makes them depends on how long the child takes.
OF_A_SLOW_CHILD = ("poll", "waitpid")

Point = collections.namedtuple("Point", "function subject occurrence errors")
Case = collections.namedtuple("Case", "roll mode way point error")


def faults_of(case):
    return (*case.way.always, (case.point.function, case.point.subject, case.point.occurrence, case.error))


def points_of(calls):
    """Every call of a run after the listing, as what it is known by again in another."""
    first = next(i for i, call in enumerate(calls) if call[1].startswith("settings"))
    seen = collections.Counter()
    points = []
    for number, (function, subject, changes) in enumerate(calls):
        seen[function, subject] += 1
        if number >= first:
            point = Point(function, subject, seen[function, subject], errors_for(function, changes))
            points.append(point)
    return points


def watched(driver, roll, mode, way):
    """The points that two runs without a further fault have in common: how often a child is
    looked after depends on its speed. And the judge that knows what such a run leaves."""
    common = None
    for _ in range(2):
        with Place(roll) as place:
            with Run(driver, place, mode, way.always) as run:
                result = run.first()
                judge = Judge(place, mode, result) if way != NOT_STARTED else None
                found = points_of(result["calls"])
                common = found if common is None else [p for p in common if p in found]
    return common, judge


def cases_of(driver, roll, mode):
    """All the cases of a roll and a mode, with the judge of each way."""
    usual = None
    cases = []
    judges = {}
    for way in WAYS if mode != "none" else (USUAL, NOT_STARTED):
        points, judge = watched(driver, roll, mode, way)
        judges[way] = judge or judges[USUAL]
        usual = usual or points
        always = [(function, subject) for function, subject, _, _ in way.always]
        for point in points:
            known = point in usual and point.function not in way.anew
            fails = (point.function, "") in always or (point.function, point.subject) in always
            if way == USUAL or not (known or fails):
                cases += [Case(roll, mode, way, point, error) for error in point.errors]
    return cases, judges


def try_case(driver, judge, case):
    """What is wrong after a case and after the run that follows it; None where the call that
    was to fail was never made."""
    for _ in range(3):
        with Place(case.roll) as place, Run(driver, place, case.mode, faults_of(case)) as run:
            try:
                result = run.first()
                if not result["met"]:
                    continue
                problems = judge.after_fault(place, case, result)
                before = place.files()
                following = run.next()
                problems += judge.after_next(place, before, following)
                problems += judge.given_back(result, following)
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
            found, judges[roll, mode] = cases_of(options.driver, roll, mode)
            cases += [case for case in found if options.call in (None, case.point.function)]
    if options.sample:
        step = max(1, len(cases) // options.sample)
        cases = cases[step // 2 :: step]

    rows = {}
    broken = []
    quicker = 0
    with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
        verdicts = pool.map(
            lambda case: try_case(options.driver, judges[case.roll, case.mode][case.way], case),
            cases,
        )
        for number, (case, (state, problems)) in enumerate(zip(cases, verdicts), start=1):
            if number % 200 == 0:
                print(f"faults: {number} of {len(cases)} tried", file=sys.stderr, flush=True)
            if problems is None and case.point.function in OF_A_SLOW_CHILD:
                quicker += 1
                continue
            row = rows.setdefault(
                (case.mode, case.point.function),
                {"points": set(), **dict.fromkeys(("tried", "held", "done", "error"), 0)},
            )
            row["points"].add((case.roll, case.way, case.point))
            row["tried"] += 1
            row["held"] += problems == []
            if state in row:
                row[state] += 1
            if problems != []:
                name = f"{case.point.function} #{case.point.occurrence} {error_name(case.error)}"
                complaint = problems or ["the call was not made again"]
                broken.append(
                    f"{case.mode}, roll {case.roll}, {case.way.name}: {name} on {case.point.subject}\n    "
                    + "\n    ".join(complaint)
                )
                print(f"NOT HELD {broken[-1]}", flush=True)

    show(dict(sorted(rows.items(), key=lambda row: (MODES.index(row[0][0]), row[0][1]))))
    for mode in modes:
        of_mode = [row for (name, _), row in rows.items() if name == mode]
        points, tried, held = (
            sum(len(row["points"]) for row in of_mode),
            sum(row["tried"] for row in of_mode),
            sum(row["held"] for row in of_mode),
        )
        print(f"faults: {mode}: {points} calls, {tried} faults tried, {held} held")
    points = sum(len(row["points"]) for row in rows.values())
    tried = len(cases) - quicker
    held = tried - len(broken)
    if quicker:
        print(f"faults: {quicker} looks after a slow child did not come about again")
    print(
        f"faults: {points} calls, {tried} faults tried, {held} held"
        f" ({time.monotonic() - started:.0f} s)"
    )
    return 0 if held and not broken else 1


if __name__ == "__main__":
    tempfile.tempdir = os.path.realpath(tempfile.gettempdir())
    sys.exit(main(sys.argv[1:]))
