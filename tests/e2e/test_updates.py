# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""New versions are found, verified and handed to the desktop's installer."""

import pathlib
import unittest
import urllib.parse

from harness.accessible import BUTTON, DIALOG, MENU_ITEM
from harness.case import WindowCase
from harness.feed import Feed, configure
from harness.install import can_hide_programs, install, trusting
from harness.program import build_folder
from harness.waiting import WORK_DEADLINE, wait_until

UPDATES = "Check for Updates…"
NOTES = "# Better than before\n\nSee [the page](https://example.org/notes)."


class Updates(WindowCase):
    def setUp(self):
        super().setUp()
        self.cache = self.desktop.folder("cache")
        # What opens packages on a desktop.
        self.opened = self.desktop.folder("installer") / "opened"
        opener = self.opened.parent / "xdg-open"
        opener.write_text(f'#!/bin/sh\nprintf "%s" "$*" > "{self.opened}.new"\n'
                          f'mv "{self.opened}.new" "{self.opened}"\n', encoding="utf-8")
        opener.chmod(0o755)

    def serve(self, **options):
        feed = Feed(self.desktop.folder("feed"), **options)
        self.enterContext(feed)
        return feed

    def start(self, feed=None, wrapper=(), **options):
        executable = install(self.desktop.folder("prefix"))
        if feed:
            feed.configure(executable, **options)
        return self.open_with_installer(executable, wrapper)

    def open_with_installer(self, executable, wrapper=(), **environment):
        return self.open(executable, wrapper, XDG_CACHE_HOME=str(self.cache),
                         PATH=f"{self.opened.parent}:{self.desktop.environment['PATH']}",
                         **environment)

    def check(self, program):
        program.press("Quillmark", MENU_ITEM)
        program.press(UPDATES, MENU_ITEM)

    def left_files(self):
        return [file for file in self.cache.rglob("*") if file.is_file()]

    def test_without_a_feed_nothing_is_prepared(self):
        program = self.start()

        program.press("Quillmark", MENU_ITEM)

        self.assertFalse(program.find(UPDATES, MENU_ITEM).is_enabled)
        self.assertNotIn("libssl", pathlib.Path(f"/proc/{program.pid}/maps").read_text("utf-8"))

    def test_before_it_is_asked_it_asks_nobody(self):
        feed = self.serve()
        feed.publish("99.0")
        program = self.start(feed)

        program.press("Quillmark", MENU_ITEM)

        self.assertTrue(program.find(UPDATES, MENU_ITEM).is_enabled)
        self.assertEqual(feed.requests, [])
        self.assertNotIn("libssl", pathlib.Path(f"/proc/{program.pid}/maps").read_text("utf-8"))

    def test_newest_version_is_up_to_date(self):
        feed = self.serve()
        feed.publish("0.0.1")
        program = self.start(feed)

        self.check(program)

        program.wait_for("You’re up to date")
        self.assertEqual(feed.requests, ["/appcast.xml", "/appcast.xml.sig"])
        program.press("CLOSE")
        program.wait_until_gone("You’re up to date")
        program.wait_for_focus("CHOOSE FOLDER")
        program.press("Quillmark", MENU_ITEM)
        self.assertTrue(program.find(UPDATES, MENU_ITEM).is_enabled)

    def test_new_version_comes_to_the_installer(self):
        feed = self.serve()
        feed.publish("99.0", b"the package" * 100_000, NOTES)
        program = self.start(feed)

        self.check(program)
        program.find("Software Update", DIALOG)
        for text in ["A new version is available", "Better than before", "See the page."]:
            program.wait_for(text)
        program.find("https://example.org/notes", BUTTON)
        program.wait_for_focus("INSTALL")
        self.screen.wait_for_focus(program.window)
        self.screen.key("Return")

        program.wait_for("Ready to install")
        wait_until(self.opened.exists, "the package to be opened")
        address = urllib.parse.urlparse(self.opened.read_text(encoding="utf-8"))
        package = pathlib.Path(urllib.parse.unquote(address.path))
        self.assertEqual(package.name, "quillmark_99.0.deb")
        self.assertEqual(package.read_bytes(), b"the package" * 100_000)
        self.assertEqual(package.parent.stat().st_mode & 0o777, 0o700)
        self.assertEqual(package.stat().st_mode & 0o111, 0)

    def test_cancelled_download_leaves_nothing(self):
        feed = self.serve()
        feed.hold(feed.publish("99.0", b"half" * 500_000))
        program = self.start(feed)

        self.check(program)
        program.press("INSTALL")
        program.wait_for("1.0 MB of 2.0 MB")
        self.assertEqual(len(self.left_files()), 1)
        program.press("CANCEL")

        program.wait_until_gone("1.0 MB of 2.0 MB")
        self.assertEqual(self.left_files(), [])
        program.press("Quillmark", MENU_ITEM)
        self.assertTrue(program.find(UPDATES, MENU_ITEM).is_enabled)

    def test_quitting_gives_a_download_up(self):
        feed = self.serve()
        feed.hold(feed.publish("99.0", b"half" * 500_000))
        program = self.start(feed)
        self.check(program)
        program.press("INSTALL")
        program.wait_for("1.0 MB of 2.0 MB")

        program.close_window()

        self.assertEqual(program.wait_for_end(), 0)
        self.assertEqual(self.left_files(), [])

    def test_quitting_does_not_wait_for_a_name_server(self):
        executable = install(self.desktop.folder("prefix"))
        configure(executable, "https://nobody-answers.invalid/appcast.xml", self.serve().public_key)
        program = self.open_with_installer(
            executable, LD_PRELOAD=str(build_folder() / "lib" / "hanging_resolver.so"))
        self.check(program)
        program.wait_for("Checking for updates…")

        program.close_window()

        self.assertEqual(program.wait_for_end(), 0)

    def test_swapped_package_is_refused(self):
        feed = self.serve()
        feed.publish("99.0").write_bytes(b"b package")
        program = self.start(feed)

        self.check(program)
        program.press("INSTALL")

        program.wait_for("The update failed")
        program.wait_for("The package does not bear its publisher's signature. "
                         "It may have been tampered with, and was deleted.")
        self.assertEqual(self.left_files(), [])
        self.assertFalse(self.opened.exists())

    def test_changed_feed_is_refused(self):
        feed = self.serve()
        feed.publish("0.0.1")
        file = feed.folder / "appcast.xml"
        file.write_text(file.read_text("utf-8").replace("0.0.1", "99.1"), encoding="utf-8")
        program = self.start(feed)

        self.check(program)

        program.wait_for("The list of versions does not bear its publisher's signature. "
                         "It may have been tampered with, and was not used.")

    def test_server_that_nobody_vouches_for_is_refused(self):
        feed = self.serve(tls=True)
        feed.publish("99.0")
        program = self.start(feed)

        self.check(program)

        program.wait_for("The update failed")
        self.assertTrue(any(text.startswith("The update server cannot prove")
                            for text in program.texts()), program.texts())
        self.assertEqual(feed.requests, [])

    @unittest.skipUnless(can_hide_programs(), "no leave to make a mount namespace")
    def test_server_that_the_system_trusts_is_believed(self):
        feed = self.serve(tls=True)
        feed.publish("99.0", b"the package" * 100_000)
        program = self.start(feed, trusting(feed.certificate, self.desktop.folder("trusted")))

        self.check(program)
        program.press("INSTALL")

        program.wait_for("Ready to install")
        wait_until(self.opened.exists, "the package to be opened")
        self.assertEqual(feed.requests,
                         ["/appcast.xml", "/appcast.xml.sig", "/quillmark_99.0.deb"])

    def test_skipped_version_is_remembered(self):
        feed = self.serve()
        feed.publish("99.0")
        program = self.start(feed)

        self.check(program)
        program.press("SKIP THIS VERSION")
        program.wait_until_gone("A new version is available")

        settings = self.home / ".config" / "Larkhollow" / "Quillmark"
        skipped = settings / "co.larkhollow.quillmark.updates.skippedVersion"
        self.assertEqual(skipped.read_text("utf-8"), "99.0")
        self.assertEqual(self.left_files(), [])

    def test_scheduled_check_offers_a_new_version(self):
        feed = self.serve()
        feed.publish("99.0")
        program = self.start(feed, automatic=True)

        program.wait_for("A new version is available", WORK_DEADLINE)
        self.screen.wait_for_focus(program.window)
        self.screen.key("Escape")

        program.wait_until_gone("A new version is available")
        program.wait_for_focus("CHOOSE FOLDER")


if __name__ == "__main__":
    unittest.main()
