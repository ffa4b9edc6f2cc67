"""The built manual is complete and self-contained, and explains every message of the program.

QUORRIX_MANUAL is the path of the built file. The sources of the program are read from this
checkout.
"""

import base64
import os
import re
import unittest
import xml.etree.ElementTree as xml
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]

# Literals in the sources that read like sentences but are not messages: texts that a window
# shows while it is open, and texts that no user sees.
NO_MESSAGES = {
    "Open the folder of the archive to load and then click OK.",
    "Open the folder to archive the current display and its data to, or make a new one, and then "
    "click OK.",
    "Open the folder to delete the archive files from and then click OK.",
    "Open the folder to make the new one in, enter its name and then click OK.",
    "Find in the manual",
    "Made with Qt",
    "Stores text in code page",
    "Icon of Quorrix",
    "Enter information about a purchase made on this website location.",
    "Enter notes for this website location.",
    "Enter search criteria as necessary and then click OK.",
    "Enter your user ID and password for this website location.",
    "Find the next place (F3)",
    "Find the place before (Shift+F3)",
    ", which is used under the GNU Lesser General\\nPublic License, version 3. The manual names what "
    "else is\\ninside, and where the licences are.",
    "Loading data. Please wait...",
    "Name of the new folder",
    "Right click site address for site menu.",
    "Select a web site address  from the list below and then click Locate in Display.",
    "To view a purchase information record for this web location, select an item from the list, "
    "then click OK.",
    "Where you were before (Alt+Left)",
    "Where you went back from (Alt+Right)",
    "build with 64-bit file offsets",
    # The help of quorrix-data.
    "Check every file, record and date",
    "Copy all files, even while Quorrix is running",
    "Exit status: 0 if everything is fine; 1 if check finds an error or a file that\\ncannot be "
    "read, or if search finds no site; 2 if the command line is wrong, or if\\nanother command cannot "
    "read or write something.",
    "; by default table",
    "a shorter digest could hide a change",
    "Include passwords, in clear text",
    "Leave out the archives",
    "System Volume Information",
    "List the recorded sites",
    "List the sites whose address contains TEXT, ignoring case",
    "Only sites visited on this day or later, such as 11/21/2026 (month first)",
    "Print the version and exit",
    "Print this help and exit",
    "Reads, checks and copies what Quorrix has recorded. It changes nothing.",
    "Also show these, separated by commas: notes, purchases, logins. Addresses without a visit are "
    "included.",
    "The file to write; by default standard output",
    "The folder for the copy, new or empty",
    "The folder with the data files; by default your Quorrix data folder",
    "What the address contains",
    "Write all data as one file",
}

# Sources whose literals are the text of exported files.
WRITERS_OF_FILES = {"bookmarks_export.cpp", "html_export.cpp"}

LITERAL = r'"((?:[^"\\\n]|\\.)*)"'
LITERALS = re.compile(rf"{LITERAL}(?:\s*{LITERAL})*")


def manual():
    return Path(os.environ["QUORRIX_MANUAL"]).read_text(encoding="utf-8")


def page():
    """The manual as a tree. Raises an error if it is not well-formed."""
    return xml.fromstring(manual().removeprefix("<!DOCTYPE html>"))


def text_of(element):
    return " ".join("".join(element.itertext()).split())


def literals_of(source):
    """The string literals of a source, with adjacent literals joined."""
    code = "\n".join(line for line in source.splitlines()
                     if not line.lstrip().startswith(("#", "//"))).replace("'\"'", "")
    for match in LITERALS.finditer(code):
        yield "".join(re.findall(LITERAL, match[0])).replace('\\"', '"')


def sentences_of_the_program():
    """A dict from literals that are (part of) a sentence to the names of their files. These are the
    literals with three words or more, and those of two that end with "." or "?", not with "...".

    A text with placeholders is split at them, because the inserted values are not known here.
    """
    found = {}
    for path in sorted((ROOT / "src").rglob("*.cpp")):
        if path.name in WRITERS_OF_FILES:
            continue
        for literal in literals_of(path.read_text(encoding="utf-8")):
            for piece in re.split("%[0-9]?", literal.replace("&", "")):
                text = piece.strip()
                is_sentence = text.endswith((".", "?")) and " " in text and not text.endswith("...")
                if is_sentence or len(text.split()) > 2:
                    found.setdefault(text, path.name)
    return found


