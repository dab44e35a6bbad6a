#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""Makes the folder that runs from anywhere, and an archive of it, from a build.

Libraries, plugins, modules and exiftool are those of the Debian packages that are installed here.
The archive depends on them, the build and SOURCE_DATE_EPOCH alone.
"""

import argparse
import os
import pathlib
import platform
import re
import shutil
import subprocess
import sys

from bundled import Libraries, Sources

HERE = pathlib.Path(__file__).resolve().parent
BUNDLE = "share/quillmark/Quillmark_Quillmark.bundle"

# What Qt loads by name while the program runs, below its folder of plugins. Everything is drawn
# by the processor: nothing in here opens a driver of the machine's graphics card, which would get
# libraries of this folder where it expects newer ones. The libraries of libglvnd, which Qt is
# linked with, are there and do nothing.
PLUGINS = [
    "platforms/libqxcb.so",
    "platforms/libqwayland-generic.so",
    "platforminputcontexts/libcomposeplatforminputcontextplugin.so",
    "platforminputcontexts/libibusplatforminputcontextplugin.so",
    "wayland-decoration-client/libbradient.so",
    "wayland-shell-integration/libxdg-shell.so",
]

# The modules that the window imports, each with its description and its plugin.
MODULES = ["QtQml/WorkerScript", "QtQuick/Layouts"]

# What Qt and the program load by name.
LOADED_BY_NAME = ["libXcursor.so.1", "libzbar.so.0"]

FONTS = ["DejaVuSans.ttf", "DejaVuSans-Bold.ttf", "DejaVuSansMono.ttf"]

QT_CONF = """[Paths]
Prefix = ..
Plugins = plugins
QmlImports = qml
"""


class Folder:
    """The folder as it comes into being."""

    def __init__(self, root):
        self.root = root
        self.sources = Sources()
        self.libraries = Libraries()

    def add(self, source, place, mode=0o644):
        """Copies a file of the system; symbolic links on the way are followed."""
        target = self.root / place
        target.parent.mkdir(parents=True, exist_ok=True)
        shutil.copyfile(source, target)
        target.chmod(mode)
        self.sources.add(source, place)

    def write(self, place, text, mode=0o644):
        target = self.root / place
        target.parent.mkdir(parents=True, exist_ok=True)
        target.write_text(text, encoding="utf-8")
        target.chmod(mode)

    def add_program(self, build):
        """What is installed of the build, without what only a system has a use for."""
        subprocess.run(["cmake", "--install", build, "--prefix", self.root, "--strip"],
                       check=True, stdout=subprocess.DEVNULL)
        share = self.root / "share"
        for entry in share.iterdir():
            if entry.name != "quillmark":
                shutil.rmtree(entry)
        # The versions in a feed are packages for a system.
        (self.root / BUNDLE / "updates.json").unlink(missing_ok=True)
        self.write("bin/qt.conf", QT_CONF)
        self.libraries.need(self.root / "bin" / "quillmark")
        self.sources.add_headers(headers_of(build))

    def add_qt(self):
        plugins, modules = qt_folder("QT_INSTALL_PLUGINS"), qt_folder("QT_INSTALL_QML")
        for name in PLUGINS:
            self.add(plugins / name, f"plugins/{name}")
            self.libraries.need(plugins / name)
        for name in MODULES:
            self.add(modules / name / "qmldir", f"qml/{name}/qmldir")
            for plugin in sorted((modules / name).glob("*.so")):
                self.add(plugin, f"qml/{name}/{plugin.name}")
                self.libraries.need(plugin)

    def add_libraries(self):
        for name in LOADED_BY_NAME:
            self.libraries.need_named(name)
        for name, file in self.libraries.found():
            self.add(file, f"lib/{name}")
        # Their own libraries come first, whatever else the machine has. No links are needed,
        # since each file has the name that it is asked for by: sticks often know no links.
        for file in sorted(self.root.rglob("*")):
            if file.is_file() and (file.parent == self.root / "lib" or ".so" in file.suffixes
                                   or file == self.root / "bin" / "quillmark"):
                self.libraries.point(file, self.root / "lib")

    def add_exiftool(self):
        self.add(pathlib.Path("/usr/bin/exiftool"), f"{BUNDLE}/exiftool/exiftool", 0o755)
        perl = pathlib.Path("/usr/share/perl5")
        for file in Sources.files_of("libimage-exiftool-perl"):
            if file.suffix in (".pm", ".pl") and perl in file.parents:
                self.add(file, f"{BUNDLE}/exiftool/lib/{file.relative_to(perl)}")

    def add_fallbacks(self):
        """Fonts, keyboard layouts and composed letters, for the machine that has none."""
        self.add(HERE / "portable.fonts.conf", "etc/fonts/fonts.conf")
        for name in FONTS:
            self.add(pathlib.Path("/usr/share/fonts/truetype/dejavu") / name, f"etc/fonts/{name}")
        for name in ("xkb", "locale"):
            tables = pathlib.Path("/usr/share/X11", name)
            for file in sorted(tables.rglob("*")):
                if file.is_file() and not file.is_symlink():
                    self.add(file, f"etc/{name}/{file.relative_to(tables)}")

    def add_words(self, version):
        readme = (HERE / "portable.README").read_text(encoding="utf-8")
        for word, value in (("VERSION", version), ("MACHINE", platform.machine()),
                            ("GLIBC", self.libraries.newest_glibc(self.root))):
            readme = readme.replace(f"@{word}@", value)
        self.write("README.txt", readme)
        self.write("quillmark", (HERE / "portable.sh").read_text(encoding="utf-8"), 0o755)
        self.write("licences/quillmark", (HERE.parent / "LICENSE").read_text(encoding="utf-8"))
        self.write("licences/SOURCES", self.sources.whereabouts())
        for name, file in self.sources.terms():
            target = self.root / "licences" / name
            target.parent.mkdir(exist_ok=True)
            shutil.copyfile(file, target)
            target.chmod(0o644)


def qt_folder(name):
    answer = subprocess.run(["qmake6", "-query", name], check=True, capture_output=True, text=True)
    return pathlib.Path(answer.stdout.strip())


def headers_of(build):
    """The system's headers that the program was compiled with, as the compiler has noted them."""
    def ninja(*arguments):
        return subprocess.run(["ninja", "-C", build, "--quiet", "-t", *arguments], check=True,
                              capture_output=True, text=True).stdout.splitlines()

    objects = [name for name in ninja("inputs", "quillmark") if name.endswith(".o")]
    return {line.strip() for line in ninja("deps", *objects) if line.startswith("    /usr/")}


