"""Finding sites, opening them in the browser, deleting them and clearing the display.

No browser is needed: the files contain the sites when the program starts, and the program that
Quorrix calls to open an address is replaced by one that logs its arguments.
"""

import os
import unittest

from support import processes
from support.popup_menu import PopupMenu
from support.record_dialog import RecordDialog
from support.scenario import QuorrixTest
from support.waiting import wait_until

GARDEN = "www.garden.example"
HARBOUR = "news.harbour.example"
MEADOW = "gardening.meadow.example"

# Recorded in a different order than in the tree; the roses are recorded twice.
ROSES_SITE = b"www.garden.example/roses" + b" " * 276 + b"N" + b"3/14/26 10:00:00 AM~ "
HARBOUR_SITE = b"news.harbour.example" + b" " * 280 + b"S" + b"11/3/25 1:00:00 PM~  "
HERBS_SITE = b"www.garden.example/herbs" + b" " * 276 + b"S" + b"2/29/24 12:05:09 AM~ "
GARDEN_SITE = b"www.garden.example" + b" " * 282 + b"N" + b"3/1/26 9:00:00 AM~   "
ROSES_AGAIN_SITE = b"www.garden.example/roses" + b" " * 276 + b"N" + b"3/15/26 8:30:00 PM~  "
MEADOW_SITE = b"gardening.meadow.example/Gate" + b" " * 271 + b"N" + b"2/28/24 11:59:59 PM~ "
SITES = (ROSES_SITE + HARBOUR_SITE + HERBS_SITE + GARDEN_SITE + ROSES_AGAIN_SITE + MEADOW_SITE)

GARDEN_KEY = b"www.garden.example" + b" " * 282
ROSES_KEY = b"www.garden.example/roses" + b" " * 276
HERBS_KEY = b"www.garden.example/herbs" + b" " * 276
HARBOUR_KEY = b"news.harbour.example" + b" " * 280
# Different sites, although one begins like a deleted one and the other differs only in case.
HERBSTER_KEY = b"www.garden.example/herbster" + b" " * 273
CAPITAL_KEY = b"www.garden.example/Herbs" + b" " * 276

GARDEN_NOTES = GARDEN_KEY + b"Water the roses." + b" " * 1008
HERBSTER_NOTES = HERBSTER_KEY + b"Not the herbs" + b" " * 1011
HERBS_NOTES = HERBS_KEY + b"Mint, sage" + b" " * 1014
NOTES = HERBSTER_NOTES + GARDEN_NOTES + HERBS_NOTES

HARBOUR_USER = HARBOUR_KEY + b"anchor" + b" " * 24 + b"anna" + b" " * 26
CAPITAL_USER = CAPITAL_KEY + b"parsley" + b" " * 23 + b"ben" + b" " * 27
GARDEN_USER = GARDEN_KEY + b"tulip7" + b" " * 24 + b"anna" + b" " * 26
HERBS_USER = HERBS_KEY + b"thyme" + b" " * 25 + b"ben" + b" " * 27
USERS = GARDEN_USER + HARBOUR_USER + CAPITAL_USER + HERBS_USER

SHEARS = (b"3/14/26 10:00:00 AM~" + b" " * 5 + b"24.50~" + b" " * 6 + b"Card~" + b" " * 45
          + b"Rose shears~" + b" " * 38 + b"For the climbers~" + b" " * 83 + b"2~" + b" " * 3)
GLOVES = (b"3/15/26 9:30:00 AM~" + b" " * 6 + b"8~" + b" " * 10 + b"~" + b" " * 49
          + b"Gloves~" + b" " * 43 + b"~" + b" " * 99 + b"~" + b" " * 4)
PURCHASES = (ROSES_KEY + SHEARS + HARBOUR_KEY + GLOVES + ROSES_KEY + GLOVES
             + GARDEN_KEY + SHEARS)

# If a file contains a site twice, only the first record is deleted.
SITES_WITHOUT_GARDEN = (b" " * 322 + HARBOUR_SITE + b" " * 322 + b" " * 322 + ROSES_AGAIN_SITE
                        + MEADOW_SITE)
NOTES_WITHOUT_GARDEN = HERBSTER_NOTES + b" " * 1324 + b" " * 1324
USERS_WITHOUT_GARDEN = b" " * 360 + HARBOUR_USER + CAPITAL_USER + b" " * 360
PURCHASES_WITHOUT_GARDEN = (b" " * 542 + HARBOUR_KEY + GLOVES + ROSES_KEY + GLOVES + b" " * 542)

