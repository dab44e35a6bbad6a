# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""The roll that runs are killed over, and what must hold for its files afterwards."""

import hashlib
import json
import os
import re
import shutil
import subprocess

from harness import tags
from subject import OUTPUT_FOLDERS

PAYLOAD = {
    "version": 2,
    "session_id": "7c9e6679-7425-40de-944b-e07fc1f90ae7",
    "camera_make": "Kestrel",
    "camera_model": "K2",
    "film_brand": "Vela",
    "film_stock": "Nova 400",
    "iso": 400,
    "lens_make": "Optar",
    "lens_model": "50mm f/2",
    "focal_length": 50,
    "location": "Grünerløkka",
    "project": "夜明け",
    "notes": "Fog; \"first light\" = 5:40",
    "date": "2026-05-01",
    "roll_name": "Roll 12",
    "artist": "Zoë Ångström",
    "copyright": "© 2026 Zoë Ångström",
}

_TEMPORARY = b"_exiftool_tmp"
_WORKPLACE = re.compile(rb"\.quillmark-[^/]{6}(/copy)?")


class Roll:
    """Files as they are before a run, and how whole runs leave them.

    Names and paths are bytes. `before`, `once` and `twice` map the name of each file to the
    checksum of its content: untouched, and after one and two whole runs.
    """

    def __init__(self, subject, folder):
        self._subject = subject
        self.folder = folder
        subprocess.run([subject, "roll", folder], check=True,
                       input=json.dumps(PAYLOAD, ensure_ascii=False).encode())
        self.before = _checksums(folder)
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
            images = self.before.keys() & copies.keys()
            losses += self._misread(os.path.join(folder, output), images)
            whole = [self.before] if output == b"_originals" else [self.before, self.once]
            losses += [f"{output}/{name} is neither what it was nor tagged" for name in images
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
        allowed = {output, *self.before,
                   *(os.path.join(output or b"", name) for name in self.before)}
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
        return _checksums(folder)

    def omissions(self, folder, mode, earlier):
        """What a whole run has not done that came after a kill; `earlier` is the state."""
        tagged = {name: self.twice[name] if mode != "write-copies" and content == self.once[name]
                  else self.once[name] for name, content in earlier.items()}
        expected = dict(earlier if mode == "write-copies" else tagged)
        output = OUTPUT_FOLDERS.get(mode)
        if output:
            copies = tagged if mode == "write-copies" else earlier
            expected |= {os.path.join(output, name): copies[name] for name in copies}
        found = {path: _checksum(os.path.join(folder, path)) for path in _everything(folder)
                 if path != output}
        return [f"{path} is not as a whole run leaves it"
                for path in sorted(expected.keys() | found.keys())
                if expected.get(path) != found.get(path)]

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


def _checksum(file):
    try:
        with open(file, "rb") as content:
            return hashlib.sha256(content.read()).hexdigest()
    except OSError as failure:
        return str(failure)


def _checksums(folder):
    """The files directly in a folder; none where there is no folder."""
    try:
        entries = list(os.scandir(folder))
    except FileNotFoundError:
        return {}
    return {entry.name: _checksum(entry.path) for entry in entries
            if entry.is_file(follow_symlinks=False)
            and not entry.name.endswith(_TEMPORARY)}


def _everything(folder):
    """Every entry at any depth below a folder, as paths from it."""
    for where, folders, files in os.walk(folder):
        for name in folders + files:
            yield os.path.relpath(os.path.join(where, name), folder)
