# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""A display for programs with a window, where nobody watches."""

import os
import subprocess

# With one of these the program leaves the choice of a renderer to Qt.
RENDERERS = ("QT_QUICK_BACKEND", "QMLSCENE_DEVICE", "QSG_RHI_BACKEND")


class VirtualDisplay:
    """An X server of its own, for the length of a `with` statement."""

    def __enter__(self):
        read, write = os.pipe()
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write), "-screen", "0", "1600x1200x24", "-nolisten", "tcp",
             "-noreset"],  # which the end of the last client would bring about, and cut off the next
            pass_fds=(write,), stderr=subprocess.DEVNULL)
        os.close(write)
        with os.fdopen(read, encoding="ascii") as answer:
            self.name = f":{answer.readline().strip()}"
        return self

    def __exit__(self, *_):
        self.server.terminate()
        self.server.wait()

    def environment(self, home):
        """What a program needs to open its window here, with its settings in a folder.

        All use the renderer that they come with, which is the same one.
        """
        rest = {name: value for name, value in os.environ.items() if name not in RENDERERS}
        return {**rest, "DISPLAY": self.name, "QT_QPA_PLATFORM": "xcb",
                "XDG_CONFIG_HOME": str(home), "XDG_RUNTIME_DIR": str(home)}
