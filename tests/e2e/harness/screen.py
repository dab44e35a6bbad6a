# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""What is on the display, and the pointer and keyboard in front of it."""

import subprocess

from Xlib import X, display, error, protocol
from Xlib.ext import xtest

from .waiting import wait_until


class Screen:
    """One X display. Positions are pixels from its upper left corner."""

    def __init__(self, name, environment):
        self.name = name
        self._environment = environment
        self._display = display.Display(name)
        self._root = self._display.screen().root
        self.width = self._display.screen().width_in_pixels
        self.height = self._display.screen().height_in_pixels

    def close(self):
        self._display.close()

    # --- windows -----------------------------------------------------------------

    def windows(self, pid, title=None):
        """The ids of the windows that a process shows now, oldest first."""
        managed = self._property(self._root, "_NET_CLIENT_LIST") or []
        return [
            number
            for number in managed
            if self._owner(number) == pid
            and self._is_viewable(number)
            and (title is None or self._title(number) == title)
        ]

    def describe(self):
        """Every window that has a title, those that are not shown too; for messages."""
        lines = []
        todo = [self._root]
        while todo:
            window = todo.pop()
            try:
                todo += window.query_tree().children
                title = self._title(window.id)
                if title:
                    shown = "shown" if self._is_viewable(window.id) else "hidden"
                    lines.append(f"window {title!r} of {self._owner(window.id)} {shown} "
                                 f"at {self.geometry(window.id)}")
            except error.XError:
                continue
        return "\n".join(lines)

    def geometry(self, window):
        """Position and size of a window's inside: x, y, width, height."""
        resource = self._display.create_resource_object("window", window)
        size = resource.get_geometry()
        place = self._root.translate_coords(resource, 0, 0)
        return place.x, place.y, size.width, size.height

    def window_class(self, window):
        """The two names by which desktops know a window's program: instance and class."""
        return tuple(self._property(self._resource(window), "WM_CLASS").decode().split("\0")[:2])

    def icon_sizes(self, window):
        """Width and height of each picture that a window brings along for lists of windows."""
        values = list(self._property(self._resource(window), "_NET_WM_ICON") or [])
        sizes = []
        while values:
            width, height = values[:2]
            sizes.append((width, height))
            values = values[2 + width * height:]
        return sizes

    def close_window(self, window):
        """Asks for a window to be closed, as its frame's close button does."""
        self._ask_window_manager(window, "_NET_CLOSE_WINDOW", [X.CurrentTime, 2])

    def resize_window(self, window, width, height):
        """Asks for another size of a window's inside; its own limits hold."""
        from_pager_with_size = 2 << 12 | 1 << 10 | 1 << 11
        self._ask_window_manager(
            window, "_NET_MOVERESIZE_WINDOW", [from_pager_with_size, 0, 0, width, height]
        )

    # --- pictures ----------------------------------------------------------------

    def picture(self, file, window):
        """Saves what is seen where a window is; the file's suffix gives the format."""
        x, y, width, height = self.geometry(window)
        subprocess.run(["import", "-silent", "-window", "root",
                        "-crop", f"{width}x{height}+{x}+{y}", "+repage", str(file)],
                       env=self._environment, check=True, timeout=60)

    def colour(self, x, y):
        """The colour of a pixel as "#RRGGBB"."""
        blue, green, red, _ = self.pixels(x, y, 1, 1)
        return f"#{red:02X}{green:02X}{blue:02X}"

    def pixels(self, x, y, width, height):
        """The pixels of an area: blue, green, red and an unused byte each, row by row."""
        return self._root.get_image(x, y, width, height, X.ZPixmap, 0xFFFFFFFF).data

    # --- pointer and keyboard ----------------------------------------------------

    def move_pointer(self, x, y):
        xtest.fake_input(self._display, X.MotionNotify, x=x, y=y)
        self._display.sync()

    def press_button(self):
        xtest.fake_input(self._display, X.ButtonPress, 1)
        self._display.sync()

    def release_button(self):
        xtest.fake_input(self._display, X.ButtonRelease, 1)
        self._display.sync()

    def click(self, x, y):
        self.move_pointer(x, y)
        self.press_button()
        self.release_button()

    def key(self, *names):
        """Presses and releases keys one after another; "shift+Tab" is a chord."""
        subprocess.run(["xdotool", "key", "--clearmodifiers", *names],
                       env=self._environment, check=True, timeout=60)

    def type(self, text):
        """Types a text on the keyboard, into whatever has the focus."""
        subprocess.run(["xdotool", "type", "--clearmodifiers", "--delay", "5", "--", text],
                       env=self._environment, check=True, timeout=60)

    def wait_for_focus(self, window):
        """Waits until the keyboard writes into a window."""
        def active():
            return self._property(self._root, "_NET_ACTIVE_WINDOW") or [None]

        wait_until(lambda: active()[0] == window, "the window to get the keyboard")

    # --- inside ------------------------------------------------------------------

    def _property(self, window, name):
        answer = window.get_full_property(self._display.intern_atom(name), X.AnyPropertyType)
        return None if answer is None else answer.value

    def _resource(self, number):
        return self._display.create_resource_object("window", number)

    def _owner(self, number):
        try:
            return (self._property(self._resource(number), "_NET_WM_PID") or [None])[0]
        except error.BadWindow:
            return None

    def _title(self, number):
        try:
            title = self._property(self._resource(number), "_NET_WM_NAME")
        except error.BadWindow:
            return None
        return None if title is None else title.decode()

    def _is_viewable(self, number):
        try:
            return self._resource(number).get_attributes().map_state == X.IsViewable
        except error.BadWindow:
            return False

    def _ask_window_manager(self, window, message, data):
        event = protocol.event.ClientMessage(
            window=window,
            client_type=self._display.intern_atom(message),
            data=(32, (data + [0] * 5)[:5]),
        )
        self._root.send_event(
            event, event_mask=X.SubstructureRedirectMask | X.SubstructureNotifyMask
        )
        self._display.sync()