DELETE_ANYWAY = ("You are about to delete the selected site and all its sub sites. Deleting will "
                 "remove the selected items from the current view and permanently destroy all "
                 "information associated with them. Delete anyway?")
STOP_FIRST = "You must stop tracking websites before using this feature."

ADDRESS = "Website address contains"

OPENER = """#!/bin/sh
cat "/proc/$$/environ" > '{folder}/environment'
for argument
do
  printf '%s\\0' "$argument"
done > '{folder}/unfinished'
mv '{folder}/unfinished' '{folder}/arguments'
"""


class SitesTest(QuorrixTest):
    def setUp(self):
        super().setUp()
        self.given_files(SITES, PURCHASES, NOTES, USERS)

    def given_files(self, *data):
        for name, content in zip(("nodes.dat", "purchases.dat", "notes.dat", "info.dat"), data):
            self.given_bytes(name, content)

    def assert_files(self, *data):
        for name, content in zip(("nodes.dat", "purchases.dat", "notes.dat", "info.dat"), data):
            self.assertEqual(content, self.bytes_of(name), name)

    def use_file_menu(self, key):
        """Chooses an entry of the File menu by its mnemonic."""
        self.quorrix.main_window().use()
        self.session.screen.press("alt+f", key)

    def open_search(self):
        self.use_file_menu("p")
        return RecordDialog(self.quorrix, "Search Display")

    def results_of(self, search):
        search.press_key("Return")
        search.wait_until_closed()
        return RecordDialog(self.quorrix, "Search Results")

    def search_address(self, text):
        search = self.open_search()
        search.type_into(ADDRESS, text)
        return self.results_of(search)

    @staticmethod
    def enter_date(search, month, day, year):
        for box, text in (("Month", month), ("Day", day), ("Year", year)):
            search.type_into(box, text)

    def assert_message(self, text):
        self.assertEqual(text, self.quorrix.wait_for_message())
        self.assertEqual("Quorrix", self.quorrix.message_title())
        self.quorrix.answer_message_with_key("Return")

    def click_row_and_wait(self, row, caption):
        self.quorrix.click_row(row)
        self.quorrix.wait_for_caption(caption)


class Search(SitesTest):
    def test_part_of_an_address_in_capitals_is_found_in_file_order_with_duplicates(self):
        self.given_the_program()
        results = self.search_address("GARDEN")
        self.assertEqual(["www.garden.example/roses", "www.garden.example/herbs",
                          "www.garden.example", "www.garden.example/roses",
                          "gardening.meadow.example/Gate"], results.entries())
        self.assertEqual(["Select a web site address  from the list below and then click Locate "
                          "in Display.", "Website address contains:", "GARDEN",
                          "Accessed after:", "", "5 found"], results.labels())
        self.assert_in_the_corner(results)
        results.close_with("Cancel")
        self.assert_files(SITES, PURCHASES, NOTES, USERS)

    def assert_in_the_corner(self, results):
        """Checks that the results are in the corner of the screen and, with their frame, have the
        specified size."""
        x, y, width, height = results.extents()
        left, right, top, bottom = results.window().frame_widths()
        self.assertEqual((0, 0, 511, 220),
                         (x - left, y - top, width + left + right, height + top + bottom))

    def test_the_day_itself_is_found_and_the_day_before_is_not(self):
        self.given_the_program()
        search = self.open_search()
        search.choose_option("Date")
        self.enter_date(search, "2", "29", "2024")
        results = self.results_of(search)
        self.assertEqual(["www.garden.example/roses", "news.harbour.example",
                          "www.garden.example/herbs", "www.garden.example",
                          "www.garden.example/roses"], results.entries())
        self.assertIn("2/29/24", results.labels())
        results.press_key("Escape")
        results.wait_until_closed()

    def test_both_must_match_and_without_an_address_the_date_alone(self):
        self.given_the_program()
        search = self.open_search()
        search.choose_option("Site address and date")
        search.type_into(ADDRESS, "gArDeN")
        self.enter_date(search, "3", "14", "2026")
        results = self.results_of(search)
        self.assertEqual(["www.garden.example/roses", "www.garden.example/roses"],
                         results.entries())
        self.assertLess({"gArDeN", "3/14/26"}, set(results.labels()))
        results.press_button("New Search")
        search = RecordDialog(self.quorrix, "Search Display")
        search.choose_option("Site address and date")
        self.enter_date(search, "11", "3", "2025")
        results = self.results_of(search)
        self.assertEqual(["www.garden.example/roses", "news.harbour.example",
                          "www.garden.example", "www.garden.example/roses"], results.entries())

    def test_what_is_not_there_can_be_corrected_in_the_same_dialog(self):
        self.given_the_program()
        search = self.open_search()
        for text in ("", "garden.example/tulips"):
            search.type_into(ADDRESS, text)
            search.press_key("Return")
            self.assert_message("No matches found.")
            self.assertTrue(search.is_open())
        search.choose_option("Date")
        self.enter_date(search, "13", "45", "1999")
        search.press_key("Return")
        self.assert_message("Unknown error. Unable to process search.")
        self.assertTrue(search.is_open())
        search.choose_option("Site address")
        search.type_into(ADDRESS, "Harbour")
        self.assertEqual([HARBOUR], self.results_of(search).entries())


