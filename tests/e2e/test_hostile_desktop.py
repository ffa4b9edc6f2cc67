"""A desktop whose buses accept connections and never answer: the window appears all the same, and
tracking says that browsers cannot be read. Also browsers and a registry that die while the program
tracks, and a browser with 50 windows."""

import os
import shutil
import signal
import socket
import time
import unittest

from support import pictures, processes
from support.browsers import Chromium, Firefox
from support.keyboard_user import KeyboardUser
from support.scenario import HOME, QuorrixTest, tell
from support.screen import ResponseWatch
from support.waiting import wait_until

# In seconds. Each silent bus costs two of them before the first window.
UNTIL_FIRST_WINDOW = 6
UNTIL_NOTICE = 20

# The notice covers at least this share of the white tree.
SHARE_OF_NOTICE = 0.05

LONGEST_ANSWER = 0.5  # seconds


class SilentBuses(QuorrixTest):
    """Here the program is not on the accessibility bus, so these tests use the keyboard and look at
    pictures of the window."""

    def test_a_session_bus_that_never_answers(self):
        silent = self.given_a_silent_bus()
        self.quorrix.more_environment.update(DBUS_SESSION_BUS_ADDRESS=silent)
        self.given_a_browser_process(DBUS_SESSION_BUS_ADDRESS=silent)
        self.assert_it_starts_and_says_that_no_browser_can_be_read("silent session bus")

    def test_an_accessibility_bus_that_never_answers(self):
        self.quorrix.more_environment.update(AT_SPI_BUS_ADDRESS=self.given_a_silent_bus())
        self.given_a_browser_process()
        self.assert_it_starts_and_says_that_no_browser_can_be_read("silent accessibility bus")

    def test_two_buses_that_never_answer(self):
        silent = self.given_a_silent_bus()
        self.quorrix.more_environment.update(DBUS_SESSION_BUS_ADDRESS=silent,
                                             AT_SPI_BUS_ADDRESS=self.given_a_silent_bus())
        self.given_a_browser_process(DBUS_SESSION_BUS_ADDRESS=silent)
        self.assert_it_starts_and_says_that_no_browser_can_be_read("both buses silent")

    def test_an_accessibility_bus_that_is_stopped(self):
        self.session.accessibility_address()
        *bus, _launcher = self.session.accessibility_processes()
        self.given_stopped_processes(bus)
        self.given_a_browser_process()
        self.assert_it_starts_and_says_that_no_browser_can_be_read("stopped accessibility bus")

    def test_an_accessibility_service_that_is_stopped(self):
        self.session.accessibility_address()
        self.given_stopped_processes(self.session.accessibility_processes())
        self.given_a_browser_process()
        self.assert_it_starts_and_says_that_no_browser_can_be_read("stopped accessibility service")

    def test_a_healthy_accessibility_bus_beside_a_session_bus_that_never_answers(self):
        self.quorrix.more_environment.update(
            DBUS_SESSION_BUS_ADDRESS=self.given_a_silent_bus(),
            AT_SPI_BUS_ADDRESS=self.session.accessibility_address())
        firefox = self.given_a_browser(Firefox)
        self.start_and_wait_for_its_window()
        KeyboardUser(self.quorrix).start_tracking()
        self.assert_tracking_goes_on(firefox, "http://www.garden.example/read.html",
                                     "www.garden.example/read.html")
        self.assert_sites(("www.garden.example/read.html", "N"))

    def test_buses_that_stop_while_the_program_runs(self):
        self.given_the_program()
        user = KeyboardUser(self.quorrix)
        self.given_a_browser_process()
        with ResponseWatch(self.quorrix.main_window()) as watch:
            self.given_stopped_processes([*self.session.accessibility_processes(),
                                          self.session.bus_process()])
            before = self.share_of_white()
            user.start_tracking()
            self.wait_for_the_notice(before)
        tell(f"buses stopped after the start: the window answered {watch.answers} times, "
             f"after {watch.longest * 1000:.0f} ms at most")
        self.assertLess(watch.longest, LONGEST_ANSWER)

    # --- given -----------------------------------------------------------------------------------

    def given_a_silent_bus(self):
        """The address of a socket that accepts connections and stays silent."""
        path = os.path.join(processes.temporary_folder(), "bus")
        listener = socket.socket(socket.AF_UNIX)
        self.addCleanup(listener.close)
        listener.bind(path)
        listener.listen(100)
        return f"unix:path={path}"

    def given_stopped_processes(self, process_ids):
        processes.send(signal.SIGSTOP, process_ids)
        self.addCleanup(processes.send, signal.SIGCONT, process_ids)

    def given_a_browser_process(self, **environment):
        """A process that is listed as a browser of the session."""
        program = os.path.join(processes.temporary_folder(), "firefox")
        shutil.copy2("/usr/bin/sleep", program)
        self.addCleanup(processes.end_family, self.session.start([program, "1000"], **environment))

    # --- then ------------------------------------------------------------------------------------

    def assert_it_starts_and_says_that_no_browser_can_be_read(self, what):
        first = self.start_and_wait_for_its_window()
        before = self.share_of_white()
        with ResponseWatch(self.quorrix.main_window()) as watch:
            KeyboardUser(self.quorrix).start_tracking()
            self.wait_for_the_notice(before)
        tell(f"{what}: first window after {first:.1f} s, and while tracking it answered "
             f"{watch.answers} times, after {watch.longest * 1000:.0f} ms at most")
        self.assertLess(watch.longest, LONGEST_ANSWER)
        self.quorrix.close_window()
        self.assertEqual(0, self.quorrix.exit_status())

    def start_and_wait_for_its_window(self):
        """Starts the program and waits for its main window. Returns after how many seconds the
        first window appeared."""
        began = time.monotonic()
        self.quorrix.start()
        wait_until(self.quorrix.windows, "a window", UNTIL_FIRST_WINDOW)
        first = time.monotonic() - began
        # The folder is made when the start-up windows are about to close.
        wait_until(lambda: os.path.isdir(os.path.join(self.folder, "Archives")), "the start to end")
        wait_until(lambda: len(self.quorrix.windows()) == 1, "the wait window to close")
        return first

    def wait_for_the_notice(self, share_of_white_before):
        wait_until(lambda: self.share_of_white() < share_of_white_before - SHARE_OF_NOTICE,
                   "the notice", UNTIL_NOTICE)

    def share_of_white(self):
        path = os.path.join(self.session.folder, "window.png")
        self.session.screen.save_picture(path, self.quorrix.main_window())
        return pictures.share_of("white", path)


