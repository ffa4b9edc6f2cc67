"""What quorrix-data exports for browsers, in real ones: the page, and the bookmarks file."""

import base64
import contextlib
import hashlib
import json
import os
import re
import shutil
import sqlite3
import tempfile
import unittest
from datetime import datetime

from support import pictures, processes
from support.data_tool import login, notes, run_data_tool, site, write_folder
from support.driven_browsers import DrivenChromium, DrivenFirefox
from support.scenario import private_session
from support.waiting import wait_until

SITES = (site("news.harbour.example/tides?a=1&b=2") + site("www.garden.example", "S")
         + site("www.garden.example/roses", "S", "2/29/24 12:05:09 AM")
         + site("café.garden.example/" + "long" * 60)
         + site("www.garden.example/beds/tulips/early"))
HOSTILE = "</dd><script>window.isHacked = true</script><img src=x onerror='window.isHacked = true'>"
NOTES = notes("www.garden.example/roses", "Prune in March.\r\n" + HOSTILE)
LOGINS = login("www.garden.example", "anna", "tulip7")

BROWSERS = (DrivenChromium, DrivenFirefox)
BACKGROUND = "getComputedStyle(document.body).backgroundColor"


class DataPagesTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        processes.become_their_keeper()

    def setUp(self):
        self.folder = processes.temporary_folder()
        self.data = write_folder(os.path.join(self.folder, "Data"), nodes=SITES, notes=NOTES,
                                 info=LOGINS)
        write_folder(os.path.join(self.folder, "Archives", "Spring <2024>"),
                     nodes=site("www.mill.example"))

    def export(self, kind, name):
        path = os.path.join(self.folder, name)
        run_data_tool("export", "--format", kind, "--output", path, "--data", self.data)
        return path