class Locate(SitesTest):
    def given_results(self, text):
        self.given_the_program()
        results = self.search_address(text)
        # Next to the results, so that the rows can be clicked, but still overlapping them.
        self.quorrix.main_window().move(200, 100)
        wait_until(lambda: self.quorrix.frame().extents()[0] < 250, "the main window to move")
        return results

    def test_it_opens_the_branch_and_selects_the_site_while_the_results_stay_in_front(self):
        results = self.given_results("garden")
        self.quorrix.wait_for_tree("www", GARDEN, HARBOUR, MEADOW)
        results.window().use()
        results.click_entry(1)
        results.press_key("Return")
        self.quorrix.wait_for_tree("www", GARDEN, "roses", "herbs", HARBOUR, MEADOW)
        wait_until(lambda: self.quorrix.selected_rows() == ["herbs"], "the herbs to be selected")
        self.click_row_and_wait("herbs", "Quorrix - www.garden.example/herbs")
        wait_until(self.quorrix.main_window().is_active, "the main window to be active")
        self.assertTrue(results.window().is_above(self.quorrix.main_window()))
        self.assertTrue(results.window().stays_on_top())
        # Both entries of a site that is recorded twice lead to its only row.
        for number in (0, 3):
            self.click_row_and_wait("www", "Quorrix")
            results.window().use()
            results.click_entry(number)
            results.press_button("Locate in Display")
            wait_until(lambda: self.quorrix.selected_rows() == ["roses"],
                       "the roses to be selected")
        self.assertTrue(results.is_open())

    def test_it_scrolls_to_a_site_far_below(self):
        many = b"".join(b"www.host%02d.example" % number + b" " * 282 + b"N"
                        + b"3/14/26 10:00:00 AM~ " for number in range(60))
        self.given_bytes("nodes.dat", many)
        results = self.given_results("host59")
        last = "www.host59.example"
        self.assertFalse(self.row_is_in_sight(last))
        results.window().use()
        results.click_entry(0)
        results.press_button("Locate in Display")
        wait_until(lambda: self.quorrix.selected_rows() == [last], f"{last} to be selected")
        self.assertTrue(self.row_is_in_sight(last))
        self.click_row_and_wait(last, "Quorrix - www.host59.example")

    def row_is_in_sight(self, text):
        tree = self.quorrix.frame().find("tree")
        _x, tree_top, _width, tree_height = tree.extents()
        row = next(row for row in self.quorrix.tree_rows() if row.name == text)
        _x, top, _width, height = row.extents()
        return height > 0 and tree_top <= top and top + height <= tree_top + tree_height

    def test_it_asks_for_a_choice_and_a_new_search_takes_the_place_of_the_results(self):
        results = self.given_results("harbour")
        results.press_button("Locate in Display")
        self.assert_message("You must select an item from the list.")
        self.assertEqual([HARBOUR], results.entries())
        self.assertEqual(["www"], self.quorrix.selected_rows())
        results.press_button("New Search")
        search = RecordDialog(self.quorrix, "Search Display")
        self.assertIsNone(results.window())
        self.assertEqual("", search.text_of(ADDRESS))
        search.type_into(ADDRESS, "GATE")
        self.assertEqual(["gardening.meadow.example/Gate"], self.results_of(search).entries())

    def test_a_site_that_the_display_was_cleared_of_is_not_found(self):
        results = self.given_results("herbs")
        self.use_file_menu("c")
        self.quorrix.wait_for_tree("www")
        results.window().use()
        results.click_entry(0)
        results.press_button("Locate in Display")
        self.assert_message("Unable to find site in display.")
        self.assertTrue(results.is_open())


