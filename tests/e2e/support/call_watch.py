"""The calls that a program makes on the accessibility bus, and how long the answers take."""

import os
import signal
from collections import namedtuple
from statistics import mean, median

from support import processes
from support.waiting import wait_until

Pass = namedtuple("Pass", "calls milliseconds")

# The calls of one pass follow each other without a pause; the program pauses between two passes.
PAUSE_SECONDS = 0.010


class CallWatch:
    """Watches the bus while the `with` block runs. After that, `passes` contains the result."""

    def __init__(self, session, quorrix):
        self.session = session
        self.quorrix = quorrix
        self.passes = []

    def __enter__(self):
        names = self.quorrix.bus.names_of(self.quorrix.process.pid)
        rules = [f"type='method_call',sender='{name}'" for name in names]
        for kind in ("method_return", "error"):
            rules += [f"type='{kind}',destination='{name}'" for name in names]
        self._file = os.path.join(processes.temporary_folder(), "calls")
        with open(self._file, "wb") as output:
            self._monitor = processes.start(
                ["dbus-monitor", "--address", self.quorrix.bus.address, "--profile", *rules],
                self.session.environment, stdout=output)
        self._names = names
        wait_until(lambda: len(self._lines()) > 0, "the first call on the bus")
        return self

    def __exit__(self, *_exception):
        self._monitor.send_signal(signal.SIGTERM)
        self._monitor.wait()
        self.passes = self._group(self._messages())

    def median_calls(self):
        return median(one.calls for one in self.passes)

    def mean_calls(self):
        return mean(one.calls for one in self.passes)

    def most_calls(self):
        return max(one.calls for one in self.passes)

    def median_milliseconds(self):
        return median(one.milliseconds for one in self.passes)

    def _lines(self):
        with open(self._file, encoding="utf-8", errors="replace") as file:
            return [line.rstrip("\n").split("\t") for line in file
                    if line.startswith(("mc", "mr", "err"))]

    def _messages(self):
        """(kind, time) of every call of the program and every answer to it.

        Calls from the tests to the program, and its answers to them, are left out.
        """
        return [(line[0], float(line[1])) for line in self._lines()
                if (line[3] if line[0] == "mc" else line[4]) in self._names]

    @staticmethod
    def _group(messages):
        groups = []
        for kind, when in messages:
            if kind == "mc" and (not groups or when - groups[-1][-1][1] > PAUSE_SECONDS):
                groups.append([])
            if groups:
                groups[-1].append((kind, when))
        # The first and the last pass may be incomplete.
        return [Pass(sum(kind == "mc" for kind, _ in group), (group[-1][1] - group[0][1]) * 1000)
                for group in groups[1:-1]]
