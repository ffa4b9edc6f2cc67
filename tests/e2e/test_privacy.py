"""The user's data stays private: in the files, in the program's output, and on the network."""

import os
import re
import signal
import subprocess
import tempfile
import unittest

from support.browsers import Firefox
from support.record_dialog import RecordDialog
from support.scenario import QuorrixTest
from support.tracing import can_trace, tracer
from support.waiting import wait_until

GARDEN = "www.garden.example"
SITES = b"www.garden.example/roses" + b" " * 276 + b"N" + b"3/14/26 10:00:00 AM~ "

NOTE = "a note about tulips"
USER_ID = "anna-of-the-garden"
PASSWORD = "lilac7and8"
ITEM = "Shears with red handles"
PAGE = "www.harbour.example/tides"
SECRETS = (GARDEN, NOTE, USER_ID, PASSWORD, ITEM, PAGE)

ANY_CORE = ["prlimit", "--core=unlimited"]


def dumps_core(command):
    with tempfile.TemporaryDirectory() as folder:  # for the core file
        process = subprocess.Popen(command, cwd=folder)
        return os.WCOREDUMP(os.waitpid(process.pid, 0)[1])


class PrivacyTest(QuorrixTest):
    def setUp(self):
        super().setUp()
        self.given_bytes("nodes.dat", SITES)
        self.archives = os.path.join(self.folder, "Archives")

    def open_for_garden(self, entry):
        return RecordDialog.open(self.quorrix, GARDEN, entry + "...", f"{entry} - {GARDEN}")

    def keep(self, entry, *boxes_and_texts):
        dialog = self.open_for_garden(entry)
        for box, text in boxes_and_texts:
            dialog.type_into(box, text)
        dialog.close_with("OK")

    def use_everything(self):
        """Uses every command that reads or writes data, except the link to the browser, which
        starts another program."""
        self.keep("Notes", ("Notes", NOTE))
        self.keep("User ID, Password", ("User ID", USER_ID), ("Password", PASSWORD))
        self.keep("New Purchase", ("Item", ITEM))
        self.open_for_garden("Purchases").close_with("Cancel")
        self.search()
        self.track_a_page()
        self.archive()
        self.read_the_manual()

    def read_the_manual(self):
        self.quorrix.choose("Help", "Help")
        wait_until(lambda: any(window.title == "Quorrix Help" and window.is_active()
                               for window in self.quorrix.windows()), "the manual")
        self.session.screen.press("Escape")

    def track_a_page(self):
        browser = self.given_a_browser(Firefox)
        self.quorrix.start_tracking()
        browser.visit(f"http://{PAGE}")
        self.wait_for_record(PAGE)
        self.quorrix.stop_tracking()

    def search(self):
        self.quorrix.choose("File", "Search Display...")
        search = RecordDialog(self.quorrix, "Search Display")
        search.type_into("Website address contains", "garden")
        search.close_with("OK")
        RecordDialog(self.quorrix, "Search Results").close_with("Cancel")

    def archive(self):
        self.quorrix.main_window().use()
        self.session.screen.press("alt+f", "r", "a")
        dialog = RecordDialog(self.quorrix, "Archive Sites")
        dialog.press_button("New")
        new = RecordDialog(self.quorrix, "New Archive")
        new.type_into("Name of the new folder", "May")
        new.press_button("OK")
        self.quorrix.wait_for_message()
        self.quorrix.answer_message("OK")
        new.wait_until_closed()
        dialog.press_button("OK")
        self.quorrix.wait_for_message()
        self.quorrix.answer_message_before(
            "OK", f"Data successfully archived to '{self.archives}/May'.")
        self.quorrix.confirm_message()
        dialog.wait_until_closed()

    def end_program(self):
        self.quorrix.close_window()
        self.assertEqual(0, self.quorrix.exit_status())


class Privacy(PrivacyTest):
    def test_files_are_for_their_owner_alone(self):
        os.chmod(self.quorrix.data_folder, 0o755)
        self.given_the_program()
        self.archive()
        for folder in (self.quorrix.data_folder, self.archives,
                       os.path.join(self.archives, "May")):
            self.assertEqual("700", f"{os.stat(folder).st_mode & 0o777:o}", folder)
        for folder in (self.quorrix.data_folder, os.path.join(self.archives, "May")):
            for name in ("nodes.dat", "notes.dat", "info.dat", "purchases.dat"):
                mode = os.stat(os.path.join(folder, name)).st_mode & 0o777
                self.assertEqual("600", f"{mode:o}", f"{name} in {folder}")

    def test_archives_that_others_may_see_stay_so(self):
        os.makedirs(self.archives)
        os.chmod(self.archives, 0o755)
        self.given_the_program()
        self.assertEqual("755", f"{os.stat(self.archives).st_mode & 0o777:o}")

    def test_nothing_that_is_kept_is_printed(self):
        self.given_the_program()
        self.use_everything()
        self.end_program()
        printed = self.session.log("quorrix.log")
        for secret in SECRETS:
            self.assertNotIn(secret, printed)


@unittest.skipUnless(dumps_core([*ANY_CORE, "sh", "-c", "kill -ABRT $$"]),
                     "this system writes no core of any program")
class Core(PrivacyTest):
    def test_a_crash_leaves_no_core(self):
        self.quorrix.launcher = ANY_CORE
        self.given_the_program()
        self.quorrix.process.send_signal(signal.SIGABRT)
        _, status = os.waitpid(self.quorrix.process.pid, 0)
        self.assertEqual(signal.SIGABRT, os.WTERMSIG(status))
        self.assertFalse(os.WCOREDUMP(status))



@unittest.skipUnless(can_trace(), "this system permits no tracing of system calls")
class Network(PrivacyTest):
    def test_no_connection_to_a_network_is_opened(self):
        calls = os.path.join(self.folder, "calls")
        self.quorrix.launcher = tracer("socket", calls)
        self.given_the_program()
        self.use_everything()
        self.end_program()
        with open(calls, encoding="utf-8") as file:
            families = set(re.findall(r"socket\((\w+)", file.read()))
        self.assertIn("AF_UNIX", families, "the display is reached through one")
        self.assertLessEqual(families, {"AF_UNIX", "AF_NETLINK"})


if __name__ == "__main__":
    unittest.main()
