"""Starting and ending the program, without a browser."""

import os
import signal
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

    # --- started again ---------------------------------------------------------------------------

    def start_again(self):
        again = self.quorrix_class(self.session, self.folder)
        self.addCleanup(again.end)
        again.start()
        return again

    def wait_until_it_has_the_keyboard(self):
        wait_until(lambda: self.quorrix.main_window().is_active(), "the window to be active")

    def test_starting_it_again_brings_its_window_to_the_front(self):
        self.given_the_program()
        other = self.new_quorrix()  # in a folder of its own
        other.start_and_wait()
        other.main_window().use()
        again = self.start_again()
        self.assertEqual(0, again.exit_status(20))
        self.wait_until_it_has_the_keyboard()
        self.assertTrue(self.quorrix.main_window().is_above(other.main_window()))
        self.assertEqual(["Last archive loaded: none", READY], other.texts())

    def test_starting_it_again_shows_its_window_that_was_minimised(self):
        self.given_the_program()
        self.quorrix.start_tracking()
        self.quorrix.main_window().minimise()
        self.assertEqual(0, self.start_again().exit_status(20))
        self.wait_until_it_has_the_keyboard()
        self.assertFalse(self.quorrix.main_window().is_minimised())
        self.assertTrue(self.quorrix.shows_text(TRACKING))

    def test_without_the_code_page_of_the_language_it_says_so_and_ends_with_status_1(self):
        conversions = os.path.join(self.folder, "conversions")
        os.mkdir(conversions)
        with open(os.path.join(conversions, "gconv-modules"), "w", encoding="ascii") as file:
            file.write("module CP1251// INTERNAL missing 1\nmodule INTERNAL CP1251// missing 1\n")
        self.quorrix.more_environment.update(LANG="ru_RU.UTF-8", GCONV_PATH=conversions)
        self.quorrix.start()
        self.assertEqual("This system lacks the character set of your language. Install it and "
                         "start Quorrix again.", self.quorrix.wait_for_message())
        self.quorrix.answer_message("OK")
        self.assertEqual(1, self.quorrix.exit_status())

    def test_starting_it_again_while_a_message_waits_leaves_the_keyboard_with_the_message(self):
        self.given_the_program()
        self.quorrix.choose("File", "Search Display...")
        self.assertEqual("No website addresses to search in current display.",
                         self.quorrix.wait_for_message())
        self.assertEqual(0, self.start_again().exit_status(20))
        self.quorrix.answer_message_with_key("Return")
        self.wait_until_it_has_the_keyboard()

    def test_started_again_it_says_that_it_does_not_answer_and_ends_with_status_1(self):
        self.given_the_program()
        self.quorrix.process.send_signal(signal.SIGSTOP)
        self.addCleanup(self.quorrix.process.send_signal, signal.SIGCONT)
        again = self.start_again()
        self.assertEqual("Quorrix is already running on this folder, but it does not answer.",
                         again.wait_for_message())
        again.confirm_message()
        self.assertEqual(1, again.exit_status())

    def test_it_starts_after_one_that_was_killed(self):
        self.given_the_program()
        self.quorrix.process.kill()
        self.quorrix.process.wait()
        self.quorrix.end()
        self.quorrix = self.start_again()
        self.given_the_program()
        self.assertEqual(["Last archive loaded: none", READY], self.quorrix.texts())

    # --- tracking without a browser --------------------------------------------------------------

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
