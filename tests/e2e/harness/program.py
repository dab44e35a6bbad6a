# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""The program under test, running on a desktop."""

import itertools
import os
import pathlib
import shlex

from . import accessible, processes
from .waiting import DEADLINE, wait_until

TITLE = "Quillmark"
_numbers = itertools.count(1)


def build_folder():
    """Where the program and its tools were built."""
    default = pathlib.Path(__file__).resolve().parents[3] / "build" / "dev"
    return pathlib.Path(os.environ.get("QUILLMARK_BUILD_DIR", default))


def program_command():
    """What starts the program: that of the build, unless QUILLMARK_COMMAND says otherwise."""
    told = os.environ.get("QUILLMARK_COMMAND")
    return shlex.split(told) if told else [str(build_folder() / "bin" / "quillmark")]


class Program:
    """One running program, seen through its accessibility tree.

    Whatever is named by a text is found under exactly that text. What does not come
    about in time raises AssertionError with the whole tree and the program's own output.
    """

    def __init__(self, desktop, executable=None, environment=None, wrapper=()):
        self._desktop = desktop
        self._screen = desktop.screen
        self._log = f"program-{next(_numbers)}"
        command = [executable] if executable else program_command()
        with desktop.log_file(self._log) as log:
            self._process = processes.start(
                [*wrapper, *command],
                env={**desktop.environment, **(environment or {})}, stdout=log, stderr=log,
            )
        self.window = wait_until(self._main_window, "the window to open",
                                 details=lambda: self._details())
        self.wait_for("01 / INGEST A ROLL")

    # --- the process ---------------------------------------------------------------

    @property
    def pid(self):
        return self._process.pid

    @property
    def is_running(self):
        return self._process.poll() is None

    def wait_for_end(self, deadline=DEADLINE):
        """Waits until the program has ended by itself, and gives its exit status."""
        wait_until(lambda: not self.is_running, "the program to end", deadline, self._details)
        return self._process.returncode

    def stop(self):
        processes.stop(self._process)

    @property
    def output(self):
        """What it has written to its standard output and error."""
        return self._desktop.log(self._log)

    # --- the window ----------------------------------------------------------------

    @property
    def is_shown(self):
        return self.window in self._screen.windows(self.pid)

    def close_window(self):
        self._screen.close_window(self.window)

    def picture(self, file):
        self._screen.picture(file, self.window)

    # --- what it shows ---------------------------------------------------------------

    @property
    def tree(self):
        return accessible.application(self.pid)

    def shown(self):
        """Every item that can be perceived now, in reading order."""
        tree = self.tree
        return [] if tree is None else [item for item in tree.descendants() if item.is_shown]

    def focused(self):
        """The item that has the keyboard, or None."""
        return next((item for item in self.shown() if "focused" in item.states), None)

    def wait_for_focus(self, name):
        """Waits until the keyboard is on an item with this name, and gives that."""
        def found():
            item = self.focused()
            return item if item and item.name == name else None

        return wait_until(found, f"the keyboard to come to {name!r}", details=self._details)

    def bar_height(self):
        """How much of the window's height the menu bar takes."""
        return next(item for item in self.shown()
                    if item.role == accessible.MENU_BAR).bounds[3]

    def texts(self):
        """The names of everything that can be perceived now, in reading order."""
        return [item.name for item in self.shown() if item.name]

    def find(self, name, role=None, deadline=DEADLINE, number=0):
        """Waits for an item with this name (and role), and gives the `number`-th of them."""
        def items():
            return [item for item in self.shown()
                    if item.name == name and role in (None, item.role)][number:]

        return wait_until(items, f"{role or 'something'} named {name!r}", deadline,
                          self._details)[0]

    def wait_for(self, text, deadline=DEADLINE):
        """Waits until a text is shown."""
        return self.find(text, deadline=deadline)

    def wait_until_gone(self, text, deadline=DEADLINE):
        """Waits until a text is no longer shown."""
        wait_until(lambda: text not in self.texts(), f"{text!r} to go", deadline, self._details)

    def press(self, name, role=accessible.BUTTON):
        self.find(name, role).press()

    def toggle(self, name):
        """Moves a switch to its other position."""
        switch = self.find(name, accessible.CHECK_BOX)
        target = not switch.is_checked
        switch.press()
        wait_until(lambda: switch.is_checked == target, f"the switch {name!r} to move",
                   details=self._details)

    def field(self, name):
        """A field to type into, which may have to be scrolled to before it can be seen."""
        def fields():
            tree = self.tree
            return tree and [item for item in tree.descendants()
                             if item.role == accessible.TEXT_FIELD and item.name == name]

        return wait_until(fields, f"a field named {name!r}", details=self._details)[0]

    def fill(self, name, text):
        """Sets a field's text through the accessibility tree, as dictation does."""
        field = self.field(name)
        field.set_content(text)
        self._wait_for_content(field, name, text)

    def type_into(self, name, text):
        """Brings the keyboard to a field through the accessibility tree, and types there."""
        field = self.field(name)
        field.focus()
        wait_until(lambda: field.is_shown and "focused" in field.states,
                   f"the field {name!r} to be seen with the keyboard in it",
                   details=self._details)
        self._screen.key("ctrl+a", "BackSpace")
        self._screen.type(text)
        self._wait_for_content(field, name, text)

    # --- its choosers ----------------------------------------------------------------

    def choose(self, confirm, path):
        """Enters a path in the chooser that is open, and confirms it by its button."""
        self._wait_for_chooser(confirm)
        dialog = self._chooser()
        field = next(item for item in dialog.descendants()
                     if item.is_shown and item.role == accessible.TEXT_FIELD)
        field.set_content(str(path))
        self.press(confirm)
        wait_until(lambda: self._chooser() is None, "the chooser to close",
                   details=self._details)

    def cancel_chooser(self, confirm):
        """Leaves the chooser that is open, whose button for going on has this label."""
        self._wait_for_chooser(confirm)
        self.press("Cancel")
        wait_until(lambda: self._chooser() is None, "the chooser to close",
                   details=self._details)

    def _chooser(self):
        tree = self.tree
        return tree and next((item for item in tree.children if item.role == "dialog"), None)

    def _wait_for_chooser(self, confirm):
        wait_until(self._chooser, "the chooser to open", details=self._details)
        self.find(confirm, accessible.BUTTON)

    # --- inside ----------------------------------------------------------------------

    def _wait_for_content(self, field, name, text):
        wait_until(lambda: field.content == text, f"the field {name!r} to hold {text!r}",
                   details=self._details)

    def _main_window(self):
        return next(iter(self._screen.windows(self.pid, TITLE)), None)

    def _details(self):
        tree = self.tree
        state = "running" if self.is_running else f"ended with {self._process.returncode}"
        shown = "It is not in the accessibility tree." if tree is None else tree.dump()
        return (f"The program is {state}. {shown}\n{self._screen.describe()}\n"
                f"{self.output}")
