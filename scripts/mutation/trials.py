"""Chooses and runs the tests that a mutant has to pass."""

import json
import os
import resource
import shutil
import signal
import subprocess
import sys
from dataclasses import dataclass
from pathlib import Path

# A slower test, in seconds, runs only in a thorough trial, and for the sources of its folder.
SLOW = 1
# What a mutant that runs wild may take, in bytes.
MEMORY, FILE_SIZE = 4 << 30, 1 << 30


@dataclass(frozen=True)
class Test:
    name: str  # with its suite, as in a filter
    file: Path  # below tests
    seconds: float


class Trial:
    """One test program, of which a mutant is tried as `program`. How the `original` does is
    measured once, and again after it has changed."""

    def __init__(self, program, original, tests_folder, temporary, thorough):
        self._program, self._temporary, self._thorough = program, temporary, thorough
        report = original.with_name(original.name + ".json")
        if not report.exists() or report.stat().st_mtime_ns < original.stat().st_mtime_ns:
            self._measure(original, report)
        self._tests = tests_of(json.loads(report.read_text(encoding="utf-8")), tests_folder,
                               program.parent.parent)

    def result(self, path):
        """What becomes of a mutant of this source: "killed", "timed out" or None."""
        for tests in rounds_for(path, self._tests, self._thorough):
            # Enough for a machine that is busy with something else.
            limit = 10 + 5 * sum(test.seconds for test in tests)
            names = ":".join(test.name for test in tests)
            try:
                # On a busy machine a test may fail that measures time: it has to fail again.
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
            raise SystemExit(f"mutants: {original.name} does not come to its end")
        measured.replace(report)


def tests_of(report, tests_folder, build):
    """Those that the sources as they are pass; of the others it tells."""
    tests = []
    for suite in report["testsuites"]:
        for test in suite["testsuite"]:
            name = f"{suite['name']}.{test['name']}"
            if "failures" in test:
                print(f"mutants: left out, since the sources as they are fail it: {name}",
                      file=sys.stderr)
            else:
                tests.append(Test(name, Path(os.path.relpath(build / test["file"], tests_folder)),
                                  float(test["time"].rstrip("s"))))
    return tests


def rounds_for(path, tests, thorough):
    """The tests of the file that mirrors the source and those of the same folder; in a thorough
    trial also all others, and then the slow ones of the folder."""
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
    """The exit code. All that the tests start and write is gone afterwards."""
    shutil.rmtree(temporary, ignore_errors=True)
    temporary.mkdir(parents=True)
    # A command line has not the room for a filter that names every test.
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
