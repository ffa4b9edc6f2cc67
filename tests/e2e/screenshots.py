#!/usr/bin/python3
"""Makes the pictures of the dialogs: screenshots.py PROGRAM_FOLDER OUTPUT_FOLDER

Starts a copy of the program in PROGRAM_FOLDER in a private session, with a few sites in the tree,
fills in each dialog as a user would, and saves a picture of it in OUTPUT_FOLDER.
"""

import os
import sys

from support import processes
from support.quorrix import Quorrix, make_program_folder
from support.record_dialog import RecordDialog
from support.session import PrivateSession
from support.waiting import wait_until

SITE = "shop.lantern.example"

SITES = (("shop.lantern.example", "S", "11/21/26 4:05:00 PM"),
         ("www.lantern-makers.example/history", "N", "11/3/26 8:52:10 AM"),
         ("www.garden.example/roses/climbing", "S", "11/14/26 9:30:12 AM"),
         ("www.garden.example/roses/pruning", "S", "11/14/26 9:34:48 AM"),
         ("www.garden.example/herbs/thyme", "S", "11/14/26 9:41:03 AM"),
         ("news.harbour.example", "S", "11/12/26 7:15:33 PM"),
         ("news.harbour.example/today/tides", "S", "11/12/26 7:16:02 PM"),
         ("news.harbour.example/today/ferries", "S", "11/12/26 7:18:40 PM"),
         ("www.lantern-makers.example/guild", "N", "11/3/26 9:02:41 AM"),
         ("maps.valley.example/walks/old-mill", "S", "11/8/26 2:20:19 PM"),
         ("maps.valley.example/walks/river-path", "S", "11/8/26 2:24:55 PM"))


def site_record(address, flag, stamp):
    return (address.ljust(300) + flag + (stamp + "~").ljust(21)).encode("ascii")


SITE_FILE = b"".join(site_record(*site) for site in SITES)

NOTES = "Brass lanterns are at the back of the catalogue.\n" \
        "Orders before noon leave the same day."

USER_ID_PASSWORD = (("User ID", "anna"), ("Password", "tulip7"))

SEARCH = (("Website address contains", "lantern"), ("Month", "11"), ("Day", "1"),
          ("Year", "2026"))

PURCHASES = (
    (("Item", "Brass lantern"), ("Price", "48.00"), ("Quantity", "1"), ("Payment Method", "Card"),
     ("Description", "For the porch"), ("Date", "11/3/26 9:14:27 AM")),
    (("Item", "Lamp oil"), ("Price", "6.50"), ("Quantity", "3"), ("Payment Method", "Card"),
     ("Description", "Without scent"), ("Date", "11/12/26 6:40:02 PM")),
    (("Item", "Spare wicks"), ("Price", "3.20"), ("Quantity", "10"),
     ("Payment Method", "Bank transfer"), ("Description", "Flat, half an inch.\nFit both lanterns."),
     ("Date", "11/21/26 4:05:00 PM")),
)


# The archive dialogs show full paths. So the program runs in a folder where a reader might keep it,
# in a /home that only the program sees.
SHOWN_FOLDER = "/home/anna/Quorrix"
AT_HOME = ["unshare", "--user", "--map-current-user", "--keep-caps", "--mount",
           "--propagation", "private", "sh", "-c",
           f"mount -t tmpfs home /home && mkdir -p {SHOWN_FOLDER} && "
           f"cp -a \"$(dirname \"$1\")/.\" {SHOWN_FOLDER} && exec {SHOWN_FOLDER}/Quorrix",
           "sh"]

ARCHIVES = ("2024", "2025", "Garden plans", "Spring 2026")
ARCHIVE_FILES = ("info.dat", "nodes.dat", "notes.dat", "purchases.dat")


def main(program_folder, output_folder):
    processes.become_their_keeper()
    session = PrivateSession()
    try:
        quorrix = Quorrix(session, make_program_folder(os.path.join(program_folder, "Quorrix")))
        quorrix.launcher = AT_HOME
        with open(quorrix.site_file, "wb") as file:
            file.write(SITE_FILE)
        for archive in ARCHIVES:
            given_an_archive(os.path.join(quorrix.folder, "Archives", archive))
        quorrix.start_and_wait()
        os.makedirs(output_folder, exist_ok=True)
        Photographer(quorrix, output_folder).take_all()
        quorrix.close_window()
        if quorrix.exit_status() != 0:
            raise RuntimeError(f"the program ended with status {quorrix.exit_status()}")
    finally:
        session.close()


