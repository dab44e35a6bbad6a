# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""Figures of the window: how long its one thread is kept from answering."""

import pathlib
import shutil
import statistics
import tempfile

from display import VirtualDisplay

SCREENS = ("scanning", "ready", "detectionFailed", "manualEntry", "manualEntryWithPhoto",
           "writing", "done", "error")
STARTS = 5
SWITCHES = 5
OPENINGS = 3
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
        bench.add(what, f"{processor:.1f} ms", f"{clock:.1f} ms", processor, FRAME, "ms",
                  beside="clock")

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
            bench.add(f"event while {what}", f"{longest:.1f} ms",
                      f"{max(run['p99_ms'] for run in runs):.1f} ms", longest, PROMPT, "ms",
                      beside="99 of 100")

        measure("nothing happens", "idle", [3])
        measure("100 MP frames are scanned", "scan", [large] * OPENINGS)
        measure("a 100 MP slate photo opens", "photo", large_frames * OPENINGS)
        measure(f"{FILES} files are written", "run", [many])


def spinner(bench):
    """What part of a core the scanning screen takes, beside the idle one."""
    with tempfile.TemporaryDirectory() as home, VirtualDisplay() as display:
        environment = display.environment(home)

        def share(screen):
            return statistics.median(
                bench.tool("bench-spinner", screen, WATCHED, env=environment)["core_percent"]
                for _ in range(OPENINGS))

        turning, still = share("scanning"), share("idle")
    bench.add("processor time while the spinner turns", f"{turning:.2f} %", f"{still:.2f} %",
              turning, SPINNER, "%", beside="idle")


def multiply(frame, count):
    """Makes copies of a frame beside it, until there are as many."""
    for number in range(1, count):
        shutil.copy(frame, frame.with_name(f"{frame.stem}-{number:04}{frame.suffix}"))
