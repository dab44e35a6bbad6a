# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""A desktop of its own: display, window manager, session bus and accessibility bus."""

import os
import pathlib
import shutil
import tempfile

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, Gio, GLib  # noqa: E402

from . import processes  # noqa: E402
from .screen import Screen  # noqa: E402
from .waiting import wait_until  # noqa: E402

_SIZE = "1600x1200x24"
_LAUNCHER_SERVICE = "org.a11y.Bus.service"
# Of another desktop, and not to be seen by anything on this one.
_FOREIGN = ("AT_SPI_BUS_ADDRESS", "DESKTOP_SESSION", "QT_QPA_PLATFORM", "QT_QPA_PLATFORMTHEME",
            "QT_QUICK_BACKEND", "QT_STYLE_OVERRIDE", "SESSION_MANAGER", "WAYLAND_DISPLAY",
            "XAUTHORITY", "XDG_CURRENT_DESKTOP", "XDG_SESSION_TYPE")


class Desktop:
    """A virtual desktop for one process: the accessibility library joins one bus and keeps it.

    Use it in a `with` statement, or start() it and stop() it. Everything that it keeps,
    settings included, is in a temporary folder, and everything that it starts ends with it.
    """

    def __init__(self):
        self.home = None
        self.screen = None
        self.environment = {}
        self._helpers = []

    def __enter__(self):
        return self.start()

    def __exit__(self, *_):
        self.stop()

    def start(self):
        """Returns itself once a program could be started on it."""
        processes.adopt_orphans()
        # Short, since the path of a socket may hold only 107 bytes.
        self.home = pathlib.Path(tempfile.mkdtemp(prefix="desk-", dir="/tmp"))
        try:
            self._prepare_environment()
            self._start_display()
            self._start_session_bus()
            self._start_accessibility()
            self._start_window_manager()
        except BaseException:
            self.stop()
            raise
        return self

    def stop(self):
        """Ends everything that the desktop started; can be called at any time."""
        if self.screen:
            self.screen.close()
            self.screen = None
        while self._helpers:
            processes.stop(self._helpers.pop())
        processes.stop_adopted()
        if self.home:
            shutil.rmtree(self.home, ignore_errors=True)
            self.home = None

    def folder(self, name):
        """A new empty folder that goes with the desktop."""
        return pathlib.Path(tempfile.mkdtemp(prefix=f"{name}-", dir=self.home))

    def log(self, name):
        """What a helper or a program said, for failure messages."""
        file = self.home / f"{name}.log"
        return file.read_text(encoding="utf-8", errors="replace") if file.exists() else ""

    def log_file(self, name):
        return open(self.home / f"{name}.log", "ab")

    def _prepare_environment(self):
        self.environment = {
            name: value for name, value in os.environ.items() if name not in _FOREIGN
        }
        folders = {"HOME": "home", "XDG_CONFIG_HOME": "config", "XDG_DATA_HOME": "data",
                   "XDG_CACHE_HOME": "cache", "XDG_RUNTIME_DIR": "run"}
        for variable, name in folders.items():
            folder = self.home / name
            folder.mkdir(mode=0o700)
            self.environment[variable] = str(folder)
        self.environment.update(
            GSETTINGS_BACKEND="memory",
            LC_ALL="C.UTF-8",
            QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1",
            QT_QPA_PLATFORM="xcb",
            TZ="UTC",
        )

    def _run(self, name, command, **options):
        with self.log_file(name) as log:
            self._helpers.append(
                processes.start(command, env=self.environment, stdout=log, stderr=log, **options)
            )

    def _run_and_read(self, name, command, option):
        """Starts a helper that writes one line to the file descriptor it is given."""
        reader, writer = os.pipe()
        with open(reader, encoding="ascii") as answer:
            self._run(name, [*command, *option(writer)], pass_fds=[writer])
            os.close(writer)
            line = answer.readline().strip()
        if not line:
            raise RuntimeError(f"{name} did not start:\n{self.log(name)}")
        return line

    def _start_display(self):
        number = self._run_and_read(
            "Xvfb",
            ["Xvfb", "-screen", "0", _SIZE, "-nolisten", "tcp", "-noreset"],
            lambda writer: ["-displayfd", str(writer)],
        )
        self.environment["DISPLAY"] = f":{number}"
        self.screen = Screen(f":{number}", self.environment)

    def _start_session_bus(self):
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = self._run_and_read(
            "dbus-daemon",
            ["dbus-daemon", "--session", "--nofork", "--nopidfile",
             f"--address=unix:path={self.home}/run/bus"],
            lambda writer: [f"--print-address={writer}"],
        )

    def _start_accessibility(self):
        self._run("at-spi-bus-launcher", [_launcher(), "--launch-immediately"])
        bus = Gio.DBusConnection.new_for_address_sync(
            self.environment["DBUS_SESSION_BUS_ADDRESS"],
            Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
            | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION,
            None, None,
        )
        for switch in ("IsEnabled", "ScreenReaderEnabled"):
            wait_until(lambda name=switch: _switch_on(bus, name),
                       f"the accessibility bus to take {switch}",
                       details=lambda: self.log("at-spi-bus-launcher"))
        bus.close_sync()
        os.environ.update(self.environment)
        Atspi.init()
        # What was true a moment ago is not what a test asks for.
        Atspi.get_desktop(0).set_cache_mask(Atspi.Cache.NONE)

    def _start_window_manager(self):
        # Windows that open while it starts stay hidden: it says when it has.
        ready = self.home / "openbox-ready"
        self._run("openbox", ["openbox", "--sm-disable", "--startup", f"touch {ready}"])
        wait_until(ready.exists, "the window manager", details=lambda: self.log("openbox"))


def _launcher():
    """The program that the session bus would start for the accessibility bus."""
    for folder in ("/usr/local/share", "/usr/share"):
        service = pathlib.Path(folder, "dbus-1", "services", _LAUNCHER_SERVICE)
        if service.exists():
            entries = GLib.KeyFile()
            entries.load_from_file(str(service), GLib.KeyFileFlags.NONE)
            return entries.get_string("D-BUS Service", "Exec").split()[0]
    raise RuntimeError(f"{_LAUNCHER_SERVICE} is not installed")


def _switch_on(bus, name):
    def call(method, arguments, reply):
        return bus.call_sync("org.a11y.Bus", "/org/a11y/bus", "org.freedesktop.DBus.Properties",
                             method, arguments, reply, Gio.DBusCallFlags.NONE, -1, None)

    try:
        call("Set", GLib.Variant("(ssv)", ("org.a11y.Status", name, GLib.Variant("b", True))), None)
        answer = call("Get", GLib.Variant("(ss)", ("org.a11y.Status", name)), None)
        return answer.unpack()[0]
    except GLib.Error:
        return False
