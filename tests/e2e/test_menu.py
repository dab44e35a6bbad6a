# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""The window's menu, and the dialog that says what the program is."""

import unittest

from harness import rolls
from harness.accessible import BUTTON, DIALOG, MENU, MENU_ITEM
from harness.case import WindowCase
from harness.install import HeldExiftool, install
from harness.waiting import WORK_DEADLINE, wait_until

ABOUT = "About Quillmark"
UPDATES = "Check for Updates…"
QUIT = "Quit Quillmark"


class Menu(WindowCase):
    def setUp(self):
        super().setUp()
        self.program = self.open()
        self.screen.wait_for_focus(self.program.window)

    def open_with_key(self, key="F10"):
        self.screen.key(key)
        return self.program.find("Quillmark", MENU)

    def wait_until_closed(self):
        self.program.wait_until_gone(QUIT)

    def test_menu_says_what_it_holds(self):
        menu = self.open_with_key()

        self.assertEqual([(item.role, item.name, item.is_enabled) for item in menu.children],
                         [(MENU_ITEM, ABOUT, True), (MENU_ITEM, UPDATES, False),
                          (MENU_ITEM, QUIT, True)])

    def test_both_keys_open_it(self):
        for key in ["F10", "alt+q"]:
            self.open_with_key(key)
            self.program.wait_for_focus(ABOUT)
            self.screen.key("Escape")
            self.wait_until_closed()
            self.program.wait_for_focus("CHOOSE FOLDER")

    def test_keyboard_comes_to_its_title_first(self):
        self.screen.key("shift+Tab")
        title = self.program.wait_for_focus("Quillmark")
        self.assertEqual(title.role, MENU_ITEM)
        self.screen.key("Down")
        self.program.wait_for_focus(ABOUT)
        self.assertIn("expanded", title.states)

    def test_keyboard_walks_it(self):
        self.open_with_key()
        for key, name in [("Down", UPDATES), ("Down", QUIT), ("Down", ABOUT), ("Up", QUIT)]:
            self.screen.key(key)
            self.program.wait_for_focus(name)
        self.screen.key("Return")

        self.assertEqual(self.program.wait_for_end(), 0)

    def test_disabled_item_does_nothing(self):
        self.open_with_key()
        self.screen.key("Down", "Return", "space")
        self.program.find(UPDATES, MENU_ITEM).press()

        self.program.wait_for_focus(UPDATES)

    def test_screen_reader_quits(self):
        self.program.press("Quillmark", MENU_ITEM)
        self.program.press(QUIT, MENU_ITEM)

        self.assertEqual(self.program.wait_for_end(), 0)

    def test_pointer_opens_and_chooses(self):
        self.screen.click(*self.program.find("Quillmark", MENU_ITEM).centre)
        self.screen.click(*self.program.find(ABOUT, MENU_ITEM).centre)

        self.program.find(ABOUT, DIALOG)
        self.screen.click(*self.program.find("CLOSE", BUTTON).centre)
        self.program.wait_until_gone("CLOSE")

    def test_press_elsewhere_closes_it_and_does_nothing_more(self):
        self.open_with_key()

        self.screen.click(*self.program.find("CHOOSE FOLDER", BUTTON).centre)

        self.wait_until_closed()
        self.program.wait_for_focus("CHOOSE FOLDER")
        self.assertEqual([item.role for item in self.program.tree.children], ["frame"])

    def test_about_says_what_it_is_and_keeps_the_keyboard(self):
        self.open_with_key()
        self.screen.key("Return")

        texts = [item.name for item in self.program.find(ABOUT, DIALOG).descendants()]
        self.assertEqual(texts[0], "Quillmark")
        self.assertRegex(texts[1], r"^Version \d+\.\d+\.\d+$")
        self.assertIn("Quillmark authors", texts[3])
        self.program.wait_for_focus("CLOSE")
        self.screen.key("Tab", "Tab", "shift+Tab")
        self.program.wait_for_focus("CLOSE")
        self.assertFalse(self.program.find("CHOOSE FOLDER", BUTTON).is_enabled)
        self.screen.key("Escape")
        self.program.wait_for_focus("CHOOSE FOLDER")
        self.assertTrue(self.program.find("CHOOSE FOLDER", BUTTON).is_enabled)

    def test_keys_quit(self):
        self.screen.key("ctrl+q")

        self.assertEqual(self.program.wait_for_end(), 0)

    def test_quitting_does_not_leave_a_run_half_done(self):
        roll = self.make_roll(frames=2, slate_at=1)
        exiftool = HeldExiftool(self.desktop.folder("held"))
        program = self.open(install(self.desktop.folder("prefix"), exiftool.script()))
        self.drop_and_plan(program, roll)
        self.screen.wait_for_focus(program.window)
        self.screen.key("Return")
        exiftool.wait_until_started()

        self.screen.key("ctrl+q")

        wait_until(lambda: not program.is_shown, "the window to hide")
        self.assertTrue(program.is_running)
        exiftool.let_go()
        self.assertEqual(program.wait_for_end(WORK_DEADLINE), 0)
        self.assert_tagged(rolls.frames(roll))


if __name__ == "__main__":
    unittest.main()
