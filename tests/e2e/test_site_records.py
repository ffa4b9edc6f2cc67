"""The popup menu of a site, and its notes, user ID with password, and purchases.

No browser is needed: nodes.dat contains the sites when the program starts.
"""

import unittest

from support.popup_menu import PopupMenu
from support.quorrix import STOPPED, TRACKING
from support.record_dialog import RecordDialog
from support.scenario import QuorrixTest
from support.waiting import wait_until

GARDEN = "www.garden.example"
SITES = (b"www.garden.example/roses/climbing" + b" " * 267 + b"N" + b"2/29/24 12:05:09 AM~ "
         + b"www.garden.example/herbs" + b" " * 276 + b"N" + b"2/29/24 12:06:00 AM~ "
         + b"news.harbour.example" + b" " * 280 + b"S" + b"11/3/25 1:00:00 PM~  ")

# The popup menu's entries, and the beginnings of the captions of the dialogs that they open.
NOTES = ("Notes...", "Notes - ")
USER_ID_PASSWORD = ("User ID, Password...", "User ID, Password - ")
NEW_PURCHASE = ("New Purchase...", "New Purchase - ")
PURCHASES = ("Purchases...", "Purchases - ")

GARDEN_KEY = b"www.garden.example" + b" " * 282
HARBOUR_KEY = b"news.harbour.example" + b" " * 280

GARDEN_NOTES = GARDEN_KEY + b"Water the roses.\r\nPrune in March." + b" " * 991
GARDEN_USER = GARDEN_KEY + b"tulip7" + b" " * 24 + b"anna" + b" " * 26
SHEARS = (GARDEN_KEY + b"3/14/26 10:00:00 AM~" + b" " * 5 + b"24.50~" + b" " * 6
          + b"Card~" + b" " * 45 + b"Rose shears~" + b" " * 38
          + b"For the climbers\r\nand the hedge~" + b" " * 68 + b"2~" + b" " * 3)
GLOVES = (GARDEN_KEY + b"3/15/26 9:30:00 AM~" + b" " * 6 + b"8~" + b" " * 10
          + b"~" + b" " * 49 + b"Gloves~" + b" " * 43 + b"~" + b" " * 99 + b"~" + b" " * 4)


class SiteRecordsTest(QuorrixTest):
    def setUp(self):
        super().setUp()
        self.given_bytes("nodes.dat", SITES)

    def open(self, entry_and_caption, row=GARDEN):
        entry, caption = entry_and_caption
        return RecordDialog.open(self.quorrix, row, entry, caption + row)

    def press_delete(self, dialog, question):
        dialog.press_button("Delete")
        self.assertEqual(question, self.quorrix.wait_for_message())
        self.assertEqual("Quorrix", self.quorrix.message_title())

    def assert_tab_order(self, dialog, *names):
        """`names` is the tab order, starting with the control that has the focus first."""
        self.assertEqual(names[0], dialog.focused())
        for name in (*names[1:], names[0]):
            dialog.press_key("Tab")
            wait_until(lambda name=name: dialog.focused() == name,
                       lambda name=name: f"Tab to reach {name!r}; it is at {dialog.focused()!r}")


class PopupMenuOfTheTree(SiteRecordsTest):
    def test_show_all_opens_everything_below_a_site_and_hide_all_closes_it(self):
        self.given_the_program()
        closed = ("www", GARDEN, "news.harbour.example")
        opened = ("www", GARDEN, "roses", "climbing", "herbs", "news.harbour.example")
        self.quorrix.wait_for_tree(*closed)
        PopupMenu(self.quorrix, GARDEN).choose("Show All")
        self.quorrix.wait_for_tree(*opened)
        PopupMenu(self.quorrix, GARDEN).choose("Hide All")
        self.quorrix.wait_for_tree(*closed)

    def test_its_entries_are_for_sites_and_not_for_the_root(self):
        self.given_the_program()
        menu = PopupMenu(self.quorrix, GARDEN)
        self.assertEqual(["Show All", "Hide All", "Link to in Browser", "Notes...",
                          "User ID, Password...", "New Purchase...", "Purchases..."],
                         menu.captions())
        self.assertEqual(menu.captions(), menu.enabled_captions())
        menu.dismiss()
        # All rows share one menu. With all entries disabled, no key can select one.
        self.quorrix.click_row("www", 3)
        wait_until(menu.is_open, "the menu of the root")
        self.assertEqual([], menu.enabled_captions())


