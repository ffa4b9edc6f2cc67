"""Archiving the display, loading an archive, and deleting it, as a user does it."""

import os
import subprocess
import unittest

from support.record_dialog import RecordDialog
from support.scenario import QuorrixTest
from support.waiting import wait_until

GARDEN_SITE = b"www.garden.example/roses" + b" " * 276 + b"N" + b"3/14/26 10:00:00 AM~ "
HARBOUR_SITE = b"news.harbour.example" + b" " * 280 + b"S" + b"11/3/25 1:00:00 PM~  "
SITES = GARDEN_SITE + HARBOUR_SITE
NOTES = b"news.harbour.example" + b" " * 280 + b"Ask for Anna" + b" " * 1012
USERS = b"news.harbour.example" + b" " * 280 + b"anchor" + b" " * 24 + b"anna" + b" " * 26
PURCHASES = (b"www.garden.example/roses" + b" " * 276 + b"3/14/26 10:00:00 AM~" + b" " * 5
             + b"24.50~" + b" " * 6 + b"Card~" + b" " * 45 + b"Shears~" + b" " * 43
             + b"~" + b" " * 99 + b"1~" + b" " * 3)
DATA = {"nodes.dat": SITES, "notes.dat": NOTES, "info.dat": USERS, "purchases.dat": PURCHASES}
NOTHING = dict.fromkeys(DATA, b"")

# Blanks, markup, Qt's placeholder for a modified window, a mnemonic, and a non-ASCII letter.
NAME = "M\u00e4y <b> [*] & 'x'"

# A USB stick of two megabytes at /media/stick, visible only to a program that is started this way.
A_STICK = ["unshare", "--user", "--map-current-user", "--keep-caps", "--mount",
           "--propagation", "private", "sh", "-c",
           "mount -t tmpfs quorrix-test /media && mkdir /media/stick && "
           "mount -t tmpfs -o size=2m quorrix-test /media/stick && exec \"$@\"", "sh"]

STOP_FIRST = "You must stop tracking websites before using this feature."


class ArchiveTest(QuorrixTest):
    """Some sites with their records, and methods for the archive dialogs."""

    launcher = []

    def setUp(self):
        super().setUp()
        for name, content in DATA.items():
            self.given_bytes(name, content)
        self.quorrix.launcher = self.launcher
        self.given_the_program()
        self.archives = os.path.join(self.folder, "Archives")
        self.archive = os.path.join(self.archives, NAME)

    def open(self, key, caption):
        self.use_archive_menu(key)
        return RecordDialog(self.quorrix, caption)

    def use_archive_menu(self, key):
        self.quorrix.main_window().use()
        self.session.screen.press("alt+f", "r", key)

    def answer(self, expected, button="OK"):
        self.assertEqual(expected, self.quorrix.wait_for_message())
        self.quorrix.answer_message(button)

    def answer_both(self, first, second):
        self.assertEqual(first, self.quorrix.wait_for_message())
        self.quorrix.answer_message_before("OK", second)
        self.quorrix.confirm_message()

    def make_archive_folder(self, dialog):
        dialog.press_button("New")
        new = RecordDialog(self.quorrix, "New Archive")
        new.insert_into("Name of the new folder", NAME)
        new.press_button("OK")
        self.answer(f"Create new archive folder '{NAME}' in '{self.archives}'?")
        new.wait_until_closed()
        wait_until(lambda: dialog.text_of("Archive folder") == self.archive, "the new folder")

    def choose_drive(self, dialog, drive):
        dialog.choose_drive(drive)
        wait_until(lambda: dialog.text_of("Archive folder") == drive, f"the folder list on {drive}")

    def choose_archive(self, dialog):
        folders = dialog.entries_of("Folder")
        row = next(i for i, name in enumerate(folders) if name.strip() == NAME)
        dialog.double_click_entry("Folder", row)
        wait_until(lambda: dialog.text_of("Archive folder") == self.archive, "the archive")

    def files_of(self, folder):
        return {name: self.bytes_in(folder, name) for name in DATA
                if os.path.exists(os.path.join(folder, name))}

    @staticmethod
    def bytes_in(folder, name):
        with open(os.path.join(folder, name), "rb") as file:
            return file.read()

    def last_archive(self):
        return self.bytes_in(self.quorrix.data_folder, "load.txt")

    def archive_display(self):
        dialog = self.open("a", "Archive Sites")
        self.make_archive_folder(dialog)
        self.confirm_archiving(dialog)

    def confirm_archiving(self, dialog):
        dialog.press_button("OK")
        self.answer_both(f"Archive current display and associated data to '{self.archive}'?",
                         f"Data successfully archived to '{self.archive}'.")
        dialog.wait_until_closed()

    def load_back(self, dialog):
        self.choose_archive(dialog)
        dialog.press_button("OK")
        self.answer(f"Load archive data from '{self.archive}'?")
        dialog.wait_until_closed()
        self.quorrix.wait_for_tree("www", "www.garden.example", "news.harbour.example")
        self.assertEqual(DATA, self.files_of(self.quorrix.data_folder))
        self.assertEqual(self.archive.encode() + b"\r\n", self.last_archive())


