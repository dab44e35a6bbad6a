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


class Start:
    """A roll as a run finds it: a folder, what is in it, how often its images were tagged, and the
    mode of the run that has gone over it, if one has."""

    def __init__(self, folder, times=0, mode=None):
        self.folder = folder
        self.times = times
        self.mode = mode
        self.content = contents(folder)


class Roll:
    """Files as they are before any run, and how whole runs leave them.

    Names and paths are bytes; the name of a file in a folder has that before it. `tagged` maps the
    name of each file to the checksum of its content, for each number of times that it was tagged,
    from 0. `entries` is how many files and folders a run is given.
    """

    def __init__(self, subject, folder):
        self._subject = subject
        subprocess.run([subject, "roll", folder], check=True,
                       input=json.dumps(PAYLOAD, ensure_ascii=False).encode())
        before = _checksums(folder)
        self.names = before.keys()
        self.tagged = [before]
        self.untouched = Start(folder)
        self.entries = len(os.listdir(folder))
        self.pixels = self._pixels(folder, before)
        if len(set(self.pixels.values())) != len(before):
            raise RuntimeError("the files of the roll cannot be told apart by their pixels")

    @staticmethod
    def copy(start, folder):
        """Puts a roll into a folder, in place of what is there."""
        shutil.rmtree(folder, ignore_errors=True)
        shutil.copytree(start.folder, folder)

    def learn(self, folder, times):
        """Takes the files of a folder for what so many whole runs make of the roll."""
        found = _checksums(folder)
        broken = self._misread(folder, found)
        self._check_tags(folder)
        if broken or found.keys() != self.names:
            raise RuntimeError(f"a run without a kill went wrong: {broken}")
        if times == len(self.tagged):
            self.tagged.append(found)
        elif self.tagged[times] != found:
            raise RuntimeError("exiftool does not write the same bytes each time")

    def _check_tags(self, folder):
        expected = tags.expected_tags(PAYLOAD)
        for found in tags.read_tags([os.path.join(folder, name) for name in self.names]):
            # A further run adds its keywords to those of the first one.
            missing = {tag: value for tag, value in expected.items()
                       if _distinct(found.get(tag)) != value}
            if missing:
                raise RuntimeError(f"{found['SourceFile']} lacks {missing}")

    # --- After a kill

    def written(self, folder, mode, start):
        """How many files exiftool has got done, in a folder where a run was killed."""
        found = _checksums(_mutated(folder, mode))
        return sum(found.get(name) == content
                   for name, content in self.tagged[start.times + 1].items())

    def losses(self, folder, mode, start):
        """What is not as it must be after a kill, as sentences, and what was left behind."""
        losses = []
        before, after = self.tagged[start.times:][:2]
        originals = _checksums(folder)
        for name in self.names:
            if name not in originals:
                losses.append(f"{name} is gone")
            elif originals[name] != before[name]:
                losses += self._loss(folder, name, originals[name], mode, start)
        extra, left_behind = self._extra(folder, mode, start)
        losses += extra + self._misread(folder, self.names & originals.keys())
        for output in OUTPUT_FOLDERS.values():
            copies = _checksums(os.path.join(folder, output))
            copied = self.names & copies.keys()
            losses += self._misread(os.path.join(folder, output), copied)
            known = [before] if output == b"_originals" else [before, after]
            losses += [f"{output}/{name} is neither what it was nor tagged" for name in copied
                       if copies[name] not in [start.content.get(os.path.join(output, name)),
                                               *(whole[name] for whole in known)]]
            losses += [f"{path} of an earlier run is gone" for path in start.content
                       if path.startswith(output) and
                       not os.path.lexists(os.path.join(folder, path))]
        return losses, left_behind

    def _loss(self, folder, name, content, mode, start):
        """What is wrong with an original whose content is another one now."""
        before, after = self.tagged[start.times:][:2]
        if mode == "write-copies":
            return [f"{name} was touched"]
        if content != after[name]:
            return [f"{name} is neither what it was nor tagged"]
        backup = os.path.join(folder, b"_originals", name)
        if mode == "backup-originals" and _checksum(backup) != before[name]:
            return [f"{name} was tagged without a backup"]
        return []

    def _extra(self, folder, mode, start):
        """What else is in the folder: what should not be there, and what may be left behind."""
        output = OUTPUT_FOLDERS.get(mode)
        beside = output if mode == "write-copies" else b""
        allowed = _with_folders({*self.names, *(os.path.join(output or b"", name)
                                                for name in self.names)}) | {output}
        allowed |= start.content.keys()
        temporary = {os.path.join(beside, name + _TEMPORARY) for name in self.names}
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

    def omissions(self, folder, mode, earlier):
        """What a whole run has not done that came after a kill; `earlier` is the state before."""
        originals = {name: earlier[name] for name in self.names}
        tagged = {name: self._tagged_again(name, content) for name, content in originals.items()}
        expected = {path: content for path, content in earlier.items()
                    if not _is_made_anew(path, mode)}
        expected |= originals if mode == "write-copies" else tagged
        output = OUTPUT_FOLDERS.get(mode)
        if output:
            copies = tagged if mode == "write-copies" else \
                {name: content for name, content in earlier.items() if self._is_copied(name)}
            expected |= {os.path.join(output, name): copies[name] for name in copies}
        expected |= dict.fromkeys(_with_folders(expected) - expected.keys(), _FOLDER)
        found = contents(folder)
        return [f"{path} is not as a whole run leaves it"
                for path in sorted(expected.keys() | found.keys())
                if expected.get(path) != found.get(path)]

    def _tagged_again(self, name, content):
        times = [known[name] for known in self.tagged].index(content)
        return self.tagged[times + 1][name]

    def _is_copied(self, path):
        """Whether a path of the roll gets into a backup. A folder is copied with what a killed
        exiftool left in it, which leaves again when the folder is copied again."""
        return path in self.names or \
            path.endswith(_TEMPORARY) and path.count(b"/") == 1 and \
            path.removesuffix(_TEMPORARY) in self.names

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


def contents(folder):
    """What everything below a folder holds, by its path from there."""
    return {path: _checksum(os.path.join(folder, path)) for path in _everything(folder)}


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
