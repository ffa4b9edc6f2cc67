"""Pages that navigate without user action."""

from support.waiting import wait_until

RELOADS = 3


class RestlessPages:
    """Two pages that automatically go to the next one, and a last one that keeps reloading."""

    def __init__(self, site, place):
        self._site = site
        self.first = f"http://{place}/first.html"
        self.last = f"http://{place}/last.html"
        self._given(self.first, "location = 'second.html'")
        self._given(f"http://{place}/second.html", "location = 'last.html'")
        self._given(self.last, "location.reload()")

    def _given(self, url, step):
        self._site.given_a_page(url, script=f"setTimeout(() => {{ {step} }}, 300)")

    def wait_for_reloads(self):
        enough = self._site.times_asked(self.last) + RELOADS
        wait_until(lambda: self._site.times_asked(self.last) >= enough,
                   f"{self.last} to reload itself")
