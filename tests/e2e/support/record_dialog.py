"""An open dialog of the program: its controls, found through the accessibility bus by name and used
with keys and clicks."""

from gi.repository import GLib

from support.accessibility import (STATE_CHECKED, STATE_FOCUSED, STATE_SELECTED,
                                   STATE_SENSITIVE, STATE_SHOWING)
from support.popup_menu import PopupMenu
from support.waiting import wait_until

# The roles of controls that Tab can reach.
CONTROLS = ("combo box", "text", "list", "push button")


class RecordDialog:
    @classmethod
    def open(cls, quorrix, row, entry, caption):
        """Opens the dialog from the popup menu of a row of the tree."""
        PopupMenu(quorrix, row).choose(entry)
        return cls(quorrix, caption)

    def __init__(self, quorrix, caption):
        """Waits until the dialog with that caption is open and has the focus."""
        self.quorrix = quorrix
        self.screen = quorrix.session.screen
        self.caption = caption
        self._clicks = 0
        wait_until(lambda: self.is_open() and self.window().is_active() and self.focused(),
                   lambda: f"the dialog {caption!r} to open; open are "
                           f"{[window.title for window in quorrix.windows()]}")

    # --- the window ------------------------------------------------------------------------------

    def window(self):
        """The window on the display, or None."""
        for window in self.quorrix.windows():
            if window.title == self.caption:
                return window
        return None

    def is_open(self):
        return self.window() is not None and self._on_bus() is not None

    def wait_until_closed(self):
        wait_until(lambda: self.window() is None,
                   lambda: f"the dialog {self.caption!r} to close; open are "
                           f"{[window.title for window in self.quorrix.windows()]}")
        # The window beneath must have the focus before anything else is typed or clicked.
        wait_until(lambda: any(window.is_active() for window in self.quorrix.windows()),
                   "the window beneath to be active")

    def extents(self):
        return self._on_bus().extents()

    def _on_bus(self):
        try:
            for window in self.quorrix.application().children():
                if window.role == "dialog" and window.name == self.caption:
                    return window if window.has_state(STATE_SHOWING) else None
        except GLib.Error:
            pass  # It is opening or closing.
        return None

    # --- what it shows ---------------------------------------------------------------------------

    def text_of(self, box):
        return self._control("text", box).text

    def entries(self):
        """The entries of the only list, from top to bottom."""
        return [entry.name for entry in self._control("list").children()
                if entry.role == "list item"]

    def entries_of(self, name):
        """The entries of the list with that name, from top to bottom."""
        return [entry.name for entry in self._control("list", name).children()
                if entry.role == "list item"]

    def labels(self):
        """The labels' texts, line by line from the top, each line from the left."""
        labels = [thing for thing in self._on_bus().children() if thing.role == "label"]
        return [label.name for label in sorted(labels, key=lambda label: label.extents()[1::-1])]

    def is_enabled(self, role, name):
        return self._control(role, name).has_state(STATE_SENSITIVE)

    def focused(self):
        """The name of the focused control, or None."""
        for control in self._on_bus().children():
            if control.role in CONTROLS and control.has_state(STATE_FOCUSED):
                return control.name
        return None

    def _control(self, role, name=None):
        control = self._on_bus().find(role, name)
        if control is None:
            raise AssertionError(f"no {role} {name!r} in {self.caption!r}")
        return control

    # --- hands -----------------------------------------------------------------------------------

    def press_key(self, key):
        self.screen.press(key)

    def press_button(self, name):
        self._control("push button", name).press()

    def close_with(self, button):
        self.press_button(button)
        self.wait_until_closed()

    def clear(self, box):
        self._click_into(box)
        self.screen.press("ctrl+a", "BackSpace")
        wait_until(lambda: self.text_of(box) == "", f"the box {box!r} to be empty")

    def type_into(self, box, text):
        """Replaces the text in the box."""
        self.clear(box)
        for number, line in enumerate(text.split("\n")):
            if number > 0:
                self.screen.press("Return")
            self.screen.type(line)
        wait_until(lambda: self.text_of(box) == text,
                   lambda: f"{text!r} in the box {box!r}; it has {self.text_of(box)!r}")

    def insert_into(self, box, text, shown=None):
        """Inserts a text at the beginning of the box without the keyboard. Waits until the box
        begins with it, or with `shown` if the box changes the text."""
        shown = shown or text
        self._control("text", box).insert_text(text)
        wait_until(lambda: self.text_of(box).startswith(shown),
                   lambda: f"{shown!r} in the box {box!r}; it has {self.text_of(box)!r}")

    def choose_option(self, name):
        option = self._control("radio button", name)
        self.screen.click(*option.centre())
        wait_until(lambda: option.has_state(STATE_CHECKED), f"the option {name!r} to be chosen")

    def choose_drive(self, drive):
        """Chooses a drive by typing its name. The focus must be on the folder list, as when the
        dialog opens; it follows the drive list."""
        self.screen.press("shift+Tab")
        # On the bus, the list's name is the drive that it shows.
        drives = self._control("combo box")
        wait_until(lambda: drives.has_state(STATE_FOCUSED), "the drive list to have the focus")
        self.screen.type(drive)
        wait_until(lambda: drives.name == drive, f"the drive {drive!r} to be chosen")

    def _click_into(self, box):
        control = self._control("text", box)
        self.screen.click(*control.centre())
        wait_until(lambda: control.has_state(STATE_FOCUSED), f"the box {box!r} to have the focus")

    def double_click_entry(self, name, number):
        """Double-clicks an entry of the list with that name, counted from 0."""
        entry = [thing for thing in self._control("list", name).children()
                 if thing.role == "list item"][number]
        self.screen.click(*entry.centre())
        self.screen.click(*entry.centre())

    def click_entry(self, number):
        """Clicks an entry of the only list, counted from 0."""
        entry = [thing for thing in self._control("list").children()
                 if thing.role == "list item"][number]
        # Each click is at another place: two at the same place would be a double click, which
        # opens the entry.
        self._clicks += 1
        left, top, _width, height = entry.extents()
        self.screen.click(left + 20 * self._clicks, top + height // 2)
        wait_until(lambda: entry.has_state(STATE_SELECTED), f"the entry {number} to be selected")
