# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""The rolls that runs with faults are made over, and what stands in them."""

import functools
import hashlib
import os
import pathlib
import shutil
import subprocess
import tempfile


ABANDONED = ".quillmark-Ab3dE6"  # what a run that was killed leaves in a folder of copies


@functools.cache
def image(extension, colour):
    """The bytes of a small picture."""
    command = ["convert", "-size", "32x24", f"gradient:{colour}-blue", f"{extension}:-"]
    return subprocess.run(command, check=True, stdout=subprocess.PIPE).stdout


def fill_first(roll):
    """A roll that no run has seen."""
    (roll / "01.jpg").write_bytes(image("jpg", "red"))
    (roll / "02.tif").write_bytes(image("tiff", "green"))


def fill_again(roll):
    """A roll after earlier runs, two of which were killed, one while it copied, with a folder and
    a link that are named like images."""
    fill_first(roll)
    album = roll / "album.jpg"
    album.mkdir()
    (album / "03.jpg").write_bytes(image("jpg", "yellow"))
    (album / "nowhere").symlink_to("gone")
    for folder in ("_originals", "_tagged"):
        (roll / folder / "album.jpg").mkdir(parents=True)
        (roll / folder / "01.jpg").write_bytes(f"an earlier 01.jpg in {folder}".encode())
        (roll / folder / "album.jpg" / "03.jpg").write_bytes(f"an earlier 03.jpg in {folder}".encode())
        (roll / folder / ABANDONED / "copy").mkdir(parents=True)
        (roll / folder / ABANDONED / "copy" / "03.jpg").write_bytes(b"half a copy")
    (roll / "01.jpg_exiftool_tmp").write_bytes(b"half a frame")


ROLLS = {"first": fill_first, "again": fill_again}


def listed(folder):
    """Everything below a folder: paths from it, with a hash of what they hold."""
    found = {}
    for above, folders, files in os.walk(folder):
        for name in folders + files:
            path = pathlib.Path(above, name)
            relative = str(path.relative_to(folder))
            if path.is_symlink():
                found[relative] = f"link to {os.readlink(path)}"
            elif path.is_dir():
                found[relative] = "folder"
            else:
                found[relative] = hashlib.sha256(path.read_bytes()).hexdigest()
    return found


class Place:
    """A roll and a folder for settings, gone at the end."""

    def __init__(self, roll):
        self.name = roll
        self.has_settings = roll == "again"
        self._folder = tempfile.TemporaryDirectory(prefix="quillmark-faults-")
        self.roll = pathlib.Path(self._folder.name, "roll")
        self.settings = pathlib.Path(self._folder.name, "settings")
        self.roll.mkdir()
        self.settings.mkdir()
        ROLLS[roll](self.roll)
        self.before = self.files()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        shutil.rmtree(self._folder.name, ignore_errors=True)
        self._folder.cleanup()

    def files(self):
        return listed(self.roll)
