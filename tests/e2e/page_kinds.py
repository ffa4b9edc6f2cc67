"""Pages as real sites have them: cached by the browser, loading slowly, redirected, or missing. The
modules test_firefox_pages, test_chromium_pages and test_gnome_web_pages run these scenarios."""

from support.site_file import time_of
from support.waiting import wait_until

LEFT = "www.garden.example/left.html"
LATER = "news.harbour.example/later.html"


class PageKindScenarios:
    browser_class = None
    navigations = 20

    def setUp(self):
        super().setUp()
        self.given_a_starting_program()
        self.browser = self.given_a_browser(self.browser_class)
        self.given_tracking()

    # --- pages that the browser has cached -------------------------------------------------------

    def test_back_and_forward_stamp_a_page_that_the_browser_kept_once_each(self):
        self.see(LEFT, LATER)
        for key, shown in (("alt+Left", LEFT), ("alt+Right", LATER), ("alt+Left", LEFT)):
            with self.subTest(key=key):
                self.assert_stamped_once(shown, lambda key=key: self.browser.press(key))

    def test_tracking_goes_on_in_the_window_after_going_back(self):
        self.see(LEFT, LATER)
        self.assert_stamped_once(LEFT, lambda: self.browser.press("alt+Left"))
        self.assert_stamped_once(LEFT, lambda: self.browser.reload(f"http://{LEFT}"))
        self.browser.open_tab("http://www.garden.example/tab.html")
        self.wait_for_record("www.garden.example/tab.html")
        self.assert_stamped_once(LEFT, lambda: self.browser.choose_next_tab(f"http://{LEFT}"))
        self.see("www.garden.example/at-last.html")

    def test_an_address_typed_again_stamps_its_page_that_the_browser_kept(self):
        self.see(LEFT, LATER)
        self.assert_stamped_once(LEFT, lambda: self.browser.visit(f"http://{LEFT}"))

    # --- slow pages ------------------------------------------------------------------------------

    def test_a_page_whose_body_is_slow_is_recorded_once_and_when_it_begins(self):
        body = self.site.given_a_slow_body("http://news.harbour.example/slow-body.html")
        self.see(LEFT)
        writes = self.watch_writes()
        self.see("news.harbour.example/slow-body.html")
        body.release()
        self.assert_nothing_is_written(writes, "one visit is one record written")
        self.assertEqual(1, writes.now())

    def test_a_load_that_is_stopped_before_it_answers_is_not_recorded(self):
        slow = self.site.given_a_slow_page("http://news.harbour.example/slow.html")
        self.see(LEFT)
        writes = self.watch_writes()
        self.browser.ask_for("http://news.harbour.example/slow.html")
        self.assertTrue(slow.asked.wait(5))
        self.session.screen.press("Escape")
        self.assert_nothing_is_written(writes, "a page that never came is not recorded")
        slow.release()
        self.assert_nothing_is_written(writes, "a load that was stopped stays stopped")
        self.assert_only_these_are_recorded_after_one_more(LEFT)

    # --- redirects and errors --------------------------------------------------------------------

    def test_redirects_of_every_kind_record_only_the_page_that_they_lead_to(self):
        self.site.given_a_redirect("http://www.garden.example/hop-1", "/hop-2", 301)
        self.site.given_a_redirect("http://www.garden.example/hop-2",
                                   "http://news.harbour.example/hop-3", 302)
        self.site.given_a_redirect("http://news.harbour.example/hop-3", "/hop-4", 303)
        self.site.given_a_redirect("http://news.harbour.example/hop-4", "/end.html", 307)
        self.browser.visit("http://www.garden.example/hop-1",
                           shows="http://news.harbour.example/end.html")
        self.wait_for_record("news.harbour.example/end.html")
        self.assert_nothing_is_written(self.watch_writes(), "the hops are not recorded")
        self.assert_sites(("news.harbour.example/end.html", "N"))

    def test_a_page_that_comes_with_an_error_is_recorded(self):
        for status in (404, 500):
            self.site.given_an_error(f"http://www.garden.example/error-{status}.html", status)
            self.see(f"www.garden.example/error-{status}.html")

    # --- answers that are not pages --------------------------------------------------------------

    def test_an_answer_without_content_is_not_recorded(self):
        self.site.given_no_content("http://news.harbour.example/nothing")
        self.assert_not_recorded("http://news.harbour.example/nothing")

    def test_a_download_is_not_recorded(self):
        self.site.given_a_download("http://news.harbour.example/table", "table.csv")
        self.assert_not_recorded("http://news.harbour.example/table")

    def test_a_site_that_breaks_the_connection_off_is_not_recorded(self):
        self.site.given_a_broken_connection("http://news.harbour.example/broken.html")
        self.assert_not_recorded("http://news.harbour.example/broken.html")

    def test_a_site_that_refuses_the_connection_is_not_recorded(self):
        self.see(LEFT)
        writes = self.watch_writes()
        self.browser.type_address(self.site.refused_url())
        self.session.screen.press("Delete", "Return")
        wait_until(lambda: not self.browser.shows(f"http://{LEFT}"), "the browser's error page")
        self.assert_nothing_is_written(writes, "an error page is not recorded")
        self.assert_only_these_are_recorded_after_one_more(LEFT)

    # --- pages that are left ---------------------------------------------------------------------

    def test_a_page_that_is_left_is_not_stamped_again(self):
        pages = [f"www.garden.example/leave/{number}.html" for number in range(self.navigations + 1)]
        signals = []
        for number, address in enumerate(pages):
            signals.append(self.site.given_a_slow_page(f"http://www.garden.example/go/{number}"))
            self.site.given_an_uncacheable_page(f"http://{address}", script=(
                f"fetch('/go/{number}').then(() => {{ location = '{number + 1}.html' }})"))
        self.see(pages[0])
        writes = self.watch_writes()
        for signal, address in zip(signals, pages[1:]):
            signal.release()
            self.wait_for_record(address, seconds=3)
        self.assert_nothing_is_written(writes, "one visit is one record written")
        self.assertEqual(self.navigations, writes.now())

    # --- addresses of other kinds ----------------------------------------------------------------

    def test_a_host_in_another_script_is_recorded_in_its_ascii_form(self):
        self.see("www.xn--bcher-kva.example/regal.html", "xn--e1afmkfd.xn--80akhbyknj4f.example/a")
        self.assert_sites(("www.xn--bcher-kva.example/regal.html", "N"),
                          ("xn--e1afmkfd.xn--80akhbyknj4f.example/a", "N"))

    # --- pages of other kinds --------------------------------------------------------------------

    def test_a_pdf_that_the_browser_shows_is_recorded_once(self):
        self.site.given_a_pdf("http://news.harbour.example/tides.pdf")
        self.see(LEFT)
        writes = self.watch_writes()
        self.browser.visit("http://news.harbour.example/tides.pdf")
        # GNOME Web starts its viewer after the page has its title. During that time it does not
        # answer any question: for 0.9 s on a busy machine.
        self.wait_for_record("news.harbour.example/tides.pdf", seconds=3)
        self.assert_nothing_is_written(writes, "one visit is one record written")
        self.assertEqual(1, writes.now())

    def test_frames_are_not_recorded_even_when_they_go_elsewhere(self):
        self.site.given_a_page("http://www.garden.example/with-frames.html", body=(
            "<iframe src='http://www.inner.example/one.html'></iframe>"
            "<iframe src='/own-frame.html'></iframe>"))
        signal = self.site.given_a_slow_page("http://www.inner.example/signal")
        self.site.given_a_page("http://www.inner.example/one.html", script=(
            "fetch('/signal').then(() => { location = 'two.html'; })"))
        self.see("www.garden.example/with-frames.html")
        wait_until(lambda: signal.asked.is_set()
                   and self.site.times_asked("http://www.garden.example/own-frame.html"),
                   "the frames to be there, and one to wait for its signal")
        writes = self.watch_writes()
        signal.release()
        wait_until(lambda: self.site.times_asked("http://www.inner.example/two.html"),
                   "the frame to go elsewhere")
        self.assert_nothing_is_written(writes, "the page that is shown is the same")
        self.assert_sites(("www.garden.example/with-frames.html", "N"))

    # --- steps -----------------------------------------------------------------------------------

    def see(self, *addresses):
        for address in addresses:
            self.browser.visit(f"http://{address}")
            self.wait_for_record(address)

    def assert_stamped_once(self, address, act):
        for record in self.quorrix.records():
            self.wait_for_the_next_second(record.address)
        before = {record.address: record for record in self.quorrix.records()}
        writes = self.watch_writes()
        act()
        self.browser.wait_until_it_shows(f"http://{address}")
        self.wait_for_write(writes, 1)
        self.assert_nothing_is_written(writes, "one visit is one record written")
        after = {record.address: record for record in self.quorrix.records()}
        changed = [each for each in after if after[each] != before.get(each)]
        self.assertEqual([address], changed)
        self.assertLess(time_of(before[address].stamp), time_of(after[address].stamp))

    def assert_not_recorded(self, url):
        self.see(LEFT)
        writes = self.watch_writes()
        self.browser.ask_for(url)
        self.assert_nothing_is_written(writes, f"{url} was never shown")
        self.assert_only_these_are_recorded_after_one_more(LEFT)

    def assert_only_these_are_recorded_after_one_more(self, *addresses):
        self.assert_tracking_goes_on(self.browser, f"http://{LATER}", LATER)
        self.assertEqual({*addresses, LATER},
                         {record.address for record in self.quorrix.records()})
