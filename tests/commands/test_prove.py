"""What scripts/prove runs, and how scripts/coverage reads its reasons."""

import importlib.machinery
import importlib.util
import os
import re
import subprocess
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
BIN = Path(os.environ["QUORRIX_PROGRAM"]).parent
SECTION = re.compile(r"^## (.*)$", re.M)


def script(name):
    """The module that a script in scripts is."""
    loader = importlib.machinery.SourceFileLoader(name, str(ROOT / "scripts" / name))
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader(name, loader))
    loader.exec_module(module)
    return module


class Prove(unittest.TestCase):
    def test_its_points_are_the_sections_of_the_document(self):
        document = (ROOT / "docs/reliability.md").read_text(encoding="utf-8")
        sections = [title[0].lower() + title[1:] for title in SECTION.findall(document)]
        self.assertEqual(sections, [title for title, _ in script("prove").POINTS])

    def test_it_prints_what_was_measured_and_what_was_skipped(self):
        prove = script("prove")
        output = ("measured: 5 files\n[  SKIPPED ] MountedDisk.IsFull (0 ms)\n"
                  "[  SKIPPED ] 1 test, listed below:\n[  SKIPPED ] MountedDisk.IsFull\n")
        self.assertEqual(["5 files", "skipped: MountedDisk.IsFull"],
                         list(prove.figures_in(output, prove.tests("logic", "*"))))

    def test_it_prints_ranges_of_repeated_figures(self):
        prove = script("prove")
        output = "measured: 5 sites, 8 notes\nmeasured: 7.5 sites, 8 notes\nmeasured: none lost\n"
        self.assertEqual(["5 to 7.5 sites, 8 notes", "none lost"],
                         list(prove.figures_in(output, prove.tests("process", "*",
                                                                   "--gtest_repeat=2"))))

    def test_every_filter_finds_tests(self):
        checked = 0
        for title, commands in script("prove").POINTS:
            for command in commands:
                program, *options = command.words
                if not program.startswith("build/dev/tests/"):
                    continue
                listed = subprocess.run(
                    [BIN.parent / "tests" / Path(program).name, options[0], "--gtest_list_tests"],
                    env={**os.environ, "QT_QPA_PLATFORM": "offscreen"}, capture_output=True,
                    text=True, timeout=60, check=True).stdout
                for suite in options[0].partition("=")[2].split(":"):
                    self.assertIn(suite.strip("*"), listed, title)
                checked += 1
        self.assertGreater(checked, 8)


class Coverage(unittest.TestCase):
    def test_a_reason_is_that_of_a_file_or_of_lines(self):
        coverage = script("coverage")
        with tempfile.NamedTemporaryFile("w", suffix=".txt") as file:
            file.write("# A comment.\n\nsrc/main.cpp\n  Starts the\n  program.\n\n"
                       "src/a.cpp\n- return {};\n? throw;\n  The library fails.\n")
            file.flush()
            coverage.REASONS = Path(file.name)
            self.assertEqual(({"src/main.cpp": "Starts the program."},
                              {("src/a.cpp", "return {};"): "The library fails.",
                               ("src/a.cpp", "throw;"): "The library fails."},
                              {("src/a.cpp", "throw;")}),
                             coverage.read_reasons())


if __name__ == "__main__":
    unittest.main()
