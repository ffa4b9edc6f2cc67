"""Compares expected with actual writes: recorded, missed, written twice, wrong, private."""

import math
import time
from collections import defaultdict, namedtuple
from dataclasses import dataclass
from statistics import median

# If there is no record this long after the commit, the visit counts as missed.
PATIENCE_SECONDS = 2.5

# Aims, as shares of the visits.
MOST_MISSED = 0.005
MOST_TWICE = 0.005

PRIVATE_HOST = "www.secret.example"

Fault = namedtuple("Fault", "kind step name address detail")


@dataclass
class Visit:
    step: int
    name: str
    kind: str  # of the commit; the delays are reported by kind
    address: str
    since: float  # a write before this time does not belong to this visit
    committed: float
    written: float | None = None

    def is_due(self):
        return self.written is None and time.time() < self.committed + PATIENCE_SECONDS


class Tally:
    def __init__(self, ledger, model):
        self._ledger = ledger
        self._model = model
        self._open = []
        self._missed = []
        self.visits = []
        self.faults = []
        self.written = set()
        self.late = 0
        self.step = (0, "start")

    def expect(self, kind, address, since, committed):
        self._open.append(Visit(*self.step, kind, address, since, committed))

    def absorb(self):
        """Processes the new writes; returns whether no expected write is still pending."""
        for write in self._ledger.new_writes():
            self._take(write)
        return not any(visit.is_due() for visit in self._open)

    def close_step(self):
        """Call this after waiting: visits without a record now count as missed."""
        for visit in self._open:
            self.visits.append(visit)
            if visit.written is None:
                self._missed.append(visit)
                self.fault("missed", visit.address, f"{visit.kind}, not within "
                                                    f"{PATIENCE_SECONDS} s of its commit")
        self._open = []

    def fault(self, kind, address, detail):
        self.faults.append(Fault(kind, *self.step, address, detail))

    def count(self, kind):
        return sum(fault.kind == kind for fault in self.faults)

    def forget_open(self):
        """For a step that the browser did not carry out: discards the expected visits, and accepts
        all writes except private ones."""
        self._open = []
        for write in self._ledger.new_writes():
            self.written.add(write.address)
            if write.address.startswith(PRIVATE_HOST):
                self.fault("private", write.address, "in a step that was not carried out")

    def _take(self, write):
        self.written.add(write.address)
        for visit in self._open:
            if visit.written is None and visit.address == write.address \
                    and write.time >= visit.since:
                visit.written = write.time
                return
        self._take_unexpected(write)

    def _take_unexpected(self, write):
        model = self._model
        for visit in self._missed:
            if visit.address == write.address and visit.address == model.presented:
                self._missed.remove(visit)
                self.late += 1
                return
        front = model.windows[0] if model.windows else None
        is_private = write.address.startswith(PRIVATE_HOST) or (
            front and front.private and write.address == front.entry.address)
        if is_private:
            self.fault("private", write.address, "shown in a private window")
        elif write.address in (model.presented, model.presented_before):
            which = "shown" if write.address == model.presented else "left"
            self.fault("twice", write.address, f"the page that is {which} is written once more")
        else:
            self.fault("wrong", write.address, f"presented is {model.presented}")

    # --- figures ---------------------------------------------------------------------------------

    def recorded(self):
        return [visit for visit in self.visits if visit.written is not None]

    def meets_the_aims(self):
        visits = len(self.visits)
        return (visits > 0
                and self.count("missed") <= visits * MOST_MISSED
                and self.count("twice") <= visits * MOST_TWICE
                and self.count("wrong") == 0 and self.count("private") == 0)

    def milliseconds_by_kind(self):
        """(minimum, median, 95th percentile, maximum, count) of delays from commit to record."""
        delays = defaultdict(list)
        for visit in self.recorded():
            delays[visit.kind].append((visit.written - visit.committed) * 1000)
        return {kind: (*_spread(sorted(values)), len(values)) for kind, values in delays.items()}


def _spread(values):
    return values[0], median(values), values[math.ceil(len(values) * 0.95) - 1], values[-1]
