#!/usr/bin/python3
"""Shows the program at work without a desktop: demo.py PROGRAM_FOLDER OUTPUT_FOLDER

Starts the program and a real Chromium in a private session, turns tracking on, visits a dozen
pages of a web site on loopback, saves a picture of the window in OUTPUT_FOLDER and prints the
records. The program runs in a copy of PROGRAM_FOLDER, so the user's own records do not change.
"""

import os
import sys

from support import processes
from support.browsers import Chromium
from support.quorrix import Quorrix, make_program_folder
from support.session import PrivateSession
from support.waiting import wait_until
from support.web_site import WebSite

PAGES = (
    "http://www.garden.example/",
    "http://www.garden.example/roses/climbing.html",
    "http://www.garden.example/roses/pruning.html",
    "http://www.garden.example/herbs/thyme.html",
    "http://news.harbour.example/today/tides.html",
    "http://news.harbour.example/today/ferries.html",
    "https://shop.lantern.example/catalogue/brass",
    "https://shop.lantern.example/basket",
    "http://maps.valley.example/walks/old-mill",
    "http://maps.valley.example/walks/river-path",
    "https://mail.meadow.example/inbox",
    "https://www.reading.example/books/new",
)


def main(program_folder, output_folder):
    processes.become_their_keeper()
    session = PrivateSession()
    try:
        session.switch_accessibility(True)
        secure = sorted({url.split("/")[2] for url in PAGES if url.startswith("https:")})
        site = WebSite(processes.temporary_folder(), secure)
        quorrix = Quorrix(session, make_program_folder(os.path.join(program_folder, "Quorrix")))
        quorrix.start_and_wait()
        quorrix.start_tracking()
        visit_all(Chromium(session, site), quorrix)
        picture = os.path.join(output_folder, "quorrix.png")
        take_picture(quorrix, output_folder, picture)
        quorrix.stop_tracking()
        quorrix.close_window()
        if quorrix.exit_status() != 0:
            raise RuntimeError(f"the program ended with status {quorrix.exit_status()}")
        print_table(quorrix.records())
        print(f"\nA picture of the window is in {picture}.")
    finally:
        session.close()


def visit_all(browser, quorrix):
    browser.start("http://home.test/")
    for url in PAGES:
        browser.visit(url)
        address = url.partition("://")[2].removesuffix("/")
        wait_until(lambda address=address: quorrix.record_of(address), f"the record of {url}")
    browser.close()


def take_picture(quorrix, output_folder, path):
    """Takes a picture of the main window once every page shows in the tree.

    Every branch is expanded, because a visit expands the branches that lead to its page."""
    expected = {part for url in PAGES for part in url.rstrip("/").split("/")[2:]}
    wait_until(lambda: expected <= set(quorrix.tree()), "every page to show in the tree")
    window = quorrix.main_window()
    window.use()
    os.makedirs(output_folder, exist_ok=True)
    quorrix.session.screen.save_picture(path, window)


def print_table(records):
    schemes = {"N": "http", "S": "https", "F": "ftp", "U": "none"}
    width = max(len(record.address) for record in records)
    print(f"{'Address':{width}}  Scheme  Last visit")
    print(f"{'-' * width}  ------  --------------------")
    for record in records:
        stamp = record.stamp.rstrip().removesuffix("~")
        print(f"{record.address:{width}}  {schemes[record.flag]:6}  {stamp}")


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit("Usage: demo.py PROGRAM_FOLDER OUTPUT_FOLDER")
    try:
        main(sys.argv[1], sys.argv[2])
    except Exception as failure:  # The user gets a sentence for any failure.
        sys.exit(f"The demonstration did not succeed: {failure}")
