"""The commands in README.md, CONTRIBUTING.md and packaging/README.md that no other test runs.

QUORRIX_PROGRAM is the path of the built program. The presets that `./test` does not build are only
configured here. CONTRIBUTING.md lists the commands that no test runs to the end.
"""

import os
import re
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tests/e2e"))

from support import pictures  # noqa: E402  (found by the line above)

DOCUMENTS = ("README.md", "CONTRIBUTING.md", "packaging/README.md")
# A file of this project used as a command, in a line of code or between backticks.
COMMAND = re.compile(r"(?:^ {4}|`)(?:\./)?((?:run|test|bench|(?:scripts|packaging)/[\w/-]+))(?=[ `\n])",
                     re.M)


def promised_commands():
    return sorted({name for document in DOCUMENTS
                   for name in COMMAND.findall((ROOT / document).read_text(encoding="utf-8"))
                   if not (ROOT / name).is_dir()})


def run(command, *arguments, **environment):
    return subprocess.run([command, *arguments], cwd=ROOT, env={**os.environ, **environment},
                          capture_output=True, text=True, timeout=400, check=False)


class Commands(unittest.TestCase):
    def test_every_promised_command_is_there_and_can_be_run(self):
        commands = promised_commands()
        for name in ("run", "test", "bench", "packaging/build", "packaging/windows/build",
                     "scripts/lint", "scripts/mutants", "scripts/screenshots", "scripts/icons"):
            self.assertIn(name, commands)
        self.assertEqual([], [name for name in commands if not os.access(ROOT / name, os.X_OK)])

    def test_every_script_is_one_that_its_shell_can_read(self):
        scripts = [ROOT / name for name in ("run", "test", "bench")]
        for folder in ("scripts", "packaging", "tests"):
            scripts += [path for path in (ROOT / folder).rglob("*")
                        if path.is_file() and not path.suffix]
        checked = 0
        for path in scripts:
            first = path.read_bytes().split(b"\n", 1)[0].decode("ascii", "replace")
            shell = re.fullmatch(r"#!(?:/usr/bin/env |/bin/)(bash|sh)", first)
            if not shell:
                continue
            checked += 1
            options = ["-O", "extglob"] if shell[1] == "bash" else []
            done = run(shell[1], *options, "-n", str(path))
            self.assertEqual("", done.stderr)
        self.assertGreater(checked, 15)

    def assert_configures(self, preset, target, **environment):
        """Asserts that the preset configures and has the target. Nothing is compiled."""
        with tempfile.TemporaryDirectory() as folder:
            done = run("cmake", "--preset", preset, "-B", folder, **environment)
            self.assertEqual(0, done.returncode, done.stderr)
            done = run("ninja", "-C", folder, "-t", "query", target)
            self.assertEqual(0, done.returncode, done.stderr)

    def test_the_presets_of_run_and_bench_can_be_configured(self):
        self.assert_configures("release", "bin/Quorrix")
        self.assert_configures("bench", "benchmarks/quorrix_bench")

    def test_the_preset_of_the_windows_package_can_be_configured(self):
        qt = run("packaging/windows/qt", "--ready")
        if qt.returncode != 0:
            self.skipTest("there is no Qt for Windows here")
        self.assert_configures("windows-release", "bin/Quorrix.exe", QT_WINDOWS=qt.stdout.strip())

    def test_run_says_so_where_there_is_no_display(self):
        done = run("./run", DISPLAY="", WAYLAND_DISPLAY="")
        self.assertEqual(1, done.returncode)
        self.assertIn("./run --demo", done.stderr)

    def test_run_refuses_an_option_that_it_does_not_know(self):
        done = run("./run", "--else")
        self.assertEqual(2, done.returncode)
        self.assertIn("Usage: ./run [--demo]", done.stderr)

    def test_the_sources_are_formatted(self):
        done = run("scripts/lint", "--format-only")
        self.assertEqual("", done.stderr)
        self.assertEqual(0, done.returncode)

    def test_the_mutants_are_listed(self):
        done = run("scripts/mutants", "--list", "--count", "300")
        self.assertEqual("", done.stderr)
        mutants = re.findall(r"^src/[\w/]+\.cpp:\d+: \w+\n- .+\n\+ .+\n$", done.stdout, re.M)
        self.assertEqual(300, len(mutants))

    def test_there_are_no_mutants_of_a_file_that_is_missing(self):
        done = run("scripts/mutants", "--list", "src/missing.cpp")
        self.assertEqual("mutants: there is no src/missing.cpp\n", done.stderr)
        self.assertEqual(1, done.returncode)

    def test_the_icons_are_drawn_in_every_size(self):
        with tempfile.TemporaryDirectory() as folder:
            done = run("scripts/icons", folder)
            self.assertEqual(0, done.returncode, done.stderr)
            committed = sorted(path.name for path in (ROOT / "resources/icons").iterdir()
                               if path.suffix != ".svg")
            self.assertEqual(committed, sorted(os.listdir(folder)))


class WithTheProgram(unittest.TestCase):
    def setUp(self):
        self.program_folder = os.path.dirname(os.environ["QUORRIX_PROGRAM"])
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name

    def test_the_demo_shows_a_dozen_pages_as_a_table_and_in_a_picture(self):
        done = run("/usr/bin/python3", "tests/e2e/demo.py", self.program_folder, self.folder)
        self.assertEqual(0, done.returncode, done.stderr)
        self.assertIn("www.garden.example/roses/climbing.html", done.stdout)
        self.assertIn("shop.lantern.example/basket", done.stdout)
        self.assertTrue(pictures.is_painted(os.path.join(self.folder, "quorrix.png")))

    def test_the_screenshots_are_those_of_the_documents(self):
        done = run("/usr/bin/python3", "tests/e2e/screenshots.py", self.program_folder, self.folder)
        self.assertEqual(0, done.returncode, done.stderr)
        documents = {path.name for path in (ROOT / "docs/screenshots").glob("*.png")}
        self.assertEqual(documents - {"windows.png"}, set(os.listdir(self.folder)))


if __name__ == "__main__":
    unittest.main()