class Page(DataPagesTest):
    @contextlib.contextmanager
    def opened(self, browser_class, **options):
        page = self.export("html", "sites.html")
        browser = browser_class(processes.temporary_folder(), **options)
        try:
            browser.open("file://" + page)
            yield browser
        finally:
            browser.close()

    def test_the_policy_allows_its_own_style_and_script_and_nothing_else(self):
        with open(self.export("html", "sites.html"), encoding="utf-8") as file:
            text = file.read()
        digests = {kind: base64.b64encode(hashlib.sha256(re.search(
            f"<{kind}>(.*?)</{kind}>", text, re.S)[1].encode()).digest()).decode()
            for kind in ("style", "script")}
        policy = re.search('Content-Security-Policy" content="([^"]*)"', text)[1]
        self.assertEqual(f"default-src 'none'; style-src 'sha256-{digests['style']}'; script-src "
                         f"'sha256-{digests['script']}'; base-uri 'none'; form-action 'none'",
                         policy)
        self.assertEqual(1, text.count("<script>"))
        self.assertNotRegex(text, "<(link|img|iframe|object)")

    def search(self, browser, text, expected):
        """Replaces the text of the search box, and waits for the number of sites found."""
        browser.evaluate("(document.getElementById('text').value = '', document"
                         ".getElementById('text').dispatchEvent(new Event('input')))")
        browser.evaluate("document.getElementById('text').focus()")
        if text:
            browser.type_text(text)
        wait_until(lambda: browser.evaluate("document.getElementById('status').textContent")
                   == expected, "the search", 30)

    def test_every_level_folds(self):
        for browser_class in BROWSERS:
            with self.subTest(browser_class.__name__), self.opened(browser_class) as browser:
                self.assertEqual(["news.harbour.example", "www.garden.example", "beds", "tulips",
                                  "café.garden.example"], browser.evaluate(
                                      "Array.from(document.querySelectorAll('summary bdi'), "
                                      "(e) => e.textContent)"))
                self.assertEqual(["www.mill.example"], self.shown(browser))
                browser.evaluate("document.querySelectorAll('summary')[1].click()")
                self.assertEqual(["www.garden.example", "roses", "www.mill.example"],
                                 self.shown(browser))
                browser.evaluate("document.querySelectorAll('summary')[2].click()")
                browser.evaluate("document.querySelectorAll('summary')[3].click()")
                self.assertEqual(["www.garden.example", "roses", "early", "www.mill.example"],
                                 self.shown(browser))
                browser.evaluate("document.querySelectorAll('summary')[1].click()")
                self.assertEqual(["www.mill.example"], self.shown(browser))

    def shown(self, browser):
        """The names of the sites that are not folded away or hidden, in their order."""
        return browser.evaluate(
            "Array.from(document.querySelectorAll('.site')).filter((e) => e.checkVisibility())"
            ".map((e) => e.querySelector('a, bdi').textContent)")

    def test_the_search_opens_what_it_finds_and_hides_the_rest(self):
        for browser_class in BROWSERS:
            with self.subTest(browser_class.__name__), self.opened(browser_class) as browser:
                browser.evaluate("document.querySelectorAll('summary')[0].click()")
                self.search(browser, "PRUNE", "1 of 6 sites")
                self.assertEqual(["roses"], self.shown(browser))
                self.search(browser, "garden.example/beds/tul", "1 of 6 sites")
                self.assertEqual(["early"], self.shown(browser))
                self.assertEqual(["www.garden.example", "beds", "tulips"], browser.evaluate(
                    "Array.from(document.querySelectorAll('summary')).filter((e) => "
                    "e.checkVisibility()).map((e) => e.querySelector('bdi').textContent)"))
                self.search(browser, "bakery", "0 of 6 sites")
                self.assertEqual([], self.shown(browser))
                self.search(browser, "", "6 sites")
                self.assertEqual(["tides?a=1&b=2", "www.mill.example"], self.shown(browser))

    def headings(self, browser):
        return browser.evaluate("Array.from(document.querySelectorAll('h2')).filter((e) => "
                                "e.checkVisibility()).map((e) => e.textContent)")

    def test_the_search_reads_addresses_and_details_and_not_its_labels(self):
        with open(os.path.join(self.data, "nodes.dat"), "ab") as file:
            file.write(site("www.garden.example//b/c"))
        write_folder(os.path.join(self.folder, "Archives", "Winter"))
        for browser_class in BROWSERS:
            with self.subTest(browser_class.__name__), self.opened(browser_class) as browser:
                for text in ("notes", "user", "http", "2026", "rosesPrune", "notesPrune"):
                    self.search(browser, text, "0 of 7 sites")
                    self.assertEqual([], self.headings(browser), text)
                self.search(browser, "http://www.garden.example//b/c", "1 of 7 sites")
                self.assertEqual(["c"], self.shown(browser))
                self.search(browser, "www.garden.example//b", "1 of 7 sites")
                self.search(browser, "http://www.mill.example/", "1 of 7 sites")
                self.search(browser, "https://www.garden", "2 of 7 sites")
                self.search(browser, "http://www.mill", "1 of 7 sites")
                self.assertEqual(["Archive Spring <2024>"], self.headings(browser))
                self.search(browser, "anna", "1 of 7 sites")
                self.assertEqual([], self.headings(browser))
                self.search(browser, "", "7 sites")
                self.assertEqual(["Archive Spring <2024>", "Archive Winter"],
                                 self.headings(browser))

    def test_one_site_is_counted_as_one(self):
        with open(os.path.join(self.data, "nodes.dat"), "wb"):
            pass
        for name in ("notes.dat", "info.dat"):
            with open(os.path.join(self.data, name), "wb"):
                pass
        with self.opened(DrivenChromium) as browser:
            self.assertEqual("1 site", browser.evaluate(
                "document.getElementById('status').textContent"))
            self.search(browser, "mill", "1 of 1 site")

    def test_it_folds_without_script(self):
        with self.opened(DrivenChromium, has_script=False) as browser:
            self.assertEqual("none", browser.evaluate(
                "getComputedStyle(document.getElementById('search')).display"))
            self.assertEqual(["www.mill.example"], self.shown(browser))
            browser.evaluate("document.querySelectorAll('summary')[1].click()")
            self.assertEqual(["www.garden.example", "roses", "www.mill.example"],
                             self.shown(browser))

    # Whatever takes quadratic time does not answer within the limits of the browser's driver.
    def test_a_page_of_many_sites_is_searched(self):
        with open(os.path.join(self.data, "nodes.dat"), "wb") as file:
            for number in range(50_000):
                file.write(site(f"www.host{number // 10}.example/page{number}"))
            for number in range(50_000):
                file.write(site(f"www.garden.example/page{number}"))
        with self.opened(DrivenChromium) as browser:
            self.search(browser, "page4711", "22 of 100003 sites")
            self.assertEqual(22, len(self.shown(browser)))
            self.search(browser, "page", "100000 of 100003 sites")
            self.search(browser, "", "100003 sites")
            self.assertEqual(0, browser.evaluate(
                "document.querySelectorAll('details[open], [hidden]').length"))

    def test_nothing_that_was_kept_is_run_or_loaded(self):
        for browser_class in BROWSERS:
            with self.subTest(browser_class.__name__), self.opened(browser_class) as browser:
                self.assertEqual("undefined", browser.evaluate("typeof window.isHacked"))
                self.assertEqual(0, browser.evaluate(
                    "performance.getEntriesByType('resource').length"))
                self.assertEqual("Prune in March.\n" + HOSTILE, browser.evaluate(
                    "document.querySelectorAll('dd')[1].textContent"))
                self.assertEqual("http://news.harbour.example/tides?a=1&b=2", browser.evaluate(
                    "document.querySelector('.site a').href"))
                self.assertNotIn("tulip7", browser.evaluate("document.body.textContent"))

    def test_it_is_light_or_dark_as_the_desktop_is(self):
        for browser_class in BROWSERS:
            for is_dark, background in ((False, "rgb(255, 255, 255)"), (True, "rgb(22, 25, 29)")):
                with self.subTest(browser_class.__name__, is_dark=is_dark), \
                        self.opened(browser_class, is_dark=is_dark) as browser:
                    self.assertEqual(background, browser.evaluate(BACKGROUND))
                    self.keep_picture(browser, is_dark)

    def keep_picture(self, browser, is_dark):
        browser.resize(800, 1200)  # what is not in view is not painted
        browser.evaluate("document.querySelectorAll('details').forEach((e) => { e.open = true; })")
        name = f"page-{type(browser).__name__}-{'dark' if is_dark else 'light'}.png"
        path = os.path.join(self.folder, name)
        browser.save_picture(path)
        self.assertLess(pictures.share_of("black", path), 0.5)
        if os.environ.get("QUORRIX_EVIDENCE"):
            os.makedirs(os.environ["QUORRIX_EVIDENCE"], exist_ok=True)
            shutil.copy(path, os.environ["QUORRIX_EVIDENCE"])

    def test_it_fits_a_narrow_screen(self):
        with open(os.path.join(self.data, "nodes.dat"), "ab") as file:
            file.write(site("www.deep.example" + "/deep" * 49))
        # Firefox has no window that narrow.
        with self.opened(DrivenChromium) as browser:
            browser.resize(320, 5000)  # so high that everything is in view, and laid out
            browser.evaluate("document.querySelectorAll('details').forEach((e) => {e.open = true})")
            self.assertLessEqual(browser.evaluate("document.documentElement.scrollWidth"), 320)

    def test_every_level_is_printed(self):
        for browser_class in BROWSERS:
            with self.subTest(browser_class.__name__), self.opened(browser_class) as browser:
                opened = "document.querySelectorAll('details[open]').length"
                self.assertEqual(0, browser.evaluate(opened))
                printed = "document.body.dataset.printed"
                browser.evaluate("addEventListener('beforeprint', "
                                 f"() => {{ {printed} = {opened}; }})")
                browser.print()
                wait_until(lambda: browser.evaluate(printed), "the printing")
                self.assertEqual(
                    browser.evaluate("String(document.querySelectorAll('details').length)"),
                    browser.evaluate(printed))
                wait_until(lambda: browser.evaluate(opened) == 0, "the folds from before")

    def test_assistive_technology_finds_names(self):
        for browser_class in BROWSERS:
            with self.subTest(browser_class.__name__), self.opened(browser_class) as browser:
                self.assertEqual("Search addresses and details", browser.evaluate(
                    "document.getElementById('text').labels[0].textContent"))
                self.assertEqual("en", browser.evaluate("document.documentElement.lang"))
                self.assertEqual(["Sites recorded by Quorrix", "Archive Spring <2024>"],
                                 browser.evaluate(
                                     "Array.from(document.querySelectorAll('h1, h2'), "
                                     "(e) => e.textContent)"))