class Archives(ArchiveTest):
    def test_a_display_goes_into_a_new_folder_and_comes_back(self):
        self.archive_display()
        self.assertEqual(DATA, self.files_of(self.archive))
        self.assertEqual(NOTHING, self.files_of(self.quorrix.data_folder))
        self.assertEqual(b"none\r\n", self.last_archive())
        self.assertEqual(["www"], self.quorrix.tree())
        self.quorrix.wait_for_text("Last archive loaded: none")

        self.restart()
        self.quorrix.wait_for_text("Last archive loaded: none")
        self.assertEqual(["www"], self.quorrix.tree())

        dialog = self.open("l", "Load Sites Archive")
        self.load_back(dialog)
        self.assertEqual(DATA, self.files_of(self.archive))
        self.quorrix.wait_for_text(f"Last archive loaded: {self.archive}")

    def test_deleting_an_archive_leaves_what_is_not_its_own(self):
        self.archive_display()
        readme = os.path.join(self.archive, "readme.txt")
        with open(readme, "wb") as file:
            file.write(b"mine")
        dialog = self.open("d", "Delete Sites Archive")
        self.choose_archive(dialog)
        dialog.press_button("OK")
        self.answer_both(f"Delete archive '{self.archive}'?",
                         f"Archive files in '{self.archive}' successfully deleted.")
        dialog.wait_until_closed()
        self.assertEqual(["readme.txt"], os.listdir(self.archive))
        self.assertEqual(NOTHING, self.files_of(self.quorrix.data_folder))

    def test_cancel_changes_nothing(self):
        dialog = self.open("a", "Archive Sites")
        dialog.press_button("OK")
        self.answer(f"Archive current display and associated data to '{self.archives}'?", "Cancel")
        dialog.press_key("Escape")
        dialog.wait_until_closed()
        self.assertEqual([], os.listdir(self.archives))
        self.assertEqual(DATA, self.files_of(self.quorrix.data_folder))

    def test_a_folder_without_sites_is_no_archive(self):
        dialog = self.open("l", "Load Sites Archive")
        dialog.press_button("OK")
        self.answer_both(f"Load archive data from '{self.archives}'?",
                         "Folder does not contain a critical archive file. The folder must "
                         "contain at least 'nodes.dat'. Canceling operation.")
        dialog.press_key("Escape")
        dialog.wait_until_closed()
        self.assertEqual(DATA, self.files_of(self.quorrix.data_folder))

    def test_a_folder_that_cannot_be_made_is_told_and_changes_nothing(self):
        dialog = self.open("a", "Archive Sites")
        dialog.press_button("New")
        new = RecordDialog(self.quorrix, "New Archive")
        for name, reason in (("..", "Path/file access error."), ("no/May", "Path not found."),
                             ("x" * 256, "Path/file access error.")):
            new.clear("Name of the new folder")
            new.insert_into("Name of the new folder", name)
            new.press_button("OK")
            self.answer_both(f"Create new archive folder '{name}' in '{self.archives}'?",
                             f"Unable to create new archive. {reason}")
        new.close_with("Cancel")
        self.assertEqual(self.archives, dialog.text_of("Archive folder"))
        dialog.close_with("Cancel")
        self.assertEqual([], os.listdir(self.archives))
        self.assertEqual(DATA, self.files_of(self.quorrix.data_folder))

    def test_what_a_crash_while_emptying_left_can_be_archived_after_the_next_start(self):
        for name in ("notes.dat", "info.dat", "purchases.dat"):
            os.remove(os.path.join(self.quorrix.data_folder, name))
        self.restart()
        self.archive_display()
        self.assertEqual({**NOTHING, "nodes.dat": SITES}, self.files_of(self.archive))
        self.assertEqual(NOTHING, self.files_of(self.quorrix.data_folder))

    def test_all_three_are_refused_while_tracking(self):
        self.quorrix.start_tracking()
        for key in ("a", "l", "d"):
            self.use_archive_menu(key)
            self.answer(STOP_FIRST)
        self.quorrix.stop_tracking()


@unittest.skipUnless(os.geteuid() == 0, "only root sees what else the program has mounted")
@unittest.skipUnless(subprocess.run([*A_STICK, "true"], stderr=subprocess.DEVNULL).returncode == 0,
                     "this system permits no mount of a small file system")
class ArchivesOnAnotherVolume(ArchiveTest):
    launcher = A_STICK

    def setUp(self):
        super().setUp()
        self.archives = "/media/stick"
        self.archive = os.path.join(self.archives, NAME)

    def files_on_the_stick(self):
        return self.files_of(f"/proc/{self.quorrix.process.pid}/root{self.archive}")

    def test_a_display_goes_onto_a_stick_and_comes_back(self):
        dialog = self.open("a", "Archive Sites")
        self.choose_drive(dialog, "/media/stick")
        self.make_archive_folder(dialog)
        self.confirm_archiving(dialog)
        self.assertEqual(DATA, self.files_on_the_stick())
        self.assertEqual(NOTHING, self.files_of(self.quorrix.data_folder))

        dialog = self.open("l", "Load Sites Archive")
        self.choose_drive(dialog, "/media/stick")
        self.load_back(dialog)
        self.assertEqual(DATA, self.files_on_the_stick())


if __name__ == "__main__":
    unittest.main()
