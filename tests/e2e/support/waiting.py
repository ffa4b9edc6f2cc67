"""Waiting on conditions.

Nothing else in these tests pauses: every wait states its condition and its deadline.
"""

import time

POLL_SECONDS = 0.01


class TimedOut(AssertionError):
    """The condition did not become true before its deadline."""


def wait_until(condition, what, seconds=10.0):
    """Returns the condition's first true value; fails with a sentence naming `what`.

    `what` may be a function, so that the sentence can say what was seen at the end.
    """
    deadline = time.monotonic() + seconds
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > deadline:
            seen = what() if callable(what) else what
            raise TimedOut(f"waited {seconds:g} s for {seen}")
        time.sleep(POLL_SECONDS)


def holds_for(seconds, condition, what):
    """Fails as soon as the condition is false; returns if it stays true for the whole time.

    This is for checking that something does *not* happen within that time.
    """
    deadline = time.monotonic() + seconds
    while time.monotonic() < deadline:
        if not condition():
            seen = what() if callable(what) else what
            raise AssertionError(f"within {seconds:g} s this did not hold: {seen}")
        time.sleep(POLL_SECONDS)
