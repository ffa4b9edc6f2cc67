"""From the start to the end of the program, without a browser."""

import os
import unittest

from support.quorrix import READY, STOPPED, TRACKING
from support.scenario import QuorrixTest
from support.waiting import holds_for, wait_until

RECORD_ONE = b"www.garden.example/roses" + b" " * 276 + b"N" + b"2/29/24 12:05:09 AM~ "
RECORD_TWO = b"news.harbour.example" + b" " * 280 + b"S" + b"11/3/25 1:00:00 PM~  "


class StartAndEnd(QuorrixTest):
    def assert_ends_cleanly(self, status):
        self.assertEqual(status, self.quorrix.exit_status())
        self.assertEqual([], self.quorrix.processes())

    def path(self, *names):
        return os.path.join(self.folder, *names)

    # --- start -----------------------------------------------------------------------------------

    def test_it_starts_with_an_empty_tree_and_ends_with_its_window(self):
        self.given_the_program()
        self.assertEqual("Quorrix", self.quorrix.caption())
        self.assertEqual(["Last archive loaded: none", READY], self.quorrix.texts())
        self.assertEqual(["www"], self.quorrix.tree())
        self.assertTrue(os.path.isdir(self.path("Archives")))
        self.quorrix.close_window()
        self.assert_ends_cleanly(0)
        self.assertEqual(b"", self.bytes_of("nodes.dat"))

    def test_the_exit_entry_ends_it(self):
        self.given_the_program()
        self.quorrix.choose("File", "Exit")
        self.assert_ends_cleanly(0)

    def test_it_shows_the_sites_of_the_last_run_with_their_hosts_collapsed(self):
        self.given_bytes("nodes.dat", RECORD_ONE + RECORD_TWO)
        self.given_bytes("load.txt", b"  Spring 2024  \n")
        self.given_the_program()
        self.assertEqual(["www", "www.garden.example", "news.harbour.example"],
                         self.quorrix.tree())
        self.assertEqual(["Last archive loaded: Spring 2024", READY], self.quorrix.texts())
        self.quorrix.close_window()
        self.assert_ends_cleanly(0)
        self.assertEqual(RECORD_ONE + RECORD_TWO, self.bytes_of("nodes.dat"))

    def test_a_click_on_a_host_puts_it_into_the_caption(self):
        self.given_bytes("nodes.dat", RECORD_ONE)
        self.given_the_program()
        self.quorrix.click_row("www.garden.example")
        wait_until(lambda: self.quorrix.caption() == "Quorrix - www.garden.example",
                   lambda: f"the caption; it is {self.quorrix.caption()!r}")
        self.quorrix.click_row("www")
        wait_until(lambda: self.quorrix.caption() == "Quorrix",
                   lambda: f"the caption; it is {self.quorrix.caption()!r}")

    def test_start_tracking_is_answered_at_once_over_the_bus(self):
        self.given_the_program()
        self.quorrix.menu_entry("File", "Start Tracking").press_and_wait()
        self.quorrix.wait_for_text(TRACKING)
        self.quorrix.menu_entry("File", "Stop Tracking").press_and_wait()
        self.quorrix.wait_for_text(STOPPED)

    def test_without_its_archive_note_it_says_so_and_ends_with_status_1(self):
        os.remove(self.path("Data", "load.txt"))
        self.quorrix.start()
        self.assertEqual("Unable to find file. Ending program.", self.quorrix.wait_for_message())
        self.assertEqual("Quorrix", self.quorrix.message_title())
        self.assertIn(self.quorrix.process.pid, self.quorrix.processes())
        self.quorrix.confirm_message()
        self.assert_ends_cleanly(1)

    def test_without_its_data_folder_it_says_so_and_ends_with_status_1(self):
        for name in os.listdir(self.path("Data")):
            os.remove(self.path("Data", name))
        os.rmdir(self.path("Data"))
        self.quorrix.start()
        self.assertEqual("Error. Ending program.76", self.quorrix.wait_for_message())
        self.assertIn(self.quorrix.process.pid, self.quorrix.processes())
        self.quorrix.confirm_message()
        self.assert_ends_cleanly(1)
        self.assertFalse(os.path.exists(self.path("Data")))

    # --- tracking with nothing to track ----------------------------------------------------------

    def test_tracking_without_a_browser_says_that_it_tracks_and_records_nothing(self):
        self.given_the_program()
        self.quorrix.start_tracking()
        self.assertEqual(["Last archive loaded: none", TRACKING], self.quorrix.texts())
        holds_for(1, lambda: self.bytes_of("nodes.dat") == b"", "no browser, no record")
        self.assertEqual(["www"], self.quorrix.tree())
        self.assertIsNone(self.quorrix.message())
        self.quorrix.stop_tracking()
        self.assertEqual(["Last archive loaded: none", STOPPED], self.quorrix.texts())

    def test_one_stop_ends_tracking_that_was_started_twice(self):
        self.given_the_program()
        self.quorrix.start_tracking()
        self.quorrix.choose("File", "Start Tracking")
        self.quorrix.stop_tracking()
        holds_for(1, lambda: self.quorrix.shows_text(STOPPED), "tracking stays stopped")
        self.quorrix.close_window()
        self.assert_ends_cleanly(0)

    def test_closing_the_window_while_tracking_ends_it(self):
        self.given_the_program()
        self.quorrix.start_tracking()
        self.quorrix.close_window()
        self.assert_ends_cleanly(0)

    def test_closing_the_window_while_tracking_was_started_twice_ends_it(self):
        self.given_the_program()
        self.quorrix.start_tracking()
        self.quorrix.choose("File", "Start Tracking")
        self.quorrix.wait_for_text(TRACKING)
        self.quorrix.close_window()
        self.assert_ends_cleanly(0)


if __name__ == "__main__":
    unittest.main()
