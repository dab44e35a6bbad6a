# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""Says what is wrong with what a run left behind."""

import errno

from rolls import listed

SETTINGS = {
    "Larkhollow",
    "Larkhollow/Quillmark",
    "Larkhollow/Quillmark/co.larkhollow.quillmark.lastManualPayload.v2",
}
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
        after = place.files()
        tagged = self.copies + "/" if mode == "write-copies" else ""
        self.tagged = {path: after.get(tagged + path) for path in self.originals}
        problems = self.after_success(place, result)
        same = [p for p, h in self.originals.items() if self.tagged[p] == h and "link" not in h]
        if problems or same:
            raise SystemExit(f"faults: a run without a fault went wrong: {problems}, {same} {result['text']}")

    def after_success(self, place, result):
        """Of a run that may not fail."""
        if result["state"] != "done":
            return [f"the run failed: {result['text']}"]
        problems = self._whole(place) + self._complete(place)
        if result["stored"] != "typed":
            problems.append(f"the payload was not stored: {result['stored']}")
        return problems

    def after_fault(self, place, case, result):
        if case.point.subject.startswith("settings"):
            problems = self._settings_fault(place, result)
        elif case.error in (0, errno.EINTR):
            problems = self.after_success(place, result)
        elif result["state"] == "done":
            problems = self.after_success(place, result)
        elif result["state"] == "error":
            problems = self._whole(place)
            frames = [path.split("/")[-1] for path in self.originals]
            names = [*frames, "album.jpg", self.copies or "/roll", "/roll”", "exiftool"]
            if not any(name in result["text"] for name in names):
                problems.append(f"the text does not name what failed: {result['text']}")
            if result["stored"] != "typed":
                problems.append(f"the payload was not stored: {result['stored']}")
        else:
            problems = [f"the run ended in no state: {result}"]
        return problems

    def after_next(self, place, before, result):
        """Of the run that follows, in which nothing fails."""
        if result["state"] != "done":
            return [f"the next run failed: {result['text']}"]
        problems = self._left_behind(place)
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

    def _whole(self, place):
        """Every original is as it was, or tagged with a backup beside it, where the mode makes
        one; copies are whole, and none of an earlier run is lost."""
        after = place.files()
        problems = self._left_behind(place)
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
            if path.startswith(("_originals", "_tagged")) and path not in after:
                problems.append(f"{path} of an earlier run is gone")
        for path, content in after.items():
            if path.startswith(("_originals/", "_tagged/")) and content != "folder":
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

    def _left_behind(self, place):
        allowed = set(self.before)
        if self.copies:
            allowed |= {self.copies} | {f"{self.copies}/{path}" for path in self.originals}
            allowed |= {f"{self.copies}/{path}" for path in self.before if self.before[path] == "folder"}
        problems = [f"{path} is left behind" for path in place.files() if path not in allowed]
        settings = listed(place.settings)
        return problems + [f"{path} is left in the settings" for path in settings if path not in SETTINGS]
