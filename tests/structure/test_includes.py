"""Folders of src/ include only headers of the folders below them."""

import re
import unittest
from pathlib import Path

SOURCES = Path(__file__).resolve().parents[2] / "src"

# What each folder may include besides itself.
BELOW = {
    "platform": set(),
    "datafiles": {"platform"},
    "shell": {"platform"},
    "sitetree": {"datafiles", "shell", "platform"},
    "tracking": {"sitetree", "datafiles", "shell", "platform"},
    "records": {"sitetree", "datafiles", "shell", "platform"},
    "archives": {"sitetree", "datafiles", "shell", "platform"},
    "search": {"sitetree", "datafiles", "shell", "platform"},
    "main_window": {"tracking", "records", "archives", "search",
                    "sitetree", "datafiles", "shell", "platform"},
    "data_tool": {"records", "search", "sitetree", "datafiles", "shell", "platform"},
    "main.cpp": {"main_window", "shell", "platform"},
}

INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"', re.M)


def texts():
    return {path.relative_to(SOURCES).as_posix(): path.read_text(encoding="utf-8")
            for path in SOURCES.rglob("*") if path.suffix in (".h", ".cpp", ".in")}


def arrows(files):
    """Pairs of a file and a header that it includes from another folder."""
    return [(name, included) for name, text in sorted(files.items())
            for included in INCLUDE.findall(text)
            if included.split("/")[0] != name.split("/")[0]]


def arrows_up(files):
    return [f"{name} includes {included}" for name, included in arrows(files)
            if included.split("/")[0] not in BELOW[name.split("/")[0]]]


class Includes(unittest.TestCase):
    def test_every_folder_has_its_place(self):
        self.assertEqual(sorted(BELOW), sorted(entry.name for entry in SOURCES.iterdir()
                                               if entry.name != "CMakeLists.txt"))

    def test_no_folder_includes_what_is_above_it(self):
        files = texts()
        self.assertGreater(len(arrows(files)), 100)
        self.assertEqual([], arrows_up(files))

    def test_an_include_of_what_is_above_is_seen(self):
        files = {"sitetree/site_file.h": '#include <span>\n#include "records/record_file.h"\n',
                 "records/record_file.h": '#include "sitetree/site_file.h"\n'}
        self.assertEqual(["sitetree/site_file.h includes records/record_file.h"], arrows_up(files))


if __name__ == "__main__":
    unittest.main()