class Manual(unittest.TestCase):
    def test_every_picture_is_part_of_the_page(self):
        pictures = page().findall(".//img")
        self.assertGreaterEqual(len(pictures), 7)
        for picture in pictures:
            kind, data = picture.get("src").split(",", 1)
            self.assertEqual("data:image/png;base64", kind)
            self.assertTrue(base64.b64decode(data, validate=True).startswith(b"\x89PNG"))
            self.assertLessEqual(int(picture.get("width")), 560)
            self.assertGreater(int(picture.get("height")), 0)
            self.assertTrue(picture.get("alt"))

    def test_nothing_outside_the_page_is_needed(self):
        for element in page().iter():
            self.assertNotIn(element.tag, ("script", "link", "iframe", "object", "style", "base"))
            for name in ("background", "data", "action", "onclick"):
                self.assertIsNone(element.get(name), element.tag)
            self.assertNotIn("url(", element.get("style", ""))
            self.assertNotIn("color", element.get("style", ""), "not for every palette")
            if element.tag != "img":
                self.assertIsNone(element.get("src"))
            if element.tag == "a":
                self.assertRegex(element.get("href"), "^(#|https?://)")

    def test_every_link_leads_to_a_place_of_the_page(self):
        places = [element.get("id") for element in page().iter() if element.get("id")]
        self.assertEqual(len(places), len(set(places)), "a place is named twice")
        links = [a.get("href")[1:] for a in page().findall(".//a") if a.get("href")[0] == "#"]
        self.assertGreater(len(links), 20)
        self.assertEqual([], sorted(set(links) - set(places)))

    def test_every_heading_can_be_led_to(self):
        headings = [element for element in page().iter() if re.fullmatch("h[1-6]", element.tag)]
        self.assertGreater(len(headings), 30)
        for heading in headings:
            self.assertTrue(heading.get("id"), text_of(heading))

    def test_it_is_of_the_program_that_is_built(self):
        cmake = (ROOT / "CMakeLists.txt").read_text(encoding="utf-8")
        version = re.search(r"project\(Quorrix VERSION ([0-9.]+)", cmake)[1]
        self.assertIn(f"This is the manual of Quorrix {version}.", text_of(page()))

    def test_every_message_is_explained(self):
        text = text_of(page())
        sentences = sentences_of_the_program()
        self.assertGreater(len(sentences), 100)
        missing = [f"{path}: {sentence}" for sentence, path in sentences.items()
                   if " ".join(sentence.split()) not in text and sentence not in NO_MESSAGES]
        self.assertEqual([], missing)

    def test_every_text_that_is_no_message_is_still_one_of_the_program(self):
        self.assertEqual([], sorted(NO_MESSAGES - set(sentences_of_the_program())))

    def test_every_menu_entry_is_a_command_of_the_table(self):
        menus = ((ROOT / "src/main_window/main_form.cpp", r'[eE]ntry\("\w+", "([^"]+)"'),
                 (ROOT / "src/sitetree/site_popup_menu.cpp", r'\{"PopUp\w+", "([^"]+)"'))
        captions = [caption.replace("&", "") for path, entry in menus
                    for caption in re.findall(entry, path.read_text(encoding="utf-8"))]
        self.assertEqual(18, len(captions))
        commands = [text_of(row[0]).split(" > ")[-1] for row in page().iter("tr")]
        for caption in captions:
            self.assertIn(caption, commands)

    def test_what_the_program_is_made_of_is_named(self):
        text = text_of(page())
        inside = text[text.rindex("What Quorrix is made of"):]
        for name in ("Qt 6", "GNU Lesser General Public License, version 3", "zlib", "libpng",
                     "libjpeg", "FreeType", "HarfBuzz", "PCRE2", "licences", "relink"):
            self.assertIn(name, inside)

    def test_every_file_of_the_data_folder_is_named(self):
        install = (ROOT / "cmake/install_data_folder.cmake").read_text(encoding="utf-8")
        names = re.search(r"foreach\(name ([^)]+)\)", install)[1].split()
        self.assertEqual(5, len(names))
        files = [text_of(row[0]) for row in page().iter("tr")]
        for name in names:
            self.assertIn(name, files)


if __name__ == "__main__":
    unittest.main()
