# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""The roll that runs are killed over, and what must hold for its files afterwards."""

import json
import os
import re
import shutil
import subprocess

from harness import tags
from harness.samples import PAYLOAD, checksum
from subject import OUTPUT_FOLDERS, images

_TEMPORARY = b"_exiftool_tmp"
_WORKPLACE = re.compile(rb"\.quillmark-[^/]{6}(/copy(/.*)?)?", re.DOTALL)
_FOLDER = "a folder"


class Roll:
    """Files as they are before a run, and how whole runs leave them.

    Names and paths are bytes; the name of a file in a folder has that before it. `before`, `once`
    and `twice` map the name of each file to the checksum of its content: untouched, and after one
    and two whole runs. `entries` is how many files and folders a run is given.
    """

    def __init__(self, subject, folder):
        self._subject = subject
        self.folder = folder
        subprocess.run([subject, "roll", folder], check=True,
                       input=json.dumps(PAYLOAD, ensure_ascii=False).encode())
        self.before = _checksums(folder)
        self.entries = len(os.listdir(folder))
        self.pixels = self._pixels(folder, self.before)
        if len(set(self.pixels.values())) != len(self.before):
            raise RuntimeError("the files of the roll cannot be told apart by their pixels")
        self.once = {}
        self.twice = {}

    def copy(self, folder):
        """Puts the untouched roll into a folder, in place of what is there."""
        shutil.rmtree(folder, ignore_errors=True)
        shutil.copytree(self.folder, folder)

    def learn(self, folder, times):
        """Takes the files of a folder for what so many whole runs make of the roll."""
        found = _checksums(folder)
        broken = self._misread(folder, found)
        self._check_tags(folder)
        if broken or found.keys() != self.before.keys():
            raise RuntimeError(f"a run without a kill went wrong: {broken}")
        known = self.once if times == 1 else self.twice
        if known and known != found:
            raise RuntimeError("exiftool does not write the same bytes each time")
        known.update(found)

    def _check_tags(self, folder):
        expected = tags.expected_tags(PAYLOAD)
        for found in tags.read_tags([os.path.join(folder, name) for name in self.before]):
            # A second run adds its keywords to those of the first one.
            missing = {tag: value for tag, value in expected.items()
                       if _distinct(found.get(tag)) != value}
            if missing:
                raise RuntimeError(f"{found['SourceFile']} lacks {missing}")

    # --- After a kill

    def written(self, folder, mode):
        """How many files exiftool has got done, in a folder where a run was killed."""
        found = _checksums(_mutated(folder, mode))
        return sum(found.get(name) == content for name, content in self.once.items())

    def losses(self, folder, mode):
        """What is not as it must be after a kill, as sentences, and what was left behind."""
        losses = []
        originals = _checksums(folder)
        for name, content in self.before.items():
            if name not in originals:
                losses.append(f"{name} is gone")
            elif originals[name] != content:
                losses += self._loss(folder, name, originals[name], mode)
        extra, left_behind = self._extra(folder, mode)
        losses += extra + self._misread(folder, self.before.keys() & originals.keys())
        for output in OUTPUT_FOLDERS.values():
            copies = _checksums(os.path.join(folder, output))
            copied = self.before.keys() & copies.keys()
            losses += self._misread(os.path.join(folder, output), copied)
            whole = [self.before] if output == b"_originals" else [self.before, self.once]
            losses += [f"{output}/{name} is neither what it was nor tagged" for name in copied
                       if copies[name] not in [known[name] for known in whole]]
        return losses, left_behind

    def _loss(self, folder, name, content, mode):
        """What is wrong with an original whose content is another one now."""
        if mode == "write-copies":
            return [f"{name} was touched"]
        if content != self.once[name]:
            return [f"{name} is neither what it was nor tagged"]
        backup = os.path.join(folder, b"_originals", name)
        if mode == "backup-originals" and _checksum(backup) != self.before[name]:
            return [f"{name} was tagged without a backup"]
        return []

    def _extra(self, folder, mode):
        """What else is in the folder: what should not be there, and what may be left behind."""
        output = OUTPUT_FOLDERS.get(mode)
        beside = output if mode == "write-copies" else b""
        allowed = _with_folders({*self.before, *(os.path.join(output or b"", name)
                                                 for name in self.before)}) | {output}
        temporary = {os.path.join(beside, name + _TEMPORARY) for name in self.before}
        wrong, left_behind = [], []
        for path in _everything(folder):
            where, name = os.path.split(path)
            unfinished = output and path.startswith(output + b"/") and \
                _WORKPLACE.fullmatch(path[len(output) + 1:])
            if path in temporary or unfinished:
                left_behind.append(path)
            elif path not in allowed:
                wrong.append(f"{name} appeared in {where or b'.'}")
        return wrong, left_behind

    # --- After the run that followed

    def state(self, folder):
        """What the roll's files hold now, by name."""
        return {path: _checksum(os.path.join(folder, path)) for path in _everything(folder)}

    def omissions(self, folder, mode, earlier):
        """What a whole run has not done that came after a kill; `earlier` is the state before."""
        originals = {name: earlier[name] for name in self.before}
        tagged = {name: self.twice[name] if content == self.once[name] else self.once[name]
                  for name, content in originals.items()}
        expected = {path: content for path, content in earlier.items()
                    if not _is_made_anew(path, mode)}
        expected |= originals if mode == "write-copies" else tagged
        output = OUTPUT_FOLDERS.get(mode)
        if output:
            copies = tagged if mode == "write-copies" else \
                {name: content for name, content in earlier.items() if self._is_copied(name)}
            expected |= {os.path.join(output, name): copies[name] for name in copies}
        expected |= dict.fromkeys(_with_folders(expected) - expected.keys(), _FOLDER)
        found = self.state(folder)
        return [f"{path} is not as a whole run leaves it"
                for path in sorted(expected.keys() | found.keys())
                if expected.get(path) != found.get(path)]

    def _is_copied(self, path):
        """Whether a path of the roll gets into a backup. A folder is copied with what a killed
        exiftool left in it, which leaves again when the folder is copied again."""
        return path in self.before or \
            path.endswith(_TEMPORARY) and path.count(b"/") == 1 and \
            path.removesuffix(_TEMPORARY) in self.before

    # --- Pixels

    def _misread(self, folder, names):
        """Which images cannot be opened, or have other pixels than before."""
        found = self._pixels(folder, names)
        return [f"{os.path.join(folder, name)}: other pixels ({found[name]})"
                for name in names if found[name] != self.pixels[name]]

    def _pixels(self, folder, names):
        names = sorted(names)
        if not names:
            return {}
        answer = subprocess.run(
            [self._subject, "pixels", *(os.path.join(folder, name) for name in names)],
            check=True, stdout=subprocess.PIPE)
        return dict(zip(names, answer.stdout.decode().splitlines(), strict=True))


