"""Firefox and Chromium as Debian packages them, in fresh profiles, driven by the keyboard.

No option or preference affects accessibility. The browsers are observed through the titles of their
windows, never through the accessibility bus: a query on the bus makes a browser turn its
accessibility on, and only the program under test may cause that.
"""

import os
import re
import signal

from support import processes
from support.waiting import TimedOut, wait_until
from support.web_pages import title_of


def is_titled(title, url):
    """Whether a window's title begins with the title of a page. In Lithuanian the title is in
    quotes; in right-to-left languages, direction marks precede it."""
    return re.match(r"[\u200f\u202a„]*" + re.escape(title_of(url)) + "[“ ]", title) is not None


class Browser:
    """One running browser with one profile. `window` is the last one opened or chosen."""

    name = ""
    command = ""
    private_option = ""
    address_bar = (500, 62)
    empty_place = (500, 500)
    window_option = "--new-window"

    def __init__(self, session, site):
        self.session = session
        self.site = site
        self.screen = session.screen
        self.profile = os.path.join(processes.temporary_folder(), self.name)
        os.mkdir(self.profile, 0o700)
        self.prepare_profile()
        self.process = None
        self.window = None

    # --- life ------------------------------------------------------------------------------------

    def start(self, url):
        self.process = self._run(*self.normal_options(), url)
        return self._wait_for_new_window(set(), url)

    def start_private(self, url, option=None):
        """Starts the browser with only a private window."""
        self.process = self._run(*self.normal_options(), option or self.private_option, url)
        return self._wait_for_new_window(set(), url)

    def open_private_window(self, url, option=None):
        """Opens a private window of the running browser, as its launcher's menu entry does."""
        return self.open_window(url, option or self.private_option)

    def open_window(self, url, option=None):
        before = set(self._window_numbers())
        self._run(*self.normal_options(), option or self.window_option, url)
        return self._wait_for_new_window(before, url)

    def open_popup(self, key, shows):
        """Presses a key that makes the page open a popup; waits until the popup shows a page."""
        before = set(self._window_numbers())

        def open_it():
            self.press(key)
            try:
                return wait_until(lambda: set(self._window_numbers()) - before, "the popup", 3)
            except TimedOut:
                return False

        # As for an address: a browser that has just started may move the focus again.
        wait_until(open_it, "the popup to open", 10)
        return self._wait_for_new_window(before, shows)

    def can_start_over(self):
        return self.process is not None

    def start_over(self, url):
        """Closes all windows except the oldest, and goes to that page."""
        self.window, *others = self.screen.windows_of(self.family())
        for window in others:
            window.close()
        wait_until(lambda: self._window_numbers() == [self.window.number],
                   "the other windows to close")
        if not self.shows(url):
            self.visit(url)

    def close_window(self):
        """Closes the window that was last opened or chosen; it must not be the only one."""
        number = self.window.number
        self.window.close()
        wait_until(lambda: number not in self._window_numbers(), "the window to close")

    def close(self):
        """Kills all processes of the browser, including stopped ones."""
        if self.process:
            processes.end_family(self.process)
            self.process = None

    def family(self):
        return [self.process.pid, *processes.children_of(self.process.pid)]

    def stop_all(self):
        """Stops every process of the browser, as a debugger would or a machine that is swapping."""
        processes.send(signal.SIGSTOP, self.family())

    def continue_all(self):
        processes.send(signal.SIGCONT, self.family())

    # --- hands -----------------------------------------------------------------------------------

    def use(self):
        self.window.use()

    def visit(self, url, shows=None):
        """Types an address and waits until the window shows that page (or the one it leads to)."""
        self.ask_for(url)
        self.wait_until_it_shows(shows or url)

    def ask_for(self, url):
        """Types an address and presses Return. Returns once the browser asks for the page or shows
        it, without waiting for the answer."""
        asked_before = self.site.times_asked(url)
        shown_before = self.shows(url)

        def is_asked():
            # A browser shows a cached page without asking the site.
            asked = self.site.times_asked(url) > asked_before
            return asked or (self.shows(url) and not shown_before)

        def ask():
            self.type_address(url)
            # Delete removes the completion that the browser has appended from its history.
            self.screen.press("Delete", "Return")
            try:
                return wait_until(is_asked, url, 3)
            except TimedOut:
                return False

        # A browser that has just started may move the focus while it initialises; a user then
        # types the address again.
        wait_until(ask, lambda: f"{self.name} to ask for {url}", 10)

    def type_address(self, text):
        self.use()
        # The key for it (ctrl+l) goes to the page's process first. Text that is typed before the
        # key comes back is lost. A click in the address bar has an immediate effect.
        self.window.click_and_type(*self.address_bar, text)

    def give_up_typing(self):
        self.screen.press("Escape", "Escape")

    def open_tab(self, url):
        self.use()
        self.screen.press("ctrl+t")
        wait_until(lambda: not self.window.title.startswith(self._shown), "the new tab")
        self.visit(url)

    def choose_next_tab(self, shows):
        self.use()
        self.screen.press("ctrl+Tab")
        self.wait_until_it_shows(shows)

    def reload(self, url):
        self.use()
        before = self.site.times_asked(url)
        self.screen.press("F5")
        wait_until(lambda: self.site.times_asked(url) > before, f"{self.name} to reload {url}")

    def press(self, key):
        """Presses a key on the page itself."""
        self.use()
        self.window.click(*self.empty_place)
        self.screen.press(key)

    def wait_until_it_shows(self, url):
        """A window takes the title of a page when the page is committed and its head is parsed."""
        wait_until(lambda: self.shows(url),
                   lambda: f"{self.name} to show {url}; its title is {self.window.title!r}", 20)
        self._shown = title_of(url)

    def shows(self, url):
        return self.is_named_after(url, self.window)

    # --- windows ---------------------------------------------------------------------------------

    def _run(self, *options):
        return self.session.start([self.command, *options], log=f"{self.name}.log",
                                  **self.environment())

    def _window_numbers(self):
        return [window.number for window in self.screen.windows_of(self.family())]

    def _wait_for_new_window(self, before, url):
        def new_window():
            for window in self.screen.windows_of(self.family()):
                if window.number not in before and self.is_named_after(url, window):
                    return window
            return None

        self.window = wait_until(
            new_window, lambda: f"{self.name} to open a window for {url}; it has "
            f"{[window.title for window in self.screen.windows_of(self.family())]}", 40)
        self._shown = title_of(url)
        return self.window

    # --- what differs ----------------------------------------------------------------------------

    def prepare_profile(self):
        raise NotImplementedError

    def normal_options(self):
        raise NotImplementedError

    def environment(self):
        return {}

    def is_named_after(self, url, window):
        return is_titled(window.title, url)


