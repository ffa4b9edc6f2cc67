"""The popup menu of the site tree, opened with the mouse on a row."""

from gi.repository import GLib

from support.accessibility import STATE_SENSITIVE, STATE_SHOWING, FocusWatch
from support.waiting import wait_until


class PopupMenu:
    def __init__(self, quorrix, row):
        self.screen = quorrix.session.screen
        self._entries = self._open(quorrix, row)

    def _open(self, quorrix, row):
        quorrix.application()
        watch = FocusWatch(quorrix.bus)
        try:
            quorrix.click_row(row, 3)
            # The menu is the parent of the entry that a key has focused.
            entry = wait_until(lambda: self._entry_after_a_key(watch), f"the menu of {row}")
            return [thing for thing in entry.parent.children() if thing.role == "menu item"]
        finally:
            watch.close()

    def _entry_after_a_key(self, watch):
        self.screen.press("Down")
        for thing in watch.heard():
            try:
                if thing.role == "menu item":
                    return thing
            except GLib.Error:
                continue  # It has disappeared again.
        return None

    def captions(self):
        return [entry.name for entry in self._entries]

    def enabled_captions(self):
        return [entry.name for entry in self._entries if entry.has_state(STATE_SENSITIVE)]

    def choose(self, caption):
        """Clicks the entry, which also closes the menu."""
        entry = next(entry for entry in self._entries if entry.name == caption)
        self.screen.click(*entry.centre())

    def is_open(self):
        return self._entries[0].has_state(STATE_SHOWING)

    def dismiss(self):
        self.screen.press("Escape")
        wait_until(lambda: not self.is_open(), "the menu to close")
