"""What the user sees: windows, tabs and their histories, and which address is presented.

The soak's steps update the model with what the pages and the window titles report. `presented` is
the address that the user's window shows. A change to another address is a visit.
"""

from dataclasses import dataclass, field


@dataclass
class Entry:
    """One entry of a tab's history. A page without an address that can be recorded (a new tab, an
    error page of the browser) has the url None."""

    url: str | None
    base: str = ""  # the address that the document was loaded from
    is_stopped: bool = False  # partly loaded; it may not report when it is shown again

    @property
    def address(self):
        return self.url and self.url.removeprefix("http://")

    def tells_when_shown(self):
        return self.url is not None and not self.is_stopped


@dataclass
class Tab:
    entries: list[Entry]
    index: int = 0

    @property
    def entry(self):
        return self.entries[self.index]

    def go_to(self, entry):
        """Adds a new entry, which replaces those that Forward would lead to."""
        self.entries[self.index + 1:] = [entry]
        self.index += 1


@dataclass
class Window:
    handle: object  # a window of the display
    tabs: list[Tab]
    private: bool = False
    tab: Tab = field(init=False)
    closed: list[Tab] = field(default_factory=list)

    def __post_init__(self):
        self.tab = self.tabs[-1]

    @property
    def entry(self):
        return self.tab.entry


class Model:
    def __init__(self):
        self.windows = []  # most recently used first
        self.presented = None
        self.presented_before = None
        self.last_closed_in = None  # the window in which the browser would restore a tab

    @property
    def window(self):
        return self.windows[0]

    def normal_windows(self):
        return [window for window in self.windows if not window.private]

    def use(self, window):
        self.windows.remove(window)
        self.windows.insert(0, window)

    def present(self):
        """Updates `presented`; returns the address that must now be recorded, or None.

        A private window presents nothing: the page of the ordinary window below it remains
        presented."""
        if self.window.private:
            return None
        address = self.window.entry.address
        if address == self.presented:
            return None
        self.presented_before, self.presented = self.presented, address
        return address

    def open_addresses(self):
        return [tab.entry.address for window in self.windows for tab in window.tabs]
