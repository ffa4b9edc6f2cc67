"""Where the soak's steps lead: addresses that were never used, and links of the current page."""

from soaking.site import LINKS, link_from
from soaking.tally import PRIVATE_HOST

HOSTS = ("www.soak.example", "a.north.soak.example", "b.south.soak.example")


class Places:
    """A part of `Browsing`."""

    def __init__(self, pages):
        self.pages = pages  # the number of addresses made so far
        self._special = set()

    def new_url(self):
        self.pages += 1
        host = PRIVATE_HOST if self.window.private else self.random.choice(HOSTS)
        return f"http://{host}/p/{self.pages}-"

    def unused_links(self):
        """Cells of the current page with links to pages that were never asked for."""
        return [cell for cell in LINKS if not self.site.times_asked(self.link(cell))]

    def plain_links(self):
        """Cells with links to ordinary pages that are not open in any tab."""
        open_addresses = self.model.open_addresses()
        return [cell for cell in LINKS if self.link(cell) not in self._special
                and self.link(cell).removeprefix("http://") not in open_addresses]

    def link(self, cell):
        return link_from(self.entry.base, cell)

    def mark_as_special(self, url):
        """From now on no step treats a link to this address as an ordinary one."""
        self._special.add(url)

    def new_place(self):
        """An address that was never asked for, of a link or to be typed. The step can put anything
        there: no step treats a link to it as an ordinary one."""
        links = self.unused_links() if self.is_on_a_page() else []
        if links and self.random.random() < 0.6:
            url = self.link(self.random.choice(links))
        else:
            url = self.new_url()
        self.mark_as_special(url)
        return url

    def go_to(self, url):
        """Goes there by a link on the page if it has one, otherwise by typing."""
        for cell in self.unused_links() if self.is_on_a_page() else []:
            if self.link(cell) == url:
                return self.click(cell)
        return self.type_url(url)
