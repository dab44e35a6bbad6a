# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""A desktop whose display is a Wayland compositor without a screen.

There is no pointer, no keyboard and nothing to drag with on it, and nobody can look at it:
what runs there is driven and seen through its accessibility tree alone.
"""

from . import accessible
from .desktop import Desktop
from .waiting import wait_until

_SOCKET = "wayland-headless"


class WaylandDesktop(Desktop):
    """As a Desktop, with Weston in the place of the X display and its window manager."""

    def _start_display(self):
        self.environment.pop("DISPLAY", None)
        self._run("weston", ["weston", "--backend=headless-backend.so", "--use-pixman",
                             "--width=1600", "--height=1200", f"--socket={_SOCKET}",
                             "--no-config", "--idle-time=0"])
        socket = self.home / "run" / _SOCKET
        wait_until(socket.exists, "the compositor", details=lambda: self.log("weston"))
        self.environment.update(QT_QPA_PLATFORM="wayland", WAYLAND_DISPLAY=_SOCKET)
        self.screen = _NoScreen()

    def _start_window_manager(self):
        """The compositor is one."""


class _NoScreen:
    """What a program needs to be found on a display."""

    def windows(self, pid, title):
        """A window has no number here that anybody else could know: it is in the tree."""
        tree = accessible.application(pid)
        return [] if tree is None else [
            item for item in tree.children if item.name == title and item.is_shown]

    def describe(self):
        return ""

    def close(self):
        """There is nothing to let go of."""
