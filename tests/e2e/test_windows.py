"""Tests the complete Windows program under Wine. The same steps must write the same bytes as in the
Linux program."""

import os
import shutil
import unittest
from datetime import datetime, timedelta

from support.browsers import Chromium
from support.keyboard_user import KeyboardUser
from support.quorrix import Quorrix, make_program_folder
from support.scenario import HOME, private_session, tell, web_site
from support.screen import ResponseWatch
from support.site_file import ADDRESS_BYTES, RECORD_BYTES, read_record, time_of
from support.waiting import wait_until
from support.wine import PROGRAM_FOLDER, TestBrowser, WindowsQuorrix, Wine

NAMES = ("nodes.dat", "notes.dat", "info.dat", "purchases.dat")

VISITS = ("http://www.garden.example/roses/climbing.html",
          "http://news.harbour.example/today",
          "https://www.secure.example/account",
          "http://www.garden.example/herbs")

# Replaces each stamp once its format and time are checked. It has 21 bytes, the width of the field.
STAMP = b"M/D/YY H:MM:SS XM~   "


def record(address, flag, stamp=STAMP):
    return address + b" " * (ADDRESS_BYTES - len(address)) + flag + stamp


NO_ADDRESS = b" " * ADDRESS_BYTES
GARDEN_KEY = b"www.garden.example" + b" " * 282
SITES = (record(b"www.garden.example/roses/climbing.html", b"N")
         + record(b"news.harbour.example/today", b"N")
         + record(b"www.secure.example/account", b"S")
         + record(b"www.garden.example/herbs", b"N"))
SITES_WITHOUT_HARBOUR = SITES[:RECORD_BYTES] + b" " * RECORD_BYTES + SITES[2 * RECORD_BYTES:]
NOTES = GARDEN_KEY + b"Water the roses" + b" " * 1009
EMPTY = dict.fromkeys(NAMES, b"")
FULL = {**EMPTY, "nodes.dat": SITES, "notes.dat": NOTES}

_desk = {}


def wine():
    """Returns the Wine prefix that all tests share, because creating one takes seconds."""
    if not _desk:
        _desk["wine"] = Wine(private_session())
    return _desk["wine"]


def setting(name):
    value = os.environ.get(name)
    if not value:
        raise RuntimeError(f"{name} must be set")
    return value


def without_stamps(name, data, began):
    """Returns `data`. In nodes.dat, each stamp is replaced by STAMP; a stamp from before `began` or
    from the future fails the test."""
    if name != "nodes.dat":
        return data
    records = [data[start:start + RECORD_BYTES] for start in range(0, len(data), RECORD_BYTES)]
    plain = b""
    for one in records:
        if one.startswith(NO_ADDRESS):
            plain += one
            continue
        stamped = time_of(read_record(one).stamp)
        if not began <= stamped <= datetime.now() + timedelta(seconds=1):
            raise AssertionError(f"stamped {stamped}, and the test began {began}")
        plain += one[:ADDRESS_BYTES + 1] + STAMP
    return plain


class Journey:
    """Runs the same user steps in one program and keeps the data files after each step."""

    def __init__(self, quorrix, visit, archive, drive_letter=None):
        self.quorrix = quorrix
        self.user = KeyboardUser(quorrix)
        self.visit = visit
        self.archive = archive  # the path of the archive's files on this system
        self.drive_letter = drive_letter
        self.began = datetime.now().replace(microsecond=0)
        self.seen = {}

    def make(self):
        self.user.start_tracking()
        for url in VISITS:
            self.visit(url)
        self.user.stop_tracking()
        self._look("tracked")

        self.user.select_host(1)
        self.user.open_notes("www.garden.example")
        self.user.write_notes("Water the roses")
        self._look("noted")

        self.user.archive_into_new_folder("May", self.drive_letter)
        self._look("archived")

        self.user.load_archive("May", self.drive_letter)
        self._look("loaded")

        self.user.search("HARBOUR")
        self.user.locate_first_result()
        self.quorrix.wait_for_caption("Quorrix - news.harbour.example/today")
        self.user.wait_for_window("Search Results")
        self.user.screen.press("Escape")
        self.user.wait_for_main_window()
        self._look("searched")

        self.user.delete_selected()
        self._look("deleted")
        return self.seen

    def _look(self, step):
        """Stores the files' contents. Call it after the step's last window has closed: by then the
        step has written everything."""
        folders = {"Data": self.quorrix.data_folder, "archive": self.archive}
        self.seen[step] = {
            f"{place}/{name}": without_stamps(name, bytes_in(folder, name), self.began)
            for place, folder in folders.items() for name in NAMES
            if os.path.exists(os.path.join(folder, name))}


def bytes_in(folder, name):
    with open(os.path.join(folder, name), "rb") as file:
        return file.read()


def in_data(files):
    return {f"Data/{name}": data for name, data in files.items()}


def in_archive(files):
    return {f"archive/{name}": data for name, data in files.items()}