class Notes(SiteRecordsTest):
    def test_two_lines_are_kept_and_shown_again(self):
        self.given_the_program()
        dialog = self.open(NOTES)
        self.assertEqual("", dialog.text_of("Notes"))
        self.assertFalse(dialog.is_enabled("push button", "Delete"))
        dialog.type_into("Notes", "Water the roses.\nPrune in March.")
        dialog.close_with("OK")
        self.assertEqual(GARDEN_NOTES, self.bytes_of("notes.dat"))
        dialog = self.open(NOTES)
        self.assertEqual("Water the roses.\nPrune in March.", dialog.text_of("Notes").rstrip(" "))
        dialog.close_with("OK")
        self.assertEqual(GARDEN_NOTES, self.bytes_of("notes.dat"))

    def test_every_site_has_its_own(self):
        self.given_bytes("notes.dat", GARDEN_NOTES)
        self.given_the_program()
        PopupMenu(self.quorrix, GARDEN).choose("Show All")
        self.quorrix.wait_for_tree("www", GARDEN, "roses", "climbing", "herbs",
                                   "news.harbour.example")
        # A row below a host shows only the end of its key.
        PopupMenu(self.quorrix, "climbing").choose("Notes...")
        dialog = RecordDialog(self.quorrix, "Notes - www.garden.example/roses/climbing")
        self.assertEqual("", dialog.text_of("Notes"))
        dialog.type_into("Notes", "Mildew")
        dialog.close_with("OK")
        self.assertEqual(GARDEN_NOTES + b"www.garden.example/roses/climbing" + b" " * 267
                         + b"Mildew" + b" " * 1018, self.bytes_of("notes.dat"))

    def test_a_character_outside_the_code_page_becomes_a_question_mark(self):
        self.given_the_program()
        dialog = self.open(NOTES)
        dialog.insert_into("Notes", "\u03a9 5 \u20ac \u00e9", shown="? 5 \u20ac \u00e9")
        dialog.close_with("OK")
        self.assertEqual(GARDEN_KEY + b"? 5 \x80 \xe9" + b" " * 1017, self.bytes_of("notes.dat"))

    def test_clearing_the_box_keeps_them_and_delete_removes_them(self):
        self.given_bytes("notes.dat", GARDEN_NOTES)
        self.given_the_program()
        dialog = self.open(NOTES)
        dialog.clear("Notes")
        dialog.close_with("OK")
        self.assertEqual(GARDEN_NOTES, self.bytes_of("notes.dat"))
        dialog = self.open(NOTES)
        self.press_delete(dialog, "Delete notes?")
        self.quorrix.answer_message_with_key("Return")  # presses Cancel, the default
        self.assertEqual(GARDEN_NOTES, self.bytes_of("notes.dat"))
        self.press_delete(dialog, "Delete notes?")
        self.quorrix.answer_message("OK")
        wait_until(lambda: dialog.text_of("Notes") == "", "the box to be empty")
        self.assertFalse(dialog.is_enabled("push button", "Delete"))
        self.assertEqual(b" " * 1324, self.bytes_of("notes.dat"))
        dialog.type_into("Notes", "New")
        dialog.close_with("OK")
        self.assertEqual(b" " * 1324 + GARDEN_KEY + b"New" + b" " * 1021,
                         self.bytes_of("notes.dat"))

    def test_they_can_be_kept_while_tracking(self):
        self.given_tracking()
        dialog = self.open(NOTES)
        dialog.type_into("Notes", "Water the roses.\nPrune in March.")
        dialog.close_with("OK")
        self.assertEqual(GARDEN_NOTES, self.bytes_of("notes.dat"))
        self.assertTrue(self.quorrix.shows_text(TRACKING))
        self.quorrix.stop_tracking()
        self.assertTrue(self.quorrix.shows_text(STOPPED))
        self.assertEqual(SITES, self.bytes_of("nodes.dat"))

    def test_tab_goes_through_the_dialog(self):
        self.given_bytes("notes.dat", GARDEN_NOTES)
        self.given_the_program()
        self.assert_tab_order(self.open(NOTES), "Notes", "OK", "Cancel", "Delete")

    def test_enter_on_ok_saves_and_escape_does_not(self):
        self.given_the_program()
        dialog = self.open(NOTES)
        dialog.type_into("Notes", "Forget me")
        dialog.press_key("Escape")
        dialog.wait_until_closed()
        self.assertEqual(b"", self.bytes_of("notes.dat"))
        dialog = self.open(NOTES)
        dialog.type_into("Notes", "Water the roses.\nPrune in March.")
        dialog.press_key("Tab")
        wait_until(lambda: dialog.focused() == "OK", "OK to have the keyboard")
        dialog.press_key("Return")
        dialog.wait_until_closed()
        self.assertEqual(GARDEN_NOTES, self.bytes_of("notes.dat"))


