"""Firefox and Chromium side by side: only the one that was used last is read."""

import unittest

from support.accessibility import STATE_ACTIVE
from support.browsers import Chromium, Firefox
from support.scenario import QuorrixTest
from support.screen import ResponseWatch
from support.site_file import time_of
from support.waiting import wait_until


class BrowsersTogether(QuorrixTest):
    def setUp(self):
        super().setUp()
        self.quorrix.start()
        self.firefox = self.given_a_browser(Firefox)
        self.chromium = self.given_a_browser(Chromium)
        self.given_tracking()

    def test_a_visit_in_either_is_recorded(self):
        for browser, address in ((self.firefox, "www.garden.example/one.html"),
                                 (self.chromium, "news.harbour.example/two.html"),
                                 (self.firefox, "www.garden.example/three.html"),
                                 (self.chromium, "news.harbour.example/four.html")):
            browser.visit("http://" + address)
            self.wait_for_record(address)
        self.assert_sites(("www.garden.example/one.html", "N"),
                          ("news.harbour.example/two.html", "N"),
                          ("www.garden.example/three.html", "N"),
                          ("news.harbour.example/four.html", "N"))

    def test_choosing_the_other_window_stamps_its_page(self):
        for front, back in ((self.firefox, self.chromium), (self.chromium, self.firefox)):
            shown = f"www.garden.example/{front.name}.html"
            with self.subTest(chosen=front.name):
                front.visit("http://" + shown)
                self.wait_for_record(shown)
                back.visit("http://news.harbour.example/" + back.name)
                self.wait_for_record("news.harbour.example/" + back.name)
                self.wait_for_the_next_second("news.harbour.example/" + back.name)
                before = self.quorrix.record_of(shown)
                writes = self.watch_writes()

                front.use()
                self.wait_for_write(writes, 1)
                self.assert_nothing_is_written(writes, "one choice is one record written")
                after = self.quorrix.record_of(shown)
                self.assertLess(time_of(before.stamp), time_of(after.stamp))

    def test_what_happens_in_the_one_behind_is_not_recorded(self):
        for front, behind in ((self.firefox, self.chromium), (self.chromium, self.firefox)):
            with self.subTest(behind=behind.name):
                leave = self.given_a_page_that_leaves_by_itself(behind)
                front.visit(f"http://www.garden.example/in-front-{front.name}.html")
                self.wait_for_record(f"www.garden.example/in-front-{front.name}.html")
                writes = self.watch_writes()

                leave()
                behind.wait_until_it_shows(self.left_for(behind))
                self.assert_nothing_is_written(writes, "the one behind is not read")
                behind.use()
                self.wait_for_record(f"www.harbour.example/{behind.name}/arrived.html")

    def test_using_another_program_leaves_the_last_used_browser_the_one_that_is_read(self):
        leave = self.given_a_page_that_leaves_by_itself(self.firefox)
        self.quorrix.main_window().use()
        leave()
        self.firefox.wait_until_it_shows(self.left_for(self.firefox))
        self.wait_for_record("www.harbour.example/Firefox/arrived.html")

    def test_a_stopped_one_behind_does_not_keep_the_other_from_being_read(self):
        self.firefox.visit("http://www.garden.example/before.html")
        self.wait_for_record("www.garden.example/before.html")
        self.addCleanup(self.firefox.continue_all)
        with ResponseWatch(self.quorrix.main_window()) as watch:
            self.firefox.stop_all()
            self.chromium.visit("http://news.harbour.example/meanwhile.html")
            self.wait_for_record("news.harbour.example/meanwhile.html", seconds=5)
            self.firefox.continue_all()
            self.assert_tracking_goes_on(self.firefox, "http://www.garden.example/after.html",
                                         "www.garden.example/after.html")
        self.assertLess(watch.longest, 0.5)
        self.assert_sites(("www.garden.example/before.html", "N"),
                          ("news.harbour.example/meanwhile.html", "N"),
                          ("www.garden.example/after.html", "N"))

    def test_the_one_used_last_before_tracking_starts_is_the_one_that_is_read(self):
        for used, other in ((self.firefox, self.chromium), (self.chromium, self.firefox)):
            # Each time other pages: a browser that shows a page again may still be loading it when
            # tracking starts, and the end of the load is a visit.
            page = {browser: f"www.garden.example/{used.name}-is-used/{browser.name}.html"
                    for browser in (used, other)}
            with self.subTest(used=used.name):
                self.quorrix.stop_tracking()
                for browser in (self.firefox, self.chromium):
                    browser.visit(f"http://{page[browser]}")
                used.use()
                wait_until(lambda: self.is_active(used) and not self.is_active(other),
                           "the browsers to know which of them is used")
                before = self.quorrix.addresses_and_flags()
                writes = self.watch_writes()

                self.quorrix.start_tracking()
                self.wait_for_write(writes, 1, seconds=2)
                self.assert_nothing_is_written(writes, "the other one is not read")
                self.assertEqual(1, writes.now(), self.quorrix.stamps())
                self.assertEqual([(page[used], "N")],
                                 self.quorrix.addresses_and_flags()[len(before):])

    def is_active(self, browser):
        """Whether the browser itself reports an active window. On a busy machine this takes a
        second."""
        program = self.quorrix.bus.application_of(browser.process.pid)
        return any(window.has_state(STATE_ACTIVE) for window in program.children())

    # --- given -----------------------------------------------------------------------------------

    def left_for(self, browser):
        return f"http://www.harbour.example/{browser.name}/arrived.html"

    def given_a_page_that_leaves_by_itself(self, browser):
        """Shows a page that navigates away when the returned function is called."""
        place = f"http://www.harbour.example/{browser.name}"
        signal = self.site.given_a_slow_page(f"{place}/signal")
        self.site.given_a_page(f"{place}/waiting.html", script=(
            f"fetch('/{browser.name}/signal').then(() => {{ location = 'arrived.html'; }})"))
        browser.visit(f"{place}/waiting.html")
        wait_until(signal.asked.is_set, "the page to wait for its signal")
        self.wait_for_record(f"www.harbour.example/{browser.name}/waiting.html")
        return signal.release


if __name__ == "__main__":
    unittest.main()
