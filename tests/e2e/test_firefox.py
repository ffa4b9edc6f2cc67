"""The scenarios for every browser, with the real Firefox."""

import unittest

from support.browsers import Firefox
from support.scenario import QuorrixTest
from visits import VisitScenarios


class FirefoxVisits(VisitScenarios, QuorrixTest):
    browser_class = Firefox


if __name__ == "__main__":
    unittest.main()
