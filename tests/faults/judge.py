# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""Says what is wrong with what a run left behind."""

import errno
import re

from rolls import ABANDONED, listed

CHILD_ITSELF = "child itself"

SETTINGS = {
    "Larkhollow",
    "Larkhollow/Quillmark",
    "Larkhollow/Quillmark/co.larkhollow.quillmark.lastManualPayload.v2",
}
# What nobody sees of a finished run that passed over it: the copies look the same.
UNSEEN = ("fsync", "fdatasync")
COPIES = {"backup-originals": "_originals", "write-copies": "_tagged", "none": None}


def is_original(path, content):
    return content != "folder" and not path.startswith(("_originals", "_tagged"))


class Judge:
    """Knows a roll before and after a run of one mode in which nothing failed."""

    def __init__(self, place, mode, result):
        self.mode = mode
        self.before = place.before
        self.earlier_tmp = {path for path in place.before if path.endswith("_exiftool_tmp")}
        self.originals = {
            path: content
            for path, content in place.before.items()
            if is_original(path, content) and path not in self.earlier_tmp
        }
        self.copies = COPIES[mode]
        # What a killed run has left in either folder of copies goes with a run that makes some.
        folders = tuple(f"{folder}/{ABANDONED}" for folder in COPIES.values() if self.copies and folder)
        self.abandoned = {path for path in place.before if path.startswith(folders)}
        # What a workplace is for, by the number that the watch gives it, in their order.
        self.workplaces = {}
        for _, subject, _ in result["calls"]:
            if made := re.fullmatch(r"roll/\w+/\.quillmark-(\d+)/copy -> (.*)", subject):
                self.workplaces[made[1]] = made[2]
        after = place.files()
        tagged = self.copies + "/" if mode == "write-copies" else ""
        self.tagged = {path: after.get(tagged + path) for path in self.originals}
        problems = self.after_success(place, result)
        same = [p for p, h in self.originals.items() if self.tagged[p] == h and "link" not in h]
        if problems or same:
            raise SystemExit(f"faults: a run without a fault went wrong: {problems}, {same} {result['text']}")

    def after_success(self, place, result, keeps_abandoned=False):
        """Of a run that may not fail."""
        if result["state"] != "done":
            return [f"the run failed: {result['text']}"]
        problems = self._whole(place, keeps_abandoned) + self._complete(place)
        if result["stored"] != "typed":
            problems.append(f"the payload was not stored: {result['stored']}")
        return problems

    def after_fault(self, place, case, result):
        # What an earlier run left may stay for the next where it could not be removed.
        keeps_abandoned = bool(
            re.match(r"thread|roll/(_originals|_tagged)(/\.quillmark-[12](/|$)|$)", case.point.subject)
        )
        if case.point.subject.startswith("settings"):
            return self._settings_fault(place, result)
        # Where there was no room, a copy is made anew once others have their places.
        may_end_well = case.point.function not in UNSEEN or case.error in (errno.EINTR, errno.ENOSPC)
        if case.way.name != "not started" and may_end_well:
            if result["state"] == "done" or case.error in (0, errno.EINTR):
                return self.after_success(place, result, keeps_abandoned)
        if result["state"] != "error":
            return [f"the run ended in no state that fits: {result}"]
        problems = self._whole(place, keeps_abandoned) + self._untold(case.point, result["text"])
        if result["stored"] != "typed":
            problems.append(f"the payload was not stored: {result['stored']}")
        return problems

    def _untold(self, point, text):
        """What the text of an error fails to tell."""
        problems = []
        if not any(re.search(name, text) for name in self._names(point)):
            problems.append(f"the text does not name what failed: {text}")
        exited = re.fullmatch(r"exiftool exited with code -?\d+\n\n(.*)", text, re.DOTALL)
        # Of errors that could not be read, there is nothing to show.
        if exited and not exited[1].strip() and point.subject != "child's errors":
            problems.append(f"the text gives no reason: {text}")
        return problems

    def _names(self, point):
        """Patterns of which a text has to hold one: the name of what the failed call concerned,
        and for what lies in a workplace, of what is copied there."""
        if point.subject == "thread":
            return ["thread"]
        if not point.subject.startswith(("roll", "elsewhere")):
            return ["exiftool"]
        names = []
        for path in point.subject.split(" -> "):
            name = path.split("/")[-1]
            if name == ".quillmark-new":
                path = list(self.workplaces.values())[point.occurrence - 1]
            elif workplace := re.search(r"\.quillmark-(\d+)(/copy|/replaced)?$", path):
                path = self.workplaces.get(workplace[1], path)
            names.append("[/“]" + re.escape(path.split("/")[-1]) + r"(?![A-Za-z0-9.])")
        return names

    def given_back(self, first, following):
        """Of a process after two runs: what it has open, and who waits to be waited for."""
        problems = []
        # A thread of Qt's has an event counter of its own from its first wait on.
        before, after = (
            {descriptor for descriptor in listed_open if "[eventfd]" not in descriptor}
            for listed_open in (first["before"], following["descriptors"])
        )
        if after != before:
            problems.append(f"open after two runs: {sorted(after - before)}, not any more: {sorted(before - after)}")
        if following["children"]:
            problems.append("a child was not waited for")
        return problems

    def after_next(self, place, before, result):
        """Of the run that follows, in which nothing fails."""
        if result["state"] != "done":
            return [f"the next run failed: {result['text']}"]
        problems = self._left_behind(place, False)
        after = place.files()
        for path in self.originals:
            copy = after.get(f"{self.copies}/{path}")
            written = copy if self.mode == "write-copies" else after.get(path)
            if "link" in before[path]:
                continue
            if written in (self.before[path], None):
                problems.append(f"{path} was not tagged by the next run")
            if self.mode == "backup-originals" and copy != before[path]:
                problems.append(f"{path} has no backup from the next run")
            if self.mode == "write-copies" and after[path] != before[path]:
                problems.append(f"{path} was changed by the next run")
        if result["stored"] != "typed":
            problems.append("the payload was not stored by the next run")
        return problems

    def _settings_fault(self, place, result):
        """Of the store, whose failures are silent: it keeps the earlier payload or has the new."""
        problems = self.after_success(place, {**result, "stored": "typed"})
        if result["stored"] not in ("typed", "earlier" if place.has_settings else "none"):
            problems.append(f"the store is damaged: {result['stored']}")
        return problems

    def _whole(self, place, keeps_abandoned):
        """Every original is as it was, or tagged with a backup beside it, where the mode makes
        one; copies are whole, and none of an earlier run is lost."""
        after = place.files()
        problems = self._left_behind(place, keeps_abandoned)
        for path, original in self.originals.items():
            now = after.get(path)
            backup = after.get(f"{self.copies}/{path}")
            if now == original:
                continue
            if now != self.tagged[path] or self.mode == "write-copies":
                problems.append(f"{path} is neither what it was nor tagged")
            elif self.mode == "backup-originals" and backup != original:
                problems.append(f"{path} is tagged without a backup")
        for path, content in self.before.items():
            kept = path.startswith(("_originals", "_tagged")) and path not in self.abandoned
            if kept and path not in after:
                problems.append(f"{path} of an earlier run is gone")
        for path, content in after.items():
            copy = path.startswith(("_originals/", "_tagged/")) and path not in self.abandoned
            if copy and content != "folder":
                original = path.split("/", 1)[1]
                known = [self.before.get(path), self.originals.get(original)]
                known += [self.tagged.get(original)] if self.mode == "write-copies" else []
                if content not in known:
                    problems.append(f"{path} is no whole copy")
        return problems

    def _complete(self, place):
        """Every frame is tagged, every backup made."""
        after = place.files()
        folder = self.copies + "/" if self.mode == "write-copies" else ""
        problems = [
            f"{path} is not tagged"
            for path in self.originals
            if after.get(folder + path) != self.tagged[path]
        ]
        if self.mode == "backup-originals":
            problems += [
                f"{path} has no backup"
                for path, content in self.originals.items()
                if after.get(f"{self.copies}/{path}") != content
            ]
        return problems

    def _left_behind(self, place, keeps_abandoned):
        allowed = set(self.before) - (set() if keeps_abandoned else self.abandoned)
        if self.copies:
            allowed |= {self.copies} | {f"{self.copies}/{path}" for path in self.originals}
            allowed |= {f"{self.copies}/{path}" for path in self.before if self.before[path] == "folder"}
        problems = [f"{path} is left behind" for path in place.files() if path not in allowed]
        settings = listed(place.settings)
        return problems + [f"{path} is left in the settings" for path in settings if path not in SETTINGS]
