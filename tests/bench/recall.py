# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""Sets the QR readers side by side: what each reads of the same simulated pictures, beside
what can be read by somebody who knows where each module lies, and in what time.

usage: bench.py BUILD_FOLDER recall [SEED [FRAMES]] [--empty N] [--photos N] [--large N]
                                    [--only READER...] [--lines] [--save SET INDEX FILE.jpg]
"""

import argparse
import json
import statistics
import subprocess
import threading

PROCESSES = 2
ORACLES = ["oracle", "equalized oracle"]
OURS = "quillmark"


class Recall:
    def __init__(self, bench, options):
        self.program = bench.bin / "bench-recall"
        self.results = bench.results.with_name("recall.json")
        self.options = options
        self.all = {}

    def pictures(self, name, count, processes=PROCESSES):
        """What the readers made of each picture of a set, in the order of their indices."""
        found, errors = [], []

        def gather(first):
            command = [self.program, name, self.options.seed, first, processes, count,
                       *self.options.only]
            with subprocess.Popen([str(word) for word in command], stdout=subprocess.PIPE,
                                  encoding="utf-8") as process:
                for line in process.stdout:
                    picture = json.loads(line)
                    found.append(picture)
                    if self.options.lines:
                        print(one_line(picture), flush=True)
            if process.returncode != 0:
                errors.append(f"{self.program.name} {name} ended with {process.returncode}")

        threads = [threading.Thread(target=gather, args=[first]) for first in range(processes)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        if errors:
            raise RuntimeError(errors[0])
        self.all[name] = sorted(found, key=lambda picture: picture["index"])
        return self.all[name]

    def save(self, name, index, file):
        subprocess.run([self.program, "picture", name, str(self.options.seed), index, file],
                       check=True)

    def finish(self):
        content = {"seed": self.options.seed, **self.all}
        self.results.write_text(json.dumps(content, indent=1) + "\n", encoding="utf-8")
        print(f"written to {self.results.name}")


def one_line(picture):
    readers = [name for name, outcome in picture["readers"].items()
               if outcome and outcome["read"]]
    readers += [oracle for oracle in ORACLES if picture.get(oracle)]
    size = f"{picture['width']} x {picture['height']}"
    return (f"{picture['index']:5}  {picture['class']:<18} {size:<13} {picture['about']:<44} "
            f"{' '.join(readers) or '-'}")


def print_rows(rows):
    """A table whose first column is text and whose others are numbers."""
    widths = [max(len(row[column]) for row in rows) for column in range(len(rows[0]))]
    for row in rows:
        print("  ".join([row[0].ljust(widths[0]),
                         *(cell.rjust(width) for cell, width in zip(row[1:], widths[1:]))]))


def by_class(pictures):
    groups = {}
    for picture in pictures:
        groups.setdefault(picture["class"], []).append(picture)
    return groups


def readers_of(pictures):
    """Ours first, the others by their names."""
    return sorted(pictures[0]["readers"], key=lambda name: (name != OURS, name))


def outcomes(pictures, reader):
    """The reader's outcomes; None where it is not installed."""
    got = [picture["readers"][reader] for picture in pictures]
    return None if not got or got[0] is None else got


def print_recall(title, pictures):
    readers = readers_of(pictures)
    oracles = [oracle for oracle in ORACLES if oracle in pictures[0]]
    print(f"\n{title}: pictures read")
    rows = [["class", "pictures", *readers, *oracles]]
    for name, group in [*by_class(pictures).items(), ("all", pictures)]:
        row = [name, str(len(group))]
        for reader in readers:
            got = outcomes(group, reader)
            row.append("not installed" if got is None else str(sum(one["read"] for one in got)))
        row += [str(sum(picture[oracle] for picture in group)) for oracle in oracles]
        rows.append(row)
    row = ["wrong texts", ""]
    for reader in readers:
        got = outcomes(pictures, reader)
        row.append("-" if got is None else str(sum(one["false"] for one in got)))
    rows.append(row + ["-"] * len(oracles))
    for what, key in (("mean ms", "ms"), ("mean processor ms", "cpu_ms")):
        row = [what, ""]
        for reader in readers:
            got = outcomes(pictures, reader)
            row.append("-" if got is None else f"{statistics.mean(one[key] for one in got):.1f}")
        rows.append(row + ["-"] * len(oracles))
    print_rows(rows)


def print_missed(pictures):
    """What somebody reads and we do not."""
    if OURS not in pictures[0]["readers"]:
        return
    missed = [picture for picture in pictures if not picture["readers"][OURS]["read"]]
    others = [picture for picture in missed
              if any(outcome and outcome["read"] for outcome in picture["readers"].values())]
    print(f"\nmissed by {OURS} and read by another reader: {len(others)}")
    for picture in others:
        print(one_line(picture))
    for oracle in ORACLES:
        if missed and oracle in missed[0]:
            left = [str(picture["index"]) for picture in missed
                    if picture[oracle] and picture not in others]
            print(f"missed by {OURS} and read by the {oracle} alone: {len(left)}")
            if left:
                print("  " + " ".join(left))


def print_false(title, pictures):
    """Texts that were read where there is no code, and the time it took."""
    readers = readers_of(pictures)
    print(f"\n{title}: texts read (should be none), and median ms a picture")
    rows = [["class", "pictures", *readers]]
    for name, group in [*by_class(pictures).items(), ("all", pictures)]:
        row = [name, str(len(group))]
        for reader in readers:
            got = outcomes(group, reader)
            row.append("not installed" if got is None else
                       f"{sum(one['false'] for one in got)}"
                       f" / {statistics.median(one['ms'] for one in got):.1f}")
        rows.append(row)
    print_rows(rows)


def parse(arguments):
    parser = argparse.ArgumentParser(prog="script/bench recall")
    parser.add_argument("seed", nargs="?", type=int, default=1)
    parser.add_argument("frames", nargs="?", type=int, default=200)
    parser.add_argument("--empty", type=int, default=200, metavar="N",
                        help="pictures without a code (up to 2000)")
    parser.add_argument("--photos", type=int, default=60, metavar="N",
                        help="small photographs and screenshots of codes")
    parser.add_argument("--large", type=int, default=8, metavar="N",
                        help="frames of 24 megapixels without a code")
    parser.add_argument("--only", nargs="+", default=[], metavar="READER",
                        help="run these readers (and the oracle), not all of them")
    parser.add_argument("--lines", action="store_true", help="print each picture as one line")
    parser.add_argument("--save", nargs=3, metavar=("SET", "INDEX", "FILE"),
                        help="save a picture of the set slates, photos, empty or large, no more")
    return parser.parse_args(arguments)


def run(bench, arguments):
    options = parse(arguments)
    recall = Recall(bench, options)
    if options.save:
        recall.save(*options.save)
        return
    if options.frames > 0:
        slates = recall.pictures("slates", options.frames)
        print_recall(f"slates of seed {options.seed}", slates)
        print_missed(slates)
    if options.photos > 0:
        photos = recall.pictures("photos", options.photos)
        print_recall("small photographs and screenshots", photos)
        print_missed(photos)
    if options.empty > 0:
        print_false("no code", recall.pictures("empty", options.empty))
    if options.large > 0:
        # One process: the time of a frame with the machine to itself.
        print_false("no code, 24 megapixels", recall.pictures("large", options.large, 1))
        print()
        bench.frame()
        recall.all["frame"] = bench.rows
    recall.finish()
