# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""Services of a desktop, played on its session bus."""

import threading

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

from .waiting import wait_until  # noqa: E402

DESKTOP_PATH = "/org/freedesktop/portal/desktop"

_FILE_MANAGER = """
<node><interface name="org.freedesktop.FileManager1">
  <method name="ShowFolders">
    <arg type="as" direction="in"/><arg type="s" direction="in"/>
  </method>
</interface></node>"""

_PORTAL = """
<node><interface name="org.freedesktop.portal.FileChooser">
  <method name="OpenFile">
    <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="a{sv}" direction="in"/>
    <arg type="o" direction="out"/>
  </method>
  <property name="version" type="u" access="read"/>
</interface></node>"""

_REQUEST = """
<node><interface name="org.freedesktop.portal.Request">
  <method name="Close"/>
  <signal name="Response"><arg type="u"/><arg type="a{sv}"/></signal>
</interface></node>"""


class Service:
    """Owns a name on a desktop's session bus, and answers there on a thread of its own.

    Use it in a `with` statement. `calls` holds the arguments of every call, in order.
    """

    name = path = xml = None

    def __init__(self, desktop):
        self.calls = []
        self._context = GLib.MainContext()
        self._loop = GLib.MainLoop(self._context)
        self._bus = Gio.DBusConnection.new_for_address_sync(
            desktop.environment["DBUS_SESSION_BUS_ADDRESS"],
            Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
            | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)
        self._thread = threading.Thread(target=self._serve)
        self._ready = threading.Event()

    def __enter__(self):
        self._thread.start()
        self._ready.wait()
        return self

    def __exit__(self, *_):
        self.stop()

    def stop(self):
        """Leaves the bus, as a service does that ends; can be called twice."""
        if self._thread.is_alive():
            self._loop.quit()
            self._thread.join()
            self._bus.close_sync()

    def wait_for_call(self, number=0):
        """Waits for a call, and gives its arguments."""
        return wait_until(lambda: self.calls[number:], f"a call of {self.name}")[0]

    def answer(self, method, arguments, invocation):
        """Answers a call; on the service's thread."""
        raise NotImplementedError

    def property_value(self, name):
        raise NotImplementedError

    def register(self, path, xml):
        """Shows an object on the bus. Only for the service's thread."""
        return self._bus.register_object(
            path, Gio.DBusNodeInfo.new_for_xml(xml).interfaces[0], self._called,
            lambda *call: self.property_value(call[4]), None)

    def do(self, action):
        """Does something on the service's thread."""
        self._context.invoke_full(GLib.PRIORITY_DEFAULT, lambda *_: action() and False)

    def _serve(self):
        self._context.push_thread_default()
        self.register(self.path, self.xml)
        self._bus.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus",
                            "org.freedesktop.DBus", "RequestName",
                            GLib.Variant("(su)", (self.name, 0)), None,
                            Gio.DBusCallFlags.NONE, -1, None)
        self._ready.set()
        self._loop.run()
        self._context.pop_thread_default()

    def _called(self, _bus, _sender, _path, _interface, method, arguments, invocation):
        self.answer(method, arguments.unpack(), invocation)


class FileManager(Service):
    """A file manager, which can be told to fail."""

    name = "org.freedesktop.FileManager1"
    path = "/org/freedesktop/FileManager1"
    xml = _FILE_MANAGER

    def __init__(self, desktop, fails=False):
        super().__init__(desktop)
        self._fails = fails

    def answer(self, method, arguments, invocation):
        if self._fails:
            invocation.return_dbus_error("org.freedesktop.DBus.Error.Failed", "No window.")
        else:
            invocation.return_value(None)
        self.calls.append((method, *arguments))


class Portal(Service):
    """A desktop's own file chooser. It shows nothing: the test says what the user does.

    It can be told to fail when a chooser is asked for, or never to answer.
    """

    name = "org.freedesktop.portal.Desktop"
    path = DESKTOP_PATH
    xml = _PORTAL

    def __init__(self, desktop, version=4, fails=False, hangs=False):
        super().__init__(desktop)
        self.closed = 0
        self._version = version
        self._fails = fails
        self._hangs = hangs
        self._request = None
        self._sender = None

    def confirm(self, *uris):
        self.respond(0, {"uris": GLib.Variant("as", uris)})

    def cancel(self):
        self.respond(1, {})

    def respond(self, response, results):
        """Ends the chooser that is open, with 0 for confirmed and 1 for cancelled."""
        request = wait_until(lambda: self._request, "a chooser to be asked for")
        self._request = None
        answer = GLib.Variant("(ua{sv})", (response, results))
        self.do(lambda: self._bus.emit_signal(
            self._sender, request, "org.freedesktop.portal.Request", "Response", answer))

    def answer(self, method, arguments, invocation):
        if method == "Close":
            self.closed += 1
            invocation.return_value(None)
            return
        if self._fails:
            invocation.return_dbus_error("org.freedesktop.portal.Error.Failed", "No chooser.")
        else:
            self._sender = invocation.get_sender()
            sender = self._sender[1:].replace(".", "_")
            path = f"{DESKTOP_PATH}/request/{sender}/{arguments[2]['handle_token']}"
            self.register(path, _REQUEST)
            if not self._hangs:
                invocation.return_value(GLib.Variant("(o)", (path,)))
            self._request = path
        self.calls.append(arguments)

    def property_value(self, name):
        return GLib.Variant("u", self._version)