def given_an_archive(folder):
    os.makedirs(folder)
    for name in ARCHIVE_FILES:
        with open(os.path.join(folder, name), "wb") as file:
            file.write(SITE_FILE if name == "nodes.dat" else b"")


class OpenWindow:
    """Waits until the window with that title has the focus."""

    def __init__(self, quorrix, title):
        self.quorrix = quorrix
        self.title = title
        wait_until(lambda: self.window() and self.window().is_active(), f"the window {title!r}")

    def window(self):
        return next((window for window in self.quorrix.windows() if window.title == self.title),
                    None)


class Photographer:
    def __init__(self, quorrix, folder):
        self.quorrix = quorrix
        self.folder = folder

    def take_all(self):
        self._main_window()
        self._keep("Notes", (("Notes", NOTES),), "notes.png")
        self._keep("User ID, Password", USER_ID_PASSWORD, "user-id-and-password.png")
        for purchase in PURCHASES[:-1]:
            self._keep("New Purchase", purchase)
        self._keep("New Purchase", PURCHASES[-1], "new-purchase.png")
        dialog = self._open("Purchases")
        dialog.click_entry(1)
        self._take(dialog, "purchases.png")
        dialog.close_with("Cancel")
        self._search()
        self._archives()
        self._help()

    def _main_window(self):
        self.quorrix.click_row("www", 1)
        self.quorrix.session.screen.press("asterisk")
        wait_until(lambda: "river-path" in self.quorrix.tree(), "the whole tree")
        self.quorrix.click_row("climbing", 1)
        self._take(OpenWindow(self.quorrix, "Quorrix - www.garden.example/roses/climbing"),
                   "main-window.png")
        self.quorrix.click_row("www", 1)
        self.quorrix.session.screen.press("Left", "Right")

    def _help(self):
        self.quorrix.choose("Help", "Help")
        help_window = OpenWindow(self.quorrix, "Quorrix Help")
        self._take(help_window, "help.png")
        self.quorrix.session.screen.press("Escape")
        self.quorrix.main_window().use()
        self.quorrix.choose("Help", "About Quorrix")
        about = RecordDialog(self.quorrix, "About Quorrix")
        self._take(about, "about.png")
        about.close_with("OK")

    def _archives(self):
        archive = self._open_archive_dialog("a", "Archive Sites")
        archive.press_button("New")
        new = RecordDialog(self.quorrix, "New Archive")
        new.type_into("Name of the new folder", "Autumn 2026")
        self._take(new, "new-archive.png")
        new.close_with("Cancel")
        self._take(archive, "archive-sites.png")
        archive.close_with("Cancel")
        for key, caption, picture in (("l", "Load Sites Archive", "load-sites-archive.png"),
                                      ("d", "Delete Sites Archive", "delete-sites-archive.png")):
            dialog = self._open_archive_dialog(key, caption)
            folders = dialog.entries_of("Folder")
            dialog.double_click_entry("Folder", folders.index("Spring 2026"))
            wait_until(lambda: dialog.entries_of("Files") == list(ARCHIVE_FILES), "the archive")
            self._take(dialog, picture)
            dialog.close_with("Cancel")

    def _open_archive_dialog(self, key, caption):
        self.quorrix.main_window().use()
        self.quorrix.session.screen.press("alt+f", "r", key)
        return RecordDialog(self.quorrix, caption)

    def _search(self):
        self.quorrix.choose("File", "Search Display...")
        search = RecordDialog(self.quorrix, "Search Display")
        search.choose_option("Site address and date")
        for box, text in SEARCH:
            search.type_into(box, text)
        self._take(search, "search.png")
        search.close_with("OK")
        results = RecordDialog(self.quorrix, "Search Results")
        results.click_entry(1)
        self._take(results, "search-results.png")
        results.close_with("Cancel")

    def _keep(self, name, texts, picture=None):
        """Fills in a dialog, takes a picture if `picture` is given, and saves."""
        dialog = self._open(name)
        for box, text in texts:
            dialog.type_into(box, text)
        if picture:
            self._take(dialog, picture)
        dialog.close_with("OK")

    def _open(self, name):
        return RecordDialog.open(self.quorrix, SITE, name + "...", f"{name} - {SITE}")

    def _take(self, dialog, name):
        """Takes a picture of the dialog's window, including its frame."""
        path = os.path.join(self.folder, name)
        self.quorrix.session.screen.save_picture(path, dialog.window())
        print(path)


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit("Usage: screenshots.py PROGRAM_FOLDER OUTPUT_FOLDER")
    try:
        main(sys.argv[1], sys.argv[2])
    except Exception as failure:  # The user gets a sentence for any failure.
        sys.exit(f"The pictures were not made: {failure}")