class Firefox(Browser):
    name = "Firefox"
    command = "firefox-esr"
    private_option = "--private-window"

    def prepare_profile(self):
        with open(os.path.join(self.profile, "user.js"), "w", encoding="ascii") as file:
            for preference, value in self._preferences().items():
                file.write(f'user_pref("{preference}", {value});\n')
        # This file contains the exceptions that a user adds on the warning page.
        with open(os.path.join(self.profile, "cert_override.txt"), "w", encoding="ascii") as file:
            for host in self.site.secure_hosts:
                file.write(f"{host}:443:\tOID.2.16.840.1.101.3.4.2.1\t"
                           f"{self.site.fingerprint}\t\n")

    def _preferences(self):
        port = self.site.port
        return {
            # Every host is the site on loopback.
            "network.proxy.type": "1",
            "network.proxy.http": '"127.0.0.1"', "network.proxy.http_port": port,
            "network.proxy.ssl": '"127.0.0.1"', "network.proxy.ssl_port": port,
            # An address typed with http:// keeps that scheme.
            "dom.security.https_first": "false",
            "dom.security.https_first_schemeless": "false",
            "dom.security.https_only_mode": "false",
            # No first-run pages, no questions at start.
            "browser.aboutwelcome.enabled": "false",
            "browser.startup.homepage_override.mstone": '"ignore"',
            "browser.shell.checkDefaultBrowser": "false",
            "browser.sessionstore.resume_from_crash": "false",
            "toolkit.startup.max_resumed_crashes": "-1",
            "datareporting.policy.dataSubmissionEnabled": "false",
            "termsofuse.bypassNotification": "true",
            "trailhead.firstrun.didSeeAboutWelcome": "true",
            "browser.tabs.warnOnClose": "false",
            "browser.urlbar.suggest.searches": "false",
        }

    def normal_options(self):
        return ["--profile", self.profile]

    def environment(self):
        # The reporter would treat a killed Firefox as crashed and open a window.
        return {"MOZ_CRASHREPORTER_DISABLE": "1"}


class Chromium(Browser):
    name = "Chromium"
    command = "chromium"
    private_option = "--incognito"

    def prepare_profile(self):
        # If this file exists, Chromium assumes that it has run before.
        with open(os.path.join(self.profile, "First Run"), "w", encoding="ascii"):
            pass

    def normal_options(self):
        options = [f"--user-data-dir={self.profile}", "--ignore-certificate-errors",
                   "--test-type"]
        if os.geteuid() == 0:
            options.append("--no-sandbox")
        return options

    def environment(self):
        proxy = f"http://127.0.0.1:{self.site.port}"
        return {"http_proxy": proxy, "https_proxy": proxy}
