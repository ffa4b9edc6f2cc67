"""The site that the soak browses: its pages report what the browser does with them.

Each page asks the site for /beacon when it is shown, when its address changes without a new
document, when it is hidden, and when its size changes. A beacon comes from the page alone, not
from the program under test. Its time is the time of the event, by the clock of this machine, even
if the beacon arrives late.
"""

from collections import namedtuple
from urllib.parse import parse_qs, urlsplit

from support.web_pages import CACHEABLE, NoContent, Page
from support.web_site import WebSite

Beacon = namedtuple("Beacon", "time what at base")  # base: where the document was loaded from

# Cells of the page that a user can click, in columns and rows of equal size; see `place_of_cell`.
COLUMNS, CELL_WIDTH, CELL_HEIGHT = 4, 220, 190
LINKS = ("a", "b", "c", "d")
FRAGMENTS = ("f1", "f2")
CELLS = (*LINKS, *FRAGMENTS, "push", "replaces", "pushes", "nothing")
CHANGES_IN_A_BURST = 6

_SCRIPT = """
const base = location.pathname;
const name = () => 'Page ' + location.host + location.pathname + location.hash;
const tell = what => { fetch('/beacon?' + new URLSearchParams(
  {what, at: location.href, base: location.origin + base, time: Date.now() / 1000}), {cache: 'no-store', keepalive: true}); };
const move = how => { const other = base + '-' + Math.random().toString(36).slice(2, 8);
  history[how]({}, '', other); document.title = name(); };
const burst = (how, left) => { move(how); tell(left ? 'passing' : 'settled');
  if (left) setTimeout(burst, 120, how, left - 1); };
const shown = () => { document.title = name(); tell('show'); };
if (document.prerendering) document.onprerenderingchange = shown; else shown();
onpageshow = event => { if (event.persisted) shown(); };
onpopstate = () => { document.title = name(); tell('move'); };
onresize = () => tell('resize');
onpagehide = () => tell('hide');
"""

_STYLE = f"""
.cell {{ position: absolute; box-sizing: border-box; border: 1px solid gray; color: black;
  width: {CELL_WIDTH}px; height: {CELL_HEIGHT}px; background: white; }}
article {{ margin-top: {CELL_HEIGHT * 3}px; }}
"""

# Long enough for a browser to offer a reading view.
_ARTICLE = "".join(f"<p>{'A sentence of a page that is long enough to read. ' * 8}</p>"
                   for _ in range(6))


def place_of_cell(cell):
    """The centre of a cell, relative to the upper left corner of the page."""
    row, column = divmod(CELLS.index(cell), COLUMNS)
    return column * CELL_WIDTH + CELL_WIDTH // 2, row * CELL_HEIGHT + CELL_HEIGHT // 2


def link_from(base, letter):
    """The target of a link on the page that was loaded from the address `base`."""
    return base + letter


def title_at(url):
    parts = urlsplit(url)
    return f"Page {parts.hostname}{parts.path}" + (f"#{parts.fragment}" if parts.fragment else "")


def _cell(name, inner, tag="div"):
    x, y = place_of_cell(name)
    style = f"left:{x - CELL_WIDTH // 2}px;top:{y - CELL_HEIGHT // 2}px"
    return f"<{tag} class=cell style='{style}' {inner}</{tag}>"


def soak_page(host, path):
    cells = [_cell(each, f"href='{link_from(path, each)}'>link {each}", "a") for each in LINKS]
    cells += [_cell(each, f"href='#{each}'>to {each}", "a") for each in FRAGMENTS]
    cells += [
        _cell("push", "onclick='move(\"pushState\"); tell(\"settled\")'>push"),
        _cell("replaces", f"onclick='burst(\"replaceState\", {CHANGES_IN_A_BURST - 1})'>replace"),
        _cell("pushes", f"onclick='burst(\"pushState\", {CHANGES_IN_A_BURST - 1})'>push many")]
    return (f"<!DOCTYPE html><html lang=en><meta charset=utf-8><title>Page {host}{path}</title>"
            f"<script>{_SCRIPT}</script><style>{_STYLE}</style>{''.join(cells)}"
            f"<article><h1>Page {host}{path}</h1>{_ARTICLE}</article></html>").encode()


class SoakSite(WebSite):
    def __init__(self, folder):
        super().__init__(folder)
        self.beacons = []

    def page_at(self, host, path, query):
        if path == "/beacon":
            said = parse_qs(query)
            self.beacons.append(
                Beacon(float(said["time"][0]), *(said[name][0] for name in ("what", "at", "base"))))
            return NoContent()
        return super().page_at(host, path, query)

    def plain_page_at(self, host, path):
        return Page(soak_page(host, path))

    def page_for(self, url, status=200, caching=CACHEABLE):
        """The page that is at an address by default, for a step that puts a slow or failing
        version of it there."""
        parts = urlsplit(url)
        return Page(soak_page(parts.hostname, parts.path), status, caching=caching)

    def heard(self, since, what, at=None):
        """The first beacon of one of these kinds since a time, about one of these addresses."""
        for beacon in list(self.beacons):
            if beacon.time >= since and beacon.what in what and (at is None or beacon.at in at):
                return beacon
        return None
