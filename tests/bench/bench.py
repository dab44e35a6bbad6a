# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""Prints the program's figures beside their floors, as a table and as JSON.

usage: bench.py BUILD_FOLDER [FIGURE...]
       bench.py BUILD_FOLDER recall [SEED [FRAMES]] [OPTION...]
       bench.py BUILD_FOLDER table|plot [FILE.svg]
"""

import functools
import json
import pathlib
import statistics
import subprocess
import sys
import tempfile
import time

import files
import recall
import report
import window
from display import VirtualDisplay
from turns import in_turns

PAIRS = 8  # even: each of the two comes first as often
STARTS = 24
FRAME = {"width": 6000, "height": 4000}  # 24 megapixels
SEED = 7
HARD_FRAMES = 48
EMPTY_FRAMES = 36


class Bench:
    def __init__(self, build):
        self.bin = pathlib.Path(build).resolve() / "bin"
        self.results = pathlib.Path(build).resolve() / "bench.json"
        self.rows = []  # of the figure that is being measured
        self.met = self.limited = 0
        self.failed = []

    def tool(self, *arguments, env=None):
        """Runs a program of the build and gives the JSON that it prints."""
        command = [str(self.bin / arguments[0]), *map(str, arguments[1:])]
        answer = subprocess.run(command, check=True, stdout=subprocess.PIPE, env=env)
        return json.loads(answer.stdout)

    def roll(self, folder, frames, megapixels=None, form="jpeg", **options):
        size = {"megapixels": megapixels} if megapixels else FRAME
        arguments = {"frames": frames, "slate-at": 0, "format": form, "seed": 1, **size, **options}
        command = [str(self.bin / "sample-roll")]
        for name, value in arguments.items():
            command += [f"--{name}", str(value)]
        subprocess.run([*command, str(folder)], check=True, stdout=subprocess.DEVNULL)
        return sorted(pathlib.Path(folder).iterdir())

    def add(self, what, ours, peer, unit, limit=None, *, beside="floor", **more):
        """Notes and prints what was measured, in `unit`; `peer` is what `beside` took, if any.

        The limit is of the `ratio` or the `exponent` where one is among `more`, and else of what
        was measured; without a limit the row only informs. `pairs` are how many pairs the ratio
        is the median of, and `points` pairs of a size and its cost, where the figure was found
        from such.
        """
        row = {"what": what, "ours": round(ours, 4),
               "peer": None if peer is None else round(peer, 4), "unit": unit, "beside": beside,
               "limit": limit, "met": None,
               **{name: round(value, 4) if isinstance(value, float) else value
                  for name, value in more.items()}}
        value, shown = report.figure(row)
        end = ""
        mark = ""
        if limit is not None:
            row["met"] = value <= limit
            mark = "ok" if row["met"] else "OVER"
            end = f"  at most {report.number(limit)}"
        self.rows.append(row)
        beside = f"{beside} {report.amount(row['peer'], unit)}".strip()
        print(f"{mark:<4} {what:<52} {report.amount(ours, unit):>9}  {beside:>28}  "
              f"{shown:>9}{end}", flush=True)

    def frame(self):
        """One frame against the decoding of its luma, and what the worst frames take."""
        for what, options in (("without a code", {}),
                              ("with a large clean code", {"slate-at": 1, "code-size": 20})):
            with tempfile.TemporaryDirectory() as folder:
                [frame] = self.roll(folder, 1, **options)
                got = self.tool("bench-scan", "time", frame, PAIRS)
            self.add(f"frame {what}, 24 MP JPEG", got["detect_ms"], got["luma_ms"], "ms", 1.3,
                     ratio=got["ratio"], pairs=PAIRS)
            print(f"     in processor time {got['cpu_ratio']:.2f} x")
        hardest = max((picture for picture in self.read_simulated("slates", HARD_FRAMES)
                       if picture["read"]), key=lambda picture: picture["cpu_ms"])
        busiest = max(self.read_simulated("empty", EMPTY_FRAMES),
                      key=lambda picture: picture["cpu_ms"])
        for what, picture in (("hardest slate read", hardest),
                              ("busiest picture without a code", busiest)):
            self.add(f"{what} ({picture['class']})", picture["cpu_ms"], None, "ms", 1500,
                     beside="one core")

    def read_simulated(self, name, count):
        """What our reader made of the first pictures of a simulated set, and in what time.

        Processor time is what one core takes, however busy it is with others.
        """
        command = [self.bin / "bench-recall", name, SEED, 0, 1, count, "quillmark"]
        answer = subprocess.run([str(word) for word in command], check=True,
                                stdout=subprocess.PIPE)
        pictures = [json.loads(line) for line in answer.stdout.splitlines()]
        return [{"class": picture["class"], **picture["readers"]["quillmark"]}
                for picture in pictures]

    def memory(self):
        """The peak of a scan against what the frame itself takes."""
        for form, megapixels in (("jpeg", 24), ("tiff16", 24), ("jpeg", 100), ("tiff16", 100)):
            with tempfile.TemporaryDirectory() as folder:
                [frame] = self.roll(folder, 1, megapixels, form)
                got = self.tool("bench-scan", "memory", frame)
            self.add(f"peak memory of a scan, {megapixels} MP {form}", got["peak_mb"], megapixels,
                     "MB", 60 + 1.3 * megapixels, beside="luma")

    def tiff(self):
        """One TIFF frame without a code against reading or decoding it in one thread.

        Beside the time stands the processor time, which other programs disturb less.
        """
        with tempfile.TemporaryDirectory() as folder:
            [frame] = self.roll(folder, 1, form="tiff16")
            self.tiff_time("uncompressed", "stored", frame, 1.5)
            for coding in ("lzw", "deflate"):
                for predictor in (1, 2):
                    for layout in ("strips", "tiles"):
                        packed = frame.with_name("packed.tif")
                        self.tool("bench-tiff", "make", frame, packed, coding, predictor, layout)
                        self.tiff_time(f"{coding} {predictor}, {layout}", "packed", packed, 0.6)
                self.tool("bench-tiff", "make", frame, packed, coding, 2, "single")
                self.tiff_memory(f"24 MP {coding}, one strip", packed, 24)
            self.tiff_memory("24 MP uncompressed", frame, 24)
            self.tool("bench-tiff", "grey", frame, 20000)
            self.tiff_memory("400 MP grey", frame, 400)

    def tiff_time(self, what, kind, frame, limit):
        got = self.tool("bench-tiff", kind, frame, PAIRS)
        self.add(f"24 MP TIFF, {what}", got["detect_ms"], got["floor_ms"], "ms", limit,
                 ratio=got["ratio"], pairs=PAIRS)
        print(f"     in processor time {got['cpu_ratio']:.2f} x")

    def tiff_memory(self, what, frame, megapixels):
        got = self.tool("bench-tiff", "memory", frame)
        self.add(f"peak memory, TIFF of {what}", got["peak_mb"], megapixels, "MB",
                 60 + 1.3 * megapixels, beside="luma")

    def picture(self):
        """The peak of a picture for looking at against the three bytes of its pixels."""
        side = 1000
        for form in ("jpeg", "tiff16"):
            with tempfile.TemporaryDirectory() as folder:
                [frame] = self.roll(folder, 1, 100, form)
                got = self.tool("bench-picture", frame, side)
            pixels = 3 * side * side * 2 / 3 / 1e6
            self.add(f"peak memory of a picture, 100 MP {form}", got["peak_mb"], pixels, "MB", 32,
                     beside="pixels")

    def start(self):
        """The window's first frame against that of an empty QML window.

        Beside it, what is on the way from one to the other: Qt Widgets, and a first text.
        """
        programs = {"": ["quillmark"],
                    ", empty with QApplication": ["bench-widgets-window"],
                    ", empty with a text": ["bench-empty-window", "text"],
                    ", empty with both": ["bench-widgets-window", "text"],
                    "empty": ["bench-empty-window"]}
        with tempfile.TemporaryDirectory() as home, VirtualDisplay() as display:
            environment = {**display.environment(home),
                           "QT_LOGGING_RULES": "qt.scenegraph.time.renderloop=true"}
            starts = {name: functools.partial(first_frame, [self.bin / program, *arguments],
                                              environment)
                      for name, (program, *arguments) in programs.items()}
            for start in starts.values():  # caches warm
                start()
            got = in_turns(STARTS, starts)
        empty = got.pop("empty")
        for name, ours in got.items():
            for index, (what, unit, limit) in enumerate(
                    (("start to first frame", "ms", 1.2), ("memory at first frame", "MB", 1.15))):
                measured = [(one[index], other[index]) for one, other in zip(ours, empty)]
                self.add(what + name, statistics.median(one for one, _ in measured),
                         statistics.median(other for _, other in measured), unit,
                         None if name else limit, pairs=len(measured),
                         ratio=statistics.median(one / other for one, other in measured))

    def measure(self, name, figure):
        """Measures a figure and writes it at once, so that none is lost by another that fails.

        Others stay as they are in the file of results.
        """
        self.rows = []
        try:
            figure()
        except (OSError, RuntimeError, ValueError, subprocess.SubprocessError) as failure:
            self.failed.append(name)
            print(f"FAIL {name}: {failure}", flush=True)
            return
        earlier = report.read(self.results) if self.results.exists() else []
        rows = [row for row in earlier if row["of"] != name]
        rows += [{"of": name, **row} for row in self.rows]
        self.results.write_text(json.dumps(rows, indent=1) + "\n", encoding="utf-8")
        limited = [row["met"] for row in self.rows if row["limit"] is not None]
        self.limited += len(limited)
        self.met += sum(limited)

    def finish(self):
        print(f"{self.met} of {self.limited} limits met; written to {self.results.name}")
        if self.failed:
            sys.exit(f"bench: not measured: {' '.join(self.failed)}")


def first_frame(command, environment):
    """Milliseconds from the process' start to its first frame, and MB resident then.

    Qt's own render timing tells of each frame; the first that was swapped is taken.
    """
    started = time.monotonic()
    process = subprocess.Popen(command, env=environment, stderr=subprocess.PIPE,
                               stdout=subprocess.DEVNULL)
    try:
        for line in process.stderr:
            if b"rendered" in line or b"swap" in line:
                elapsed = (time.monotonic() - started) * 1000
                return elapsed, window.resident(process.pid)
    finally:
        process.kill()
        process.wait()
    raise RuntimeError(f"{command[0].name} ended without a frame")


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    bench = Bench(sys.argv[1])
    if sys.argv[2:3] == ["recall"]:
        recall.run(bench, sys.argv[3:])
        return
    if sys.argv[2:3] == ["plot"]:
        report.draw(bench.results, sys.argv[3])
        return
    if sys.argv[2:3] == ["table"]:
        report.table(bench.results)
        return
    figures = {"frame": bench.frame, "memory": bench.memory, "tiff": bench.tiff,
               "picture": bench.picture, "start": bench.start}
    for module, names in ((files, ("listing", "backup", "run", "growth", "limit")),
                          (window, ("plan", "idle", "spinner", "ingests", "screens",
                                    "response"))):
        for name in names:
            figures[name] = functools.partial(getattr(module, name), bench)
    unknown = set(sys.argv[2:]) - set(figures)
    if unknown:
        sys.exit(f"bench: no such figure: {' '.join(unknown)}\n{__doc__}")
    for name in sys.argv[2:] or figures:
        bench.measure(name, figures[name])
    bench.finish()


if __name__ == "__main__":
    main()
