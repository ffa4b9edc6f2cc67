"""One run: a session, the traced program, a browser, and a number of steps."""

import os
import random
import subprocess
import time

# How much Quorrix may grow between the warm-up and the end. The tree also grows.
MOST_MORE_MIB = 8
MOST_MORE_DESCRIPTORS = 4

# Each of these modules registers its steps.
from soaking import (history_steps, load_steps, no_page_steps, view_steps,  # noqa: F401
                     window_steps)
from soaking.browsing import Browsing
from soaking.costs import Meter, bus_processes, descriptors, memory_mib
from soaking.hands import SoakChromium, SoakFirefox
from soaking.ledger import Ledger
from soaking.model import Model
from soaking.report import print_fault, print_report
from soaking.site import SoakSite
from soaking.steps import Chooser
from soaking.tally import Tally
from support import processes
from support.quorrix import Quorrix, make_program_folder

BROWSERS = {"firefox": SoakFirefox, "chromium": SoakChromium}

# A step that the browser does not carry out says nothing about the program. A larger share of them
# than this means that the soak itself is broken.
MOST_NOT_CARRIED_OUT = 0.02

# The first steps fill caches, so memory growth is measured after them.
WARM_UP_STEPS = 20

# Read regularly, because the processor time of a browser process is lost when it ends.
STEPS_BETWEEN_READINGS = 5

LONGEST_LOOK = 0.6


class Soak:
    def __init__(self, session, browser_name, seed, program, verbose=False):
        self.session = session
        self.browser_name = browser_name
        self.seed = seed
        self.verbose = verbose
        self.site = SoakSite(processes.temporary_folder())
        self.quorrix = Quorrix(session, make_program_folder(program))
        self.ledger = Ledger(self.quorrix.folder)
        self.quorrix.launcher = self.ledger.launcher()
        self.model = Model()
        self.tally = Tally(self.ledger, self.model)
        self.browsing = None
        self.not_carried_out = []
        self.steps_done = 0
        self.seconds = 0.0
        self._chooser = Chooser()
        self._meter = Meter()
        self._state = {}
        self._began_with = {}

    def run(self, steps):
        """Returns whether the aims are met."""
        self.session.switch_accessibility(True)
        self.quorrix.start_and_wait()
        self.quorrix.start_tracking()
        self._start_browser()
        self._began_with = self._processor_seconds()
        began = time.monotonic()
        numbers = random.Random(self.seed)
        for number in range(1, steps + 1):
            self._do(number, numbers)
            self.steps_done = number
            if number % STEPS_BETWEEN_READINGS == 0:
                self._processor_seconds()
            if number == min(WARM_UP_STEPS, steps):
                self._state["start"] = self._memory_and_descriptors()
        self._processor_seconds()
        self.seconds = time.monotonic() - began
        self._state["end"] = self._memory_and_descriptors()
        self._check_against_the_file()
        print_report(self)
        return (self.tally.meets_the_aims() and self._stayed_as_large_as_it_was()
                and len(self.not_carried_out) <= max(1, steps * MOST_NOT_CARRIED_OUT))

    def close(self):
        if self.browsing:
            self.browsing.browser.close()
        self.quorrix.end()
        self.site.close()

    def _stayed_as_large_as_it_was(self):
        (memory, descriptors), (memory_now, descriptors_now) = self._state.values()
        return (memory_now - memory <= MOST_MORE_MIB
                and (descriptors is None or descriptors_now - descriptors <= MOST_MORE_DESCRIPTORS))

    # --- steps -----------------------------------------------------------------------------------

    def _start_browser(self):
        browser = BROWSERS[self.browser_name](self.session, self.site)
        pages = self.browsing.pages if self.browsing else 0
        self.browsing = Browsing(browser, self.site, self.quorrix, self.model, self.tally,
                                 random.Random(f"{self.seed}"), pages)
        self.browsing.start()

    def _do(self, number, numbers):
        # Each step has its own random numbers, so that a failed step does not change the next.
        self.browsing.random = random.Random(numbers.getrandbits(64))
        step = self._chooser.choose(self.browsing)
        self.tally.step = (number, step.name)
        faults = len(self.tally.faults)
        began = time.monotonic()
        try:
            step.act(self.browsing)
            self.browsing.wait(self.tally.absorb, "the records")
            self.browsing.stay(self.browsing.random.uniform(0, LONGEST_LOOK))
        except (AssertionError, subprocess.SubprocessError) as why:
            self._start_again(number, step, why)
        self.tally.close_step()
        if self.verbose:
            print(f"{number:5} {time.monotonic() - began:5.2f} s  {step.name:26} "
                  f"{'P' if self.browsing.window.private else ' '} {self.browsing.title()}",
                  flush=True)
        for fault in self.tally.faults[faults:]:
            print_fault(fault, self.seed)

    def _start_again(self, number, step, why):
        print(f"not carried out: step {number} ({step.name}): {why}", flush=True)
        self._save_picture(f"soak-{self.browser_name}-{number}")
        self.not_carried_out.append(number)
        self.tally.forget_open()
        self._processor_seconds()
        self.browsing.browser.close()
        self._start_browser()
        self.tally.forget_open()

    def _save_picture(self, name):
        folder = os.environ.get("QUORRIX_EVIDENCE")
        if folder:
            os.makedirs(folder, exist_ok=True)
            self.session.screen.save_picture(os.path.join(folder, name + ".png"))

    def _check_against_the_file(self):
        """Checks that the trace contains the same addresses as the file."""
        in_file = {record.address for record in self.quorrix.records()}
        if in_file != self.tally.written:
            raise AssertionError(f"the trace and nodes.dat differ in {in_file ^ self.tally.written}")

    # --- costs -----------------------------------------------------------------------------------

    def _memory_and_descriptors(self):
        process_id = self.quorrix.process.pid
        return memory_mib(process_id), descriptors(process_id)

    def _processor_seconds(self):
        self._meter.read("Quorrix", [self.quorrix.process.pid])
        self._meter.read("browser", self.browsing.browser.family())
        self._meter.read("bus daemons", bus_processes())
        return {group: self._meter.total(group)
                for group in ("Quorrix", "browser", "bus daemons")}

    def print_costs(self):
        for when, (memory, open_ones) in self._state.items():
            print(f"Quorrix at the {when}: {memory:.1f} MiB, {open_ones} descriptors")
        for group, before in self._began_with.items():
            used = self._meter.total(group) - before
            print(f"processor, {group}: {used:.1f} s, {used / self.seconds * 100:.1f} % of a core")
