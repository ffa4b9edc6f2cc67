"""The scenarios for every browser, with the real Chromium."""

import unittest

from support.browsers import Chromium
from support.scenario import QuorrixTest
from visits import VisitScenarios


class ChromiumVisits(VisitScenarios, QuorrixTest):
    browser_class = Chromium


if __name__ == "__main__":
    unittest.main()
