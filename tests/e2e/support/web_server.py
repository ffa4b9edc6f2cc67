"""The server under the tests' web site: an HTTP/1.1 proxy that answers for its hosts itself.

A connection is kept for further requests, as the browsers expect of a proxy and of a site.
"""

import socket
import ssl
import struct
import sys
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer
from urllib.parse import urlsplit

# Both browsers ask for it somewhere to find out whether a network wants a login first.
NO_LOGIN_PAGE = "/generate_204"


class Server(ThreadingHTTPServer):
    daemon_threads = True

    def handle_error(self, _request, _client):
        """A browser that is killed, or that stops a load, breaks its connections off."""
        if not isinstance(sys.exc_info()[1], OSError):
            super().handle_error(_request, _client)


class Handler(BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"
    disable_nagle_algorithm = True
    secure_host = None

    def log_message(self, *_arguments):
        pass

    def do_CONNECT(self):
        host = self.path.rpartition(":")[0]
        if not _is_ours(host):
            return self.send(403)
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
        if parts.path == NO_LOGIN_PAGE:
            return self.send(204)
        if not _is_ours(host):
            return self.send(403)
        page = self.server.site.page_at(host, parts.path or "/", parts.query)
        return page.answer(self) if page else self.send(404)

    def do_POST(self):
        """Answered like a question for the page; what was sent along is read and forgotten."""
        self.rfile.read(int(self.headers.get("Content-Length", 0)))
        return self.do_GET()

    def finish(self):
        super().finish()
        self.connection.close()

    # --- for the pages ---------------------------------------------------------------------------

    def send(self, status, headers=None, body=b""):
        self.begin(status, headers or {}, len(body), body)

    def begin(self, status, headers, length, first=b""):
        """The head of an answer, and as much of its body as is to go with it."""
        self.send_response(status)
        for name, value in headers.items():
            self.send_header(name, value)
        if status not in (204, 304):
            self.send_header("Content-Length", str(length))
        self._headers_buffer.append(b"\r\n" + first)
        self._write(b"".join(self._headers_buffer))
        self._headers_buffer = []

    def go_on(self, part):
        self._write(part)

    def reset(self):
        """Without lingering, closing a connection resets it."""
        self.connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
        self.close_connection = True

    def _write(self, data):
        try:
            self.wfile.write(data)
        except OSError:
            self.close_connection = True  # The browser was closed, or asked for another page.


def _is_ours(host):
    return bool(host) and host.endswith((".example", ".test"))
