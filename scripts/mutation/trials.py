"""Chooses and runs the tests for a mutant."""

import json
import os
import resource
import shutil
import signal
import subprocess
import sys
from dataclasses import dataclass
from pathlib import Path

# Tests that take this many seconds or more run only in a thorough trial, and only for the sources
# of their folder.
SLOW = 1
# Limits for a mutant that is out of control, in bytes.
MEMORY, FILE_SIZE = 4 << 30, 1 << 30


@dataclass(frozen=True)
class Test:
    name: str  # with its suite, as in --gtest_filter
    file: Path  # relative to the folder tests
    seconds: float


class Trial:
    """Runs one test program against mutants. `program` is built from a mutant, `original` from the
    unchanged sources. `original` is run once, and again after it changes, to find out which tests
    pass and how long they take."""

    def __init__(self, program, original, tests_folder, temporary, thorough):
        self._program, self._temporary, self._thorough = program, temporary, thorough
        report = original.with_name(original.name + ".json")
        if not report.exists() or report.stat().st_mtime_ns < original.stat().st_mtime_ns:
            self._measure(original, report)
        self._tests = tests_of(json.loads(report.read_text(encoding="utf-8")), tests_folder,
                               program.parent.parent)

    def result(self, path):
        """The result for a mutant of this source: "killed", "timed out", or None if it survived."""
        for tests in rounds_for(path, self._tests, self._thorough):
            # Enough for a busy machine, in seconds.
            limit = 10 + 5 * sum(test.seconds for test in tests)
            names = ":".join(test.name for test in tests)
            try:
                # A test that measures time may fail on a busy machine, so it has to fail twice.
                if self._fails(names, limit) and self._fails(names, limit):
                    return "killed"
            except subprocess.TimeoutExpired:
                return "timed out"
        return None

    def _fails(self, names, limit):
        return run_tests(self._program, self._temporary, limit, "--gtest_fail_fast",
                         f"--gtest_filter={names}") != 0

    def _measure(self, original, report):
        measured = self._temporary.with_name("report.json")
        measured.unlink(missing_ok=True)
        run_tests(original, self._temporary, None, f"--gtest_output=json:{measured}")
        if not measured.exists():
            raise SystemExit(f"mutants: {original.name} does not finish")
        measured.replace(report)


def tests_of(report, tests_folder, build):
    """The tests that pass without mutants. The others are named on standard error."""
    tests = []
    for suite in report["testsuites"]:
        for test in suite["testsuite"]:
            name = f"{suite['name']}.{test['name']}"
            if "failures" in test:
                print(f"mutants: skipped, because it fails on the unchanged sources: {name}",
                      file=sys.stderr)
            else:
                tests.append(Test(name, Path(os.path.relpath(build / test["file"], tests_folder)),
                                  float(test["time"].rstrip("s"))))
    return tests


def rounds_for(path, tests, thorough):
    """Returns lists of tests in the order to run them: those of the source's own test file, then
    the others of its folder. A thorough trial adds all other fast tests, then the folder's slow
    ones."""
    mirror = Path(path).relative_to("src").with_suffix("")
    mirror = mirror.with_name(mirror.name + "_test.cpp")
    own, beside, others, slow = [], [], [], []
    for test in tests:
        is_near = test.file.parent == mirror.parent
        if test.seconds < SLOW:
            (own if test.file == mirror else beside if is_near else others).append(test)
        elif is_near:
            slow.append(test)
    rounds = [own, beside, others, slow] if thorough else [own, beside]
    return [chosen for chosen in rounds if chosen]


def run_tests(program, temporary, limit, *flags):
    """Returns the exit code. Processes that the tests leave running are killed, and `temporary` is
    emptied before each run. Raises TimeoutExpired after `limit` seconds."""
    shutil.rmtree(temporary, ignore_errors=True)
    temporary.mkdir(parents=True)
    # A filter that names every test is too long for a command line.
    flag_file = temporary.with_name("flags")
    flag_file.write_text("\n".join(flags), encoding="utf-8")
    environment = {**os.environ, "QT_QPA_PLATFORM": "offscreen", "HOME": str(temporary),
                   "TMPDIR": str(temporary)}
    with subprocess.Popen([program, f"--gtest_flagfile={flag_file}"], cwd=temporary,
                          env=environment, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                          stderr=subprocess.DEVNULL, preexec_fn=limit_resources,
                          start_new_session=True) as running:
        try:
            return running.wait(limit)
        finally:
            end_group(running.pid)


def limit_resources():
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))
    resource.setrlimit(resource.RLIMIT_FSIZE, (FILE_SIZE, FILE_SIZE))


def end_group(group):
    try:
        os.killpg(group, signal.SIGKILL)
    except ProcessLookupError:
        pass
