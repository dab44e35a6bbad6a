# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""Figures of files: listing, backups, runs, and how all of it grows with a roll."""

import contextlib
import fcntl
import math
import os
import pathlib
import shutil
import statistics
import subprocess
import tempfile

PAIRS = 8  # even: each of the two comes first as often
SMALL = {"width": 300, "height": 200}
SIZES = {10: 6, 100: 6, 1000: 2, 10000: 1}  # and how often each is measured; listing more often
EXPONENT = 1.05
FICLONE = 0x40049409  # of linux/fs.h


def multiply(frame, count, name="{stem}-{number:05}{suffix}"):
    """Makes copies of a frame beside it, until there are as many."""
    for number in range(1, count):
        shutil.copy(frame, frame.with_name(
            name.format(stem=frame.stem, number=number, suffix=frame.suffix)))


def compared(bench, what, limit, figure, folder, pairs=PAIRS, beside="floor"):
    got = bench.tool("bench-files", figure, folder, pairs)
    bench.add(what, got["subject_ms"], got["floor_ms"], "ms", limit, beside=beside,
              ratio=got["ratio"], pairs=got["pairs"])


def listing(bench):
    """Listing beside the usual tools; the entries hold nothing, which no listing looks at."""
    with tempfile.TemporaryDirectory() as home:
        tree = pathlib.Path(home, "tree")
        for folder in range(1000):
            place = tree / f"roll-{folder * 7919 % 1000:04}"
            place.mkdir(parents=True)
            for number in range(100):
                (place / f"scan_{number * 37 % 100:04}.jpg").touch()
        compared(bench, "listing 100,000 entries in 1,000 folders", 0.7, "tree", tree,
                 beside="find|sort")
        roll = pathlib.Path(home, "roll")
        roll.mkdir()
        for number in range(40):
            (roll / f"scan_{number * 7 % 40:04}.jpg").touch()
        compared(bench, "listing a roll of 40", 1.5, "roll", roll, beside="readdir")


def make_roll(folder, files, size):
    """Files of noise: nothing on the way can make them smaller."""
    for number in range(files):
        (folder / f"scan_{number:02}.jpg").write_bytes(os.urandom(size))
    os.sync()


def backup(bench):
    """Backups of 36 files of 50 MB, where blocks are copied and where they are shared."""
    with tempfile.TemporaryDirectory() as folder:
        if clones(pathlib.Path(folder)):
            print("skip backups of 36 x 50 MB: the temporary folder's file system shares blocks",
                  flush=True)
        else:
            make_roll(pathlib.Path(folder), 36, 50_000_000)
            compared(bench, "backups of 36 x 50 MB", 1.0, "backup", folder, beside="cp, sync")
    for kind in ("xfs", "btrfs"):
        with cloning_disk(kind) as folder:
            if folder is None:
                print(f"skip backups as clones: no {kind} image can be mounted here", flush=True)
                continue
            make_roll(folder, 36, 50_000_000)
            what = f"backups of 36 x 50 MB, cloned on {kind}"
            compared(bench, what, 1.1, "clone", folder, pairs=16, beside="cp --reflink")
            compared(bench, what, None, "synced", folder, pairs=16, beside="cp --reflink, sync")


def clones(folder):
    """Whether files in a folder can share their blocks."""
    original, copy = folder / "original", folder / "copy"
    original.write_bytes(bytes(65536))
    try:
        with open(original, "rb") as source, open(copy, "wb") as destination:
            fcntl.ioctl(destination, FICLONE, source.fileno())
        return True
    except OSError:
        return False
    finally:
        original.unlink()
        copy.unlink()


@contextlib.contextmanager
def cloning_disk(kind):
    """A file system that shares blocks, in a file of its own; None where none can be mounted."""
    with tempfile.TemporaryDirectory() as home:
        image, folder = pathlib.Path(home, "image"), pathlib.Path(home, "disk")
        folder.mkdir()
        with open(image, "wb") as file:
            file.truncate(4 << 30)
        quiet = {"stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL}
        try:
            for command in ([f"mkfs.{kind}", image], ["mount", "-o", "loop", image, folder]):
                subprocess.run(command, check=True, **quiet)
        except (OSError, subprocess.CalledProcessError):
            yield None
            return
        try:
            yield folder
        finally:
            subprocess.run(["umount", folder], check=True)


def run(bench):
    """Whole runs without backups against the bare exiftool."""
    with tempfile.TemporaryDirectory() as folder:
        bench.roll(folder, 36)
        # From run to run exiftool takes a seventh more or less, without us too.
        add_run(bench, "36 frames of 24 MP", folder, 40)
    with tempfile.TemporaryDirectory() as folder:
        multiply(bench.roll(folder, 1, **SMALL)[0], 2000)
        add_run(bench, "2,000 small frames", folder, 10)


def add_run(bench, what, folder, pairs):
    got = bench.tool("bench-run", "time", folder, pairs)
    bench.add(f"run over {what}, no backups", got["run_ms"], got["exiftool_ms"], "ms", 1.02,
              beside="exiftool", ratio=got["ratio"], pairs=pairs)


def growth(bench):
    """The exponents with which costs grow with the number of files: 1 is a straight line."""
    points = {"listing": [], "searching": [], "backups": [], "tagging": []}
    for size, times in SIZES.items():
        with tempfile.TemporaryDirectory() as folder:
            [frame] = bench.roll(folder, 1, **SMALL)
            bench.tool("bench-files", "grow", folder, 1)  # all are copies of a tagged frame
            multiply(frame, size)
            got = bench.tool("bench-files", "grow", folder, times)
        for what, costs in points.items():
            costs.append((size, got[f"{what}_ms"]))
    for what, costs in points.items():
        add_growth(bench, what, costs, EXPONENT, points=costs)
        add_growth(bench, what, costs[-2:], None)  # where what happens once counts for little


def add_growth(bench, what, costs, limit, **more):
    (smallest, first), (largest, last) = costs[0], costs[-1]
    bench.add(f"{what} of {smallest:,} to {largest:,} files", last, first, "ms", limit,
              beside=f"{smallest:,} files", exponent=exponent(costs), **more)


def exponent(points):
    """The slope of the straight line through the logarithms (least squares)."""
    return statistics.linear_regression([math.log(size) for size, _ in points],
                                        [math.log(cost) for _, cost in points]).slope


def limit(bench):
    """The longest list of files that one exiftool can be given is written; one more is refused."""
    with tempfile.TemporaryDirectory() as home:
        folder = pathlib.Path(home, *["f" * 250] * 14)  # a path may have 4095 bytes
        folder.mkdir(parents=True)
        [frame] = bench.roll(pathlib.Path(home, "one"), 1, **SMALL)
        for number in range(2000):
            shutil.copy(frame, folder / f"{number:0230}.jpg")
        got = bench.tool("bench-run", "limit", folder)
    bench.add("refusal of one file more than exiftool can be given", got["refusal_ms"],
              got["run_ms"], "ms", 100, beside="run without it")
    print(f"     {got['megabytes']:.2f} MB of arguments for {got['files']} files can be given")
