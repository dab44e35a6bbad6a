# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""What the window imports, and what packages bring along for it."""

import re
import unittest

from places import BUILD, ROOT

import portable  # isort: skip

# Their types are registered by the libraries that the program is linked with.
IN_LIBRARIES = {"QtQml", "QtQml.Models", "QtQuick"}
IMPORT = re.compile(r"^import ([A-Z]\w*(?:\.\w+)*)", re.MULTILINE)
FURTHER = re.compile(r"^(?:import|depends) ([A-Z]\w*(?:\.\w+)*)", re.MULTILINE)


def imported():
    """The modules that the sources of the window import, but for its own."""
    names = set()
    for file in (ROOT / "src").rglob("*.qml"):
        names.update(IMPORT.findall(file.read_text(encoding="utf-8")))
    return names - {"Quillmark"}


def with_further(names):
    """Modules, and those that their descriptions ask for."""
    folder = portable.qt_folder("QT_INSTALL_QML")
    found, new = set(), set(names)
    while new:
        name = new.pop()
        found.add(name)
        text = (folder / name.replace(".", "/") / "qmldir").read_text(encoding="utf-8")
        new |= set(FURTHER.findall(text)) - found
    return found


def in_debian(name):
    return "qml6-module-" + name.replace(".", "-").lower()


class Modules(unittest.TestCase):
    def setUp(self):
        self.imported = imported()
        self.assertIn("QtQuick", self.imported)
        self.of_folder = {name.replace("/", ".") for name in portable.MODULES}

    def test_folder_has_what_is_imported(self):
        self.assertEqual(self.of_folder, with_further(self.imported) - IN_LIBRARIES)

    def test_window_is_byte_code(self):
        """Of the C++ that Qt makes of QML, no two builds are the same."""
        compilers = [line for line in (BUILD / "build.ninja").read_text(encoding="utf-8").split("\n")
                     if "/qmlcachegen --bare" in line and "/src/ui/" in line]
        self.assertGreater(len(compilers), 50)
        for line in compilers:
            self.assertIn(" --only-bytecode ", line)

    def test_debian_package_depends_on_the_same(self):
        text = (ROOT / "packaging" / "CMakeLists.txt").read_text(encoding="utf-8")
        names = re.search(r"set\(loaded_by_name\s([^)]*)\)", text)[1].split()
        self.assertEqual({name for name in names if name.startswith("qml6-module-")},
                         {in_debian(name) for name in self.imported | self.of_folder})


if __name__ == "__main__":
    unittest.main()
