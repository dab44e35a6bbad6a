# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""Puts packages onto clean Debians, tries them there as a user would, and removes them."""

import argparse
import hashlib
import os
import pathlib
import shlex
import shutil
import subprocess
import sys

from cleanroot import UID, USER, CleanRoot, NotPossible

HERE = pathlib.Path(__file__).resolve().parent
BUNDLE = "Quillmark_Quillmark.bundle"
SECOND_BUNDLE = f"/usr/local/share/quillmark/{BUNDLE}"
# A folder as it came from a machine that wrote names in Latin-1.
LATIN_PLACE = os.fsdecode(b"/media/Zo\xeb's stick")
# Another Qt, and how a machine tells of it.
OTHER_QT = "/opt/other-qt"
TOLD_OF_OTHER_QT = {"QT_PLUGIN_PATH": f"{OTHER_QT}/plugins",
                    "QT_QPA_PLATFORM_PLUGIN_PATH": f"{OTHER_QT}/plugins/platforms",
                    "QML_IMPORT_PATH": f"{OTHER_QT}/qml",
                    "QML2_IMPORT_PATH": f"{OTHER_QT}/qml"}
# Qt would rather have had a graphics card.
WITHOUT_CARD = (r'|qt\.qpa\.wayland: Failed to load client buffer integration: "wayland-egl"\n'
                r"|qt\.qpa\.wayland: Available client buffer integrations: QList\(\)\n")
# Where the portable folder has what others have made, the project's own files in there, and
# what is in the program itself.
FOREIGN = ("lib", "plugins", "qml", "etc", f"share/quillmark/{BUNDLE}/exiftool")
OWN = ["etc/fonts/fonts.conf"]
COMPILED_IN = {"libeigen3-dev", "libhwy-dev", "qcoro-qt6-dev"}
# What a user's home may keep.
SETTINGS = ".config/Larkhollow/Quillmark/co.larkhollow.quillmark.lastManualPayload.v2"
# The same of a program that was given a feed, and was open long enough to look into it.
OF_A_FEED = ".config/Larkhollow/Quillmark/co.larkhollow.quillmark.updates."
# A process has one desktop: those that need another have to be in another.
UNDER_X = ["test_drop", "test_desktop", "installed"]
UNDER_WAYLAND = ["test_wayland"]