class ChangingDesktop(QuorrixTest):
    def setUp(self):
        super().setUp()
        self.given_a_starting_program()

    def test_a_browser_that_is_killed_while_stopped_is_replaced_by_another_one(self):
        firefox = self.given_a_browser(Firefox)
        self.given_tracking()
        firefox.visit("http://www.garden.example/first.html")
        self.wait_for_record("www.garden.example/first.html")
        with ResponseWatch(self.quorrix.main_window()) as watch:
            firefox.stop_all()
            self.assert_nothing_is_written(self.watch_writes(), "a stopped browser shows nothing")
            firefox.close()
            chromium = self.given_a_browser(Chromium)
            self.assert_tracking_goes_on(chromium, "http://www.garden.example/second.html",
                                         "www.garden.example/second.html")
            chromium.close()
            firefox.start(HOME)
            self.assert_tracking_goes_on(firefox, "http://www.garden.example/third.html",
                                         "www.garden.example/third.html")
        tell(f"browsers killed and replaced: the window answered {watch.answers} times, "
             f"after {watch.longest * 1000:.0f} ms at most")
        self.assertLess(watch.longest, LONGEST_ANSWER)
        self.assert_sites(*((f"www.garden.example/{name}.html", "N")
                            for name in ("first", "second", "third")))

    def test_a_registry_that_is_killed_and_comes_back(self):
        firefox = self.given_a_browser(Firefox)
        self.given_tracking()
        firefox.visit("http://www.garden.example/before.html")
        self.wait_for_record("www.garden.example/before.html")
        with ResponseWatch(self.quorrix.main_window()) as watch:
            processes.send(signal.SIGKILL, [self.session.registry_process()])
            self.assert_nothing_is_written(self.watch_writes(), "no registry, no visit")
            # A browser starts the registry again and joins it.
            firefox.close()
            firefox.start(HOME)
            self.assert_tracking_goes_on(firefox, "http://www.garden.example/after.html",
                                         "www.garden.example/after.html")
        self.assertLess(watch.longest, LONGEST_ANSWER)
        self.assert_sites(("www.garden.example/before.html", "N"),
                          ("www.garden.example/after.html", "N"))

    def test_a_browser_with_50_windows(self):
        chromium = self.given_a_browser(Chromium)
        for number in range(1, 50):
            chromium.open_window(f"http://www.garden.example/{number}.html")
        last = chromium.window
        self.given_tracking()
        self.wait_for_record("www.garden.example/49.html", seconds=10)
        with ResponseWatch(self.quorrix.main_window()) as watch:
            for number in range(10):
                self.assert_tracking_goes_on(
                    chromium, f"http://news.harbour.example/{number}.html",
                    f"news.harbour.example/{number}.html")
        tell(f"50 windows: the window answered {watch.answers} times, "
             f"after {watch.longest * 1000:.0f} ms at most")
        self.assertLess(watch.longest, LONGEST_ANSWER)
        self.assertTrue(last.is_active())
        self.assert_sites(("www.garden.example/49.html", "N"),
                          *((f"news.harbour.example/{number}.html", "N") for number in range(10)))


if __name__ == "__main__":
    unittest.main()
