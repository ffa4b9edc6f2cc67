"""A private Wayland session, with browsers and the program.

On Wayland, a program can neither see nor type into another program's window. So the tests send a
browser to a page by calling it again with the address, and the site sees that it asks for the page.
The program is used only through the accessibility bus.
"""

import os
import re
import signal
from dataclasses import dataclass

from support.accessibility import STATE_SHOWING
from support.browsers import Chromium, Firefox
from support.quorrix import Quorrix
from support.scenario import tell
from support.screen import Window
from support.session import PrivateSession
from support.waiting import wait_until

SOCKET = "wayland-e2e"
X_SERVER = re.compile(r"xserver listening on display (:\d+)")


class WaylandSession(PrivateSession):
    """A compositor without XWayland: X clients find no display.

    The compositor itself runs on an X display, which only `screen` knows. Without any display it
    would have no keyboard, and no window would ever be active.
    """

    options = ()

    def _start_display(self):
        super()._start_display()
        self.start(["weston", "--backend=x11-backend.so", "--use-pixman", "--no-config",
                    "--width=1280", "--height=960", "--idle-time=0", f"--socket={SOCKET}",
                    *self.options], log="weston.log")
        socket = os.path.join(self.environment["XDG_RUNTIME_DIR"], SOCKET)
        wait_until(lambda: os.path.exists(socket), "the compositor")
        super()._start_window_manager()
        wait_until(self.screen.window_numbers, "the compositor's window")
        Window(self.screen, self.screen.window_numbers()[0]).use()
        del self.environment["DISPLAY"]
        self.environment["WAYLAND_DISPLAY"] = SOCKET

    def _start_window_manager(self):
        """The compositor is the window manager."""


class XWaylandSession(WaylandSession):
    """A compositor with XWayland, as on most desktops."""

    options = ("--xwayland",)

    def _start_display(self):
        super()._start_display()
        listening = wait_until(lambda: X_SERVER.search(self.log("weston.log")), "XWayland")
        self.environment["DISPLAY"] = listening[1]


class WaylandBrowser:
    """A mixin for browsers."""

    def start(self, url):
        self.process = self._call(url)

    def start_private(self, url):
        self.process = self._call(self.private_option, url)

    def visit(self, url):
        """Opens a page in a new tab, or in a window if there is no ordinary window yet."""
        self._call(url)

    def open_window(self, url):
        self._call(self.window_option, url)

    def open_private_window(self, url):
        self._call(self.private_option, url)

    def _call(self, *options):
        url = options[-1]
        before = self.site.times_asked(url)
        process = self._run(*self.normal_options(), *options)

        def is_asked():
            nonlocal process
            if process.poll() == -signal.SIGSEGV:
                # The Firefox process that only passes an address on crashes now and then; a user
                # would call it again.
                tell(f"{self.name} crashed when it was called with {url}")
                process = self._run(*self.normal_options(), *options)
            return self.site.times_asked(url) > before

        wait_until(is_asked,
                   lambda: f"{self.name} to ask for {url}; the call of it returned "
                           f"{process.poll()}, and it has said "
                           f"{self.session.log(self.name + '.log')[-2000:]!r}", 40)
        return process


class WaylandFirefox(WaylandBrowser, Firefox):
    def environment(self):
        return {**super().environment(), "MOZ_ENABLE_WAYLAND": "1"}


class WaylandChromium(WaylandBrowser, Chromium):
    def normal_options(self):
        return [*super().normal_options(), "--ozone-platform=wayland"]


@dataclass(frozen=True)
class ShownWindow:
    title: str


class WaylandQuorrix(Quorrix):
    def windows(self):
        return [ShownWindow(window.name) for window in self.application().children()
                if window.has_state(STATE_SHOWING)]

    def close_window(self):
        self.choose("File", "Exit")

    def is_client_of(self, platform):
        """Whether the program has loaded that platform plugin of its toolkit."""
        with open(f"/proc/{self.process.pid}/maps", encoding="utf-8") as file:
            return any(f"/platforms/libq{platform}" in line for line in file)
