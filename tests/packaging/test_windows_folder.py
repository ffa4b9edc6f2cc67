"""The program's folder for Windows: the licences of the libraries that are linked into the
program, and the parts needed to relink it.

QUORRIX_INSTALLED is the folder that packaging/windows/lay-out made, QT_WINDOWS the static Qt that
the program was linked with.
"""

import os
import re
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

INSTALLED = Path(os.environ["QUORRIX_INSTALLED"])
QT = Path(os.environ["QT_WINDOWS"])
LAY_OUT = Path(__file__).resolve().parents[2] / "packaging/windows/lay-out"

# Third-party libraries that Qt's static libraries contain, by their folders in Qt's notices.
IN_QT = ("zlib", "libpng", "libjpeg", "freetype", "harfbuzz-ng", "pcre2", "double-conversion",
         "easing", "md4c", "tinycbor")


def relink(qt, program):
    return subprocess.run([INSTALLED / "relink" / "relink", qt, program], capture_output=True,
                          text=True, check=False)


class Licences(unittest.TestCase):
    def notices_of(self, package):
        path = INSTALLED / "licences" / package / "copyright.txt"
        return path.read_text(encoding="utf-8", errors="replace")

    def test_each_package_that_is_linked_has_its_notices(self):
        lines = (INSTALLED / "licences/packages.txt").read_text(encoding="ascii").splitlines()
        packages = [line.split()[0] for line in lines[:-1]]
        self.assertEqual(["qt6-base-dev", "mingw-w64-x86-64-dev",
                          "gcc-mingw-w64-x86-64-posix-runtime", "libcli11-dev",
                          "nlohmann-json3-dev"], packages)
        for package in packages:
            self.assertIn("Copyright", self.notices_of(package), package)

    def test_the_version_of_the_qt_that_is_linked_is_named(self):
        lines = (INSTALLED / "licences/packages.txt").read_text(encoding="ascii").splitlines()
        version = re.fullmatch(r"Qt ([\d.]+) is linked into Quorrix\.exe\.", lines[-1])[1]
        self.assertIn(b"Qt " + version.encode("ascii") + b" (",
                      (QT / "lib/libQt6Core.a").read_bytes())

    def test_another_qt_than_the_one_whose_notices_are_here_is_refused(self):
        with tempfile.TemporaryDirectory() as name:
            folder = Path(name)
            (folder / "CMakeCache.txt").write_text(f"QT_WINDOWS:PATH={folder}/qt\n",
                                                   encoding="ascii")
            versions = folder / "qt/lib/cmake/Qt6"
            versions.mkdir(parents=True)
            for text, found in (('set(PACKAGE_VERSION "6.0.99")\n', "Qt 6.0.99 "),
                                ("", "Qt of an unknown version ")):
                (versions / "Qt6ConfigVersionImpl.cmake").write_text(text, encoding="ascii")
                done = subprocess.run([LAY_OUT, folder, folder / "Quorrix"], capture_output=True,
                                      text=True, check=False)
                self.assertEqual(1, done.returncode)
                self.assertIn(found, done.stderr)
                self.assertFalse((folder / "Quorrix").exists())

    def test_the_notices_cover_what_qt_brings_along(self):
        notices = self.notices_of("qt6-base-dev")
        for library in IN_QT:
            self.assertRegex(notices, rf"(?m)^(Files:| +).*src/3rdparty/{library}/", library)

    def test_the_licence_of_qt_is_there_with_the_one_that_it_builds_on(self):
        for name, words in (("LGPL-3", "GNU LESSER GENERAL PUBLIC LICENSE"),
                            ("GPL-3", "GNU GENERAL PUBLIC LICENSE")):
            text = (INSTALLED / f"licences/common-licenses/{name}.txt").read_text(encoding="utf-8")
            self.assertIn(words, text)
            self.assertIn("Version 3, 29 June 2007", text)

    def test_every_licence_that_a_notice_refers_to_is_there(self):
        for notices in INSTALLED.glob("licences/*/copyright.txt"):
            text = notices.read_text(encoding="utf-8", errors="replace")
            for name in re.findall(r"/usr/share/common-licenses/([\w.-]*\w)", text):
                links = Path("/usr/share/common-licenses", name).resolve()
                self.assertTrue((INSTALLED / f"licences/common-licenses/{links.name}.txt").is_file(),
                                f"{name}, of {notices}")

    def test_the_texts_say_what_is_inside_and_where_its_sources_are(self):
        text = (INSTALLED / "licences/README.txt").read_text(encoding="ascii")
        for words in ("Qt 6", "zlib", "libpng", "libjpeg", "FreeType", "HarfBuzz", "PCRE2",
                      "GNU Lesser General Public License, version 3", "https://snapshot.debian.org"):
            self.assertIn(words, text)


class Relinking(unittest.TestCase):
    def setUp(self):
        folder = tempfile.mkdtemp(prefix="quorrix relink ")
        self.addCleanup(shutil.rmtree, folder)
        self.folder = Path(folder)

    def given_a_changed_qt(self):
        """A copy of Qt with another version number of the same length."""
        qt = self.folder / "changed qt"
        shutil.copytree(QT / "lib", qt / "lib")
        (qt / "plugins").symlink_to(QT / "plugins")
        core = qt / "lib/libQt6Core.a"
        data = core.read_bytes()
        self.assertIn(b"6.4.2\0", data)
        core.write_bytes(data.replace(b"6.4.2\0", b"6.4.X\0"))
        return qt

    def test_with_the_same_qt_it_gives_the_same_program(self):
        done = relink(QT, self.folder / "Quorrix.exe")
        self.assertEqual(0, done.returncode, done.stderr)
        self.assertEqual((INSTALLED / "Quorrix.exe").read_bytes(),
                         (self.folder / "Quorrix.exe").read_bytes())

    def test_a_changed_qt_goes_into_the_program(self):
        done = relink(self.given_a_changed_qt(), self.folder / "Quorrix.exe")
        self.assertEqual(0, done.returncode, done.stderr)
        self.assertNotIn(b"6.4.X\0", (INSTALLED / "Quorrix.exe").read_bytes())
        self.assertIn(b"6.4.X\0", (self.folder / "Quorrix.exe").read_bytes())

    def test_a_folder_without_a_static_qt_is_refused(self):
        done = relink(self.folder, self.folder / "Quorrix.exe")
        self.assertEqual(2, done.returncode)
        self.assertIn("with a static Qt 6 in QT_FOLDER", done.stderr)


if __name__ == "__main__":
    unittest.main()
