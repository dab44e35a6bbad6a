# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""Shows what was measured: all of it as a table, how costs grow as a picture."""

import json
import re

MARKS = "os^D"


def read(results):
    """The rows of the last measurements of each figure."""
    return json.loads(results.read_text(encoding="utf-8"))


def table(results):
    """Prints the figures in Markdown."""
    print("| what | measured | beside | | at most | |\n|---|---:|---|---:|---:|---|")
    for row in read(results):
        beside = row["beside"].replace("|", "\\|")
        print(f"| {row['what']} | {row['measured']} | {beside} {row['floor']} "
              f"| {row['figure']:.2f} {row['unit']} | {row['limit']:.2f} "
              f"| {'' if row['met'] else 'over'} |")


def draw(results, picture):
    """Makes a picture of the figures that have points among the results of a measurement."""
    import matplotlib  # pylint: disable=import-outside-toplevel  # only drawing needs it

    matplotlib.use("Agg")
    matplotlib.rcParams["svg.hashsalt"] = "quillmark"  # the same picture from the same figures
    from matplotlib import pyplot  # pylint: disable=import-outside-toplevel

    rows = [row for row in read(results) if row["unit"] == "n^"]
    if not rows:
        raise SystemExit("bench: nothing to draw; run script/bench growth first")
    figure, axes = pyplot.subplots(figsize=(7, 4.5), layout="constrained")
    for row, mark in zip(rows, MARKS):
        sizes, costs = zip(*row["points"])
        name = re.match(r"\w+", row["what"]).group()
        axes.loglog(sizes, costs, marker=mark, label=f"{name}, n^{row['figure']:.2f}")
    axes.set(xlabel="files in the folder", ylabel="milliseconds")
    axes.grid(True, which="major", alpha=0.3)
    axes.legend(frameon=False)
    figure.savefig(picture, metadata={"Date": None})
