# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""Which libraries files need, and which Debian packages they come from."""

import dataclasses
import functools
import pathlib
import re
import subprocess
from urllib.parse import quote

# The C library and its loader belong to the machine: they have to fit each other, its name
# services and its locales.
_C_LIBRARY = re.compile(r"(ld-linux.*|lib(c|m|dl|rt|pthread|resolv|util|nsl|anl|mvec))\.so\.\d+")
_NEEDED = re.compile(r"^\s*(\S+) => (/\S+) \(0x[0-9a-f]+\)$", re.MULTILINE)
_MISSING = re.compile(r"^\s*(\S+) => not found$", re.MULTILINE)
_GLIBC = re.compile(r"\bGLIBC_(\d+(?:\.\d+)+)\b")

# The sources of what is the machine's: their headers say how to call it.
_MACHINES = {"glibc", "linux"}
# The place of what comes as headers alone.
COMPILED_IN = "bin/quillmark (compiled in)"

_WHEREABOUTS = """\
What is in this folder and is not Quillmark's own comes from the Debian packages below, each with
its version, its source, where Debian keeps that, and the files it has brought. The files are as
Debian has built them, but for the folder in which libraries look for others (their run path).
The terms of each stand beside this file, under the package's name.
"""


def _output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


@dataclasses.dataclass(frozen=True)
class Package:
    """A Debian package of which something is in the folder."""

    name: str
    source: str
    source_version: str
    version: str
    places: list


class Libraries:
    """The libraries that a program and its plugins need, directly and through others."""

    def __init__(self):
        self._files = {}

    def need(self, file):
        """Adds all that a program, plugin or library needs. Raises OSError for a missing one."""
        answer = _output("ldd", file)
        missing = _MISSING.findall(answer)
        if missing:
            raise OSError(f"{file} needs {', '.join(missing)}")
        for name, path in _NEEDED.findall(answer):
            if not _C_LIBRARY.fullmatch(name):
                self._files[name] = pathlib.Path(path).resolve()

    def need_named(self, name):
        """Adds a library by its name, and what it needs. Raises OSError where it is missing."""
        found = re.search(rf"^\s*{re.escape(name)} \(.*x86-64.*\) => (/\S+)$"
                          rf"|^\s*{re.escape(name)} \(.*\) => (/\S+)$",
                          _output("/sbin/ldconfig", "--print-cache"), re.MULTILINE)
        if not found:
            raise OSError(f"{name} is not installed")
        self._files[name] = pathlib.Path(found[1] or found[2]).resolve()
        self.need(self._files[name])

    def found(self):
        """Each library's name as it is asked for, and its file; in the order of names."""
        return sorted(self._files.items())

    def point(self, file, folder):
        """Has a program, plugin or library look for its libraries in a folder, relative to it."""
        needed = _output("patchelf", "--print-needed", file).split()
        if not self._files.keys() & set(needed):
            return
        steps = ["$ORIGIN", *([".."] * (len(file.parent.relative_to(folder.parent).parts)))]
        place = "$ORIGIN" if file.parent == folder else "/".join([*steps, folder.name])
        subprocess.run(["patchelf", "--force-rpath", "--set-rpath", place, file], check=True)

    @staticmethod
    def newest_glibc(root):
        """The version of the C library that the files below a folder need."""
        versions = {"2.0"}
        for file in root.rglob("*"):
            if file.is_file() and (".so" in file.suffixes or file.parent.name == "bin"):
                answer = subprocess.run(["objdump", "--private-headers", file], check=False,
                                        capture_output=True, text=True)
                versions.update(_GLIBC.findall(answer.stdout))
        return max(versions, key=lambda version: [int(part) for part in version.split(".")])


class Sources:
    """The Debian packages that files come from, their terms, and where their sources are."""

    def __init__(self):
        self._copied = {}
        self._headers = set()

    def add(self, file, place):
        """Notes a file, and where it was put; what is in no package is the project's own."""
        self._copied.setdefault(pathlib.Path(file), set()).add(str(place))

    def add_headers(self, headers):
        """Notes files that became part of the program when it was compiled."""
        self._headers.update(pathlib.Path(file) for file in headers)

    @staticmethod
    def files_of(package):
        """The files of an installed package, in the order of their names."""
        paths = (pathlib.Path(line) for line in _output("dpkg", "--listfiles", package).split("\n")
                 if line.startswith("/"))
        return sorted(path for path in paths if path.is_file())

    def packages(self):
        """The packages of all files that were noted, in the order of their names, each with the
        places of its files. Raises OSError for a file that is in none.
        """
        own = pathlib.Path(__file__).resolve().parent
        copied = {file: places for file, places in self._copied.items()
                  if own not in file.parents}
        brought = {}
        for file, package in _owners(copied).items():
            brought.setdefault(package, set()).update(copied[file])
        # The sources of a library have its headers, too. What is left are those without one.
        sources = {_source(package)[0] for package in brought} | _MACHINES
        for package in set(_owners(self._headers).values()):
            if _source(package)[0] not in sources:
                brought[package] = {COMPILED_IN}
        return [Package(name, *_source(name), sorted(brought[name])) for name in sorted(brought)]

    def terms(self):
        """Names and files of the terms of all packages, and of the licences they refer to."""
        found = []
        common = set()
        for package in self.packages():
            file = pathlib.Path("/usr/share/doc", package.name, "copyright").resolve(strict=True)
            found.append((package.name, file))
            common |= set(re.findall(r"/usr/share/common-licenses/([\w.+-]*\w)",
                                     file.read_text(encoding="utf-8", errors="replace")))
        for name in sorted(common):
            file = pathlib.Path("/usr/share/common-licenses", name).resolve()
            if file.is_file():
                found.append((f"common/{name}", file))
        return found

    def whereabouts(self):
        """A text that tells which package brought what, and where Debian keeps its source."""
        parts = [_WHEREABOUTS]
        for package in self.packages():
            parts.append(f"{package.name} {package.version}\n"
                         f"  source: {package.source} {package.source_version}\n"
                         f"  https://snapshot.debian.org/package/{package.source}/"
                         f"{quote(package.source_version)}/\n"
                         + "".join(f"    {place}\n" for place in package.places))
        return "\n".join(parts)


def _owners(files):
    """The package of each file, without architectures. Raises OSError for a file in none."""
    if not files:
        return {}
    places = {file: _places(file) for file in files}
    # It fails where one of the places is unknown, and there are several for each file.
    answer = subprocess.run(["dpkg-query", "--search", *sorted(set().union(*places.values()))],
                            check=False, capture_output=True, text=True).stdout
    owners = {}
    for line in answer.splitlines():
        names, _, path = line.rpartition(": ")
        if not names.startswith("diversion "):
            owners[path] = names.split(",")[0].split(":")[0]
    strays = [str(file) for file, known in places.items() if not known & owners.keys()]
    if strays:
        raise OSError(f"in no package: {', '.join(sorted(strays))}")
    return {file: owners[min(known & owners.keys())] for file, known in places.items()}


@functools.cache
def _source(package):
    """The name and version of a package's source, and the version of the package."""
    # Of several architectures there is one version.
    answer = _output("dpkg-query", "--show", "--showformat",
                     "${source:Package} ${source:Version} ${Version}\\n", package)
    return tuple(answer.split("\n")[0].split())


def _places(file):
    """The paths under which a file may be registered: its package may have put it below /lib
    before that became /usr/lib.
    """
    places = {str(file), str(file.resolve())}
    return places | {place.removeprefix("/usr") for place in places if place.startswith("/usr/lib")}
