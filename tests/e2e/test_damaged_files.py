"""Something else where a data file should be when the built program starts. tests/reliability has
the many cases."""

import os
import unittest

from support.quorrix import READY
from support.scenario import QuorrixTest

RECORD = b"www.garden.example/roses" + b" " * 276 + b"N" + b"2/29/24 12:05:09 AM~ "
REFUSED = "Path/file access error. Ending program."
MISSING = "Unable to find file. Ending program."


class DamagedFiles(QuorrixTest):
    def setUp(self):
        super().setUp()
        self.given_bytes("nodes.dat", RECORD)

    def replace(self, name, make):
        path = os.path.join(self.quorrix.data_folder, name)
        os.remove(path)
        make(path)

    def assert_it_ends_with(self, message):
        self.quorrix.start()
        self.assertEqual(message, self.quorrix.wait_for_message())
        self.quorrix.confirm_message()
        self.assertEqual(1, self.quorrix.exit_status())

    def test_a_pipe_in_place_of_the_site_file_ends_it(self):
        self.replace("nodes.dat", os.mkfifo)
        self.assert_it_ends_with(REFUSED)

    def test_a_folder_in_place_of_the_archive_note_ends_it(self):
        self.replace("load.txt", os.mkdir)
        self.assert_it_ends_with(REFUSED)

    def test_a_link_that_leads_nowhere_in_place_of_the_site_file_ends_it(self):
        self.replace("nodes.dat", lambda path: os.symlink("/nonexistent/file", path))
        self.assert_it_ends_with(MISSING)

    def test_a_pipe_in_place_of_the_data_folder_ends_it(self):
        os.rename(self.quorrix.data_folder, os.path.join(self.folder, "kept"))
        os.mkfifo(self.quorrix.data_folder)
        self.assert_it_ends_with("Error. Ending program.76")

    def test_pipes_in_place_of_the_other_files_do_not_hinder_the_start(self):
        for name in ("notes.dat", "info.dat", "purchases.dat"):
            self.replace(name, os.mkfifo)
        self.given_the_program()
        self.assertEqual(["Last archive loaded: none", READY], self.quorrix.texts())
        self.assertEqual(["www", "www.garden.example"], self.quorrix.tree())

    def test_ten_million_bytes_of_nuls_are_no_sites(self):
        self.given_bytes("nodes.dat", RECORD + b"\0" * 10_000_000)
        self.given_bytes("load.txt", b"\0" * 10_000_000)
        self.given_the_program()
        self.assertEqual(["www", "www.garden.example"], self.quorrix.tree())


if __name__ == "__main__":
    unittest.main()