class LinkInBrowser(SitesTest):
    HOST = "www.hurt.example"
    # From the host down: 290 characters in all.
    LONG = "/".join((HOST, "a" * 68, "b" * 68, "c" * 68, "d" * 66))

    def given_an_opener(self):
        self.opener = processes.temporary_folder()
        path = os.path.join(self.opener, "xdg-open")
        with open(path, "w", encoding="ascii") as file:
            file.write(OPENER.format(folder=self.opener))
        os.chmod(path, 0o700)
        self.quorrix.more_environment["PATH"] = \
            self.opener + ":" + self.session.environment["PATH"]

    def arguments(self):
        """Waits for the opener to run; returns its arguments and deletes their file."""
        path = os.path.join(self.opener, "arguments")
        wait_until(lambda: os.path.exists(path), "the opener to be run")
        with open(path, "rb") as file:
            data = file.read()
        os.remove(path)
        return data

    def link(self, row):
        PopupMenu(self.quorrix, row).choose("Link to in Browser")
        return self.arguments()

    def test_the_scheme_is_the_one_that_the_site_was_visited_with(self):
        self.given_bytes("nodes.dat", SITES + b"files.quay.example" + b" " * 282 + b"F"
                         + b"3/14/26 10:00:00 AM~ ")
        self.given_an_opener()
        self.given_the_program()
        self.assertEqual(b"https://news.harbour.example\0", self.link(HARBOUR))
        self.assertEqual(b"http://www.garden.example\0", self.link(GARDEN))
        self.assertEqual(b"ftp://files.quay.example\0", self.link("files.quay.example"))
        self.assertIsNone(self.quorrix.message())

    def test_the_browser_gets_the_environment_that_the_program_was_started_with(self):
        """As on a Wayland desktop with XWayland: the program sets QT_QPA_PLATFORM for itself."""
        self.given_bytes("nodes.dat", SITES)
        self.given_an_opener()
        self.quorrix.more_environment["WAYLAND_DISPLAY"] = "no-such-display"
        self.given_the_program()
        self.link(HARBOUR)
        with open(os.path.join(self.opener, "environment"), "rb") as file:
            names = [line.partition(b"=")[0] for line in file.read().split(b"\0")]
        self.assertIn(b"WAYLAND_DISPLAY", names)
        self.assertNotIn(b"QT_QPA_PLATFORM", names)

    def test_no_character_of_an_address_means_anything_on_the_way(self):
        leaves = ("""a'b"c`d\\e""", "a&b&&c|d||e;f", "$(reboot)${HOME}$IFS", "%0A%00%20%%s",
                  "*?[a-z]~{x,y}", "<in>out#part!", "-n", "^caret(par)ens@at")
        assert len(self.LONG) == 290
        addresses = [f"{self.HOST}/{leaf}" for leaf in leaves] + [self.LONG]
        self.given_bytes("nodes.dat", b"".join(
            address.encode("ascii").ljust(300) + b"S3/14/26 10:00:00 AM~ "
            for address in addresses))
        self.given_an_opener()
        self.given_the_program()
        PopupMenu(self.quorrix, self.HOST).choose("Show All")
        wait_until(lambda: "d" * 66 in self.quorrix.tree(), "the rows below the host")
        for address in addresses:
            with self.subTest(address):
                self.assertEqual(b"https://" + address.encode("ascii") + b"\0",
                                 self.link(address.split("/")[-1]))
        self.assertIsNone(self.quorrix.message())


