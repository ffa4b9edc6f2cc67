#!/usr/bin/python3
"""Browses at random with a real browser and compares what is recorded with what is expected:
soak.py --browser firefox|chromium --steps 2000 --seed N [--verbose]

QUORRIX_PROGRAM is the path of the program. The exit status is 1 if the aims are missed.
"""

import argparse
import os
import sys

from soaking.soak import BROWSERS, Soak
from support import processes
from support.session import PrivateSession


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--browser", choices=BROWSERS, required=True)
    parser.add_argument("--steps", type=int, default=2000)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--verbose", action="store_true", help="one line for each step")
    options = parser.parse_args()
    processes.become_their_keeper()
    session = PrivateSession()
    try:
        soak = Soak(session, options.browser, options.seed, os.environ["QUORRIX_PROGRAM"],
                    options.verbose)
        return 0 if soak.run(options.steps) else 1
    finally:
        session.close()


if __name__ == "__main__":
    sys.exit(main())
