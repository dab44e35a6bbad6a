# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""Compares the calls that the watch of a run reports with those that the kernel sees.

usage: trace_test.py DRIVER

What the watch does not see cannot be made to fail. strace does: each of its system calls on a
roll, on the settings, or by a child before it is its program, has to have been reported under the
name of a function that makes it.
"""

import collections
import json
import pathlib
import re
import subprocess
import sys
import tempfile

from judge import CHILD_ITSELF
from rolls import Place

SKIPPED = 77
MODES = ("backup-originals", "write-copies", "none")
MARK = "quillmark watch"  # the driver asks for files of these names, which are not there
MANY = 1000
# What the watch itself asks, to know which file each call is about and which folder that is in.
LOOK_OF_WATCH = ", STATX_INO, "

# The system calls that a function of the library makes, where it is not the one of its own name.
MADE_BY = {
    "open": {"openat": 1},
    "mkostemp": {"openat": 1},
    "opendir": {"openat": 1, "stat": 1},
    "fdopendir": {"fcntl": 2, "stat": 1},
    "readdir": {"getdents64": 1},
    "closedir": {"close": 1},
    "lstat": {"stat": 1},
    "fstat": {"stat": 1},
    "fstatat": {"stat": 1},
    "realpath": {"readlink": MANY},
    "mkdtemp": {"mkdir": 1},
    "remove": {"unlink": 1, "rmdir": 1},
    "futimens": {"utimensat": 1},
    "ioctl(FICLONE)": {"ioctl": 1},
    "pread": {"pread64": 1},
    "pwrite": {"pwrite64": 1},
    "sigaction": {"rt_sigaction": 1},
    "sigprocmask": {"rt_sigprocmask": 1},
    "getrlimit": {"prlimit64": 1},
    "setrlimit": {"prlimit64": 1},
}
# One name for the calls that a function makes on this processor or another.
ALIKE = {"newfstatat": "stat", "fstat": "stat", "lstat": "stat", "faccessat": "access"}
BY_A_CHILD = ("prctl", "dup2", "fcntl", "execve", "rt_sigaction", "prlimit64", "write")
STARTS = ("clone", "clone3", "fork", "vfork")

Line = collections.namedtuple("Line", "time call arguments result")


def lines_of(trace):
    for line in trace.read_text(errors="replace").splitlines():
        if found := re.fullmatch(r"(\d+\.\d+) (\w+)\((.*)\)\s+= (\S+).*", line):
            yield Line(float(found[1]), ALIKE.get(found[2], found[2]), found[3], found[4])


def traced(driver, place, mode, folder):
    """What the driver tells of a run, and the traces of its threads and of its children."""
    command = ["strace", "-ff", "-y", "-ttt", "-qq", "-s", "4096", "-o", str(folder / "trace")]
    command += ["-e", "trace=%file,%desc,%process,%signal,prctl,prlimit64", str(driver)]
    command += ["--earlier", str(place.roll), str(place.settings), mode]
    told = subprocess.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, check=True)
    traces = {int(path.suffix[1:]): list(lines_of(path)) for path in folder.glob("trace.*")}
    started = {
        int(line.result): "CLONE_THREAD" in line.arguments
        for lines in traces.values()
        for line in lines
        if line.call in STARTS and line.result.isdigit()
    }
    parents = {
        int(line.result): number
        for number, lines in traces.items()
        for line in lines
        if line.call in STARTS and line.result.isdigit()
    }
    threads = [number for number in traces if number not in started]  # the first one
    for number in threads:
        threads += [n for n, parent in parents.items() if parent == number and started[n]]
    children = [n for n, parent in parents.items() if parent in threads and not started[n]]
    result = json.loads(told.stdout.decode().splitlines()[0])
    return result, [traces[t] for t in threads], [traces[c] for c in children]


def seen_by_kernel(place, threads, children):
    """How often each call was made on what."""
    roots = {"roll": str(place.roll), "settings": str(place.settings)}
    marks = [line.time for lines in threads for line in lines if MARK in line.arguments]
    begin, end = min(marks), max(marks)
    seen = collections.Counter()
    examples = {}
    for lines in threads:
        for line in lines:
            if not begin < line.time < end or LOOK_OF_WATCH in line.arguments:
                continue
            for label, root in roots.items():
                if re.search(rf'["<]{re.escape(root)}(/|"|>)', line.arguments):
                    seen[label, line.call] += 1
                    examples.setdefault((label, line.call), line.arguments)
    for lines in children:
        for line in lines:
            if line.call in BY_A_CHILD:
                seen[CHILD_ITSELF, line.call] += 1
                examples.setdefault((CHILD_ITSELF, line.call), line.arguments[:200])
            if line.call == "execve":
                break
    return seen, examples


def reported(calls):
    """How often each system call may have been made by the functions reported."""
    covered = collections.Counter()
    for function, subject, _ in calls:
        label = re.sub(r"/.*| ->.*", "", subject.removeprefix("elsewhere -> "))
        for call, times in MADE_BY.get(function, {function: 1}).items():
            covered[label, call] += times
    return covered


def main(driver):
    trial = subprocess.run(["strace", "-o", "/dev/null", "true"], stderr=subprocess.PIPE, check=False)
    if trial.returncode != 0:
        reason = trial.stderr.decode().strip()
        print(f"trace: cannot trace here: {reason}")
        return SKIPPED if "ptrace" in reason else 1
    failed = False
    for mode in MODES:
        with Place("again") as place, tempfile.TemporaryDirectory() as folder:
            result, threads, children = traced(driver, place, mode, pathlib.Path(folder))
            seen, examples = seen_by_kernel(place, threads, children)
        covered = reported(result["calls"])
        for label in ("roll", "settings", CHILD_ITSELF):
            count = sum(n for (where, _), n in seen.items() if where == label)
            print(f"trace: {mode}: {count} system calls on {label}")
            failed = failed or count == 0
        if result["state"] != "done":
            print(f"trace: {mode}: the run failed: {result['text']}")
            failed = True
        for key in sorted(seen):
            if seen[key] > covered[key]:
                label, call = key
                print(
                    f"trace: {mode}: {call} on {label}: {seen[key]} made, {covered[key]} reported,"
                    f" such as {examples[key]}"
                )
                failed = True
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
