"""quorrix-data.exe under Wine prints and writes the same bytes as the program of this system.

QUORRIX_DATA_TOOL is the program for Windows, QUORRIX_NATIVE_PROGRAM the Quorrix of this system, with
its quorrix-data beside it.
"""

import os
import subprocess
import tempfile
import unittest
from pathlib import Path

from support.data_tool import login, notes, site, write_folder

RUN = Path(__file__).resolve().parents[1] / "wine/run"

# Runs every command in one Wine, because starting it takes seconds. Its shell reads a script in the
# code page of consoles.
CONSOLE = "cp437"
SCRIPT = """@echo off
"%1" list --with notes,logins --data Z:{data} > Z:{out}\\list
"%1" list --format json --data Z:{data} > Z:{out}\\json
"%1" search CAFÉ --format csv --data Z:{data} > Z:{out}\\csv
"%1" export --format html --data Z:{data} > Z:{out}\\html
"%1" check --data Z:{data} > Z:{out}\\check
"%1" copy Z:{out}\\Kopie --data Z:{data}
"%1" list --format xml 2> Z:{out}\\usage
"""


class WindowsDataTool(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.folder = Path(folder.name)
        cls.data = cls.folder / "Büro" / "Data"
        write_folder(cls.data, nodes=site("café.garden.example") + site("www.mill.example", "S"),
                     notes=notes("www.mill.example", "Prune in März.\r\nAgain."),
                     info=login("www.mill.example", "anna", "tulip7"))
        (cls.data / "load.txt").write_bytes(b"none\r\n")
        write_folder(cls.folder / "Büro" / "Archives" / "Frühling", nodes=site("a.b.c"))
        cls.out = cls.folder / "out"
        cls.out.mkdir()
        script = cls.folder / "all.bat"
        windows = {"data": str(cls.data).replace("/", "\\"), "out": str(cls.out).replace("/", "\\")}
        script.write_bytes(SCRIPT.format(**windows).replace("\n", "\r\n").encode(CONSOLE))
        program = "Z:" + os.environ["QUORRIX_DATA_TOOL"].replace("/", "\\")
        subprocess.run([RUN, "cmd", "/c", "Z:" + str(script).replace("/", "\\"), program],
                       check=False, timeout=180)

    def native(self, *arguments):
        program = Path(os.environ["QUORRIX_NATIVE_PROGRAM"]).parent / "quorrix-data"
        return subprocess.run([program, *arguments, "--data", self.data], check=True, timeout=60,
                              env={**os.environ, "LC_ALL": "C.UTF-8"},
                              stdout=subprocess.PIPE).stdout

    def test_it_prints_the_same_bytes(self):
        for name, arguments in (("list", ["list", "--with", "notes,logins"]),
                                ("json", ["list", "--format", "json"]),
                                ("csv", ["search", "CAFÉ", "--format", "csv"]),
                                ("html", ["export", "--format", "html"])):
            self.assertEqual(self.native(*arguments), (self.out / name).read_bytes(), name)
        self.assertEqual(b"9 files, 5 records, 0 errors\n",
                         (self.out / "check").read_bytes())

    def test_it_copies_every_file(self):
        for name in ("nodes.dat", "notes.dat", "info.dat", "purchases.dat", "load.txt"):
            self.assertEqual((self.data / name).read_bytes(),
                             (self.out / "Kopie" / name).read_bytes())
        self.assertEqual(site("a.b.c"),
                         (self.out / "Kopie/Archives/Frühling/nodes.dat").read_bytes())

    def test_errors_are_on_standard_error(self):
        self.assertEqual(b'quorrix-data: There is no format "xml". Name table, json or csv.\n'
                         b"Try 'quorrix-data --help' for more information.\n",
                         (self.out / "usage").read_bytes())

    def test_it_tells_windows_its_version_and_that_paths_may_be_long(self):
        program = Path(os.environ["QUORRIX_DATA_TOOL"]).read_bytes()
        for text in ("FileVersion", "quorrix-data.exe", "ProductVersion"):
            self.assertIn(text.encode("utf-16-le"), program)
        self.assertIn(b">true</longPathAware>", program)
        self.assertIn(b'name="quorrix-data" version="', program)


if __name__ == "__main__":
    unittest.main()
