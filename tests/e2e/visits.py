"""What must hold for every browser that can be read. The modules test_firefox, test_chromium and
test_gnome_web run these scenarios with the real browsers."""

import time

from support.scenario import HOME, LONG_ENOUGH, tell
from support.screen import ResponseWatch
from support.site_file import time_of
from support.waiting import holds_for, wait_until


class VisitScenarios:
    browser_class = None

    def setUp(self):
        super().setUp()
        self.given_a_starting_program()

    # --- visits ----------------------------------------------------------------------------------

    def test_every_page_is_recorded_within_a_second_of_its_commit(self):
        browser = self.given_a_browser(self.browser_class)
        self.given_tracking()
        delays = []
        for url, address, rows in (
                ("http://www.garden.example/", "www.garden.example",
                 ["www", "www.garden.example"]),
                ("http://www.garden.example/roses/red.html", "www.garden.example/roses/red.html",
                 ["www", "www.garden.example", "roses", "red.html"]),
                ("http://news.harbour.example/today/", "news.harbour.example/today",
                 ["www", "www.garden.example", "roses", "red.html", "news.harbour.example",
                  "today"]),
                ("https://www.secure.example/account", "www.secure.example/account",
                 ["www", "www.garden.example", "roses", "red.html", "news.harbour.example",
                  "today", "www.secure.example", "account"])):
            browser.visit(url)
            committed = time.monotonic()
            self.wait_for_record(address)
            delays.append(time.monotonic() - committed)
            wait_until(lambda rows=rows: self.quorrix.tree() == rows,
                       lambda rows=rows: f"the tree {rows}; it is {self.quorrix.tree()}", 1)

        self.assert_sites(("www.garden.example", "N"),
                          ("www.garden.example/roses/red.html", "N"),
                          ("news.harbour.example/today", "N"),
                          ("www.secure.example/account", "S"))
        tell(f"{browser.name}: {max(delays) * 1000:.0f} ms from commit to record at most, "
             f"of {len(delays)} visits")

    def test_the_page_that_is_shown_when_tracking_starts_is_recorded(self):
        browser = self.given_a_browser(self.browser_class)
        browser.visit("http://www.garden.example/first.html")
        self.given_tracking()
        self.wait_for_record("www.garden.example/first.html")
        self.assert_sites(("www.garden.example/first.html", "N"))

    def test_the_scheme_letter_is_that_of_the_latest_visit(self):
        browser = self.given_a_browser(self.browser_class)
        self.given_tracking()
        browser.visit("http://www.garden.example/door.html")
        self.wait_for_record("www.garden.example/door.html")
        browser.visit("http://www.garden.example/hall.html")
        self.wait_for_record("www.garden.example/hall.html")

        browser.visit("https://www.garden.example/door.html")
        wait_until(lambda: self.quorrix.record_of("www.garden.example/door.html").flag == "S",
                   "the scheme letter S", 1)
        self.assert_sites(("www.garden.example/door.html", "S"),
                          ("www.garden.example/hall.html", "N"))

    def test_a_page_that_sends_its_reader_on_by_script_ends_on_the_page_it_leads_to(self):
        browser = self.given_a_browser(self.browser_class)
        self.site.given_a_page("http://www.garden.example/moved.html",
                               script="location.replace('http://news.harbour.example/here.html')")
        self.given_tracking()
        browser.visit("http://www.garden.example/moved.html",
                      shows="http://news.harbour.example/here.html")
        self.wait_for_record("news.harbour.example/here.html")
        self.assertEqual("news.harbour.example/here.html", self.quorrix.records()[-1].address)

    def test_waiting_for_a_slow_server_does_not_stamp_the_page_that_is_being_left(self):
        browser = self.given_a_browser(self.browser_class)
        slow = self.site.given_a_slow_page("http://news.harbour.example/slow.html")
        self.given_tracking()
        browser.visit("http://www.garden.example/left.html")
        self.wait_for_record("www.garden.example/left.html")
        self.wait_for_the_next_second("www.garden.example/left.html")
        writes = self.watch_writes()

        browser.ask_for("http://news.harbour.example/slow.html")
        self.assertTrue(slow.asked.wait(5))
        self.assert_nothing_is_written(writes, "a page that is being left is not stamped")
        slow.release()
        browser.wait_until_it_shows("http://news.harbour.example/slow.html")
        self.wait_for_record("news.harbour.example/slow.html")
        self.assert_nothing_is_written(writes, "one visit is one record written")
        self.assertEqual(1, writes.now())
        self.assert_sites(("www.garden.example/left.html", "N"),
                          ("news.harbour.example/slow.html", "N"))

    def test_choosing_a_tab_stamps_its_page(self):
        browser = self.given_a_browser(self.browser_class)
        self.given_tracking()
        browser.visit("http://www.garden.example/one.html")
        self.wait_for_record("www.garden.example/one.html")
        browser.open_tab("http://www.garden.example/two.html")
        second = self.wait_for_record("www.garden.example/two.html")
        self.wait_for_the_next_second("www.garden.example/two.html")
        before = self.quorrix.record_of("www.garden.example/one.html").stamp
        writes = self.watch_writes()

        browser.choose_next_tab("http://www.garden.example/one.html")
        self.wait_for_write(writes, 1)
        self.assert_nothing_is_written(writes, "one choice is one record written")
        first = self.quorrix.record_of("www.garden.example/one.html")
        self.assertLess(time_of(before), time_of(first.stamp))
        self.assertEqual(second, self.quorrix.record_of("www.garden.example/two.html"))
        self.assert_sites(("www.garden.example/one.html", "N"),
                          ("www.garden.example/two.html", "N"))

    def test_a_slow_reload_stamps_the_page_when_it_is_over(self):
        browser = self.given_a_browser(self.browser_class)
        self.given_tracking()
        browser.visit("http://news.harbour.example/other.html")
        other = self.wait_for_record("news.harbour.example/other.html")
        url = "http://www.garden.example/again.html"
        browser.visit(url)
        before = self.wait_for_record("www.garden.example/again.html")
        writes = self.watch_writes()
        # Wait: a page that is reloaded while it is still loading gets only one stamp.
        self.assert_nothing_is_written(writes, "one visit is one record written")
        slow = self.site.given_a_slow_page(url)

        browser.reload(url)
        self.assert_nothing_is_written(writes, "a page is stamped when its reload is over")
        slow.release()
        self.wait_for_write(writes, 1)
        self.assert_nothing_is_written(writes, "one reload is one record written")
        self.assertEqual(1, writes.now())
        after = self.quorrix.record_of("www.garden.example/again.html")
        self.assertLess(time_of(before.stamp), time_of(after.stamp))
        self.assertEqual(other, self.quorrix.record_of("news.harbour.example/other.html"))
        self.assert_sites(("news.harbour.example/other.html", "N"),
                          ("www.garden.example/again.html", "N"))

    def test_a_reload_that_is_over_at_once_stamps_the_page_once(self):
        browser = self.given_a_browser(self.browser_class)
        self.given_tracking()
        url = "http://www.garden.example/again.html"
        browser.visit(url)
        self.wait_for_record("www.garden.example/again.html")
        writes = self.watch_writes()
        # Wait: a document that follows the page within a sixth of a second is not another visit.
        self.assert_nothing_is_written(writes, "one visit is one record written")
        for count in (1, 2):
            self.wait_for_the_next_second("www.garden.example/again.html")
            before = self.quorrix.record_of("www.garden.example/again.html")
            browser.reload(url)
            self.wait_for_write(writes, count)
            self.assert_nothing_is_written(writes, "one reload is one record written")
            after = self.quorrix.record_of("www.garden.example/again.html")
            self.assertLess(time_of(before.stamp), time_of(after.stamp))
        self.assert_sites(("www.garden.example/again.html", "N"))

    def test_an_address_that_a_script_pushes_is_recorded(self):
        browser = self.given_a_browser(self.browser_class)
        self.site.given_a_page(
            "http://www.garden.example/app.html",
            script="onkeydown = event => { if (event.key == 'p') {"
                   " history.pushState({}, '', '/app/second.html');"
                   " document.title = 'Page www.garden.example/app/second.html'; } };")
        self.given_tracking()
        browser.visit("http://www.garden.example/app.html")
        self.wait_for_record("www.garden.example/app.html")
        browser.press("p")
        browser.wait_until_it_shows("http://www.garden.example/app/second.html")
        # An address without a new document counts as a visit after it has been shown for a second.
        self.wait_for_record("www.garden.example/app/second.html", seconds=2.5)
        self.assert_sites(("www.garden.example/app.html", "N"),
                          ("www.garden.example/app/second.html", "N"))

    # --- what is not recorded --------------------------------------------------------------------

    def test_a_half_typed_address_is_not_recorded(self):
        browser = self.given_a_browser(self.browser_class)
        self.given_tracking()
        browser.visit("http://www.garden.example/here.html")
        self.wait_for_record("www.garden.example/here.html")
        writes = self.watch_writes()
        browser.type_address("http://www.garden.example/never/visited.html")
        self.assert_nothing_is_written(writes, "a half-typed address is not recorded")
        browser.give_up_typing()
        self.assert_tracking_goes_on(browser, "http://www.garden.example/there.html",
                                     "www.garden.example/there.html")
        self.assert_sites(("www.garden.example/here.html", "N"),
                          ("www.garden.example/there.html", "N"))

    def test_a_private_window_beside_a_normal_one_is_not_recorded(self):
        browser = self.given_a_browser(self.browser_class)
        self.given_tracking()
        browser.visit("http://www.garden.example/public.html")
        self.wait_for_record("www.garden.example/public.html")
        normal = browser.window
        writes = self.watch_writes()

        browser.open_private_window("http://www.secret.example/first.html")
        self.assert_nothing_is_written(writes, "a private window is not recorded")
        browser.visit("http://www.secret.example/second.html")
        self.assert_nothing_is_written(writes, "a private window is not recorded")
        browser.window = normal
        self.assert_tracking_goes_on(browser, "http://www.garden.example/after.html",
                                     "www.garden.example/after.html")
        self.assert_sites(("www.garden.example/public.html", "N"),
                          ("www.garden.example/after.html", "N"))

    def test_a_browser_with_nothing_but_a_private_window_is_not_recorded(self):
        browser = self.given_no_browser_yet(self.browser_class)
        self.given_tracking()
        browser.start_private("http://www.secret.example/first.html")
        browser.visit("http://www.secret.example/second.html")
        holds_for(LONG_ENOUGH, lambda: self.quorrix.records() == [],
                  "a private window is not recorded")
        browser.open_window(HOME)
        self.assert_tracking_goes_on(browser, "http://www.garden.example/public.html",
                                     "www.garden.example/public.html")
        self.assert_sites(("www.garden.example/public.html", "N"))

    def test_a_host_with_fewer_than_two_dots_is_not_recorded(self):
        browser = self.given_a_browser(self.browser_class)
        self.given_tracking()
        browser.visit("http://two.test/page.html")
        holds_for(LONG_ENOUGH, lambda: self.quorrix.records() == [],
                  "a host with one dot is not recorded")
        self.assert_tracking_goes_on(browser, "http://www.garden.example/page.html",
                                     "www.garden.example/page.html")
        self.assert_sites(("www.garden.example/page.html", "N"))

    # --- a browser that goes away ----------------------------------------------------------------

    def test_tracking_goes_on_when_the_browser_is_closed_and_started_again(self):
        browser = self.given_a_browser(self.browser_class)
        self.given_tracking()
        browser.visit("http://www.garden.example/before.html")
        self.wait_for_record("www.garden.example/before.html")
        with ResponseWatch(self.quorrix.main_window()) as watch:
            browser.close()
            self.assert_nothing_is_written(self.watch_writes(), "no browser, no visit")
            again = self.given_a_browser(self.browser_class)
            self.assert_tracking_goes_on(again, "http://www.garden.example/after.html",
                                         "www.garden.example/after.html")
        self.assertLess(watch.longest, 0.5)
        self.assertIsNone(self.quorrix.message())
        self.assert_sites(("www.garden.example/before.html", "N"),
                          ("www.garden.example/after.html", "N"))

    def test_a_stopped_browser_does_not_freeze_the_window(self):
        browser = self.given_a_browser(self.browser_class)
        self.given_tracking()
        browser.visit("http://www.garden.example/before.html")
        self.wait_for_record("www.garden.example/before.html")
        self.addCleanup(browser.continue_all)
        with ResponseWatch(self.quorrix.main_window()) as watch:
            browser.stop_all()
            self.assert_nothing_is_written(self.watch_writes(), "a stopped browser shows nothing",
                                           seconds=3)
            browser.continue_all()
            self.assert_tracking_goes_on(browser, "http://www.garden.example/after.html",
                                         "www.garden.example/after.html")
        tell(f"{browser.name} stopped: the window answered {watch.answers} times, "
             f"after {watch.longest * 1000:.0f} ms at most")
        self.assertLess(watch.longest, 0.5)
        self.assert_sites(("www.garden.example/before.html", "N"),
                          ("www.garden.example/after.html", "N"))
