"""Shared by the scenarios: one session and web site per process, a new program for each test."""

import os
import unittest
from datetime import datetime, timedelta

from support import processes
from support.quorrix import Quorrix, make_program_folder
from support.session import PrivateSession
from support.site_file import WriteCount, time_of
from support.waiting import holds_for, wait_until
from support.web_site import WebSite

# A host with a single dot is never recorded, so every browser can start on this page.
HOME = "http://home.test/"
SECURE_HOSTS = ("www.secure.example", "shop.secure.example", "www.garden.example")

# How long to wait, in seconds, to check that something does not happen: some passes of the tracking
# loop, and longer than the second in which a stamp would not change.
LONG_ENOUGH = 1.5

_sessions = {}
_sites = []


def private_session(kind=PrivateSession):
    """The session of that kind in this process. The first call makes it; it ends with the
    process."""
    if not _sessions:
        processes.become_their_keeper()
    if kind not in _sessions:
        _sessions[kind] = kind()
    return _sessions[kind]


def web_site():
    if not _sites:
        _sites.append(WebSite(processes.temporary_folder(), SECURE_HOSTS))
    return _sites[0]


def tell(sentence):
    """Prints a measured value for readers of the test's output."""
    print(f"measured: {sentence}", flush=True)


class QuorrixTest(unittest.TestCase):
    """Provides the verbs of the scenarios. Each test has its own program folder."""

    accessibility = True
    session_class = PrivateSession
    quorrix_class = Quorrix

    def setUp(self):
        self.began = datetime.now().replace(microsecond=0)
        self.session = private_session(self.session_class)
        self.site = web_site()
        self.site.forget_pages()
        self.session.switch_accessibility(self.accessibility)
        self.quorrix = self.new_quorrix()
        self.folder = self.quorrix.folder

    def new_quorrix(self):
        quorrix = self.quorrix_class(self.session, make_program_folder(self.program()))
        self.addCleanup(quorrix.end)
        return quorrix

    @staticmethod
    def program():
        path = os.environ.get("QUORRIX_PROGRAM")
        if not path:
            raise RuntimeError("QUORRIX_PROGRAM must name the program's executable")
        return path

    def tearDown(self):
        """After a failure, saves a picture of the screen in $QUORRIX_EVIDENCE if that is set."""
        folder = os.environ.get("QUORRIX_EVIDENCE")
        if folder and self.has_failed():
            os.makedirs(folder, exist_ok=True)
            self.session.screen.save_picture(os.path.join(folder, self.id() + ".png"))

    def has_failed(self):
        result = self._outcome.result
        return self in [test for test, _ in result.failures + result.errors]

    # --- given -----------------------------------------------------------------------------------

    def given_bytes(self, name, data):
        with open(os.path.join(self.quorrix.data_folder, name), "wb") as file:
            file.write(data)

    def given_the_program(self):
        self.quorrix.start_and_wait()

    def given_tracking(self):
        self.quorrix.start_and_wait()
        self.quorrix.start_tracking()

    def given_a_starting_program(self):
        """Starts the program without waiting. A browser can start during the three seconds for
        which the start-up windows are open."""
        self.quorrix.start()

    def given_a_browser(self, browser_class, url=HOME):
        browser = self.given_no_browser_yet(browser_class)
        self.start_browser(browser, url)
        return browser

    def given_no_browser_yet(self, browser_class):
        """A browser that the test starts itself."""
        browser = browser_class(self.session, self.site)
        self.addCleanup(browser.close)
        return browser

    def start_browser(self, browser, url):
        browser.start(url)
        if self.quorrix.process:
            # The main window takes the focus when it opens, and must not take it from a browser
            # later.
            self.quorrix.start_and_wait()

    def restart(self):
        self.quorrix.close_window()
        self.assertEqual(0, self.quorrix.exit_status())
        self.quorrix.end()
        self.quorrix = self.quorrix_class(self.session, self.folder)
        self.addCleanup(self.quorrix.end)
        self.given_the_program()

    def watch_writes(self):
        writes = WriteCount(self.quorrix.site_file)
        self.addCleanup(writes.close)
        return writes

    # --- then ------------------------------------------------------------------------------------

    def bytes_of(self, name):
        with open(os.path.join(self.quorrix.data_folder, name), "rb") as file:
            return file.read()

    def wait_for_record(self, address, seconds=1.0):
        """Waits for the record of an address, which must appear within a second by default."""
        wait_until(lambda: self.quorrix.record_of(address),
                   lambda: f"the record of {address}; there are "
                           f"{self.quorrix.addresses_and_flags()}", seconds)
        return self.quorrix.record_of(address)

    def wait_for_write(self, writes, count, seconds=1.0):
        wait_until(lambda: writes.now() >= count,
                   lambda: f"write {count} of nodes.dat; there were {writes.now()}", seconds)

    def wait_for_the_next_second(self, address):
        """Waits until a stamp made now would differ from the one in the record."""
        stamped = time_of(self.quorrix.record_of(address).stamp)
        wait_until(lambda: datetime.now() >= stamped + timedelta(seconds=1), "the next second")

    def assert_sites(self, *expected):
        """Checks the whole file: every record's address and scheme letter, in order of first visit,
        and that each was stamped during the test."""
        self.assertEqual(list(expected), self.quorrix.addresses_and_flags())
        for record in self.quorrix.records():
            self.assert_stamped_since(self.began, record)

    def assert_stamped_since(self, began, record):
        self.assertLessEqual(began, time_of(record.stamp), record.address)
        self.assertLessEqual(time_of(record.stamp), datetime.now(), record.address)

    def assert_nothing_is_written(self, writes, why, seconds=LONG_ENOUGH):
        before = writes.now()
        holds_for(seconds, lambda: writes.now() == before,
                  lambda: f"{why}; nodes.dat has {self.quorrix.stamps()}")

    def assert_tracking_goes_on(self, browser, url, address, flag="N"):
        """Proves by a visit that tracking works, so that it is not why other pages are missing."""
        browser.visit(url)
        record = self.wait_for_record(address)
        self.assertEqual(flag, record.flag)