class UserIDAndPassword(SiteRecordsTest):
    def test_they_are_kept_shown_again_and_deleted(self):
        self.given_the_program()
        dialog = self.open(USER_ID_PASSWORD)
        self.assertFalse(dialog.is_enabled("push button", "Delete"))
        dialog.type_into("User ID", "anna")
        dialog.type_into("Password", "tulip7")
        dialog.press_key("Return")
        dialog.wait_until_closed()
        self.assertEqual(GARDEN_USER, self.bytes_of("info.dat"))
        dialog = self.open(USER_ID_PASSWORD)
        self.assertEqual(["anna", "tulip7"], [dialog.text_of("User ID"),
                                              dialog.text_of("Password")])
        self.press_delete(dialog, "Delete user ID and password?")
        self.quorrix.answer_message("OK")
        wait_until(lambda: dialog.text_of("User ID") == dialog.text_of("Password") == "",
                   "the boxes to be empty")
        self.assertFalse(dialog.is_enabled("push button", "Delete"))
        self.assertEqual(b" " * 360, self.bytes_of("info.dat"))
        dialog.close_with("OK")
        self.assertEqual(b" " * 360, self.bytes_of("info.dat"))

    def test_clearing_both_boxes_keeps_them(self):
        self.given_bytes("info.dat", GARDEN_USER)
        self.given_the_program()
        dialog = self.open(USER_ID_PASSWORD)
        dialog.clear("User ID")
        dialog.clear("Password")
        dialog.close_with("OK")
        self.assertEqual(GARDEN_USER, self.bytes_of("info.dat"))

    def test_clearing_one_box_clears_that_one(self):
        self.given_bytes("info.dat", GARDEN_USER)
        self.given_the_program()
        dialog = self.open(USER_ID_PASSWORD)
        dialog.clear("User ID")
        dialog.close_with("OK")
        self.assertEqual(GARDEN_KEY + b"tulip7" + b" " * 54, self.bytes_of("info.dat"))

    def test_a_blank_is_stored_and_ends_the_text_when_it_is_shown(self):
        self.given_the_program()
        dialog = self.open(USER_ID_PASSWORD)
        dialog.type_into("User ID", "a b")
        dialog.close_with("OK")
        self.assertEqual(GARDEN_KEY + b" " * 30 + b"a b" + b" " * 27, self.bytes_of("info.dat"))
        self.assertEqual("a", self.open(USER_ID_PASSWORD).text_of("User ID"))

    def test_tab_goes_through_the_dialog_and_escape_leaves_it(self):
        self.given_bytes("info.dat", GARDEN_USER)
        self.given_the_program()
        dialog = self.open(USER_ID_PASSWORD)
        self.assert_tab_order(dialog, "User ID", "Password", "OK", "Cancel", "Delete")
        dialog.type_into("User ID", "someone")
        dialog.press_key("Escape")
        dialog.wait_until_closed()
        self.assertEqual(GARDEN_USER, self.bytes_of("info.dat"))


