"""The server for the tests' web site: an HTTP/1.1 proxy that answers for its hosts itself.

Connections are kept open for further requests, as the browsers expect from a proxy and a site.
"""

import socket
import ssl
import struct
import sys
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer
from urllib.parse import urlsplit

# Browsers ask for this path on some host to find out whether the network requires a login.
NO_LOGIN_PAGE = "/generate_204"


class Server(ThreadingHTTPServer):
    daemon_threads = True

    def handle_error(self, _request, _client):
        """Ignores broken connections: a browser that is killed, or stops a load, causes them."""
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
        # The answer to CONNECT has no length; HTTPS follows on this connection.
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
        """Answered like GET; the request body is read and discarded."""
        self.rfile.read(int(self.headers.get("Content-Length", 0)))
        return self.do_GET()

    def finish(self):
        super().finish()
        self.connection.close()

    # --- for the pages ---------------------------------------------------------------------------

    def send(self, status, headers=None, body=b""):
        self.begin(status, headers or {}, len(body), body)

    def begin(self, status, headers, length, first=b""):
        """Sends the headers of an answer with the first part of its body."""
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
        """Resets the connection: closing it with a linger time of zero does that."""
        self.connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
        self.close_connection = True

    def _write(self, data):
        try:
            self.wfile.write(data)
        except OSError:
            self.close_connection = True  # The browser was closed or asked for another page.


def _is_ours(host):
    return bool(host) and host.endswith((".example", ".test"))
