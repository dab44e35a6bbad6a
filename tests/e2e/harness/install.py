# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""Copies of the program in places of their own, with another exiftool or none."""

import os
import pathlib
import shutil
import subprocess

from .program import build_folder
from .waiting import wait_until

BUNDLE = "Quillmark_Quillmark.bundle"
_USUAL_PLACES = ("/opt/homebrew/bin/exiftool", "/usr/local/bin/exiftool", "/usr/bin/exiftool")


def install(prefix, exiftool=None, configuration=True):
    """Puts the program under a prefix as a package does, and gives its executable.

    `exiftool` is the text of a shell script to ship as the program's own.
    """
    prefix = pathlib.Path(prefix)
    bundle = prefix / "share" / "quillmark" / BUNDLE
    bundle.mkdir(parents=True)
    if configuration:
        shutil.copy(build_folder() / BUNDLE / "quillmark.config", bundle)
    if exiftool is not None:
        script = bundle / "exiftool" / "exiftool"
        script.parent.mkdir()
        script.write_text(f"#!/bin/sh\n{exiftool}\n", encoding="utf-8")
        script.chmod(0o755)
    # A copy, since the program looks for its resources beside the file that it runs from.
    executable = prefix / "bin" / "quillmark"
    executable.parent.mkdir()
    shutil.copy(build_folder() / "bin" / "quillmark", executable)
    return executable


class HeldExiftool:
    """An exiftool that waits to be let go before it starts its real work."""

    def __init__(self, folder):
        self._started = folder / "started"
        self._gate = folder / "gate"
        os.mkfifo(self._gate)

    def script(self, then='exec /usr/bin/exiftool "$@"'):
        return f"echo $$ > '{self._started}'\nread line < '{self._gate}'\n{then}"

    def wait_until_started(self):
        """Waits for it, and gives its process id."""
        text = wait_until(lambda: self._started.exists() and self._started.read_text("ascii"),
                          "exiftool to be started")
        return int(text)

    def let_go(self):
        self._gate.write_text("go\n", encoding="ascii")


def is_running(pid):
    """Whether a process exists and has not ended yet."""
    try:
        status = pathlib.Path("/proc", str(pid), "stat").read_text("ascii")
    except FileNotFoundError:
        return False
    return status.rpartition(")")[2].split()[0] not in "ZX"


def without(*places):
    """A command to put before a program that is to find nothing in these files and folders.

    Only that program sees it so: it gets mounts of its own.
    """
    return _with_mounts(
        f"-t tmpfs none '{place}'" if os.path.isdir(place) else f"--bind /dev/null '{place}'"
        for place in places if os.path.exists(place))


def trusting(certificate, folder):
    """A command to put before a program that is to trust this authority, and no other.

    The folder takes the place of the system's.
    """
    name = subprocess.run(["openssl", "x509", "-noout", "-hash", "-in", certificate],
                          check=True, capture_output=True, text=True).stdout.strip()
    shutil.copy(certificate, folder / f"{name}.0")
    return _with_mounts([f"--bind '{folder}' /etc/ssl/certs"])


def _with_mounts(mounts):
    steps = "".join(f"mount {each} && " for each in mounts)
    return ["unshare", "--user", "--map-current-user", "--keep-caps", "--mount",
            "sh", "-c", f'{steps}exec "$@"', "sh"]


def without_exiftool():
    """A command to put before a program so that it finds no exiftool in the usual places."""
    return without(*_USUAL_PLACES)


def can_hide_programs():
    """Whether this kernel lets anyone make such mounts."""
    answer = subprocess.run([*without_exiftool(), "true"], check=False, capture_output=True)
    return answer.returncode == 0
