"""A web on loopback: a proxy that is itself every host below .example and .test.

Browsers are pointed at it as their proxy for http and https, so that any host name can be visited
and nothing they do by themselves leaves the machine: every other host is refused.
"""

import hashlib
import html
import os
import ssl
import subprocess
import sys
import threading
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer
from urllib.parse import urlsplit


class WebSite:
    """Any path of any host is a plain page, unless a test has given it something else."""

    def __init__(self, folder, secure_hosts=()):
        self.secure_hosts = secure_hosts
        certificate, key = make_certificate(folder, secure_hosts)
        self.fingerprint = fingerprint_of(certificate)
        self.tls = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        self.tls.load_cert_chain(certificate, key)
        self._special = {}
        self._asked = []
        self._lock = threading.Lock()
        self._server = _Server(("127.0.0.1", 0), _Handler)
        self._server.site = self
        self.port = self._server.server_address[1]
        threading.Thread(target=self._server.serve_forever, daemon=True).start()

    def close(self):
        self.forget_pages()
        self._server.shutdown()
        self._server.server_close()

    def times_asked(self, url):
        """How many times a page has been answered, or for a slow one asked for."""
        with self._lock:
            return self._asked.count(_place(url))

    def forget_pages(self):
        """Back to plain pages, and to none asked for."""
        for page in self._special.values():
            if isinstance(page, SlowPage):
                page.release()
        with self._lock:
            self._special.clear()
            self._asked.clear()

    # --- what a test may put at an address -------------------------------------------------------

    def given_a_page(self, url, body="", script=""):
        self._special[_place(url)] = plain_page(title_of(url), body, script)

    def given_a_redirect(self, url, target):
        self._special[_place(url)] = Redirect(target)

    def given_a_slow_page(self, url):
        """A page whose answer is held back until the test releases it."""
        page = self._special[_place(url)] = SlowPage(plain_page(title_of(url)))
        return page

    # --- the server's side -----------------------------------------------------------------------

    def page_at(self, host, path):
        with self._lock:
            self._asked.append((host, path))
        if path == "/favicon.ico":
            return None
        return self._special.get((host, path), plain_page(f"Page {host}{path}"))


class Redirect:
    def __init__(self, target):
        self.target = target


class SlowPage:
    def __init__(self, page):
        self.page = page
        self.asked = threading.Event()
        self._released = threading.Event()

    def release(self):
        self._released.set()

    def wait_for_release(self):
        self.asked.set()
        self._released.wait()
        return self.page


def title_of(url):
    """A plain page's title, unique to its host and path, so that a window's title says which page
    it shows. It is not the bare address: Firefox names a tab after that while it loads, and then
    leaves a title that says the same out of the window's title."""
    return "Page " + "".join(_place(url))


def plain_page(title, body="", script=""):
    return (f"<!DOCTYPE html><html lang=en><meta charset=utf-8><title>{html.escape(title)}</title>"
            f"<script>{script}</script><h1>{html.escape(title)}</h1>{body}</html>").encode()


def _place(url):
    parts = urlsplit(url)
    return parts.hostname, parts.path or "/"


def make_certificate(folder, hosts):
    """A throw-away certificate for the given hosts; returns its file and its key's file."""
    certificate, key = os.path.join(folder, "site.crt"), os.path.join(folder, "site.key")
    names = ",".join(f"DNS:{host}" for host in hosts) or "DNS:none.example"
    subprocess.run(
        ["openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "2", "-batch",
         "-subj", "/CN=loopback site of the tests", "-addext", f"subjectAltName={names}",
         "-keyout", key, "-out", certificate],
        check=True, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    return certificate, key


def fingerprint_of(certificate):
    with open(certificate, encoding="ascii") as file:
        digest = hashlib.sha256(ssl.PEM_cert_to_DER_cert(file.read())).hexdigest().upper()
    return ":".join(digest[start:start + 2] for start in range(0, len(digest), 2))


class _Server(ThreadingHTTPServer):
    daemon_threads = True

    def handle_error(self, _request, _client):
        """A browser that is killed, or that stops a load, breaks its connections off."""
        if not isinstance(sys.exc_info()[1], OSError):
            super().handle_error(_request, _client)


class _Handler(BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"
    secure_host = None

    def log_message(self, *_arguments):
        pass

    def do_CONNECT(self):
        host = self.path.rpartition(":")[0]
        if not _is_ours(host):
            return self._answer(403, b"")
        self.send_response(200)
        self.end_headers()
        try:
            self.connection = self.server.site.tls.wrap_socket(self.connection, server_side=True)
        except (ssl.SSLError, OSError):
            self.close_connection = True
            return None
        self.secure_host = host
        self.rfile = self.connection.makefile("rb")
        self.wfile = self.connection.makefile("wb", 0)
        # The answer to CONNECT carries no length; what follows on this connection is https.
        self.close_connection = False
        return None

    def do_GET(self):
        parts = urlsplit(self.path)
        host = self.secure_host or parts.hostname
        if not _is_ours(host):
            return self._answer(403, b"")
        page = self.server.site.page_at(host, parts.path or "/")
        if isinstance(page, SlowPage):
            page = page.wait_for_release()
        if isinstance(page, Redirect):
            return self._answer(302, b"", Location=page.target)
        return self._answer(200 if page else 404, page or b"")

    def finish(self):
        super().finish()
        self.connection.close()

    def _answer(self, status, body, **headers):
        try:
            self.send_response(status)
            for name, value in headers.items():
                self.send_header(name, value)
            self.send_header("Content-Type", "text/html; charset=utf-8")
            self.send_header("Cache-Control", "no-store")
            self.send_header("Content-Length", str(len(body)))
            self.end_headers()
            self.wfile.write(body)
        except OSError:
            self.close_connection = True  # The browser was closed, or asked for another page.


def _is_ours(host):
    return bool(host) and host.endswith((".example", ".test"))