def version_of(build):
    cache = (build / "CMakeCache.txt").read_text(encoding="utf-8")
    return re.search(r"^CMAKE_PROJECT_VERSION:STATIC=(.*)$", cache, re.MULTILINE)[1]


def archive(root, target):
    """The same bytes from the same files: in the order of names, of one time and one owner."""
    tar = subprocess.Popen(
        ["tar", "--create", "--sort=name", "--format=gnu", "--owner=0", "--group=0",
         "--numeric-owner", "--mode=u+rwX,go=rX", f"--mtime=@{os.environ['SOURCE_DATE_EPOCH']}",
         f"--directory={root.parent}", root.name], stdout=subprocess.PIPE)
    with open(target, "wb") as file:
        # One thread: with several, the blocks depend on how many there are.
        subprocess.run(["xz", "--compress", "-9", "--extreme", "--threads=1"], check=True,
                       stdin=tar.stdout, stdout=file)
    tar.stdout.close()
    if tar.wait() != 0:
        sys.exit("portable: tar failed")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("build", type=pathlib.Path, help="the folder of the build")
    parser.add_argument("target", type=pathlib.Path, help="the folder for the archive")
    arguments = parser.parse_args()
    if "SOURCE_DATE_EPOCH" not in os.environ:
        parser.error("SOURCE_DATE_EPOCH is not set")

    version = version_of(arguments.build)
    name = f"quillmark-{version}-linux-{platform.machine()}"
    root = (arguments.build / "portable" / name).absolute()
    shutil.rmtree(root.parent, ignore_errors=True)
    root.mkdir(parents=True)

    folder = Folder(root)
    folder.add_program(arguments.build)
    folder.add_qt()
    folder.add_libraries()
    folder.add_exiftool()
    folder.add_fallbacks()
    folder.add_words(version)
    archive(root, arguments.target / f"{name}.tar.xz")


if __name__ == "__main__":
    main()