class WindowsTest(unittest.TestCase):
    def setUp(self):
        self.session = private_session()
        self.wine = wine()
        for entry in os.listdir(self.wine.second_drive):
            shutil.rmtree(os.path.join(self.wine.second_drive, entry))
        self.quorrix = self.windows_quorrix()

    def windows_quorrix(self):
        quorrix = WindowsQuorrix(self.wine, setting("QUORRIX_INSTALLED"))
        self.addCleanup(quorrix.end)
        return quorrix

    def linux_quorrix(self):
        quorrix = Quorrix(self.session, make_program_folder(setting("QUORRIX_NATIVE_PROGRAM")))
        self.addCleanup(quorrix.end)
        return quorrix

    def given_a_browser(self):
        browser = TestBrowser(self.wine, setting("QUORRIX_TEST_BROWSER"))
        self.addCleanup(browser.close)
        browser.start()
        return browser

    def close(self, quorrix):
        quorrix.close_window()
        self.assertEqual(0, quorrix.exit_status())

    def tearDown(self):
        result = self._outcome.result
        folder = os.environ.get("QUORRIX_EVIDENCE")
        if folder and self in [test for test, _ in result.failures + result.errors]:
            os.makedirs(folder, exist_ok=True)
            self.session.screen.save_picture(os.path.join(folder, self.id() + ".png"))


class StartedAgain(WindowsTest):
    def test_a_second_start_shows_the_open_window(self):
        self.quorrix.start_and_wait()
        window = self.quorrix.main_window()
        window.minimise()
        again = self.wine.start(PROGRAM_FOLDER + "\\Quorrix.exe")
        wait_until(lambda: again.poll() is not None, "the later start to end", 30)
        self.assertEqual(0, again.returncode)
        wait_until(lambda: not window.is_minimised(), "the window to come up")
        wait_until(window.is_active, "the window to have the keyboard")
        self.assertEqual([window.number], [each.number for each in self.quorrix.windows()])
        self.close(self.quorrix)


class SameSteps(WindowsTest):
    def test_write_the_same_bytes_on_both_systems(self):
        there = self.journey_on_windows()
        here = self.journey_on_linux()
        self.assertEqual({**in_data(EMPTY), "Data/nodes.dat": SITES}, there["tracked"])
        self.assertEqual(in_data(FULL), there["noted"])
        self.assertEqual({**in_data(EMPTY), **in_archive(FULL)}, there["archived"])
        self.assertEqual({**in_data(FULL), **in_archive(FULL)}, there["loaded"])
        self.assertEqual(there["loaded"], there["searched"])
        self.assertEqual({**in_data(FULL), **in_archive(FULL),
                          "Data/nodes.dat": SITES_WITHOUT_HARBOUR}, there["deleted"])
        self.assertEqual(list(here), list(there))
        for step, files in here.items():
            self.assertEqual(files, there[step], step)

    def journey_on_windows(self):
        browser = self.given_a_browser()
        self.quorrix.start_and_wait()
        delays = []

        def visit(url):
            browser.type_address(url)
            began = datetime.now()
            browser.press("Return" if url != VISITS[1] else "F5")
            self.wait_for_record_of(self.quorrix, url)
            delays.append(datetime.now() - began)
            browser.press("Escape")

        archive = os.path.join(self.wine.second_drive, "May")
        seen = Journey(self.quorrix, visit, archive, drive_letter="d").make()
        self.assertEqual(b"D:\\May\r\n", bytes_in(self.quorrix.data_folder, "load.txt"))
        tell(f"Windows: {max(delays).total_seconds() * 1000:.0f} ms from key to record at most")
        self.close(self.quorrix)
        return seen

    def journey_on_linux(self):
        self.session.switch_accessibility(True)
        quorrix = self.linux_quorrix()
        browser = Chromium(self.session, web_site())
        self.addCleanup(browser.close)
        browser.start(HOME)
        quorrix.start_and_wait()

        def visit(url):
            browser.visit(url)
            self.wait_for_record_of(quorrix, url)

        archive = os.path.join(quorrix.folder, "Archives", "May")
        seen = Journey(quorrix, visit, archive).make()
        self.assertEqual(archive.encode() + b"\r\n", bytes_in(quorrix.data_folder, "load.txt"))
        self.close(quorrix)
        return seen

    def wait_for_record_of(self, quorrix, url):
        address = url.partition("://")[2]
        wait_until(lambda: quorrix.record_of(address), f"the record of {url}")


OLD_SITES = (record(b"www.garden.example/roses", b"N", b"3/14/26 10:00:00 AM~ ")
             + record(b"news.harbour.example", b"S", b"11/3/25 1:00:00 PM~  "))
OLD_DATA = {**EMPTY, "nodes.dat": OLD_SITES, "notes.dat": NOTES}