def seconds(*moment):
    return int(datetime(*moment).timestamp())


class Bookmarks(DataPagesTest):
    # Folder, address and time of each bookmark.
    EXPECTED = {
        ("news.harbour.example", "http://news.harbour.example/tides?a=1&b=2",
         seconds(2026, 3, 14, 10)),
        ("www.garden.example", "https://www.garden.example/", seconds(2026, 3, 14, 10)),
        ("www.garden.example", "http://www.garden.example/beds/tulips/early",
         seconds(2026, 3, 14, 10)),
        ("www.garden.example", "https://www.garden.example/roses", seconds(2024, 2, 29, 0, 5, 9)),
        ("www.mill.example", "http://www.mill.example/", seconds(2026, 3, 14, 10)),
        ("café.garden.example", "http://xn--caf-dma.garden.example/" + "long" * 60,
         seconds(2026, 3, 14, 10)),
    }

    def test_firefox_imports_them(self):
        page = self.export("netscape-bookmarks", "bookmarks.html")
        browser = DrivenFirefox(processes.temporary_folder(), preferences={
            "browser.bookmarks.file": json.dumps(page),
            "browser.places.importBookmarksHTML": "true"})
        self.addCleanup(browser.close)
        found = wait_until(lambda: self.firefox_bookmarks(browser.profile),
                           "Firefox to import the bookmarks", 30)
        self.assertEqual(self.EXPECTED, found)

    def firefox_bookmarks(self, profile):
        """None until all are there. The database is copied, because Firefox has it locked."""
        with tempfile.TemporaryDirectory() as folder:
            for name in ("places.sqlite", "places.sqlite-wal"):
                path = os.path.join(profile, name)
                if not os.path.exists(path):
                    return None
                shutil.copy(path, folder)
            with contextlib.closing(sqlite3.connect(os.path.join(folder, "places.sqlite"))) as data:
                try:
                    rows = data.execute(
                        "SELECT folder.title, place.url, mark.dateAdded / 1000000 "
                        "FROM moz_bookmarks mark JOIN moz_places place ON mark.fk = place.id "
                        "JOIN moz_bookmarks folder ON mark.parent = folder.id "
                        "WHERE place.url LIKE '%.example/%'").fetchall()
                except sqlite3.Error:
                    return None
        return set(rows) if len(rows) == len(self.EXPECTED) else None

    def test_chromium_imports_them(self):
        page = self.export("netscape-bookmarks", "bookmarks.html")
        settings = os.path.join(self.folder, "settings.json")
        with open(settings, "w", encoding="utf-8") as file:
            json.dump({"distribution": {"import_bookmarks_from_file": page,
                                        "skip_first_run_ui": True}}, file)
        profile = os.path.join(self.folder, "profile")
        # Chromium imports the file that its administrator names, at the first start. This
        # process sees another such file than the rest of the system.
        process = private_session().start(
            ["unshare", "--map-root-user", "--mount", "sh", "-c",
             f'mount --bind "{settings}" /etc/chromium/master_preferences && exec chromium '
             f'--no-sandbox "--user-data-dir={profile}" about:blank'], log="import.log")
        self.addCleanup(processes.end_family, process)
        found = wait_until(lambda: self.chromium_bookmarks(profile),
                           "Chromium to import the bookmarks", 40)
        self.assertEqual(self.EXPECTED, found)

    def chromium_bookmarks(self, profile):
        """None until all are there."""
        try:
            with open(os.path.join(profile, "Default", "Bookmarks"), encoding="utf-8") as file:
                roots = json.load(file)["roots"].values()
        except (OSError, ValueError):
            return None
        found = {mark for root in roots for mark in self.marks_in(root)}
        return found if len(found) == len(self.EXPECTED) else None

    def marks_in(self, folder):
        for child in folder.get("children", []):
            if child["type"] == "folder":
                yield from self.marks_in(child)
            elif ".example/" in child["url"]:
                # In microseconds since 1601.
                yield (folder["name"], child["url"],
                       int(child["date_added"]) // 1_000_000 - 11_644_473_600)


if __name__ == "__main__":
    unittest.main()
