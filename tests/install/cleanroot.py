# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""A Debian in a folder, on which nothing is installed yet."""

import os
import pathlib
import subprocess
import urllib.error
import urllib.request

SUITE = "bookworm"
USER = "photographer"
# Nobody's on the machine outside, so that it may read and write there what everyone may.
UID = 61234

# What package management keeps about itself, and what it makes anew after each change.
_BOOKKEEPING = ("etc/ld.so.cache", "var/cache/", "var/lib/apt/", "var/lib/dpkg/", "var/log/",
                "var/lib/systemd/", "etc/passwd-", "etc/group-", "etc/shadow-", "etc/gshadow-",
                "etc/.pwd.lock")
_NOT_OURS = ("dev", "proc", "sys", "tmp", "run")


class NotPossible(Exception):
    """There can be no clean Debian here, for a reason that lies outside the project."""


def mirror():
    """The address of the Debian that is fetched."""
    return os.environ.get("DEBIAN_MIRROR", "http://deb.debian.org/debian").rstrip("/")


def reach_mirror():
    """Asks the mirror for the list of what it has. Raises NotPossible where nobody answers, and
    AssertionError where an answer has no such list.
    """
    address = f"{mirror()}/dists/{SUITE}/InRelease"
    try:
        with urllib.request.urlopen(address, timeout=60) as answer:
            answer.read(1)
    except urllib.error.HTTPError as error:
        raise AssertionError(f"{address}: {error}") from error
    except OSError as error:
        raise NotPossible(f"the mirror cannot be reached: {address}: {error}") from error


class CleanRoot:
    """One Debian. The folder must not exist yet."""

    def __init__(self, folder):
        self.folder = pathlib.Path(folder)
        self._environment = {**os.environ, "DEBIAN_FRONTEND": "noninteractive",
                             "LC_ALL": "C.UTF-8", "PATH": "/usr/sbin:/usr/bin:/sbin:/bin",
                             "HOME": "/root"}

    def make(self):
        """Fetches the smallest Debian there is. Raises NotPossible where there is no mirror, and
        AssertionError for all else.
        """
        reach_mirror()
        answer = subprocess.run(
            ["debootstrap", "--variant=minbase", SUITE, self.folder, mirror()],
            check=False, capture_output=True, text=True)
        if answer.returncode != 0:
            raise AssertionError(f"debootstrap: {(answer.stdout + answer.stderr)[-2000:]}")

    def copy_of(self, base):
        """Becomes the same as another one."""
        subprocess.run(["cp", "--archive", "--reflink=auto", base.folder, self.folder], check=True)

    def begin(self):
        """Joins the folder to the machine, which lends it its display and its devices."""
        for name in ("dev", "proc", "tmp"):
            self.mount(f"/{name}", f"/{name}")
        for name in ("resolv.conf", "hosts"):
            (self.folder / "etc" / name).write_bytes(pathlib.Path("/etc", name).read_bytes())
        # Nothing that is installed in there is to start.
        self.write("/usr/sbin/policy-rc.d", "#!/bin/sh\nexit 101\n", 0o755)
        self.run("useradd", "--create-home", "--uid", str(UID), USER)
        self.run("apt-get", "--quiet=2", "update")

    def mount(self, source, place, read_only=False):
        """Shows a folder of the machine in here."""
        target = self.path(place)
        target.mkdir(parents=True, exist_ok=True)
        subprocess.run(["mount", "--rbind", source, target], check=True)
        if read_only:
            subprocess.run(["mount", "-o", "remount,bind,ro", target], check=True)

    def path(self, place):
        """Where a file in here is for the machine."""
        return self.folder / place.lstrip("/")

    def write(self, place, text, mode=0o644):
        self.path(place).write_text(text, encoding="utf-8")
        self.path(place).chmod(mode)

    def run(self, *command):
        """Runs a command in here as root, and gives what it says. Raises where it fails."""
        answer = subprocess.run(["chroot", self.folder, *command], check=False,
                                capture_output=True, text=True, env=self._environment)
        if answer.returncode != 0:
            raise AssertionError(f"{command}: {answer.stdout}{answer.stderr}")
        return answer.stdout

    def install(self, *packages):
        """Installs packages and what they need, without what they merely recommend."""
        self.run("apt-get", "--quiet=2", "--yes", "--no-install-recommends", "install", *packages)

    def as_user(self, *command):
        """A command for the machine's user of that number, who becomes the one in here."""
        return ["unshare", "--user", "--map-current-user", "--keep-caps",
                "chroot", str(self.folder),
                "setpriv", "--ambient-caps=-all", "--inh-caps=-all", "--bounding-set=-all",
                "--no-new-privs", *command]

    def packages(self):
        """The names of the installed packages."""
        return set(self.run("dpkg-query", "--show", "--showformat=${Package}\n").split())

    def files(self):
        """Every file and folder that is not bookkeeping, with its type, mode and size."""
        found = {}
        for top in sorted(self.folder.iterdir()):
            if top.name not in _NOT_OURS:
                for folder, folders, names in os.walk(top):
                    for name in [*folders, *names]:
                        entry = pathlib.Path(folder, name)
                        place = str(entry.relative_to(self.folder))
                        if not f"{place}/".startswith(_BOOKKEEPING):
                            status = entry.lstat()
                            size = 0 if entry.is_dir() else status.st_size
                            found[place] = (status.st_mode, size)
        return found
