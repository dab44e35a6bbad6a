# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""What a program tells a screen reader while things happen."""

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

from .waiting import wait_until  # noqa: E402


class Events:
    """Listens for kinds of events ("object:state-changed:focused") of one program.

    Use it in a `with` statement. Each event is kept as (kind, name of the item, detail), with
    the name that the item had when the event was taken.
    """

    def __init__(self, program, *kinds):
        self._pid = program.pid
        self._kinds = kinds
        self._heard = []
        self._listener = Atspi.EventListener.new(self._take)

    def __enter__(self):
        for kind in self._kinds:
            self._listener.register(kind)
        return self

    def __exit__(self, *_):
        for kind in self._kinds:
            self._listener.deregister(kind)

    def heard(self):
        """Everything that was told until now."""
        while GLib.MainContext.default().iteration(False):
            pass
        return list(self._heard)

    def wait_for(self, *event):
        """Waits until exactly this was told."""
        wait_until(lambda: event in self.heard(), f"to hear {event}", details=self.heard)

    def forget(self):
        self.heard()
        self._heard.clear()

    def _take(self, event):
        try:
            if event.source.get_process_id() == self._pid:
                self._heard.append((event.type, event.source.get_name(), event.detail1))
        except GLib.Error:
            pass  # whoever told it has gone
