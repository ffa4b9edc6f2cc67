"""The scenarios for every kind of page, with the real Firefox."""

import unittest

from page_kinds import PageKindScenarios
from support.browsers import Firefox
from support.scenario import QuorrixTest


class FirefoxPages(PageKindScenarios, QuorrixTest):
    browser_class = Firefox
    navigations = 100  # detects a fault in 3 of 100 navigations in 19 of 20 runs


if __name__ == "__main__":
    unittest.main()
