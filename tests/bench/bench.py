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
import re
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

PAIRS = 8  # even: each of the two comes first as often
FRAME = {"width": 6000, "height": 4000}  # 24 megapixels
SEED = 7
HARD_FRAMES = 48
EMPTY_FRAMES = 36


class Bench:
    def __init__(self, build):
        self.bin = pathlib.Path(build).resolve() / "bin"
        self.results = pathlib.Path(build).resolve() / "bench.json"
        self.rows = []

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

    def add(self, what, measured, floor, figure, limit, unit="x", beside="floor", points=None):
        """Notes and prints a figure; `floor` is what it was measured beside, named `beside`.

        `points` are pairs of a size and its cost in milliseconds, where the figure was found
        from such.
        """
        self.rows.append(
            {"what": what, "measured": measured, "floor": floor, "figure": round(figure, 3),
             "beside": beside, "limit": round(limit, 3), "unit": unit, "met": figure <= limit,
             **({"points": points} if points else {})})
        mark = "ok  " if figure <= limit else "OVER"
        print(f"{mark} {what:<48} {measured:>12}  {beside:>9} {floor:>9}  "
              f"{figure:8.2f} {unit:<2}  at most {limit:.2f}", flush=True)

    def frame(self):
        """One frame against the decoding of its luma, and what the worst frames take."""
        for what, options in (("without a code", {}),
                              ("with a large clean code", {"slate-at": 1, "code-size": 20})):
            with tempfile.TemporaryDirectory() as folder:
                [frame] = self.roll(folder, 1, **options)
                got = self.tool("bench-scan", "time", frame, PAIRS)
            self.add(f"frame {what}, 24 MP JPEG", f"{got['detect_ms']:.0f} ms",
                     f"{got['luma_ms']:.0f} ms", got["ratio"], 1.3)
            print(f"     in processor time {got['cpu_ratio']:.2f} x")
        hardest = max((picture for picture in self.read_simulated("slates", HARD_FRAMES)
                       if picture["read"]), key=lambda picture: picture["cpu_ms"])
        busiest = max(self.read_simulated("empty", EMPTY_FRAMES),
                      key=lambda picture: picture["cpu_ms"])
        for what, picture, limit in (("hardest slate read", hardest, 1.5),
                                     ("busiest picture without a code", busiest, 1.5)):
            self.add(f"{what} ({picture['class']})", f"{picture['cpu_ms']:.0f} ms", "1 core",
                     picture["cpu_ms"] / 1000, limit, "s", "on")

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
            self.add(f"peak memory of a scan, {megapixels} MP {form}", f"{got['peak_mb']:.0f} MB",
                     f"{megapixels} MB", got["peak_mb"], 60 + 1.3 * megapixels, "MB")

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
        self.add(f"24 MP TIFF, {what} (processor {got['cpu_ratio']:.2f} x)",
                 f"{got['detect_ms']:.0f} ms", f"{got['floor_ms']:.0f} ms", got["ratio"], limit)

    def tiff_memory(self, what, frame, megapixels):
        got = self.tool("bench-tiff", "memory", frame)
        self.add(f"peak memory, TIFF of {what}", f"{got['peak_mb']:.0f} MB", f"{megapixels} MB",
                 got["peak_mb"], 60 + 1.3 * megapixels, "MB")

    def picture(self):
        """The peak of a picture for looking at against the three bytes of its pixels."""
        side = 1000
        for form in ("jpeg", "tiff16"):
            with tempfile.TemporaryDirectory() as folder:
                [frame] = self.roll(folder, 1, 100, form)
                got = self.tool("bench-picture", frame, side)
            pixels = 3 * side * side * 2 / 3 / 1e6
            self.add(f"peak memory of a picture, 100 MP {form}", f"{got['peak_mb']:.0f} MB",
                     f"{pixels:.0f} MB", got["peak_mb"], 32, "MB")

    def start(self):
        """The window's first frame against that of an empty QML window."""
        with tempfile.TemporaryDirectory() as home, VirtualDisplay() as display:
            environment = {**display.environment(home),
                           "QT_LOGGING_RULES": "qt.scenegraph.time.renderloop=true"}
            ours, empty = self.bin / "quillmark", self.bin / "bench-empty-window"
            for program in (ours, empty):  # caches warm
                first_frame(program, environment)
            pairs = [(first_frame(ours, environment), first_frame(empty, environment))
                     for _ in range(3 * PAIRS)]
        for index, (what, unit, limit) in enumerate(
                (("start to first frame", "ms", 1.2), ("memory at first frame", "MB", 1.15))):
            measured = [(one[index], other[index]) for one, other in pairs]
            self.add(what, f"{statistics.median(one for one, _ in measured):.0f} {unit}",
                     f"{statistics.median(other for _, other in measured):.0f} {unit}",
                     statistics.median(one / other for one, other in measured), limit)

    def finish(self):
        """Figures that were not measured this time stay as they are in the file of results."""
        names = {row["what"] for row in self.rows}
        earlier = json.loads(self.results.read_text()) if self.results.exists() else []
        rows = [row for row in earlier if row["what"] not in names] + self.rows
        self.results.write_text(json.dumps(rows, indent=2) + "\n", encoding="utf-8")
        met = sum(row["met"] for row in self.rows)
        print(f"{met} of {len(self.rows)} figures met; written to {self.results.name}")


def first_frame(program, environment):
    """Milliseconds from the process' start to its first frame, and MB resident then.

    Qt's own render timing tells of each frame; the first that was swapped is taken.
    """
    started = time.monotonic()
    process = subprocess.Popen([program], env=environment, stderr=subprocess.PIPE,
                               stdout=subprocess.DEVNULL)
    try:
        for line in process.stderr:
            if b"rendered" in line or b"swap" in line:
                elapsed = (time.monotonic() - started) * 1000
                status = pathlib.Path(f"/proc/{process.pid}/status").read_text(encoding="ascii")
                resident = int(re.search(r"VmRSS:\s+(\d+)", status).group(1)) * 1024 / 1e6
                return elapsed, resident
    finally:
        process.kill()
        process.wait()
    raise RuntimeError(f"{program.name} ended without a frame")


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
    for name in sys.argv[2:] or figures:
        figures[name]()
    bench.finish()


if __name__ == "__main__":
    main()