class Trial:
    """A package on a Debian of its own."""

    def __init__(self, kind, version, work, base):
        self.kind = kind
        self.version = version
        self.work = work
        self.root = CleanRoot(work / kind)
        self.root.copy_of(base)
        self.root.begin()
        self.home = self.root.path(f"/home/{USER}")

    def say(self, text):
        print(f"test-install: {self.kind}: {text}", flush=True)

    def check(self, holds, text):
        if not holds:
            sys.exit(f"test-install: {self.kind}: FAILED, this is not so: {text}")
        self.say(text)

    def drive(self, program, cases, told=None):
        """End-to-end tests, against the program in here, with an environment that says more."""
        environment = {
            **os.environ,
            **(told or {}),
            "QUILLMARK_BUILD_DIR": str(self.work),
            "QUILLMARK_COMMAND": shlex.join(self.root.as_user(program)),
            "QUILLMARK_INSTALLED_HOME": f"/home/{USER}",
            "QUILLMARK_INSTALLED_VERSION": self.version,
        }
        answer = subprocess.run(
            ["setpriv", f"--reuid={UID}", f"--regid={UID}", "--clear-groups",
             "/usr/bin/python3", "-B", "-W", "ignore::DeprecationWarning", "-m", "unittest",
             "--verbose", *cases],
            check=False, cwd=self.work / "e2e", env=environment)
        self.check(answer.returncode == 0, f"{' '.join(cases)} passed as user {UID}")

    def check_missing_bundle(self, program, share):
        """Without its resources the program ends, and says where it has looked."""
        bundle = self.root.path(f"{share}/{BUNDLE}")
        aside = bundle.with_name("aside")
        bundle.rename(aside)
        answer = self.start(program)
        aside.rename(bundle)
        wanted = (f"could not load resource bundle: from {share}/{BUNDLE} or {SECOND_BUNDLE}\n")
        self.check((answer.returncode, answer.stderr) == (1, wanted),
                   f"without its bundle: {answer.stderr.strip()}")

    def start(self, program):
        """Starts what is to end by itself, and gives what it said."""
        return subprocess.run(
            ["setpriv", f"--reuid={UID}", f"--regid={UID}", "--clear-groups",
             *self.root.as_user(program)], check=False, capture_output=True, text=True,
            errors="surrogateescape", timeout=60)

    def check_latin_place(self, folder):
        """Where Qt cannot find itself, the user is told."""
        self.root.mount(folder, LATIN_PLACE)
        answer = self.start(f"{LATIN_PLACE}/quillmark")
        subprocess.run(["umount", self.root.path(LATIN_PLACE)], check=True)
        self.root.path(LATIN_PLACE).rmdir()
        wanted = ("Quillmark cannot start in a folder whose path is not valid UTF-8; rename it, or "
                  f"move this folder elsewhere: {LATIN_PLACE}\n")
        self.check((answer.returncode, answer.stderr) == (1, wanted),
                   f"in a folder with a name in Latin-1: {ascii(answer.stderr.strip())}")

    def put_other_qt(self, folder):
        """Something that Qt takes for its own, and that does not work with it."""
        other = self.root.path(OTHER_QT)
        for plugin in (folder / "plugins" / "platforms").iterdir():
            target = other / "plugins" / "platforms" / plugin.name
            target.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(plugin, target)
            subprocess.run(["patchelf", "--add-needed", "libOther.so.7", target], check=True)
        for module in ("QtQuick/Layouts", "QtQml/WorkerScript"):
            (other / "qml" / module).mkdir(parents=True)
            (other / "qml" / module / "qmldir").write_text(
                f"module {module.replace('/', '.')}\nplugin other\n", encoding="utf-8")

    def check_terms(self, folder):
        """Of every file that is not the project's own, the terms and the source are told."""
        told = {}
        package = None
        text = (folder / "licences" / "SOURCES").read_text(encoding="utf-8")
        for line in text.split("\n\n", 1)[1].splitlines():
            if line.startswith("    "):
                told[line.strip()] = package
            elif line and not line.startswith(" "):
                package = line.split()[0]
        files = [str(file.relative_to(folder)) for top in FOREIGN
                 for file in (folder / top).rglob("*") if file.is_file()]
        without = [file for file in files
                   if not (folder / "licences" / told.get(file, "nobody's")).is_file()]
        self.check(len(files) > 100 and without == OWN,
                   f"{len(files)} files in {', '.join(FOREIGN)}, of which only these have no "
                   f"terms and source in licences: {without}")
        compiled = {package for package in COMPILED_IN if f"\n{package} " in text
                    and (folder / "licences" / package).is_file()}
        self.check(compiled == COMPILED_IN,
                   f"licences tell of what was compiled in: {sorted(compiled)}")

    def check_home(self, before, has_feed):
        """Only settings are left of what the program has written."""
        new = sorted(self.home_files() - before)
        strays = [file for file in new if file != SETTINGS
                  and not (has_feed and file.startswith(OF_A_FEED))]
        self.check(SETTINGS in new and not strays, f"left in the home: {new}")

    def home_files(self):
        return {str(file.relative_to(self.home)) for file in self.home.rglob("*")
                if file.is_file()}

    def deb(self, package):
        root = self.root
        home = self.home_files()
        files, packages = root.files(), root.packages()
        shutil.copy(package, root.path("/var/cache/quillmark.deb"))
        root.install("/var/cache/quillmark.deb")
        new = root.packages() - packages
        self.say(f"{package.name} has brought {len(new)} packages: {' '.join(sorted(new))}")
        self.check("libimage-exiftool-perl" in new, "exiftool is among them")
        strays = [name for name in new if name.endswith("-dev") or "sql" in name]
        self.check(not strays, f"{len(strays)} of them are for developers or databases")
        own = [name for name in root.run("dpkg-query", "--listfiles", "quillmark").split()
               if root.path(name).is_file()]
        self.say(f"its own files: {' '.join(own)}")
        has_feed = any(name.endswith("/updates.json") for name in own)

        self.check_missing_bundle("/usr/bin/quillmark", "/usr/share/quillmark")
        self.drive("/usr/bin/quillmark", UNDER_X)
        root.install("qt6-wayland")
        self.drive("/usr/bin/quillmark", UNDER_WAYLAND)

        root.run("apt-get", "--quiet=2", "--yes", "purge", "quillmark", "qt6-wayland")
        mentions = sorted(place for place in root.files()
                          if "quillmark" in place.lower() and not place.startswith("home/"))
        self.check(not mentions, f"files of the program after its removal: {mentions}")
        # Nor those that another package would merely like to have.
        root.run("apt-get", "--quiet=2", "--yes", "-o", "APT::AutoRemove::RecommendsImportant=no",
                 "-o", "APT::AutoRemove::SuggestsImportant=no", "autoremove", "--purge")
        left = sorted(root.packages() - packages)
        self.check(not left, f"left of the packages that it brought: {left}")
        self.compare(files)
        self.check_home(home, has_feed)

    def portable(self, archive):
        root = self.root
        home = self.home_files()
        # All that a desktop has to bring along.
        root.install("perl")
        files = root.files()
        place = "/media/Zoë's stick, 50% full"
        unpacked = self.work / "unpacked"
        unpacked.mkdir()
        subprocess.run(["tar", "--extract", "--file", archive, "--directory", unpacked,
                        "--no-same-owner"], check=True)
        [folder] = unpacked.iterdir()
        links = [str(file) for file in folder.rglob("*") if file.is_symlink()]
        self.check(not links, f"symbolic links in the folder: {links}")
        size = sum(file.stat().st_size for file in folder.rglob("*") if file.is_file())
        self.say(f"{archive.name} unpacks to {folder.name}, {size // 1000000} MB")

        self.check_terms(folder)
        self.check_latin_place(folder)
        self.root.mount(folder, place)
        self.check_missing_bundle(f"{place}/quillmark", f"{place}/share/quillmark")
        subprocess.run(["mount", "-o", "remount,bind,ro", root.path(place)], check=True)
        self.put_other_qt(folder)
        self.drive(f"{place}/quillmark", UNDER_X, TOLD_OF_OTHER_QT)
        self.drive(f"{place}/quillmark", UNDER_WAYLAND,
                   {**TOLD_OF_OTHER_QT, "QUILLMARK_INSTALLED_NOISE": WITHOUT_CARD})
        shutil.rmtree(root.path(OTHER_QT))
        subprocess.run(["umount", root.path(place)], check=True)
        root.path(place).rmdir()
        self.compare(files)
        self.check_home(home, has_feed=False)

    def compare(self, before):
        """The system is as it was, but for what package management keeps about itself."""
        after = self.root.files()
        outside = {place for place in after.keys() ^ before.keys()
                   if not place.startswith("home/")}
        changed = {place for place in after.keys() & before.keys()
                   if after[place] != before[place] and not place.startswith("home/")}
        self.check(not outside | changed,
                   f"new, gone or changed files of the system: {sorted(outside | changed)}")