class Purchases(SiteRecordsTest):
    def enter_shears(self, dialog):
        dialog.type_into("Item", "Rose shears")
        dialog.type_into("Price", "24.50")
        dialog.type_into("Quantity", "2")
        dialog.type_into("Payment Method", "Card")
        dialog.type_into("Description", "For the climbers\nand the hedge")
        dialog.type_into("Date", "3/14/26 10:00:00 AM")

    def choose_from_list(self, purchases, number):
        purchases.click_entry(number)
        purchases.press_button("OK")
        return RecordDialog(self.quorrix, "New Purchase - " + GARDEN)

    def delete_from_list(self, purchases, number):
        purchase = self.choose_from_list(purchases, number)
        self.press_delete(purchase, "Delete purchase information?")
        self.quorrix.answer_message("OK")
        purchase.wait_until_closed()

    def test_one_that_is_saved_twice_is_there_twice(self):
        self.given_the_program()
        for expected in (SHEARS, SHEARS + SHEARS):
            dialog = self.open(NEW_PURCHASE)
            self.assertFalse(dialog.is_enabled("push button", "Delete"))
            self.enter_shears(dialog)
            dialog.close_with("OK")
            self.assertEqual(expected, self.bytes_of("purchases.dat"))
        self.assertEqual(["Rose shears 24.50 3/14/26 10:00:00 AM"] * 2,
                         self.open(PURCHASES).entries())

    def test_one_from_the_list_can_only_be_viewed_and_deleted(self):
        other = HARBOUR_KEY + SHEARS[300:]
        self.given_bytes("purchases.dat", SHEARS + other + GLOVES)
        self.given_the_program()
        purchases = self.open(PURCHASES)
        self.assertEqual(["Rose shears 24.50 3/14/26 10:00:00 AM",
                          "Gloves 8 3/15/26 9:30:00 AM"], purchases.entries())
        shears = self.choose_from_list(purchases, 0)
        boxes = ("Item", "Price", "Quantity", "Payment Method", "Description", "Date")
        self.assertEqual(["Rose shears", "24.50", "2", "Card", "For the climbers\nand the hedge",
                          "3/14/26 10:00:00 AM"], [shears.text_of(box) for box in boxes])
        self.assertEqual([], [box for box in boxes if shears.is_enabled("text", box)])
        self.assertFalse(shears.is_enabled("push button", "OK"))
        shears.close_with("Cancel")
        self.assertEqual(SHEARS + other + GLOVES, self.bytes_of("purchases.dat"))
        self.delete_from_list(purchases, 0)
        self.assertEqual(b" " * 542 + other + GLOVES, self.bytes_of("purchases.dat"))
        self.assertEqual(["Gloves 8 3/15/26 9:30:00 AM"], purchases.entries())
        self.assertTrue(purchases.is_enabled("push button", "OK"))
        self.delete_from_list(purchases, 0)
        self.assertEqual(b" " * 542 + other + b" " * 542, self.bytes_of("purchases.dat"))
        self.assertEqual([], purchases.entries())
        self.assertFalse(purchases.is_enabled("push button", "OK"))
        purchases.close_with("Cancel")

    def test_the_list_asks_for_a_choice(self):
        self.given_bytes("purchases.dat", SHEARS)
        self.given_the_program()
        purchases = self.open(PURCHASES)
        purchases.press_button("OK")
        self.assertEqual("You must select an item from the list.", self.quorrix.wait_for_message())
        self.quorrix.confirm_message()
        self.assertTrue(purchases.is_open())

    def test_without_any_there_is_a_message_and_no_list(self):
        self.given_the_program()
        PopupMenu(self.quorrix, GARDEN).choose("Purchases...")
        self.assertEqual("No purchase information recorded for this web location.",
                         self.quorrix.wait_for_message())
        self.quorrix.confirm_message()
        wait_until(lambda: len(self.quorrix.windows()) == 1, "no window but the main window")
        self.assertEqual(b"", self.bytes_of("purchases.dat"))

    def test_tab_goes_through_the_dialogs(self):
        self.given_bytes("purchases.dat", SHEARS)
        self.given_the_program()
        dialog = self.open(NEW_PURCHASE)
        self.assert_tab_order(dialog, "Item", "Price", "Quantity", "Payment Method", "Description",
                              "Date", "OK", "Cancel")
        dialog.press_key("Escape")
        dialog.wait_until_closed()
        purchases = self.open(PURCHASES)
        self.assert_tab_order(purchases, "Purchases", "OK", "Cancel")
        purchase = self.choose_from_list(purchases, 0)
        self.assert_tab_order(purchase, "Cancel", "Delete")

    def test_enter_and_escape_are_ok_and_cancel(self):
        self.given_the_program()
        dialog = self.open(NEW_PURCHASE)
        self.enter_shears(dialog)
        dialog.press_key("Escape")
        dialog.wait_until_closed()
        self.assertEqual(b"", self.bytes_of("purchases.dat"))
        dialog = self.open(NEW_PURCHASE)
        self.enter_shears(dialog)
        dialog.press_key("Return")
        dialog.wait_until_closed()
        self.assertEqual(SHEARS, self.bytes_of("purchases.dat"))
        purchases = self.open(PURCHASES)
        purchases.click_entry(0)
        purchases.press_key("Return")
        purchase = RecordDialog(self.quorrix, "New Purchase - " + GARDEN)
        purchase.press_key("Escape")
        purchase.wait_until_closed()
        self.assertTrue(purchases.is_open())
        purchases.press_key("Escape")
        purchases.wait_until_closed()


class Place(SiteRecordsTest):
    def test_the_dialogs_are_centred_over_the_main_window(self):
        self.given_bytes("purchases.dat", SHEARS)
        self.given_the_program()
        before = self.quorrix.frame().extents()
        self.quorrix.main_window().move(60, 90)
        wait_until(lambda: self.quorrix.frame().extents()[0] < before[0] - 100,
                   "the main window to be elsewhere")
        for kind in (NOTES, USER_ID_PASSWORD, NEW_PURCHASE, PURCHASES):
            dialog = self.open(kind)
            with self.subTest(dialog.caption):
                x, y = self.middle(dialog.extents(), dialog.window())
                main_x, main_y = self.middle(self.quorrix.frame().extents(),
                                             self.quorrix.main_window())
                self.assertAlmostEqual(main_x, x, delta=1)
                self.assertAlmostEqual(main_y, y, delta=1)
            dialog.press_key("Escape")
            dialog.wait_until_closed()

    @staticmethod
    def middle(extents, window):
        """The middle of a window including its frame."""
        x, y, width, height = extents
        left, right, top, bottom = window.frame_widths()
        return x + (width + right - left) / 2, y + (height + bottom - top) / 2


if __name__ == "__main__":
    unittest.main()
