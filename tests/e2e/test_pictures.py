"""Pictures of windows: those in the documents, and how they are taken."""

import os
import subprocess
import unittest
from pathlib import Path

from support import pictures, processes
from support.scenario import QuorrixTest
from support.waiting import wait_until

SCREENSHOTS = Path(__file__).resolve().parents[2] / "docs/screenshots"


def given_a_picture(*drawing):
    path = os.path.join(processes.temporary_folder(), "picture.png")
    subprocess.run(["convert", "-size", "200x100", *drawing, path], check=True, timeout=20)
    return path


class Judging(unittest.TestCase):
    def test_a_black_window_is_not_painted(self):
        frame = ("xc:black", "-fill", "steelblue", "-draw", "rectangle 0,0 199,18")
        self.assertFalse(pictures.is_painted(given_a_picture(*frame)))

    def test_black_letters_on_white_are(self):
        self.assertTrue(pictures.is_painted(given_a_picture("xc:white", "-draw", "text 20,50 'Text'")))

    def test_so_is_a_dark_window(self):
        self.assertTrue(pictures.is_painted(given_a_picture("xc:#2d2d30")))

    def test_every_picture_of_the_documents_is_painted(self):
        found = sorted(SCREENSHOTS.glob("*.png"))
        self.assertGreaterEqual(len(found), 14)
        self.assertEqual([], [path.name for path in found if not pictures.is_painted(path)])


class Taking(QuorrixTest):
    def picture(self):
        return os.path.join(processes.temporary_folder(), "window.png")

    def given_the_help_window(self):
        self.given_the_program()
        self.quorrix.choose("Help", "Help")
        window = wait_until(lambda: next((window for window in self.quorrix.windows()
                                          if window.title == "Quorrix Help"), None), "the help")
        # The help takes the focus when it opens, so no other window may be used before that.
        wait_until(window.is_active, "the help to have the keyboard")
        return window

    def test_a_window_is_taken_once_it_is_painted(self):
        path = self.picture()
        window = self.given_the_help_window()
        window.use()
        self.session.screen.save_picture(path, window)
        self.assertTrue(pictures.is_painted(path))

    def test_a_window_below_another_one_is_refused(self):
        window = self.given_the_help_window()
        self.quorrix.main_window().use()
        with self.assertRaisesRegex(AssertionError, "to lie in front"):
            self.session.screen.save_picture(self.picture(), window)


if __name__ == "__main__":
    unittest.main()