def make_user_known(work):
    """A session bus serves nobody whom it does not find among the users of the machine.

    Only this process and those that it starts see it so.
    """
    for name, line in (("passwd", f"{USER}:x:{UID}:{UID}::/nonexistent:/bin/sh\n"),
                       ("group", f"{USER}:x:{UID}:\n")):
        original = pathlib.Path("/etc", name)
        ours = work / name
        ours.write_text(original.read_text(encoding="utf-8") + line, encoding="utf-8")
        ours.chmod(0o644)
        subprocess.run(["mount", "--bind", ours, original], check=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("work", type=pathlib.Path,
                        help="an empty folder that everyone may enter; folders of the machine "
                             "are mounted in there, so it takes mounts of one's own")
    parser.add_argument("packages", type=pathlib.Path, help="the folder of the packages")
    parser.add_argument("build", type=pathlib.Path, help="a build with the tools for tests")
    parser.add_argument("version", help="what the program should say it is")
    parser.add_argument("--required", action="store_true",
                        help="fail where a clean Debian is not possible")
    parser.add_argument("kinds", nargs="+", choices=["deb", "portable"])
    arguments = parser.parse_args()
    work = arguments.work

    make_user_known(work)
    # Where an ordinary user can read them, wherever the project is.
    shutil.copytree(HERE.parent / "e2e", work / "e2e")
    (work / "bin").mkdir()
    shutil.copy(arguments.build / "bin" / "sample-roll", work / "bin")
    base = CleanRoot(work / "base")
    print("test-install: making a clean Debian", flush=True)
    try:
        base.make()
    except NotPossible as reason:
        if arguments.required:
            sys.exit(f"test-install: FAILED, and not skipped, since it is required: {reason}")
        print(f"test-install: skipped: {reason}")
        return
    except AssertionError as error:
        sys.exit(f"test-install: FAILED: {error}")
    for kind in arguments.kinds:
        [package] = arguments.packages.glob({"deb": "*.deb", "portable": "*.tar.xz"}[kind])
        with open(package, "rb") as file:
            checksum = hashlib.file_digest(file, "sha256").hexdigest()
        print(f"test-install: {kind}: {checksum}  {package.name}", flush=True)
        getattr(Trial(kind, arguments.version, work, base), kind)(package)
    print(f"test-install: {len(arguments.kinds)} passed, 0 failed")


if __name__ == "__main__":
    main()
