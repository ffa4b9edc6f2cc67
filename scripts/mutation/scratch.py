"""A copy of the source tree with its own build folder, in which mutants are built and tested. The
checkout itself is never changed."""

import json
import os
import shutil
import subprocess

from .trials import Trial

LOGIC_TESTS, FORM_TESTS = "quorrix_logic_tests", "quorrix_form_tests"
DATA_TESTS = "quorrix_data_tests"
PROGRAMS = (LOGIC_TESTS, FORM_TESTS, DATA_TESTS)
CONFIGURATION = (
    "-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_FLAGS_DEBUG=-O0 -g0", "-DQUORRIX_E2E=OFF",
    # So that building a mutant does not run it to list its tests.
    "-DCMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE=PRE_TEST")


class Scratch:
    def __init__(self, root, folder, jobs, thorough):
        """Copies the sources from `root`, and builds their tests without mutants."""
        self._source, self._build = folder / "source", folder / "build"
        self._jobs = [f"-j{jobs}"] if jobs else []
        copy_tree(root, self._source)
        self._configure()
        if not self._compiles(*PROGRAMS):
            raise SystemExit("mutants: the sources do not compile")
        self._trials = {program: self._trial(program, folder, thorough)
                        for program in PROGRAMS}
        commands = json.loads((self._build / "compile_commands.json").read_text(encoding="utf-8"))
        self._form_sources, self._data_sources = (
            {each["file"] for each in commands if f"/{library}.dir/" in each["command"]}
            for library in ("quorrix_forms", "quorrix_data_logic"))

    def result(self, mutant):
        """"killed", "timed out", "survived" or "not compiled"."""
        path = self._source / mutant.path
        programs = self._programs_with(str(path))
        original = path.read_text(encoding="utf-8")
        path.write_text(mutant.applied_to(original), encoding="utf-8")
        try:
            for program in programs:
                if not self._compiles(program):
                    return "not compiled"
                result = self._trials[program].result(mutant.path)
                if result:
                    return result
            return "survived"
        finally:
            path.write_text(original, encoding="utf-8")

    def _programs_with(self, path):
        """The tests that contain this source. The form tests also contain the logic."""
        if path in self._form_sources:
            return [FORM_TESTS]
        return [DATA_TESTS] if path in self._data_sources else [LOGIC_TESTS, FORM_TESTS]

    def _configure(self):
        if (self._build / "build.ninja").exists():
            return
        linker = ["-DCMAKE_EXE_LINKER_FLAGS=-fuse-ld=lld"] if shutil.which("ld.lld") else []
        subprocess.run(["cmake", "-S", self._source, "-B", self._build, "-G", "Ninja",
                        *CONFIGURATION, *linker], stdout=subprocess.DEVNULL, check=True)

    def _compiles(self, *programs):
        done = subprocess.run(["ninja", "-C", self._build, *self._jobs, *programs],
                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=False)
        return done.returncode == 0

    def _trial(self, program, folder, thorough):
        original = folder / "originals" / program
        copy_changed(self._build / "tests" / program, original)
        return Trial(self._build / "tests" / program, original, self._source / "tests",
                     folder / "tmp", thorough)


def copy_tree(root, to):
    """Copies the files that git tracks or would add."""
    listed = subprocess.run(["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
                            cwd=root, stdout=subprocess.PIPE, check=True).stdout
    for name in filter(None, os.fsdecode(listed).split("\0")):
        if (root / name).is_file():
            copy_changed(root / name, to / name)


def copy_changed(original, copy):
    """Does not touch a copy that is identical, so that it is not built again."""
    if not copy.is_file() or copy.read_bytes() != original.read_bytes():
        copy.parent.mkdir(parents=True, exist_ok=True)
        shutil.copy(original, copy)