def _distinct(value):
    return list(dict.fromkeys(value)) if isinstance(value, list) else value


def _mutated(folder, mode):
    return os.path.join(folder, b"_tagged") if mode == "write-copies" else folder


def _is_made_anew(path, mode):
    """Whether a run in this mode removes what is at a path, or puts something else there."""
    top, _, below = path.partition(b"/")
    if top in OUTPUT_FOLDERS.values() and below:
        if below.startswith(b".quillmark-"):
            return mode in OUTPUT_FOLDERS
        return top == OUTPUT_FOLDERS.get(mode)
    return path.endswith(_TEMPORARY) and mode != "write-copies"


def _with_folders(paths):
    """The paths, and the folders that they are in."""
    found = set(paths)
    for path in paths:
        while path := os.path.dirname(path):
            found.add(path)
    return found


def _checksum(file):
    if os.path.isdir(file):
        return _FOLDER
    try:
        return checksum(file)
    except OSError as failure:
        return str(failure)


def _checksums(folder):
    """The images of a roll or of its copies; none where there is no folder."""
    return {name: _checksum(os.path.join(folder, name)) for name in images(folder)
            if not name.endswith(_TEMPORARY)}


def _everything(folder):
    """Every entry at any depth below a folder, as paths from it."""
    for where, folders, files in os.walk(folder):
        for name in folders + files:
            yield os.path.relpath(os.path.join(where, name), folder)
