# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""Folders of scans to drop on the window."""

import json
import os
import pathlib
import subprocess

from .program import build_folder
from .samples import PAYLOAD, checksum

# A scan large enough to read the slate on, and small enough to make at once.
_SIZE = ("--width", "1200", "--height", "800")


def make_roll(folder, frames=3, slate_at=2, *options, payload=None):
    """Makes frame-01.jpg and so on in a folder, which is made too, and gives it back.

    `slate_at` is the number of the frame that shows the slate, 0 for none.
    """
    folder = pathlib.Path(folder)
    folder.mkdir(parents=True, exist_ok=True)
    slate = folder.parent / f".{folder.name}-payload.json"
    slate.write_text(json.dumps(payload or PAYLOAD, ensure_ascii=False), encoding="utf-8")
    subprocess.run(
        [build_folder() / "bin" / "sample-roll", "--frames", str(frames),
         "--slate-at", str(slate_at), *_SIZE, "--payload", slate, *options, folder],
        check=True, stdout=subprocess.DEVNULL, timeout=120,
    )
    slate.unlink()
    return folder


def multiply(frame, times):
    """Lets a frame appear under many names in its folder, as a long roll would."""
    for number in range(times):
        os.link(frame, frame.with_name(f"{frame.stem}-{number:04}{frame.suffix}"))


def frames(folder):
    """The files of a folder, in the order of their names."""
    return sorted(entry for entry in pathlib.Path(folder).iterdir() if entry.is_file())


def checksums(files):
    """What is in files, by file name."""
    return {file.name: checksum(file) for file in files}
