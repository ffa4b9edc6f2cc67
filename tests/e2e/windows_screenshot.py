#!/usr/bin/python3
"""Makes the picture of the program for Windows: windows_screenshot.py INSTALLED_FOLDER PICTURE

Runs a copy of INSTALLED_FOLDER under Wine, in C:\\Quorrix, with a few sites in the tree.
"""

import sys

from screenshots import SITE_FILE
from support import processes
from support.keyboard_user import KeyboardUser
from support.session import PrivateSession
from support.wine import WindowsQuorrix, Wine


def main(installed, picture):
    processes.become_their_keeper()
    session = PrivateSession()
    try:
        quorrix = WindowsQuorrix(Wine(session), installed)
        with open(quorrix.site_file, "wb") as file:
            file.write(SITE_FILE)
        quorrix.start_and_wait()
        user = KeyboardUser(quorrix)
        user.open_all_branches()
        window = quorrix.main_window()
        window.use()
        session.screen.save_picture(picture, window)
        quorrix.close_window()
        if quorrix.exit_status() != 0:
            raise RuntimeError(f"the program ended with status {quorrix.exit_status()}")
    finally:
        session.close()


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit("Usage: windows_screenshot.py INSTALLED_FOLDER PICTURE")
    try:
        main(sys.argv[1], sys.argv[2])
    except Exception as failure:  # The user gets a sentence for any failure.
        sys.exit(f"The picture was not made: {failure}")
    print(sys.argv[2])
