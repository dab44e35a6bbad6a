# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""Kills runs at arbitrary moments, and looks whether anything was lost.

usage: kill_test.py BUILD_FOLDER [COUNT] [--seed N] [--jobs N]

Each kill has a folder of 36 images of its own, three of them in a folder with an image's name.
In every fourth, an earlier run has come to its end. In turn the backup modes and the victims are
gone through: the program, its exiftool, or both. A kill comes at a random moment of one of these
phases, whose lengths are measured first, in runs that are left alone:

  preparation  from the beginning until exiftool is started
  start        until exiftool has replaced the first file
  writing      until it has replaced the last one
  end          until the program has said so, and a moment longer

Then every image must open with the pixels that it had; every original must be what it was, or
be tagged as in a whole run and have its backup, where the mode promises one; and a new run, in
the same mode or in another one, must succeed and leave nothing but what a run leaves that was
never killed, and what is not its business in the other mode's folder.
"""

import argparse
import collections
import concurrent.futures
import os
import pathlib
import random
import shutil
import statistics
import sys
import tempfile
import threading
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "e2e"))

from harness import processes  # noqa: E402  (found through the line above, as by roll)
from roll import Roll, Start, contents  # noqa: E402
from subject import MODES, Run, seconds_until_gone  # noqa: E402

PHASES = ("preparation", "start", "writing", "end")
# Before exiftool is started there is only the program.
AIMS = {
    "program": ("writing", "preparation", "start", "preparation", "writing", "end"),
    "exiftool": ("writing", "start", "writing", "end"),
    "both": ("writing", "start", "writing", "end"),
}
VICTIMS = tuple(AIMS)
LEARNING_RUNS = 2  # of each mode
# Seconds that exiftool may outlive its program by, on a busy machine.
GRACE = 5.0
# One kill of so many meets a roll that a run has gone over before.
AGAIN = 4
# A kill that finds its victim gone already is tried again.
TRIES = 20

Case = collections.namedtuple("Case", "start mode next_mode victim aim")
Kill = collections.namedtuple("Kill", "case phase losses left_behind outlived")


class Lengths:
    """How long the phases take, in seconds, by mode and phase."""

    def __init__(self):
        self._seen = collections.defaultdict(list)

    def add(self, mode, moments):
        for phase, begin, end in zip(PHASES, moments[:-1], moments[1:], strict=True):
            self._seen[mode, phase].append(end - begin)

    def of(self, mode, phase):
        return statistics.median(self._seen[mode, phase])


class KillTest:
    def __init__(self, build, work, seed):
        self._subject = build / "bin" / "kill-subject"
        self._work = os.fsencode(work)
        self._seed = seed
        self._lengths = Lengths()
        self._roll = None
        self._earlier = {}
        self.missed = 0
        self._counting = threading.Lock()

    # --- Runs that are left alone

    def learn(self):
        """Makes the roll, and runs over it undisturbed: for the times, and for the result."""
        self._roll = Roll(self._subject, self._path(b"roll"))
        for mode in MODES:
            folder = self._path(mode.encode())
            copying = mode == "write-copies"
            for _ in range(LEARNING_RUNS):
                self._roll.copy(self._roll.untouched, folder)
                self._lengths.add(mode, self._measure(folder, mode))
                self._roll.learn(os.path.join(folder, b"_tagged") if copying else folder, 1)
            self._earlier[mode] = Start(folder, 0 if copying else 1, mode)
        folder = self._path(b"again")
        self._roll.copy(self._earlier["none"], folder)
        for times in (2, 3):
            self._measure(folder, "none")
            self._roll.learn(folder, times)
        shutil.rmtree(folder)

    def _measure(self, folder, mode):
        """The moments at which the phases of a whole run begin, and its end."""
        run = Run(self._subject, folder, mode)
        run.line("writing")
        moments = [time.monotonic()]
        for moment in (run.await_child, run.await_first_file, run.await_last_file):
            moment()
            moments.append(time.monotonic())
        run.line("done")
        moments.append(time.monotonic())
        if run.end() != 0:
            raise RuntimeError("a run without a kill failed")
        return moments

    def lengths(self):
        return "\n".join(
            f"{mode:<18}" + "".join(f"{self._lengths.of(mode, phase) * 1000:>10.0f} ms"
                                    for phase in PHASES) for mode in MODES)

    # --- Kills

    def case(self, number):
        """What is gone through in turn. With each kill of a later run, the modes of that and of
        the earlier one go through all pairs, and the victims follow at another pace."""
        start = self._roll.untouched
        if number % AGAIN == AGAIN - 1:
            number //= AGAIN
            start = self._earlier[MODES[number // len(MODES) % len(MODES)]]
            number += number // len(MODES) // len(MODES) * len(MODES)
        mode = MODES[number % len(MODES)]
        victim = VICTIMS[number // len(MODES) % len(VICTIMS)]
        # Each nine kills have each mode followed by each.
        turn = number % len(MODES) + number // len(MODES) + number // len(MODES) // len(VICTIMS)
        next_mode = MODES[(number + turn) % len(MODES)]
        aims = AIMS[victim]
        # Moved on by a place with the modes, so that a short test sees several phases as well.
        aim = aims[(number // len(MODES) // len(VICTIMS) + number % len(MODES)) % len(aims)]
        return Case(start, mode, next_mode, victim, aim)

    def kill(self, number):
        """Kills one run and looks at what it left, and at the run that follows."""
        case = self.case(number)
        chance = random.Random(f"{self._seed} {number}")
        folder = self._path(b"kill-%d" % number)
        for _ in range(TRIES):
            self._roll.copy(case.start, folder)
            kill = self._kill_once(folder, case, chance.random())
            if kill:
                if not kill.losses:
                    shutil.rmtree(folder)
                return kill
            with self._counting:
                self.missed += 1
        raise RuntimeError(
            f"{case.victim} was gone at each of {TRIES} moments of phase {case.aim}")

    def _kill_once(self, folder, case, fraction):
        start, mode, next_mode, victim, aim = case
        run = Run(self._subject, folder, mode)
        self._wait_for(run, aim)
        # A little longer than the phase, where that is not beyond the run.
        time.sleep(fraction * self._lengths.of(mode, aim) * 1.05)
        child = run.child()
        if victim != "program" and child is None:
            run.end()
            return None
        replaced = run.replaced()
        if not run.kill(child if victim != "program" else None, program=victim != "exiftool"):
            run.end()
            return None

        losses, outlived = [], 0.0
        if victim == "exiftool":
            line = run.line("error", "done")
            if line.startswith("done"):  # the kill met a child that had come to its end
                run.end()
                return None
            if "exiftool exited with code 137" not in line:
                losses.append(f"the program said: {line}")
            if run.end() != 1:
                losses.append("the program did not end as after an error")
        else:
            if run.end() != -9:
                losses.append("the program was not killed")
            outlived = seconds_until_gone(child) if child else 0.0
            if outlived is None or outlived > GRACE:
                losses.append("exiftool stayed without its program")
            # A roll takes it less than that: left to itself, it would have gone to the end.
            written = self._roll.written(folder, mode, start)
            if child and replaced < len(self._roll.names) / 2 and \
                    written == len(self._roll.names):
                losses.append(f"exiftool went on without its program, from {replaced} files "
                              f"to {written}")
        phase, lost, left_behind = self._judge(folder, case, run.child_seen)
        losses += lost
        if not losses:
            losses = self._run_again(folder, next_mode)
        return Kill(case, phase, losses, left_behind, outlived)

    def _wait_for(self, run, aim):
        run.line("writing")
        waits = (run.await_child, run.await_first_file, run.await_last_file)
        for wait in waits[:PHASES.index(aim)]:
            wait()

    def _judge(self, folder, case, child_seen):
        written = self._roll.written(folder, case.mode, case.start)
        if not child_seen:
            phase = "preparation"
        elif written == 0:
            phase = "start"
        else:
            phase = "writing" if written < len(self._roll.names) else "end"
        return phase, *self._roll.losses(folder, case.mode, case.start)

    def _run_again(self, folder, mode):
        earlier = contents(folder)
        run = Run(self._subject, folder, mode)
        line = run.line("done", "error")
        expected = f"done {self._roll.entries}"
        if run.end() != 0 or line != expected:
            return [f"the next run said: {line}"]
        return self._roll.omissions(folder, mode, earlier)

    def _path(self, name):
        return os.path.join(self._work, name)


# --- What is printed


def table(kills, column, columns):
    """Kills that held of all kills, by phase and column."""
    def cell(part):
        held = sum(not kill.losses for kill in part)
        return f"{held}/{len(part)}" if part else "-"

    lines = [f"{'phase':<18}" + "".join(f"{name:>18}" for name in (*columns, "all"))]
    for phase in (*PHASES, "all"):
        row = [kill for kill in kills if phase in ("all", kill.phase)]
        cells = [cell([kill for kill in row if getattr(kill.case, column) == name])
                 for name in columns]
        lines.append(f"{phase:<18}" + "".join(f"{text:>18}" for text in (*cells, cell(row))))
    return "\n".join(lines)


def report(kills, missed, seconds, seed):
    held = sum(not kill.losses for kill in kills)
    temporary = sum(any(path.endswith(b"_exiftool_tmp") for path in kill.left_behind)
                    for kill in kills)
    unfinished = sum(any(b".quillmark-" in path for path in kill.left_behind) for kill in kills)
    other = sum(kill.case.mode != kill.case.next_mode for kill in kills)
    again = [(kill.case.start.mode, kill.case.mode) for kill in kills if kill.case.start.mode]
    outlived = max((kill.outlived or 0.0 for kill in kills if kill.case.victim == "program"),
                   default=0)
    print(f"\nheld of killed, by phase and victim\n{table(kills, 'victim', VICTIMS)}")
    print(f"\nheld of killed, by phase and backup mode\n{table(kills, 'mode', MODES)}")
    print(f"\nexiftool's temporary file was left behind {temporary} times, a copy under way "
          f"{unfinished} times")
    print(f"an earlier run had come to its end {len(again)} times, in {len(set(again))} of "
          f"{len(MODES) ** 2} pairs of modes; the next was in another mode {other} times")
    print("exiftool outlived a killed program by "
          f"{outlived * 1000:.0f} ms at most; {missed} moments came too late and were drawn again")
    print(f"kill-test: {held} of {len(kills)} held, {len(kills) - held} broken "
          f"(seed {seed}, {seconds / 60:.1f} min)", flush=True)
    return held == len(kills)


def run(options, work):
    started = time.monotonic()
    test = KillTest(options.build.resolve(), work, options.seed)
    test.learn()
    print(f"phases of a run that is left alone\n{'':<18}"
          + "".join(f"{phase:>13}" for phase in PHASES) + f"\n{test.lengths()}", flush=True)
    kills = []
    with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
        for number, kill in enumerate(pool.map(test.kill, range(options.count)), 1):
            kills.append(kill)
            for loss in kill.losses:
                print(f"BROKEN kill {number} ({kill.case.victim}, {kill.phase}, {kill.case.mode}, "
                      f"then {kill.case.next_mode}): {loss}")
            if number % 20 == 0:
                print(f"{number} of {options.count} kills", flush=True)
    return report(kills, test.missed, time.monotonic() - started, options.seed)


def main():
    parser = argparse.ArgumentParser(
        prog="script/kill-test", description=__doc__.partition("\n\n")[0],
        epilog=__doc__.partition("\n\n")[2].partition("\n\n")[2],
        formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("build", type=pathlib.Path, metavar="BUILD_FOLDER", help=argparse.SUPPRESS)
    parser.add_argument("count", type=int, nargs="?", default=200, metavar="COUNT",
                        help="how many runs to kill (default: 200)")
    parser.add_argument("--seed", type=int, default=None,
                        help="draws the same moments again (default: another one each time)")
    parser.add_argument("--jobs", type=int, default=2,
                        help="how many runs at a time (default: 2)")
    options = parser.parse_args()
    if options.count < 1 or options.jobs < 1:
        parser.error("COUNT and --jobs are 1 at least")
    if options.seed is None:
        options.seed = random.SystemRandom().randrange(1_000_000)

    processes.adopt_orphans()  # so that the end of a killed program's child can be waited for
    work = tempfile.mkdtemp(prefix="quillmark-kills-")
    held = False
    try:
        held = run(options, work)
    finally:
        if held:
            shutil.rmtree(work)
        else:
            print(f"kill-test: what was left is in {work}", file=sys.stderr)
    return 0 if held else 1


if __name__ == "__main__":
    sys.exit(main())
