"""The first hundred steps of a soak, with a real Firefox and Chromium. soak.py runs longer ones."""

import unittest

from soaking.soak import Soak
from support.scenario import QuorrixTest, private_session
from support.tracing import can_trace

STEPS = 100
SEED = 12


@unittest.skipUnless(can_trace(), "this system permits no tracing of system calls")
class SoakTest(unittest.TestCase):
    def assert_soak_meets_its_aims(self, browser_name):
        soak = Soak(private_session(), browser_name, SEED, QuorrixTest.program(), verbose=True)
        self.addCleanup(soak.close)
        self.assertTrue(soak.run(STEPS), "what is at fault is printed above")

    def test_firefox(self):
        self.assert_soak_meets_its_aims("firefox")

    def test_chromium(self):
        self.assert_soak_meets_its_aims("chromium")


if __name__ == "__main__":
    unittest.main()
