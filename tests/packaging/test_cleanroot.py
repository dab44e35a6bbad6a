# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""When the test of installing may be skipped: where no Debian can be had, and only there."""

import http.server
import os
import socket
import sys
import threading
import unittest
from unittest import mock

from places import ROOT

sys.path.insert(0, str(ROOT / "tests" / "install"))
import cleanroot  # isort: skip


class Nothing(http.server.BaseHTTPRequestHandler):
    """A server on which nothing is found."""

    def do_GET(self):
        self.send_error(404)

    def log_message(self, *_):
        """Nobody is to hear of it."""


class Mirror(unittest.TestCase):
    def reach(self, address):
        with mock.patch.dict(os.environ, {"DEBIAN_MIRROR": address, "no_proxy": "*"}):
            cleanroot.reach_mirror()

    def test_no_answer_is_a_reason_to_skip(self):
        with socket.socket() as unused:
            unused.bind(("127.0.0.1", 0)) # nobody listens
            with self.assertRaisesRegex(cleanroot.NotPossible, "refused"):
                self.reach(f"http://127.0.0.1:{unused.getsockname()[1]}/debian")

    def test_unknown_name_is_a_reason_to_skip(self):
        with self.assertRaises(cleanroot.NotPossible):
            self.reach("http://mirror.invalid/debian")

    def test_wrong_answer_is_none(self):
        with http.server.HTTPServer(("127.0.0.1", 0), Nothing) as server:
            thread = threading.Thread(target=server.serve_forever)
            thread.start()
            try:
                with self.assertRaisesRegex(AssertionError, "404"):
                    self.reach(f"http://127.0.0.1:{server.server_port}/debian")
            finally:
                server.shutdown()
                thread.join()


if __name__ == "__main__":
    unittest.main()
