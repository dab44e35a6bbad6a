# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""Drags files over the display as a file browser does.

The source's side of the XDND protocol, version 5 (freedesktop.org), under a real pointer:
the button goes down on a small window, and the pointer carries the drag from there.
"""

import os

from Xlib import X, Xatom, display
from Xlib.protocol import event as events

from .waiting import wait_until

_VERSION = 5
_SIZE = 40
_STEPS = 8


class Drag:
    """One drag of data from a small window in the display's lower right corner.

    `offers` names each type of data and its bytes. Use it in a `with` statement: pick_up(),
    move_to() once or more, then drop() or leave().
    """

    def __init__(self, screen, offers):
        self._screen = screen
        self._display = display.Display(screen.name)
        self._root = self._display.screen().root
        self._offers = {self._atom(name): data for name, data in offers.items()}
        self._target = None
        self._status = None
        self._finished = None
        self._events = []
        self._time = X.CurrentTime
        self._place = (screen.width - _SIZE // 2, screen.height - _SIZE // 2)
        self._window = self._root.create_window(
            screen.width - _SIZE, screen.height - _SIZE, _SIZE, _SIZE, 0, X.CopyFromParent,
            override_redirect=True, background_pixel=0x84A594,
            event_mask=X.ButtonPressMask | X.ButtonReleaseMask | X.PointerMotionMask
            | X.ExposureMask,
        )

    def __enter__(self):
        self._window.map()
        self._wait_for(X.Expose, "the drag's own window")
        return self

    def __exit__(self, *_):
        if self._target:
            self.leave()
        self._window.destroy()
        # A server forgets what a client that has gone still had to say.
        self._display.sync()
        self._display.close()

    @property
    def is_accepted(self):
        """Whether what lies under the pointer would take a drop."""
        return bool(self._status and self._status[1] & 1)

    @property
    def proposed_action(self):
        """What the target would do with the files, as in "XdndActionCopy"; None without one."""
        if not self.is_accepted or not self._status[4]:
            return None
        return self._display.get_atom_name(self._status[4])

    def pick_up(self):
        """Presses the pointer's button on the source."""
        self._screen.move_pointer(*self._place)
        self._screen.press_button()
        self._time = self._wait_for(X.ButtonPress, "the button to go down").time
        self._window.set_selection_owner(self._atom("XdndSelection"), self._time)
        self._window.change_property(self._atom("XdndTypeList"), Xatom.ATOM, 32,
                                     list(self._offers))

    def move_to(self, x, y):
        """Carries the drag to a place, and waits for what lies there to answer."""
        from_x, from_y = self._place
        for step in range(1, _STEPS + 1):
            place = (from_x + (x - from_x) * step // _STEPS,
                     from_y + (y - from_y) * step // _STEPS)
            if place == self._place:
                continue
            self._place = place
            self._screen.move_pointer(*place)
            moved = self._wait_for(X.MotionNotify, "the pointer to move")
            self._time = moved.time
            self._come_over(self._aware_window_at(*self._place))

    def leave(self):
        """Takes the drag away without a drop, and lets the button go."""
        self._come_over(None)
        self._release()

    def drop(self):
        """Lets go of the files here, and waits until the target has taken them.

        Gives whether it did; a target that does not accept them only loses the drag.
        """
        target, accepted = self._target, self.is_accepted
        self._release()
        if target is None or not accepted:
            self._come_over(None)
            return False
        self._send("XdndDrop", [self._window.id, 0, self._time])
        self._target = None
        wait_until(lambda: self._serve() or self._finished, "the target to take the drop")
        return bool(self._finished[1] & 1)

    # --- the pointer -------------------------------------------------------------------

    def _release(self):
        self._screen.release_button()
        self._time = self._wait_for(X.ButtonRelease, "the button to go up").time

    def _aware_window_at(self, x, y):
        """The innermost window under a place that says it takes drags."""
        aware, window = None, self._root
        while window:
            if window.get_full_property(self._atom("XdndAware"), X.AnyPropertyType):
                aware = window
            window = window.translate_coords(self._root, x, y).child
        return aware

    # --- the protocol ------------------------------------------------------------------

    def _come_over(self, target):
        if target != self._target:
            if self._target:
                self._send("XdndLeave", [self._window.id, 0])
            self._target, self._status = target, None
            if target:
                types = list(self._offers)
                more = 1 if len(types) > 3 else 0
                self._send("XdndEnter",
                           [self._window.id, _VERSION << 24 | more, *types[:3]])
        if target:
            self._status = None
            x, y = self._place
            self._send("XdndPosition", [self._window.id, 0, x << 16 | y, self._time,
                                        self._atom("XdndActionCopy")])
            wait_until(lambda: self._serve() or self._status, "the target to answer the drag")

    def _send(self, message, data):
        self._target.send_event(events.ClientMessage(
            window=self._target, client_type=self._atom(message),
            data=(32, (data + [0] * 5)[:5]),
        ))
        self._display.flush()

    def _serve(self):
        """Answers everything that has come in; gives None."""
        while self._display.pending_events():
            event = self._display.next_event()
            if event.type == X.SelectionRequest:
                self._hand_over(event)
            elif event.type == X.ClientMessage:
                self._take_answer(event)
            else:
                self._events.append(event)

    def _take_answer(self, event):
        if event.client_type == self._atom("XdndStatus"):
            if self._target and event.data[1][0] == self._target.id:
                self._status = event.data[1]
        elif event.client_type == self._atom("XdndFinished"):
            self._finished = event.data[1]

    def _hand_over(self, request):
        """Gives the target the data in the form it asks for, or refuses."""
        given = request.property or request.target
        if request.target == self._atom("TARGETS"):
            request.requestor.change_property(given, Xatom.ATOM, 32, list(self._offers))
        elif request.target in self._offers:
            request.requestor.change_property(given, request.target, 8,
                                              self._offers[request.target])
        else:
            given = X.NONE
        request.requestor.send_event(events.SelectionNotify(
            time=request.time, requestor=request.requestor, selection=request.selection,
            target=request.target, property=given,
        ))
        self._display.flush()

    def _wait_for(self, kind, what):
        """The newest event of a kind, once there is one."""
        def newest():
            self._serve()
            found = [event for event in self._events if event.type == kind]
            self._events = [event for event in self._events if event.type != kind]
            return found[-1] if found else None

        return wait_until(newest, what)

    def _atom(self, name):
        return self._display.intern_atom(name)


def file_drag(screen, *files):
    """A drag of files and folders, offered as file browsers offer them."""
    urls = [file.as_uri() for file in files]
    return Drag(screen, {
        "text/uri-list": "".join(f"{url}\r\n" for url in urls).encode("ascii"),
        "text/plain": b"\n".join(os.fsencode(file) for file in files),
    })


def drop_files(screen, window, *files):
    """Drags files onto the middle of a window and drops them there."""
    x, y, width, height = screen.geometry(window)
    with file_drag(screen, *files) as drag:
        drag.pick_up()
        drag.move_to(x + width // 2, y + height // 2)
        return drag.drop()
