"""A web on loopback: a proxy that acts as every host below .example and .test.

Browsers use it as their proxy for http and https. So any host name below these can be visited, and
no request leaves the machine: every other host is refused.
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
    """Any path of any host is a plain page, unless a test has put something else there."""

    def __init__(self, folder, secure_hosts=()):
        self.secure_hosts = secure_hosts
        certificate, key = make_certificate(folder, secure_hosts)
        self.fingerprint = fingerprint_of(certificate)
        self.tls = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        self.tls.load_cert_chain(certificate, key)
        self._special = {}
        self._asked = []
        self._lock = threading.Lock()
        # Bound but not listening: connections are refused, and nobody else can take the port.
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
        """How many times a page has been asked for. A browser asks for a cached page again only
        on a reload."""
        with self._lock:
            return self._asked.count(place_of(url))

    def forget_pages(self):
        """Makes all pages plain again, and resets the numbers of requests."""
        for page in self._special.values():
            if isinstance(page, HeldBack):
                page.release()
        with self._lock:
            self._special.clear()
            self._asked.clear()

    # --- what a test can put at an address -------------------------------------------------------

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
        """An error page of the site."""
        self.given(url, web_pages.error(url, status))

    def given_a_broken_connection(self, url):
        self.given(url, Broken())

    def refused_url(self):
        """An address on this machine where nothing listens. Browsers do not use a proxy for it."""
        return f"http://127.0.0.1:{self._refusing.getsockname()[1]}/refused.html"

    # --- the server's side -----------------------------------------------------------------------

    def page_at(self, host, path, _query):
        """The page, or None if the site has none there."""
        with self._lock:
            self._asked.append((host, path))
        if path == "/favicon.ico":
            return None
        return self._special.get((host, path)) or self.plain_page_at(host, path)

    def plain_page_at(self, host, path):
        return Page(plain_page(f"Page {host}{path}"))
