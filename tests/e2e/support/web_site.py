"""A web on loopback: a proxy that is itself every host below .example and .test.

Browsers are pointed at it as their proxy for http and https, so that any host name can be visited
and nothing they do by themselves leaves the machine: every other host is refused.
"""

import socket
import ssl
import threading

from support import web_pages
from support.certificate import fingerprint_of, make_certificate
from support.web_pages import (Broken, HeldBack, NoContent, Page, Redirect, SlowPage, place_of,
                               plain_page, title_of)
from support.web_server import Handler, Server


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
        # Bound and not listening: who connects is refused, and nobody else can take the port.
        self._refusing = socket.socket()
        self._refusing.bind(("127.0.0.1", 0))
        self._server = Server(("127.0.0.1", 0), Handler)
        self._server.site = self
        self.port = self._server.server_address[1]
        threading.Thread(target=self._server.serve_forever, daemon=True).start()

    def close(self):
        self.forget_pages()
        self._server.shutdown()
        self._server.server_close()
        self._refusing.close()

    def times_asked(self, url):
        """How many times a page has been asked for. What a browser keeps it does not ask for
        again, but for a reload."""
        with self._lock:
            return self._asked.count(place_of(url))

    def forget_pages(self):
        """Back to plain pages, and to none asked for."""
        for page in self._special.values():
            if isinstance(page, HeldBack):
                page.release()
        with self._lock:
            self._special.clear()
            self._asked.clear()

    # --- what a test may put at an address -------------------------------------------------------

    def given(self, url, page):
        self._special[place_of(url)] = page
        return page

    def given_a_page(self, url, body="", script=""):
        self.given(url, Page(plain_page(title_of(url), body, script)))

    def given_an_uncacheable_page(self, url, script=""):
        self.given(url, Page(plain_page(title_of(url), script=script), caching="no-store"))

    def given_a_redirect(self, url, target, status=302):
        self.given(url, Redirect(target, status))

    def given_a_slow_page(self, url):
        """A page whose answer is held back until the test releases it."""
        return self.given(url, SlowPage(Page(plain_page(title_of(url)))))

    def given_a_slow_body(self, url):
        """A page whose second half is held back until the test releases it."""
        return self.given(url, web_pages.slow_body(url))

    def given_no_content(self, url):
        self.given(url, NoContent())

    def given_a_download(self, url, name):
        self.given(url, web_pages.download(name))

    def given_a_pdf(self, url):
        self.given(url, web_pages.pdf(title_of(url)))

    def given_an_error(self, url, status):
        """A page of the site's own that says what went wrong."""
        self.given(url, web_pages.error(url, status))

    def given_a_broken_connection(self, url):
        self.given(url, Broken())

    def refused_url(self):
        """An address on this machine, which browsers ask without a proxy, where none listens."""
        return f"http://127.0.0.1:{self._refusing.getsockname()[1]}/refused.html"

    # --- the server's side -----------------------------------------------------------------------

    def page_at(self, host, path, _query):
        """The page, or None where the site has nothing."""
        with self._lock:
            self._asked.append((host, path))
        if path == "/favicon.ico":
            return None
        return self._special.get((host, path)) or self.plain_page_at(host, path)

    def plain_page_at(self, host, path):
        return Page(plain_page(f"Page {host}{path}"))
