# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""Figures of the window: how long its one thread is kept from answering."""

import functools
import pathlib
import re
import statistics
import subprocess
import tempfile
import time

from display import VirtualDisplay
from files import multiply
from turns import in_turns

SCREENS = ("scanning", "ready", "detectionFailed", "manualEntry", "manualEntryWithPhoto",
           "writing", "done", "error")
STARTS = 5
SWITCHES = 5
OPENINGS = 3
SPINS = 6
DROPS = 8  # processes, each with so many pairs
PAIRS = 4
FILES = 500
FRAME = 16  # ms, at 60 frames a second
WATCHED = 4  # seconds
SPINNER = 3  # per cent of a core
PROMPT = 50  # ms until an event is handled


def screens(bench):
    """The main thread's time for a switch to each screen, and back to the idle one.

    What counts is its processor time, since other programs cost none of that; beside it
    stands the time on the clock.
    """
    with tempfile.TemporaryDirectory() as home, VirtualDisplay() as display:
        [frame] = bench.roll(pathlib.Path(home, "roll"), 1, width=600, height=400)
        environment = display.environment(home)
        got = {screen: [bench.tool("bench-screen", screen, SWITCHES, frame, env=environment)
                        for _ in range(STARTS)] for screen in SCREENS}

    def add(what, runs, name):
        processor, clock = (statistics.median(run[f"{name}{unit}"] for run in runs)
                            for unit in ("_processor_ms", "_ms"))
        bench.add(what, processor, clock, "ms", FRAME, beside="clock")

    for screen, runs in got.items():
        add(f"switch to {screen}, first time", runs, "first")
        add(f"switch to {screen}, later", runs, "again")
    add("switch back to idle", [run for runs in got.values() for run in runs], "back")


def response(bench):
    """The longest wait of an event that comes every 10 ms while the program works."""
    with tempfile.TemporaryDirectory() as home, VirtualDisplay() as display:
        environment = display.environment(home)
        large, many = pathlib.Path(home, "large"), pathlib.Path(home, "many")
        bench.roll(large, 1, 100, "jpeg")
        large_frames = bench.roll(large, 1, 100, "tiff16")
        multiply(bench.roll(many, 1, width=600, height=400)[0], FILES)

        def measure(what, work, arguments):
            runs = [bench.tool("bench-response", work, argument, env=environment)
                    for argument in arguments]
            longest = max(run["max_ms"] for run in runs)
            bench.add(f"event while {what}", longest, max(run["p99_ms"] for run in runs), "ms",
                      PROMPT, beside="99 of 100")

        measure("nothing happens", "idle", [3])
        measure("100 MP frames are scanned", "scan", [large] * OPENINGS)
        measure("a 100 MP slate photo opens", "photo", large_frames * OPENINGS)
        measure(f"{FILES} files are written", "run", [many])


def spinner(bench):
    """What part of a core the screens with a spinner take, beside the idle one."""
    with tempfile.TemporaryDirectory() as home, VirtualDisplay() as display:
        environment = display.environment(home)

        def watch(screen):
            return bench.tool("bench-spinner", screen, WATCHED, env=environment)["core_percent"]

        shares = in_turns(SPINS, {screen: functools.partial(watch, screen)
                                  for screen in ("scanning", "idle", "writing")})
    still = statistics.median(shares.pop("idle"))
    for screen, turning in shares.items():
        bench.add(f"processor time of the {screen} screen", statistics.median(turning), still, "%",
                  SPINNER, beside="idle", pairs=len(turning))


def plan(bench):
    """From the drop of a roll to its plan, where the slate is in the first frame.

    The first drop that a process sees, once its window is at rest, beside what luma took that
    process later; and the drops after it. Of each, 30 ms are for listing and for the screens.
    """
    with tempfile.TemporaryDirectory() as home, VirtualDisplay() as display:
        roll = pathlib.Path(home, "roll")
        bench.roll(roll, 2, **{"slate-at": 1})
        got = [bench.tool("bench-ingest", "plan", roll, PAIRS, env=display.environment(home))
               for _ in range(DROPS)]
    later = [pair for process in got for pair in process["pairs"]]
    first = [(process["first_ms"], statistics.median(luma for _, luma in process["pairs"]))
             for process in got]
    for when, pairs in (("first drop", first), ("later drop", later)):
        pairs = [(plan - 30, luma) for plan, luma in pairs]
        bench.add(f"{when} to plan less 30 ms, slate in a 24 MP JPEG",
                  statistics.median(plan for plan, _ in pairs),
                  statistics.median(luma for _, luma in pairs), "ms", 1.3, beside="luma",
                  ratio=statistics.median(plan / luma for plan, luma in pairs),
                  pairs=len(pairs))


def ingests(bench):
    """Memory after twenty rolls against that after one; all frames are looked at each time."""
    with tempfile.TemporaryDirectory() as home, VirtualDisplay() as display:
        roll = pathlib.Path(home, "roll")
        bench.roll(roll, 36, 4, **{"slate-at": 36})
        got = bench.tool("bench-ingest", "again", roll, 20, env=display.environment(home))
    after = got["after_mb"]
    bench.add(f"memory after {len(after)} ingests of 36 frames", after[-1], after[0], "MB", 1.02,
              beside="after 1", ratio=after[-1] / after[0], points=list(enumerate(after, 1)))


def idle(bench):
    """What a window that nobody touches costs in a minute."""
    with tempfile.TemporaryDirectory() as home, VirtualDisplay() as display:
        environment = display.environment(home)
        ours, empty = (rest(bench.bin / name, environment)
                       for name in ("quillmark", "bench-empty-window"))
    for index, (what, unit, limit) in enumerate(
            (("processor time of an idle minute", "ms", 5), ("wake-ups in an idle minute", "", 0))):
        bench.add(what, ours[index], empty[index], unit, limit, beside="empty")
    bench.add("memory after an idle minute", ours[-1], empty[-1], "MB", beside="empty",
              ratio=ours[-1] / empty[-1])


def rest(program, environment):
    """Milliseconds of processor time, and how often a thread was woken, while nothing happens.

    And MB resident afterwards.
    """
    with subprocess.Popen([program], env=environment, stdout=subprocess.DEVNULL,
                          stderr=subprocess.DEVNULL) as process:
        try:
            settle(process.pid)
            before = spent(process.pid)
            time.sleep(60)
            after = spent(process.pid)
            memory = resident(process.pid)
        finally:
            process.kill()
    return [*(later - earlier for earlier, later in zip(before, after)), memory]


def resident(pid):
    """How much of a process is in memory, in MB."""
    status = pathlib.Path(f"/proc/{pid}/status").read_text(encoding="ascii")
    return int(re.search(r"VmRSS:\s+(\d+)", status).group(1)) * 1024 / 1e6


def settle(pid, quiet=5):
    """Returns when a program has had no processor time for some seconds."""
    last, since = spent(pid), time.monotonic()
    while time.monotonic() - since < quiet:
        time.sleep(0.5)
        now = spent(pid)
        if now != last or now[0] < 1:
            last, since = now, time.monotonic()


def spent(pid):
    """Milliseconds of processor time of all threads, and how often they have waited."""
    milliseconds = waits = 0
    for task in pathlib.Path(f"/proc/{pid}/task").iterdir():
        milliseconds += int((task / "schedstat").read_text(encoding="ascii").split()[0]) / 1e6
        status = (task / "status").read_text(encoding="ascii")
        waits += int(re.search(r"^voluntary_ctxt_switches:\s+(\d+)", status, re.M).group(1))
    return milliseconds, waits
