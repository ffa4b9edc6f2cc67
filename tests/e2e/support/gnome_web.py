"""GNOME Web as Debian packages it: the title of a window is only the title of its page, and
incognito windows run in a separate process."""

import subprocess
from urllib.parse import urlsplit

from support import processes
from support.browsers import Browser
from support.waiting import TimedOut, wait_until
from support.web_pages import title_of

WARNING = "Security Violation"


class GnomeWeb(Browser):
    name = "GNOME Web"
    command = "epiphany"
    private_option = "--incognito-mode"
    address_bar = (460, 26)

    def __init__(self, session, site):
        super().__init__(session, site)
        self._started = []
        self._trusted = set()
        self._has_tabs = False

    # --- life ------------------------------------------------------------------------------------

    def _run(self, *options):
        process = super()._run(*options)
        self._started.append(process)
        return process

    def close(self):
        while self._started:
            processes.end_family(self._started.pop())
        self.process = None
        self._trusted.clear()
        self._has_tabs = False

    def can_start_over(self):
        # It asks for confirmation before it closes a window with several tabs.
        return super().can_start_over() and not self._has_tabs

    def family(self):
        ids = [process.pid for process in self._started]
        return ids + [child for each in ids for child in processes.children_of(each)]

    def stop_all(self):
        """Its toolkit briefly grabs the whole display now and then. If it were stopped at such a
        moment, every other program would hang, so it is then continued and stopped again."""
        def stop():
            super(GnomeWeb, self).stop_all()
            if self._display_answers():
                return True
            self.continue_all()
            return False

        wait_until(stop, f"{self.name} to leave the display to the others")

    def _display_answers(self):
        try:
            subprocess.run(["xdotool", "getmouselocation"], env=self.screen.environment,
                           timeout=0.2, check=True, stdout=subprocess.DEVNULL)
            return True
        except subprocess.TimeoutExpired:
            return False

    # --- hands -----------------------------------------------------------------------------------

    def open_tab(self, url):
        self._has_tabs = True
        super().open_tab(url)

    def visit(self, url, shows=None):
        """As for any browser. This one trusts the site's certificate only after the user accepts it
        on the warning page, until the browser ends."""
        parts = urlsplit(url)
        if parts.scheme == "https" and parts.hostname not in self._trusted:
            self._accept_certificate_of(url)
            self._trusted.add(parts.hostname)
        else:
            super().visit(url, shows)

    def _accept_certificate_of(self, url):
        self.type_address(url)
        self.screen.press("Delete", "Return")
        wait_until(lambda: self.window.title == WARNING, WARNING)

        def accept():
            # The button's access key. The page may have a title before it has the button.
            self.screen.press("alt+p")
            try:
                return wait_until(lambda: self.window.title != WARNING, url, 2)
            except TimedOut:
                return False

        wait_until(accept, lambda: f"{self.name} to go on to {url}")
        self.wait_until_it_shows(url)

    # --- what differs ----------------------------------------------------------------------------

    def prepare_profile(self):
        """Ordinary windows cannot be given a profile; their files are in the home folder."""

    def normal_options(self):
        return []

    def environment(self):
        proxy = f"http://127.0.0.1:{self.site.port}"
        return {"HOME": self.profile, "http_proxy": proxy, "https_proxy": proxy,
                "no_proxy": "127.0.0.1"}

    def is_named_after(self, url, window):
        # The title of a document that is not HTML is its host.
        host = urlsplit(url).hostname
        return window.title == (host if url.endswith(".pdf") else title_of(url))