class DeleteSites(SitesTest):
    def test_a_host_goes_with_all_that_is_kept_for_it_and_its_sub_sites(self):
        self.given_the_program()
        results = self.search_address("garden")
        self.click_row_and_wait(GARDEN, "Quorrix - " + GARDEN)
        self.use_file_menu("d")
        self.assert_message(DELETE_ANYWAY)  # answers with Cancel, by Return
        self.use_file_menu("d")
        self.assertEqual(DELETE_ANYWAY, self.quorrix.wait_for_message())
        # The second question shows that the first answer has been processed.
        self.assert_files(SITES, PURCHASES, NOTES, USERS)
        self.assertEqual(["www", GARDEN, HARBOUR, MEADOW], self.quorrix.tree())
        self.assertEqual("Quorrix - " + GARDEN, self.quorrix.caption())
        self.quorrix.answer_message("OK")
        self.quorrix.wait_for_tree("www", HARBOUR, MEADOW)
        self.assert_files(SITES_WITHOUT_GARDEN, PURCHASES_WITHOUT_GARDEN, NOTES_WITHOUT_GARDEN,
                          USERS_WITHOUT_GARDEN)
        self.assertEqual([HARBOUR], self.quorrix.selected_rows())
        self.quorrix.wait_for_caption("Quorrix - " + HARBOUR)
        results.window().use()
        results.click_entry(1)
        results.press_button("Locate in Display")
        self.assert_message("Unable to find site in display.")
        self.assertTrue(results.is_open())
        # The results do not keep the program running, and the second record of the roses is
        # still there.
        self.restart()
        self.quorrix.wait_for_tree("www", HARBOUR, GARDEN, MEADOW)

    def test_the_question_is_asked_in_front_of_the_results(self):
        self.given_the_program()
        results = self.search_address("garden")
        self.use_file_menu("d")
        self.assertEqual(DELETE_ANYWAY, self.quorrix.wait_for_message())
        others = [self.quorrix.main_window().number, results.window().number]
        question = next(window for window in self.quorrix.windows()
                        if window.number not in others)
        wait_until(lambda: question.is_above(results.window()),
                   "the question to be in front of the results")

    def test_a_sub_site_goes_without_its_host(self):
        self.given_the_program()
        PopupMenu(self.quorrix, GARDEN).choose("Show All")
        self.quorrix.wait_for_tree("www", GARDEN, "roses", "herbs", HARBOUR, MEADOW)
        self.click_row_and_wait("herbs", "Quorrix - www.garden.example/herbs")
        self.use_file_menu("d")
        self.assertEqual(DELETE_ANYWAY, self.quorrix.wait_for_message())
        self.quorrix.answer_message("OK")
        self.quorrix.wait_for_tree("www", GARDEN, "roses", HARBOUR, MEADOW)
        self.assert_files(
            ROSES_SITE + HARBOUR_SITE + b" " * 322 + GARDEN_SITE + ROSES_AGAIN_SITE + MEADOW_SITE,
            PURCHASES, HERBSTER_NOTES + GARDEN_NOTES + b" " * 1324,
            GARDEN_USER + HARBOUR_USER + CAPITAL_USER + b" " * 360)

    def test_the_root_goes_with_everything(self):
        self.given_the_program()
        self.click_row_and_wait("www", "Quorrix")
        self.use_file_menu("d")
        self.assertEqual(DELETE_ANYWAY, self.quorrix.wait_for_message())
        self.quorrix.answer_message("OK")
        self.quorrix.wait_for_tree("www")
        self.assert_files(b"", b"", b"", b"")
        self.assertEqual("Quorrix", self.quorrix.caption())
        for key, what in (("p", "search"), ("d", "delete"), ("c", "clear")):
            self.use_file_menu(key)
            self.assert_message(f"No website addresses to {what} in current display.")


class ClearDisplay(SitesTest):
    def test_it_empties_the_tree_and_the_next_start_shows_what_was_not_deleted(self):
        self.given_the_program()
        self.click_row_and_wait(MEADOW, "Quorrix - " + MEADOW)
        self.use_file_menu("d")
        self.assertEqual(DELETE_ANYWAY, self.quorrix.wait_for_message())
        self.quorrix.answer_message("OK")
        self.quorrix.wait_for_tree("www", GARDEN, HARBOUR)
        self.click_row_and_wait(HARBOUR, "Quorrix - " + HARBOUR)
        without_meadow = SITES[:-322] + b" " * 322
        self.use_file_menu("c")
        self.quorrix.wait_for_tree("www")
        self.quorrix.wait_for_caption("Quorrix")
        self.assertEqual(["www"], self.quorrix.selected_rows())
        self.assert_files(without_meadow, PURCHASES, NOTES, USERS)
        self.restart()
        self.quorrix.wait_for_tree("www", GARDEN, HARBOUR)
        self.assert_files(without_meadow, PURCHASES, NOTES, USERS)


class WhileTracking(SitesTest):
    def test_searching_deleting_and_clearing_are_refused(self):
        self.given_tracking()
        for key in ("p", "d", "c"):
            self.use_file_menu(key)
            self.assert_message(STOP_FIRST)
            self.assertEqual(["www", GARDEN, HARBOUR, MEADOW], self.quorrix.tree())
            wait_until(lambda: len(self.quorrix.windows()) == 1, "no window but the main window")
        self.assert_files(SITES, PURCHASES, NOTES, USERS)
        self.quorrix.stop_tracking()
        self.assertEqual([HARBOUR], self.search_address("harbour").entries())


if __name__ == "__main__":
    unittest.main()
