"""One program and one browser for all tests of a class.

Starting both takes longer than most scenarios. Before each test the program's display and site file
are emptied, and the browser continues in one window with one tab. It keeps its cache, so a page
that differs from the plain one needs its own address.
"""

import os

from support.quorrix import Quorrix, make_program_folder
from support.scenario import HOME, QuorrixTest

EMPTY_TREE = ["www"]


class KeptBrowserTest(QuorrixTest):
    browser_class = None
    _program = None
    _browser = None

    def setUp(self):
        self.addCleanup(self._let_go_after_failure)
        super().setUp()
        if self.quorrix.process:
            self._empty_the_program()

    @classmethod
    def tearDownClass(cls):
        cls._let_go()
        super().tearDownClass()

    def new_quorrix(self):
        cls = type(self)
        if cls._program is None:
            cls._program = Quorrix(self.session, make_program_folder(self.program()))
        return cls._program

    def given_a_starting_program(self):
        if self.quorrix.process is None:
            super().given_a_starting_program()

    def given_a_browser(self, browser_class, url=HOME):
        cls = type(self)
        assert browser_class is self.browser_class, "a class keeps browsers of one kind"
        if cls._browser and cls._browser.can_start_over():
            cls._browser.start_over(url)
            return cls._browser
        cls._close_browser()
        cls._browser = browser_class(self.session, self.site)
        self.start_browser(cls._browser, url)
        return cls._browser

    def given_no_browser_yet(self, browser_class):
        self._close_browser()
        return super().given_no_browser_yet(browser_class)

    def _empty_the_program(self):
        self.quorrix.stop_tracking()
        if self.quorrix.tree() != EMPTY_TREE:
            self.quorrix.choose("File", "Clear Display")
            self.quorrix.wait_for_tree(*EMPTY_TREE)
        os.truncate(self.quorrix.site_file, 0)

    def _let_go_after_failure(self):
        if self.has_failed():
            self._let_go()

    @classmethod
    def _let_go(cls):
        cls._close_browser()
        if cls._program:
            cls._program.end()
            cls._program = None

    @classmethod
    def _close_browser(cls):
        if cls._browser:
            cls._browser.close()
            cls._browser = None
