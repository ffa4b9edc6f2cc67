"""The program under test in its own folder, driven from outside.

It is started as a user would start it and used through the accessibility bus, where it appears like
every other program. The tests check the bytes in its data folder.
"""

import os
import shutil

from gi.repository import GLib

from support import processes
from support.accessibility import (STATE_FOCUSED, STATE_SELECTED, STATE_SHOWING,
                                   AccessibilityBus)
from support.site_file import read_records
from support.waiting import TimedOut, wait_until

DATA_FILES = ("nodes.dat", "notes.dat", "info.dat", "purchases.dat")
MANUAL = "Quorrix.hlp"
READY = "Right click site address for site menu."
TRACKING = "Tracking websites."
STOPPED = "Tracking websites stopped."

# A variable in the environment of the program, and so of every process that it starts.
MARK = "STARTED_BY_PROGRAM_IN"


def make_program_folder(program):
    """A new folder like an installed one: the program, its manual, empty data files, no archive
    loaded."""
    folder = processes.temporary_folder()
    shutil.copy2(program, os.path.join(folder, "Quorrix"))
    shutil.copy2(os.path.join(os.path.dirname(program), MANUAL), folder)
    data = os.path.join(folder, "Data")
    os.mkdir(data, 0o700)
    for name in DATA_FILES:
        with open(os.path.join(data, name), "wb"):
            pass
    with open(os.path.join(data, "load.txt"), "w", encoding="ascii") as file:
        file.write("none\n")
    return folder


class NotThere(AssertionError):
    """A window or control that should be there is not."""


