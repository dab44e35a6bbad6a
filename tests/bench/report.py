# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""Shows what was measured: all of it as a table, how costs grow as a picture."""

import json
import re

MARKS = "os^D"
# Those of the figures that docs/performance.md has, in its order.
TABLE = ("listing", "backup", "run", "plan", "start", "idle", "spinner", "ingests", "growth",
         "limit")


def read(results):
    """The rows of the last measurements of each figure, whose name they have as `of`."""
    rows = json.loads(results.read_text(encoding="utf-8"))
    return [row for row in rows if "of" in row]


def figure(row):
    """What a row's limit is of, and how it is shown."""
    for name, unit in (("ratio", "x"), ("exponent", "n^")):
        if name in row:
            return row[name], f"{row[name]:.2f} {unit}"
    return row["ours"], amount(row["ours"], row["unit"])


def number(value):
    """Three digits, or as many more as a whole number has."""
    return f"{value:.0f}" if abs(value) >= 99.95 else f"{value:.3g}"


def amount(value, unit):
    return "" if value is None else f"{number(value)} {unit}".strip()


def table(results):
    """Prints figures in Markdown."""
    print("| what | measured | beside | | at most | |\n|---|---:|---|---:|---:|---|")
    rows = read(results)
    for row in (row for name in TABLE for row in rows if row["of"] == name):
        beside = f"{row['beside']} {amount(row['peer'], row['unit'])}".replace("|", "\\|").strip()
        _, shown = figure(row)
        limit = "" if row["limit"] is None else number(row["limit"])
        print(f"| {row['what']} | {amount(row['ours'], row['unit'])} | {beside} "
              f"| {shown} | {limit} | {'over' if row['met'] is False else ''} |")


def draw(results, picture):
    """Makes a picture of the figures that have points among the results of a measurement."""
    import matplotlib  # pylint: disable=import-outside-toplevel  # only drawing needs it

    matplotlib.use("Agg")
    matplotlib.rcParams["svg.hashsalt"] = "quillmark"  # the same picture from the same figures
    from matplotlib import pyplot  # pylint: disable=import-outside-toplevel

    rows = [row for row in read(results) if "exponent" in row and "points" in row]
    if not rows:
        raise SystemExit("bench: nothing to draw; run script/bench growth first")
    sheet, axes = pyplot.subplots(figsize=(7, 4.5), layout="constrained")
    for row, mark in zip(rows, MARKS):
        sizes, costs = zip(*row["points"])
        name = re.match(r"\w+", row["what"]).group()
        axes.loglog(sizes, costs, marker=mark, label=f"{name}, n^{row['exponent']:.2f}")
    axes.set(xlabel="files in the folder", ylabel="milliseconds")
    axes.grid(True, which="major", alpha=0.3)
    axes.legend(frameon=False)
    sheet.savefig(picture, metadata={"Date": None})
