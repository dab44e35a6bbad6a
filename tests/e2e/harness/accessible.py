# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""What a screen reader perceives of a program, and does to it."""

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

BUTTON = "push button"
CHECK_BOX = "check box"
DIALOG = "dialog"
LABEL = "label"
MENU = "popup menu"
MENU_BAR = "menu bar"
MENU_ITEM = "menu item"
PROGRESS_BAR = "progress bar"
RADIO_BUTTON = "radio button"
TEXT_FIELD = "text"

_PRESS = ("Press", "Toggle")


class Element:
    """One item of a program's accessibility tree.

    Everything is asked of the program anew each time. An item whose program or window has
    gone has no name and no states, and raises GLib.Error when something is done to it.
    """

    def __init__(self, accessible):
        self._accessible = accessible

    def __repr__(self):
        return f"{self.role} {self.name!r} [{' '.join(sorted(self.states))}]"

    @property
    def name(self):
        return _asked(self._accessible.get_name, "")

    @property
    def description(self):
        return _asked(self._accessible.get_description, "")

    @property
    def role(self):
        return _asked(self._accessible.get_role_name, "gone")

    @property
    def states(self):
        found = _asked(lambda: self._accessible.get_state_set().get_states(), [])
        return {state.value_nick for state in found}

    @property
    def is_shown(self):
        return {"showing", "visible"} <= self.states

    @property
    def is_enabled(self):
        return "enabled" in self.states

    @property
    def is_checked(self):
        return "checked" in self.states

    @property
    def content(self):
        """The text inside a field, as opposed to its name."""
        interface = self._accessible.get_text_iface()
        return Atspi.Text.get_text(interface, 0, Atspi.Text.get_character_count(interface))

    @property
    def selected_text(self):
        """What is selected of the text inside a field."""
        interface = self._accessible.get_text_iface()
        if Atspi.Text.get_n_selections(interface) == 0:
            return ""
        part = Atspi.Text.get_selection(interface, 0)
        return Atspi.Text.get_text(interface, part.start_offset, part.end_offset)

    @property
    def bounds(self):
        """x, y, width, height in pixels of the display."""
        box = self._accessible.get_component_iface().get_extents(Atspi.CoordType.SCREEN)
        return box.x, box.y, box.width, box.height

    @property
    def centre(self):
        x, y, width, height = self.bounds
        return x + width // 2, y + height // 2

    @property
    def children(self):
        count = _asked(self._accessible.get_child_count, 0)
        found = (_asked(lambda i=i: self._accessible.get_child_at_index(i), None)
                 for i in range(count))
        return [Element(child) for child in found if child]

    def descendants(self):
        """Every item below this one, in reading order."""
        for child in self.children:
            yield child
            yield from child.descendants()

    def press(self):
        """Presses a button, or moves a switch, through its default action."""
        action = self._accessible.get_action_iface()
        names = [] if action is None else [
            Atspi.Action.get_action_name(action, i)
            for i in range(Atspi.Action.get_n_actions(action))
        ]
        for wanted in _PRESS:
            if wanted in names:
                if not Atspi.Action.do_action(action, names.index(wanted)):
                    raise AssertionError(f"{self} refused to be pressed")
                return
        raise AssertionError(f"{self} cannot be pressed, only {names}")

    def focus(self):
        """Moves the keyboard here."""
        if not self._accessible.get_component_iface().grab_focus():
            raise AssertionError(f"{self} refused the keyboard")

    def set_content(self, text):
        """Replaces the text inside a field, as dictation does."""
        interface = self._accessible.get_editable_text_iface()
        if interface is None or not Atspi.EditableText.set_text_contents(interface, text):
            raise AssertionError(f"{self} cannot be typed into")

    def select_text(self, start, end):
        """Selects a part of the text inside a field."""
        interface = self._accessible.get_text_iface()
        if not Atspi.Text.add_selection(interface, start, end):
            raise AssertionError(f"{self} cannot be selected")

    def dump(self, depth=0):
        """The tree from here on, one item a line."""
        lines = ["  " * depth + repr(self)]
        lines += [child.dump(depth + 1) for child in self.children]
        return "\n".join(lines)


def application(pid):
    """The tree of a process's program, or None while it shows none."""
    desktop = Atspi.get_desktop(0)
    for i in range(_asked(desktop.get_child_count, 0)):
        program = _asked(lambda i=i: desktop.get_child_at_index(i), None)
        if program and _asked(program.get_process_id, 0) == pid:
            return Element(program)
    return None


def _asked(question, otherwise):
    """The answer, or `otherwise` where whoever was asked has gone."""
    try:
        return question()
    except GLib.Error:
        return otherwise