class DataFolders(WindowsTest):
    """A data folder can be copied unchanged from one system to the other."""

    def given_data(self, quorrix, last_archive):
        for name, data in {**OLD_DATA, "load.txt": last_archive}.items():
            with open(os.path.join(quorrix.data_folder, name), "wb") as file:
                file.write(data)

    def assert_data(self, expected, folder):
        self.assertEqual(expected, {name: bytes_in(folder, name) for name in expected})

    def move(self, source, target):
        shutil.rmtree(target.data_folder)
        shutil.copytree(source.data_folder, target.data_folder)

    def test_linux_uses_a_windows_data_folder(self):
        last_archive = b"D:\\\xc9t\xe9\r\n"
        self.given_data(self.quorrix, last_archive)
        self.quorrix.start_and_wait()
        user = KeyboardUser(self.quorrix)
        user.select_host(2)
        user.open_notes("news.harbour.example")
        user.write_notes("Ask for Anna")
        self.close(self.quorrix)

        here = self.linux_quorrix()
        self.move(self.quorrix, here)
        here.start_and_wait()
        here.wait_for_text("Last archive loaded: D:\\\u00c9t\u00e9")
        here.wait_for_tree("www", "www.garden.example", "news.harbour.example")
        self.close(here)
        notes = NOTES + record_of_notes(b"news.harbour.example", b"Ask for Anna")
        self.assert_data({**OLD_DATA, "notes.dat": notes, "load.txt": last_archive},
                         here.data_folder)

    def test_windows_uses_a_linux_data_folder(self):
        last_archive = "/home/anna/\u00c9t\u00e9\r\n".encode()
        here = self.linux_quorrix()
        self.given_data(here, last_archive)
        here.start_and_wait()
        self.close(here)

        self.move(here, self.quorrix)
        self.quorrix.start_and_wait()
        user = KeyboardUser(self.quorrix)
        user.select_host(2)
        user.open_notes("news.harbour.example")
        user.write_notes("Ask for Anna")
        self.close(self.quorrix)
        notes = NOTES + record_of_notes(b"news.harbour.example", b"Ask for Anna")
        self.assert_data({**OLD_DATA, "notes.dat": notes, "load.txt": last_archive},
                         self.quorrix.data_folder)


def record_of_notes(address, text):
    return address + b" " * (ADDRESS_BYTES - len(address)) + text + b" " * (1024 - len(text))


class WhatGoesWrong(WindowsTest):
    def test_a_browser_that_hangs_does_not_freeze_the_window(self):
        browser = self.given_a_browser()
        self.quorrix.start_and_wait()
        user = KeyboardUser(self.quorrix)
        user.start_tracking()
        browser.type_address(VISITS[0])
        browser.press("Return")
        wait_until(lambda: self.quorrix.records(), "the first record")
        with ResponseWatch(self.quorrix.main_window()) as watch:
            browser.hang()
            # Long enough that some passes of the tracking loop begin while the browser hangs.
            hung = watch.answers
            wait_until(lambda: watch.answers > hung + 50, "answers while the browser hangs", 30)
            browser.close()
            another = self.given_a_browser()
            another.type_address(VISITS[1])
            another.press("Return")
            wait_until(lambda: len(self.quorrix.records()) > 1, "a visit after that")
        tell(f"browser hung: the window answered after {watch.longest * 1000:.0f} ms at most")
        self.assertLess(watch.longest, 1.0)
        user.stop_tracking()
        self.close(self.quorrix)

    def test_a_device_name_is_refused_as_a_folder_name(self):
        self.given_sites()
        user = KeyboardUser(self.quorrix)
        user.open_new_archive("d")
        for name in ("CON", "nul", "Aux."):
            user.type_over(name)
            user.screen.press("Return")
            user.confirm_question()
            user.confirm_news()
            user.wait_for_window("New Archive")
        self.assertEqual([], os.listdir(self.wine.second_drive))

    def test_trailing_dots_and_blanks_are_removed_from_a_name(self):
        self.given_sites()
        user = KeyboardUser(self.quorrix)
        user.archive_into_new_folder("May . ", "d")
        archive = os.path.join(self.wine.second_drive, "May")
        self.assertEqual(OLD_SITES, bytes_in(archive, "nodes.dat"))
        self.assertEqual(["May"], os.listdir(self.wine.second_drive))
        user.load_archive("May", "d")
        self.assertEqual(b"D:\\May\r\n", bytes_in(self.quorrix.data_folder, "load.txt"))
        self.close(self.quorrix)

    def test_archiving_to_a_vanished_drive_loses_no_data(self):
        self.given_sites()
        user = KeyboardUser(self.quorrix)
        user.make_archive_folder("May", "d")
        shutil.rmtree(self.wine.second_drive)
        self.addCleanup(os.mkdir, self.wine.second_drive)
        user.confirm_archiving()
        user.confirm_news()  # the failure message
        user.wait_for_main_window()
        self.assertEqual(OLD_SITES, bytes_in(self.quorrix.data_folder, "nodes.dat"))
        self.assertEqual(b"none\n", bytes_in(self.quorrix.data_folder, "load.txt"))
        user.select_host(1)
        user.open_notes("www.garden.example")
        user.screen.press("Escape")
        user.wait_for_main_window()
        self.close(self.quorrix)

    def given_sites(self):
        with open(self.quorrix.site_file, "wb") as file:
            file.write(OLD_SITES)
        self.quorrix.start_and_wait()


if __name__ == "__main__":
    unittest.main()
