"""Help and About, opened from the menu and with the keyboard."""

import os
import unittest

from support.accessibility import STATE_FOCUSED, STATE_SHOWING
from support.quorrix import MANUAL
from support.record_dialog import RecordDialog
from support.scenario import QuorrixTest
from support.waiting import wait_until

TITLE = "Quorrix Help"
NO_HELP = "Error. Unable to start help."


class Help(QuorrixTest):
    def setUp(self):
        super().setUp()
        self.given_the_program()

    # --- the window ------------------------------------------------------------------------------

    def help_window(self):
        return next((window for window in self.quorrix.windows() if window.title == TITLE), None)

    def on_bus(self):
        return next(window for window in self.quorrix.application().children()
                    if window.name == TITLE and window.has_state(STATE_SHOWING))

    def wait_until_open(self):
        wait_until(lambda: self.help_window() and self.help_window().is_active(),
                   lambda: f"the help window; open are "
                           f"{[window.title for window in self.quorrix.windows()]}")

    def open_help(self):
        self.quorrix.choose("Help", "Help")
        self.wait_until_open()

    def control(self, role, name):
        control = self.on_bus().find(role, name)
        self.assertIsNotNone(control, f"no {role} {name!r}")
        return control

    def texts(self):
        return [thing.name for thing in self.on_bus().everything_below() if thing.role == "label"]

    def take_manual_away(self):
        os.remove(os.path.join(self.folder, MANUAL))

    # --- tests -----------------------------------------------------------------------------------

    def test_the_menu_opens_the_manual(self):
        self.open_help()
        manual = self.control("label", "Manual").text  # the role of a read-only page in Qt
        self.assertTrue(manual.startswith("Quorrix manual"), manual[:80])
        self.assertIn("Passwords are in clear text", manual)
        entries = [entry.name for entry in self.control("tree", "Contents").children()]
        self.assertIn("Making a browser readable", entries)

    def test_everything_is_there_for_the_keyboard(self):
        self.quorrix.main_window().use()
        self.session.screen.press("alt+h", "h")
        self.wait_until_open()
        self.session.screen.press("ctrl+f")
        box = self.control("text", "Find in the manual")
        wait_until(lambda: box.has_state(STATE_FOCUSED), "the box to have the keyboard")
        self.session.screen.type("no such word as this")
        self.session.screen.press("Return")
        wait_until(lambda: "Not found in the manual: no such word as this" in self.texts(),
                   lambda: f"the answer; there is {self.texts()}")
        self.session.screen.press("Escape")
        wait_until(lambda: self.help_window() is None, "the help window to close")
        self.assertTrue(self.quorrix.is_running())

    def test_help_stays_open_beside_the_main_window(self):
        self.open_help()
        self.quorrix.main_window().use()
        self.quorrix.start_tracking()
        self.quorrix.stop_tracking()
        self.assertIsNotNone(self.help_window())
        self.quorrix.choose("Help", "Help")
        self.wait_until_open()
        self.assertEqual(2, len(self.quorrix.windows()))
        self.quorrix.close_window()
        self.assertEqual(0, self.quorrix.exit_status())

    def test_without_the_manual_there_is_a_message(self):
        self.take_manual_away()
        self.quorrix.choose("Help", "Help")
        self.assertEqual(NO_HELP, self.quorrix.wait_for_message())
        self.assertEqual("Quorrix", self.quorrix.message_title())
        self.quorrix.confirm_message()
        self.assertIsNone(self.help_window())
        self.quorrix.start_tracking()
        self.quorrix.stop_tracking()

    def test_a_folder_in_its_place_gives_the_message(self):
        self.take_manual_away()
        os.mkdir(os.path.join(self.folder, MANUAL))
        self.quorrix.choose("Help", "Help")
        self.assertEqual(NO_HELP, self.quorrix.wait_for_message())
        self.quorrix.confirm_message()

    def test_about_tells_the_version(self):
        self.quorrix.choose("Help", "About Quorrix")
        about = RecordDialog(self.quorrix, "About Quorrix")
        self.assertIn("Quorrix", about.labels())
        self.assertIn("Version 1.0.0", about.labels())
        about.close_with("OK")
        self.assertTrue(self.quorrix.is_running())


if __name__ == "__main__":
    unittest.main()
