"""The kinds of pages that the tests' web site can serve.

Each kind answers a request by calling the server's `send`, `begin`, `go_on` and `reset`.
"""

import hashlib
import html
import threading
from dataclasses import dataclass
from urllib.parse import urlsplit

HTML = "text/html; charset=utf-8"

# As for most pages of real sites: the browser may show the page again without asking, and asks with
# the tag on a reload.
CACHEABLE = "max-age=3600"
LAST_MODIFIED = "Tue, 03 Mar 2026 10:00:00 GMT"


def place_of(url):
    """Host and path, which identify a page of the site."""
    parts = urlsplit(url)
    return parts.hostname, parts.path or "/"


def title_of(url):
    """The title of a plain page. It is unique to its host and path, so that a window's title tells
    which page it shows. It is not the plain address: Firefox uses that as the tab's title while the
    page loads, and then omits a page title that is the same from the window's title."""
    return "Page " + "".join(place_of(url))


def plain_page(title, body="", script=""):
    return (f"<!DOCTYPE html><html lang=en><meta charset=utf-8><title>{html.escape(title)}</title>"
            f"<script>{script}</script><h1>{html.escape(title)}</h1>{body}</html>").encode()


@dataclass(frozen=True)
class Page:
    body: bytes
    status: int = 200
    kind: str = HTML
    caching: str = CACHEABLE
    more_headers: tuple = ()

    @property
    def tag(self):
        return f'"{hashlib.sha256(self.body).hexdigest()[:16]}"'

    def headers(self):
        headers = {"Content-Type": self.kind, "Cache-Control": self.caching}
        if self.caching == CACHEABLE:
            headers |= {"ETag": self.tag, "Last-Modified": LAST_MODIFIED}
        return headers | dict(self.more_headers)

    def answer(self, request):
        if self.caching == CACHEABLE and request.headers.get("If-None-Match") == self.tag:
            request.send(304, self.headers())
        else:
            request.send(self.status, self.headers(), self.body)


@dataclass(frozen=True)
class Redirect:
    target: str
    status: int = 302

    def answer(self, request):
        request.send(self.status, {"Location": self.target, "Cache-Control": "no-cache"})


class NoContent:
    """An answer after which the browser keeps showing the current page."""

    def answer(self, request):
        request.send(204, {})


class Broken:
    """The server closes the connection without an answer."""

    def answer(self, request):
        request.reset()


class HeldBack:
    """An answer that is withheld, completely or except for its beginning, until it is released."""

    def __init__(self, page):
        self.page = page
        self.asked = threading.Event()
        self._released = threading.Event()

    def release(self):
        self._released.set()

    def wait_for_release(self):
        self.asked.set()
        self._released.wait()


class SlowPage(HeldBack):
    def answer(self, request):
        self.wait_for_release()
        self.page.answer(request)


class SlowBody(HeldBack):
    """The headers and the first half of the body are sent immediately."""

    def answer(self, request):
        half = len(self.page.body) // 2
        request.begin(self.page.status, self.page.headers(), len(self.page.body))
        request.go_on(self.page.body[:half])
        self.wait_for_release()
        request.go_on(self.page.body[half:])


def slow_body(url):
    """The first half contains the title and enough text for a browser to show."""
    return SlowBody(Page(plain_page(title_of(url), "<p>and more text</p>" * 400)))


def download(name):
    return Page(b"one,two\r\n3,4\r\n", kind="text/csv",
                more_headers=(("Content-Disposition", f'attachment; filename="{name}"'),))


def error(url, status):
    return Page(plain_page(title_of(url), f"<p>Error {status}</p>" * 40), status=status,
                caching="no-cache")


def pdf(title):
    """A document with one empty page."""
    objects = [b"<</Type/Catalog/Pages 2 0 R>>",
               b"<</Type/Pages/Kids[3 0 R]/Count 1>>",
               b"<</Type/Page/Parent 2 0 R/MediaBox[0 0 300 300]>>",
               b"<</Title(" + title.encode() + b")>>"]
    body, places = b"%PDF-1.4\n", []
    for number, content in enumerate(objects, start=1):
        places.append(len(body))
        body += b"%d 0 obj\n%s\nendobj\n" % (number, content)
    table = b"xref\n0 5\n0000000000 65535 f \n"
    table += b"".join(b"%010d 00000 n \n" % place for place in places)
    end = b"trailer\n<</Size 5/Root 1 0 R/Info 4 0 R>>\nstartxref\n%d\n%%%%EOF\n" % len(body)
    return Page(body + table + end, kind="application/pdf")
