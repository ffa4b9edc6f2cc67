"""Shared by the tests of both packages: the session, the packages, a program in a system."""

import glob
import os
import re
import unittest

import debian_systems
from support import processes
from support.screen import ResponseWatch
from support.session import PrivateSession
from support.waiting import wait_until

PACKAGES = os.path.join(os.path.dirname(__file__), "../../build/packages")

SITES = (b"www.garden.example/roses" + b" " * 276 + b"N" + b"2/29/24 12:05:09 AM~ "
         + b"news.harbour.example" + b" " * 280 + b"S" + b"11/3/25 1:00:00 PM~  ")
NOTES = b"www.garden.example/roses" + b" " * 276 + b"Prune in March." + b" " * 1009

_desk = {}


def the_package(pattern):
    found = glob.glob(os.path.join(PACKAGES, pattern))
    if len(found) != 1:
        raise RuntimeError(f"one package {pattern} is expected; there are {found}")
    return found[0]


class PackageTest(unittest.TestCase):
    """Each test class has one system, a copy of `original()`; each test adds the users it needs."""

    @classmethod
    def setUpClass(cls):
        if not _desk:
            processes.become_their_keeper()
            debian_systems.keep_others_out()
            debian_systems.clear_leavings()
            _desk["session"] = PrivateSession()
        cls.session = _desk["session"]
        cls.system = debian_systems.System(cls.original())
        cls.addClassCleanup(cls.system.close)

    # --- given -----------------------------------------------------------------------------------

    def given_sites(self, folder):
        for name, content in (("nodes.dat", SITES), ("notes.dat", NOTES),
                              ("load.txt", b"Spring 2024\n")):
            with open(os.path.join(folder, "Data", name), "wb") as file:
                file.write(content)
        os.makedirs(os.path.join(folder, "Archives", "Spring 2024"), exist_ok=True)
        with open(os.path.join(folder, "Archives", "Spring 2024", "nodes.dat"), "wb") as file:
            file.write(SITES[:322])

    # --- when ------------------------------------------------------------------------------------

    def start(self, user, *command):
        program = Program(self.session, user, command)
        self.addCleanup(program.end)
        return program

    def keep_picture(self, window, name):
        folder = os.environ.get("QUORRIX_EVIDENCE")
        if folder:
            os.makedirs(folder, exist_ok=True)
            window.screen.save_picture(os.path.join(folder, name), window)

    # --- then ------------------------------------------------------------------------------------

    def assert_starts_and_ends(self, user, *command):
        program = self.start(user, *command)
        program.wait_for_main_window()
        program.close()
        self.assertEqual(0, program.exit_status(), program.output())

    def assert_shows_its_manual(self, program, window):
        window.use()
        self.session.screen.press("alt+h")
        self.session.screen.press("h")
        program.wait_for_window("Quorrix Help").close()
        wait_until(lambda: not program.window("Quorrix Help"), "the manual to close")

    def assert_succeeds(self, done):
        self.assertEqual(0, done.returncode, done.stdout)

    def assert_refuses(self, sentence, done):
        self.assertEqual((1, sentence + "\n"), (done.returncode, done.stdout))

    def assert_new_data_folder(self, data):
        self.assertEqual({"nodes.dat": b"", "notes.dat": b"", "info.dat": b"",
                          "purchases.dat": b"", "load.txt": b"none\n"}, bytes_in(data))
        self.assertEqual(0o700, os.stat(data).st_mode & 0o777)
        for name in os.listdir(data):
            self.assertEqual(0o600, os.stat(os.path.join(data, name)).st_mode & 0o777, name)


def bytes_in(folder):
    """A dict from the name of each file in a folder to its bytes."""
    found = {}
    for name in os.listdir(folder):
        with open(os.path.join(folder, name), "rb") as file:
            found[name] = file.read()
    return found


def everything_in(folder, *names):
    """Each file's inode, mode, owner, time and bytes, each folder's mode, each link's target."""
    found = {}
    for top in [os.path.join(folder, name) for name in names] or [folder]:
        for place, folders, files in os.walk(top):
            found[place] = os.stat(place).st_mode
            for name in files + folders:
                path = os.path.join(place, name)
                if os.path.islink(path):
                    found[path] = os.readlink(path)
                elif os.path.isfile(path):
                    state = os.stat(path)
                    with open(path, "rb") as file:
                        found[path] = (state.st_ino, state.st_mode, state.st_uid,
                                       state.st_mtime_ns, file.read())
    return found


class Program:
    """An instance of Quorrix that a user of a system started on the tests' display."""

    def __init__(self, session, user, command):
        self.screen = session.screen
        self._log = os.path.join(session.folder, f"{user.name}.log")
        open(self._log, "wb").close()
        self._process = user.start(command, self._log, DISPLAY=session.environment["DISPLAY"])

    def window(self, title):
        return next((window for window in self._windows() if window.title == title), None)

    def wait_for_window(self, title):
        return wait_until(lambda: self.window(title),
                          lambda: f"the window {title!r}; it said {self.output()!r}")

    def wait_for_main_window(self):
        """Returns the main window once the wait dialog has closed and the window responds."""
        for count in (2, 1):
            wait_until(lambda: len(self._windows()) == count,
                       lambda: f"{count} windows; it said {self.output()!r}")
        window, = self._windows()
        with ResponseWatch(window):
            return window

    def _windows(self):
        return self.screen.windows_of([self._process.pid])

    def libraries(self):
        """The paths of all loaded shared libraries."""
        with open(f"/proc/{self._process.pid}/maps", encoding="utf-8") as file:
            paths = {line.split(None, 5)[5].strip() for line in file if "r-xp" in line
                     and "/" in line}
        return {path for path in paths if re.search(r"\.so(\.|$)", path)}

    def executable(self):
        return os.readlink(f"/proc/{self._process.pid}/exe")

    def close(self):
        window, = self._windows()
        window.close()

    def exit_status(self):
        return wait_until(lambda: (self._process.poll() is not None) and [self._process.poll()],
                          "the program's end")[0]

    def output(self):
        with open(self._log, encoding="utf-8", errors="replace") as file:
            return file.read()

    def end(self):
        processes.end_family(self._process)
