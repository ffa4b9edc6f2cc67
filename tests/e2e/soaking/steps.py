"""The steps that the soak chooses from, each with its weight and the condition for choosing it."""

from collections import namedtuple

Step = namedtuple("Step", "name weight is_possible act")

STEPS = []

# The chance of a step doubles when it has not been done for this many steps.
STEPS_TO_DOUBLE = 15


def step(name, weight, when=lambda browsing: True):
    def register(act):
        STEPS.append(Step(name, weight, when, act))
        return act
    return register


def on_a_page(browsing):
    return browsing.is_on_a_page()


class Chooser:
    """Chooses among the possible steps by weight. A step becomes more likely the longer ago it was
    done, so that a short run contains a bit of everything."""

    def __init__(self):
        self._number = 0
        self._done = {}

    def choose(self, browsing):
        self._number += 1
        possible = [each for each in STEPS if each.is_possible(browsing)]
        chances = [each.weight * (1 + self._steps_since(each) / STEPS_TO_DOUBLE) for each in possible]
        step_chosen = browsing.random.choices(possible, chances)[0]
        self._done[step_chosen.name] = self._number
        return step_chosen

    def _steps_since(self, step_done):
        return self._number - self._done.get(step_done.name, 0)
