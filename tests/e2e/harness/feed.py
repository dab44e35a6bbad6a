# SPDX-FileCopyrightText: 2026 Quillmark authors
# SPDX-License-Identifier: MIT
"""A publisher's feed of versions on a server of this machine."""

import functools
import http.server
import json
import pathlib
import ssl
import subprocess
import threading

from .install import BUNDLE
from .program import build_folder


class _Handler(http.server.SimpleHTTPRequestHandler):
    def do_GET(self):
        self.server.requests.append(self.path)
        if self.path == self.server.held:
            self._begin_and_wait()
        else:
            super().do_GET()

    def _begin_and_wait(self):
        """Sends half of a file, and the rest never."""
        content = pathlib.Path(self.translate_path(self.path)).read_bytes()
        self.send_response(200)
        self.send_header("Content-Length", str(len(content)))
        self.end_headers()
        self.wfile.write(content[:len(content) // 2])
        self.server.over.wait()

    def log_message(self, *_):
        pass


def configure(executable, address, public_key, automatic=False):
    """Has an installed program look for updates at an address."""
    bundle = executable.parent.parent / "share" / "quillmark" / BUNDLE
    (bundle / "updates.json").write_text(json.dumps({
        "feed": address, "publicKey": public_key, "automaticChecks": automatic}), encoding="utf-8")


class Feed:
    """Serves a folder with a signed feed and its packages, over plain HTTP or over TLS.

    Use it in a `with` statement.
    """

    def __init__(self, folder, tls=False):
        self.folder = folder / "published"
        self.folder.mkdir()
        self._secret = folder / "secret"
        self.public_key = self._appcast("keys", self._secret)
        self._server = http.server.ThreadingHTTPServer(
            ("127.0.0.1", 0), functools.partial(_Handler, directory=str(self.folder)))
        self._server.requests = []
        self._server.held = None
        self._server.over = threading.Event()
        if tls:
            context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
            self.certificate, key = _make_certificate(folder)
            context.load_cert_chain(self.certificate, key)
            self._server.socket = context.wrap_socket(self._server.socket, server_side=True)
        self._base = f"{'https' if tls else 'http'}://127.0.0.1:{self._server.server_port}"

    def __enter__(self):
        threading.Thread(target=self._server.serve_forever, daemon=True).start()
        return self

    def __exit__(self, *_):
        self._server.over.set()
        self._server.shutdown()
        self._server.server_close()

    @property
    def requests(self):
        """The paths that were asked for, in their order."""
        return self._server.requests

    def hold(self, file):
        """From now on, half of this file is sent and no more."""
        self._server.held = f"/{file.name}"

    def publish(self, version, package=b"a package", notes=None):
        """Adds a version to the feed, and gives the package's file."""
        file = self.folder / f"quillmark_{version}.deb"
        file.write_bytes(package)
        more = []
        if notes is not None:
            text = self.folder / "notes.md"
            text.write_text(notes, encoding="utf-8")
            more = ["--notes", text]
        self._appcast("add", self._secret, self.folder / "appcast.xml", "--package", file,
                      "--url", f"{self._base}/{file.name}", "--version", version, *more)
        return file

    def configure(self, executable, automatic=False):
        """Has an installed program look for updates here."""
        configure(executable, f"{self._base}/appcast.xml", self.public_key, automatic)
        return executable

    @staticmethod
    def _appcast(*arguments):
        answer = subprocess.run([build_folder() / "bin" / "appcast", *arguments], check=True,
                                capture_output=True, text=True)
        return answer.stdout.strip()


def _make_certificate(folder):
    """A certificate that nobody has reason to trust, and its key."""
    certificate, key = folder / "server.pem", folder / "server.key"
    subprocess.run(["openssl", "req", "-x509", "-nodes", "-days", "2", "-newkey", "ec",
                    "-pkeyopt", "ec_paramgen_curve:prime256v1", "-subj", "/CN=127.0.0.1",
                    "-addext", "subjectAltName=IP:127.0.0.1",
                    "-keyout", key, "-out", certificate], check=True, capture_output=True)
    return certificate, key
