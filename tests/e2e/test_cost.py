"""The cost of tracking: calls on the bus, milliseconds per pass, and processor time."""

import time
import unittest

from support import processes
from support.browsers import Chromium, Firefox
from support.call_watch import CallWatch
from support.scenario import QuorrixTest, tell
from support.waiting import holds_for

WATCHED_SECONDS = 4
IDLE_SECONDS = 8
LONG_PAGE = "".join(f"<p>Paragraph {number} of many, with <a href='/{number}'>a link</a>.</p>"
                    for number in range(5000))


class CostOfTracking(QuorrixTest):
    def setUp(self):
        super().setUp()
        self.quorrix.start()
        self.firefox = self.given_a_browser(Firefox)
        self.chromium = self.given_a_browser(Chromium)
        self.given_tracking()

    def test_a_pass_costs_the_same_on_a_page_of_5000_paragraphs(self):
        self.show_everywhere("http://www.garden.example/short.html")
        short = self.watch_calls("short pages")
        for browser in (self.firefox, self.chromium):
            url = f"http://www.garden.example/long-{browser.name}.html"
            self.site.given_a_page(url, body=LONG_PAGE)
            browser.visit(url)
            # Chromium itself takes a while to expose such a long page on the bus.
            self.wait_for_record(f"www.garden.example/long-{browser.name}.html", seconds=10)
        long = self.watch_calls("pages of 5,000 paragraphs")
        for watch in (short, long):
            self.assertLessEqual(watch.median_calls(), 8)
            self.assertLessEqual(watch.median_milliseconds(), 5)

    def test_idle_tracking_takes_less_than_1_percent_of_one_core(self):
        self.show_everywhere("http://www.garden.example/idle.html")
        programs = {"the program": [self.quorrix.process.pid],
                    "Firefox": self.firefox.family(),
                    "Chromium": self.chromium.family(),
                    "the bus": self.session.accessibility_processes()}
        tracking = self.shares_of_one_core(programs)
        self.quorrix.stop_tracking()
        stopped = self.shares_of_one_core(programs)
        for name, share in tracking.items():
            tell(f"idle with two browsers open, percent of one core: {name} {share:.2f} while "
                 f"tracking, {stopped[name]:.2f} without")
        self.assertLess(tracking["the program"], 1)

    def shares_of_one_core(self, programs):
        """A dict from names of programs to their processor time in percent of one core, averaged
        over IDLE_SECONDS."""
        def spent():
            return {name: sum(processes.processor_seconds(one) for one in ids
                              if processes.is_running(one))
                    for name, ids in programs.items()}

        before, began = spent(), time.monotonic()
        holds_for(IDLE_SECONDS, self.quorrix.is_running, "the program is running")
        seconds = time.monotonic() - began
        return {name: (after - before[name]) / seconds * 100 for name, after in spent().items()}

    def show_everywhere(self, url):
        for browser in (self.firefox, self.chromium):
            browser.visit(url)
        self.wait_for_record(url.removeprefix("http://"))

    def watch_calls(self, what):
        with CallWatch(self.session, self.quorrix) as watch:
            holds_for(WATCHED_SECONDS, self.quorrix.is_running, "the program is running")
        self.assertGreater(len(watch.passes), 5)
        tell(f"two browsers with {what}: {watch.median_calls():g} calls a pass (mean "
             f"{watch.mean_calls():.1f}, at most {watch.most_calls()}), {watch.median_milliseconds():.2f} ms, "
             f"{len(watch.passes)} passes in {WATCHED_SECONDS} s")
        return watch


if __name__ == "__main__":
    unittest.main()
