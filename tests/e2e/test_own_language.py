"""The program on the desktops of users who write other scripts.

No browser is needed: nodes.dat contains the site when the program starts.
"""

import unittest
from datetime import datetime

from support.quorrix import READY
from support.record_dialog import RecordDialog
from support.scenario import QuorrixTest
from support.waiting import wait_until

SITE = "www.garden.example"
SITE_RECORD = SITE.encode().ljust(300) + b"N" + b"2/29/24 12:05:09 AM~ "


class OwnLanguageTest(QuorrixTest):
    language = ""

    def setUp(self):
        super().setUp()
        self.given_bytes("nodes.dat", SITE_RECORD)
        self.quorrix.more_environment["LANG"] = self.language
        self.given_the_program()

    def use_keyboard(self, layout):
        self.session.screen.set_keyboard(layout)
        self.addCleanup(self.session.screen.set_keyboard, "us")

    def open(self, entry):
        return RecordDialog.open(self.quorrix, SITE, entry + "...", f"{entry} - {SITE}")

    def keep_notes(self, text):
        """Writes the text as a screen keyboard does."""
        notes = self.open("Notes")
        notes.insert_into("Notes", text)
        notes.close_with("OK")

    def about(self):
        self.quorrix.choose("Help", "About Quorrix")
        box = RecordDialog(self.quorrix, "About Quorrix")
        self.addCleanup(box.close_with, "OK")
        return box.labels()

    def date_of_a_new_purchase(self):
        purchase = self.open("New Purchase")
        date = purchase.text_of("Date")
        purchase.close_with("Cancel")
        return date

    def assert_is_now(self, date, form):
        self.assertLessEqual(self.began, datetime.strptime(date, form))
        self.assertLessEqual(datetime.strptime(date, form), datetime.now())


class American(OwnLanguageTest):
    language = "en_US.UTF-8"

    def test_a_new_purchase_has_the_present_date_and_time(self):
        self.assert_is_now(self.date_of_a_new_purchase(), "%m/%d/%y %I:%M:%S %p")


class Russian(OwnLanguageTest):
    language = "ru_RU.UTF-8"

    def test_notes_are_kept(self):
        self.keep_notes("Розы — это да")
        self.assertEqual(
            SITE.encode().ljust(300)
            + b"\xD0\xEE\xE7\xFB \x97 \xFD\xF2\xEE \xE4\xE0".ljust(1024),
            self.bytes_of("notes.dat"))
        self.assertEqual("Розы — это да", self.open("Notes").text_of("Notes"))

    def test_notes_are_typed_on_a_russian_keyboard(self):
        self.use_keyboard("ru")
        notes = self.open("Notes")
        self.session.screen.type("Подъезд")
        wait_until(lambda: notes.text_of("Notes") == "Подъезд",
                   lambda: f"the word; the box has {notes.text_of('Notes')!r}")
        notes.close_with("OK")
        self.assertEqual(SITE.encode().ljust(300) + b"\xCF\xEE\xE4\xFA\xE5\xE7\xE4".ljust(1024),
                         self.bytes_of("notes.dat"))

    def test_a_new_purchase_has_the_present_date_and_time(self):
        self.assert_is_now(self.date_of_a_new_purchase(), "%d.%m.%Y %H:%M:%S")

    def test_about_names_the_code_page(self):
        self.assertIn("Stores text in code page 1251 (Cyrillic).", self.about())


class Arabic(OwnLanguageTest):
    language = "ar_EG.UTF-8"

    def test_notes_are_kept(self):
        self.keep_notes("سلام")
        self.assertEqual(SITE.encode().ljust(300) + b"\xD3\xE1\xC7\xE3".ljust(1024),
                         self.bytes_of("notes.dat"))

    # The digits of the locale have no place in the code page.
    def test_a_new_purchase_has_the_present_date_and_time(self):
        self.assert_is_now(self.date_of_a_new_purchase(), "%m/%d/%y %I:%M:%S %p")

    def test_the_window_goes_from_right_to_left(self):
        file_menu = self.quorrix.menu_entry("File")
        help_menu = self.quorrix.menu_entry("Help")
        self.assertGreater(file_menu.centre()[0], help_menu.centre()[0])
        self.assertTrue(self.quorrix.shows_text(READY))


class Vietnamese(OwnLanguageTest):
    language = "vi_VN.UTF-8"

    # The stored form has the tones apart.
    def test_notes_are_kept(self):
        self.keep_notes("Tiếng Việt")
        self.assertEqual(SITE.encode().ljust(300) + b"Ti\xEA\xECng Vi\xEA\xF2t".ljust(1024),
                         self.bytes_of("notes.dat"))
        self.assertEqual("Tiếng Việt", self.open("Notes").text_of("Notes"))


if __name__ == "__main__":
    unittest.main()
