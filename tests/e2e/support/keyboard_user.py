"""A user who operates the program with the keyboard only and sees the titles of its windows.

This works the same for the program of this system and for the Windows program under Wine, so both
can be taken through the same steps.
"""

import os

from support.screen import ResponseWatch
from support.waiting import wait_until

ENTRIES_BEFORE_NOTES = 3  # of the popup menu


class KeyboardUser:
    def __init__(self, quorrix):
        """The program must be running, with only its main window open."""
        self.quorrix = quorrix
        self.screen = quorrix.session.screen
        self._main_number = quorrix.main_window().number

    # --- windows ---------------------------------------------------------------------------------

    def wait_for_window(self, title):
        """Waits for a window with that title other than the main window, and gives it the focus. It
        may lack the focus under Wine after the window in front of it has closed."""
        window = wait_until(lambda: self._open(title),
                            lambda: f"the window {title!r}; open are {self._titles()}")
        self._use(window)
        return window

    def _use(self, window):
        """Returns when typed text reaches the window: it answers only once it has the focus."""
        window.use()
        with ResponseWatch(window):
            pass

    def wait_for_main_window(self):
        wait_until(lambda: len(self.quorrix.windows()) == 1,
                   lambda: f"the main window alone; open are {self._titles()}")

    def _open(self, title):
        return next((window for window in self.quorrix.windows() if window.title == title
                     and window.number != self._main_number), None)

    def _titles(self):
        return [window.title for window in self.quorrix.windows()]

    # --- the main window -------------------------------------------------------------------------

    def choose(self, *keys):
        """Chooses an entry of the File menu by the letters that lead to it."""
        self._use(self.quorrix.main_window())
        self.screen.press("alt+f", *keys)

    def start_tracking(self):
        self.choose("t")

    def stop_tracking(self):
        self.choose("s")

    def select_host(self, number):
        """Selects a host by its number, counted from 1, in the order of first visits."""
        self._use(self.quorrix.main_window())
        self.screen.press("Home", *["Down"] * number)

    def open_all_branches(self):
        self._use(self.quorrix.main_window())
        self.screen.press("Home", "asterisk", "Home")

    def open_notes(self, key):
        """Opens the notes of the selected site, whose key is `key`."""
        self.screen.press("Menu")
        self.quorrix.wait_for_caption(f"Quorrix - {key}")
        self.screen.press(*["Down"] * (ENTRIES_BEFORE_NOTES + 1), "Return")
        self.wait_for_window(f"Notes - {key}")

    def write_notes(self, text):
        self.screen.type(text)
        self.screen.press("Tab", "Return")
        self.wait_for_main_window()

    # --- message boxes ---------------------------------------------------------------------------

    def confirm_question(self):
        """Presses OK in a question with OK and Cancel, where Cancel has the focus."""
        box = self.wait_for_window("Quorrix")
        self.screen.press("Tab", "space")
        self._wait_until_gone(box)

    def confirm_news(self):
        box = self.wait_for_window("Quorrix")
        self.screen.press("space")
        self._wait_until_gone(box)

    def _wait_until_gone(self, gone):
        wait_until(lambda: gone.number not in [window.number for window in self.quorrix.windows()],
                   lambda: f"the window {gone.title!r} to close")

    # --- archives --------------------------------------------------------------------------------

    def archive_into_new_folder(self, name, drive_letter=None):
        self.make_archive_folder(name, drive_letter)
        self.confirm_archiving()
        self.confirm_news()
        self.wait_for_main_window()

    def open_new_archive(self, drive_letter=None):
        self.choose("r", "a")
        self.wait_for_window("Archive Sites")
        self._choose_drive(drive_letter)
        self.screen.press("shift+Tab", "space")  # from the first control to the last one, New
        self.wait_for_window("New Archive")

    def make_archive_folder(self, name, drive_letter=None):
        self.open_new_archive(drive_letter)
        self.type_over(name)
        self.screen.press("Return")
        self.confirm_question()
        self.wait_for_window("Archive Sites")

    def confirm_archiving(self):
        """Presses OK, which has the focus once a new folder is made, and confirms the question."""
        self.screen.press("space")
        self.confirm_question()

    def type_over(self, text):
        """Replaces the text of the box that has the focus."""
        self.screen.press("ctrl+a", "BackSpace")
        self.screen.type(text)

    def load_archive(self, name, drive_letter=None):
        self.choose("r", "l")
        self.wait_for_window("Load Sites Archive")
        self._choose_drive(drive_letter)
        self.screen.press("Tab", name[0], "Return")  # in the list of folders
        self.screen.press("Tab", "Tab", "Tab", "space")  # past files and path to OK
        last_archive = self._bytes_of("load.txt")
        self.confirm_question()
        # load.txt is written last, when only the main window is still open.
        wait_until(lambda: self._bytes_of("load.txt") != last_archive, "load.txt to tell of it")

    def _choose_drive(self, letter):
        """The folder list has the focus when a dialog opens; the drive list precedes it."""
        self.screen.press("shift+Tab")
        if letter:
            self.screen.press(letter)

    # --- search and deletion ---------------------------------------------------------------------

    def search(self, text):
        self.choose("p")
        self.wait_for_window("Search Display")
        self.screen.type(text)
        self.screen.press("Return")

    def locate_first_result(self):
        self.wait_for_window("Search Results")
        self.screen.press("Home", "Return")

    def delete_selected(self):
        sites = self._bytes_of("nodes.dat")
        self.choose("d")
        self.confirm_question()
        wait_until(lambda: self._bytes_of("nodes.dat") != sites, "the site to be deleted")

    def _bytes_of(self, name):
        with open(os.path.join(self.quorrix.data_folder, name), "rb") as file:
            return file.read()