class Quorrix:
    def __init__(self, session, folder):
        self.session = session
        self.folder = folder
        self.more_environment = {}  # for the program only, in addition to the session's
        self.launcher = []  # a command that finally executes the program that follows it
        self.process = None
        self.bus = None
        self._application = None
        self._is_ready = False

    # --- life ------------------------------------------------------------------------------------

    def start(self):
        self.process = self.session.start(
            [*self.launcher, os.path.join(self.folder, "Quorrix")], log="quorrix.log",
            **{**self.more_environment, "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
               MARK: self.folder})

    def start_and_wait(self):
        """Starts the program if necessary, and waits until its start-up windows are closed."""
        if self.process is None:
            self.start()
        if not self._is_ready:
            wait_until(lambda: self.shows_text(READY), self._state, 20)
            wait_until(lambda: len(self.windows()) == 1, "the wait window to close")
            self._is_ready = True

    def close_window(self):
        self.main_window().close()

    def exit_status(self, seconds=5):
        """Waits for the program to end."""
        wait_until(lambda: self.process.poll() is not None, "the program to end", seconds)
        return self.process.returncode

    def is_running(self):
        return self.process.poll() is None

    def processes(self):
        """IDs of the program's process and of all its descendants, including orphaned ones."""
        return processes.with_environment(MARK, self.folder)

    def end(self):
        if self.process:
            processes.end_family(self.process)
        if self.bus:
            self.bus.close()

    def _state(self):
        if not self.is_running():
            return f"the program, which ended with {self.process.returncode}: " \
                   f"{self.session.log('quorrix.log')[-2000:]}"
        return f"the program to be ready; windows {[w.title for w in self.windows()]}"

    # --- windows, from the display ---------------------------------------------------------------

    def windows(self):
        return self.session.screen.windows_of([self.process.pid])

    def main_window(self):
        for window in self.windows():
            if window.title == "Quorrix" or window.title.startswith("Quorrix - "):
                return window
        raise NotThere(f"no main window among {[w.title for w in self.windows()]}")

    def caption(self):
        return self.main_window().title

    # --- controls, from the accessibility bus ----------------------------------------------------

    def application(self):
        """The program's object on the bus; waits until the program has registered itself."""
        if self._application is None:
            self._application = wait_until(self._find_application, "the program on the bus")
        return self._application

    def _find_application(self):
        try:
            if self.bus is None:
                self.bus = AccessibilityBus(self.session)
            return self.bus.application_of(self.process.pid)
        except GLib.Error:
            return None

    def frame(self):
        for window in self.application().children():
            if window.role == "frame" and window.name.startswith("Quorrix"):
                return window
        raise NotThere("no main window on the bus")

    def texts(self):
        """Names of all labels that the main window shows, including the status bar's panels."""
        return [thing.name for thing in self.frame().everything_below()
                if thing.role == "label" and thing.has_state(STATE_SHOWING)]

    def shows_text(self, text):
        if not self.is_running():
            raise AssertionError(self._state())
        try:
            return text in self.texts()
        except (GLib.Error, NotThere, TimedOut):
            return False  # Not there yet.

    def wait_for_text(self, text):
        wait_until(lambda: self.shows_text(text), lambda: f"{text!r}; shown are {self.texts()}")

    def tree(self):
        """Texts of the tree's rows from top to bottom, without rows of collapsed branches."""
        return [row.name for row in self.tree_rows()]

    def tree_rows(self):
        return [row for row in self.frame().find("tree").children() if row.role == "tree item"]

    def selected_rows(self):
        return [row.name for row in self.tree_rows() if row.has_state(STATE_SELECTED)]

    def wait_for_tree(self, *rows):
        wait_until(lambda: self.tree() == list(rows),
                   lambda: f"the rows {rows}; there are {self.tree()}")

    def wait_for_caption(self, caption):
        wait_until(lambda: self.caption() == caption,
                   lambda: f"the caption {caption!r}; it is {self.caption()!r}")

    def click_row(self, text, button=1):
        """Clicks a row of the tree with the mouse."""
        row = next(row for row in self.tree_rows() if row.name == text)
        x, y, width, height = row.extents()
        window_x, window_y, _width, _height = self.frame().extents()
        self.main_window().click(x - window_x + width // 2, y - window_y + height // 2, button)

    def choose(self, *captions):
        """Chooses a menu entry by its path of captions, without their mnemonics."""
        self.menu_entry(*captions).press()

    def menu_entry(self, *captions):
        entry = self.frame().find("menu bar")
        for caption in captions:
            entry = entry.find("menu item", caption)
            if entry is None:
                raise NotThere(f"no menu entry {' > '.join(captions)}")
        return entry

    def notice(self):
        """The notice about browsers that cannot be read, or None. Its name is its text."""
        strip = self.frame().find("notification")
        return strip if strip and strip.has_state(STATE_SHOWING) else None

    def notice_text(self):
        strip = self.notice()
        return strip and strip.name

    def wait_for_notice(self, text, seconds):
        """Waits for the notice with that text, or for no notice if `text` is None."""
        wait_until(lambda: self.notice_text() == text,
                   lambda: f"the notice {text!r}; it is {self.notice_text()!r}", seconds)

    def start_tracking(self):
        self.choose("File", "Start Tracking")
        self.wait_for_text(TRACKING)

    def stop_tracking(self):
        self.choose("File", "Stop Tracking")
        self.wait_for_text(STOPPED)

    def message(self):
        """The text of the open message box, or None."""
        box = self._message_box()
        if box is None:
            return None
        # A box without an icon has an empty label instead of the icon.
        return next((thing.name for thing in box.everything_below()
                     if thing.role == "label" and thing.name), None)

    def wait_for_message(self):
        return wait_until(self._message_if_any, "a message box")

    def _message_if_any(self):
        try:
            return self.message()
        except GLib.Error:
            return None

    def message_title(self):
        return self._message_box().name

    def message_has_keyboard(self):
        box = self._message_box()
        return any(thing.role == "push button" and thing.has_state(STATE_FOCUSED)
                   for thing in box.everything_below())

    def confirm_message(self):
        self.answer_message("OK")

    def answer_message(self, button):
        self._message_box().find("push button", button).press()
        wait_until(lambda: not self._message_if_any(), "the message box to close")

    def answer_message_before(self, button, following):
        """Presses a button in a message box that another one follows, and waits for that message.
        It may appear before the tests can see that the first box has closed."""
        self._message_box().find("push button", button).press()
        wait_until(lambda: self._message_if_any() == following, f"the message {following!r}")

    def answer_message_with_key(self, key):
        wait_until(self.message_has_keyboard, "the message box to be active")
        self.session.screen.press(key)
        wait_until(lambda: not self._message_if_any(), "the message box to close")

    def _message_box(self):
        for window in self.application().children():
            if window.role == "alert message" and window.has_state(STATE_SHOWING):
                return window
        return None

    # --- data ------------------------------------------------------------------------------------

    @property
    def data_folder(self):
        return os.path.join(self.folder, "Data")

    @property
    def site_file(self):
        return os.path.join(self.data_folder, "nodes.dat")

    def records(self):
        return read_records(self.site_file)

    def addresses_and_flags(self):
        return [(record.address, record.flag) for record in self.records()]

    def stamps(self):
        return [(record.address, record.stamp) for record in self.records()]

    def record_of(self, address):
        for record in self.records():
            if record.address == address:
                return record
        return None
