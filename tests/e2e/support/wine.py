"""Windows programs in a private session, run by Wine in a private prefix.

Wine shows each of their windows as an X window on the session's display. So keys and windows work
the same as for a program of this system.
"""

import os
import shutil
import subprocess

from support import processes
from support.quorrix import MARK, Quorrix
from support.waiting import wait_until

# The font for pictures: Wine has its own fonts only if they are installed.
FONT = "DejaVu Sans"
FONTS_OF_DIALOGS = ("MS Shell Dlg", "MS Shell Dlg 2", "Segoe UI", "Tahoma", "MS Sans Serif")

PROGRAM_FOLDER = "C:\\Quorrix"


class Wine:
    """A prefix with a drive C:, and a second drive D:, an initially empty folder."""

    def __init__(self, session):
        self.session = session
        self.prefix = os.path.join(processes.temporary_folder(), "prefix")
        self.second_drive = processes.temporary_folder()
        self._lay_out_drives()
        self.environment = {
            "WINEPREFIX": self.prefix,
            "WINEDEBUG": "-all",
            # Without .NET and a web engine, whose installers would show windows, and without the
            # menu builder, which writes outside the prefix.
            "WINEDLLOVERRIDES": "mscoree,mshtml=;winemenubuilder.exe=d",
        }
        # In the foreground, so that it ends with the tests; it serves the prefix until then.
        self.start_tool("wineserver", "-f", "-p")
        self._run("wineboot", "-i")
        for font in FONTS_OF_DIALOGS:
            self.set_registry("HKCU\\Software\\Wine\\Fonts\\Replacements", font, FONT)

    def _lay_out_drives(self):
        """Must run before the server starts, because Wine lists the drives that exist then."""
        drives = os.path.join(self.prefix, "dosdevices")
        os.makedirs(drives, 0o700)
        os.mkdir(os.path.join(self.prefix, "drive_c"))
        for letter, folder in (("c:", "../drive_c"), ("d:", self.second_drive), ("z:", "/")):
            os.symlink(folder, os.path.join(drives, letter))

    def path(self, windows_path):
        """The path of a file of drive C: on this system."""
        return os.path.join(self.prefix, "drive_c", *windows_path.split("\\")[1:])

    def start(self, program, *arguments, log="wine.log", **more_environment):
        return self.start_tool("wine", program, *arguments, log=log, **more_environment)

    def start_tool(self, *command, log="wine.log", **more_environment):
        return self.session.start(command, log=log, **{**self.environment, **more_environment})

    def set_registry(self, key, name, text):
        value = ("/ve",) if name is None else ("/v", name)
        self._run("wine", "reg", "add", key, *value, "/d", text, "/f")

    def _run(self, *command):
        process = self.start_tool(*command)
        wait_until(lambda: process.poll() is not None, f"{command} to end", 120)
        if process.returncode != 0:
            raise RuntimeError(f"{command} failed: {self.session.log('wine.log')[-2000:]}")


class WindowsQuorrix(Quorrix):
    """The program for Windows. It is not on the accessibility bus, so the tests check the titles of
    its windows and its files."""

    def __init__(self, wine, installed):
        """`installed` is the installed folder of the program, which is copied."""
        super().__init__(wine.session, wine.path(PROGRAM_FOLDER))
        self.wine = wine
        shutil.rmtree(self.folder, ignore_errors=True)
        shutil.copytree(installed, self.folder)

    def start(self):
        self.process = self.wine.start(PROGRAM_FOLDER + "\\Quorrix.exe", log="quorrix.log",
                                       **{**self.more_environment, MARK: self.folder})

    def start_and_wait(self):
        if self.process is None:
            self.start()
        if not self._is_ready:
            wait_until(lambda: len(self.windows()) == 2, self._state, 30)
            wait_until(lambda: len(self.windows()) == 1, "the wait window to close")
            self._is_ready = True

    def application(self):
        raise NotImplementedError("the program for Windows is not on the accessibility bus")


class TestBrowser:
    """The window of tests/support/windows/test_browser_program.cpp."""

    def __init__(self, wine, program):
        self.wine = wine
        self.program = program
        self.process = None

    def start(self):
        self.process = self.wine.start(self.program)
        wait_until(self._windows, "the test browser's window", 30)

    def _windows(self):
        return self.wine.session.screen.windows_of([self.process.pid])

    @property
    def window(self):
        return self._windows()[0]

    def type_address(self, address):
        self.window.use()
        self.wine.session.screen.press("Home", "shift+End", "Delete")
        self.wine.session.screen.type(address)

    def press(self, *keys):
        self.window.use()
        self.wine.session.screen.press(*keys)

    def hang(self):
        """From now on it never answers a message to its windows."""
        self.press("F12")

    def close(self):
        if self.process:
            processes.end_family(self.process)


class StandIn:
    """A stand-in for Firefox or Chromium, tests/support/windows/msaa_browser_program.cpp. It obeys
    commands."""

    def __init__(self, wine, program, name, profile=None):
        """`name` is "firefox" or "chrome". `profile` is a folder of drive C:."""
        self.wine = wine
        folder = "C:\\" + name
        os.makedirs(wine.path(folder), exist_ok=True)
        shutil.copy(program, wine.path(folder + "\\" + name + ".exe"))
        options = ("-profile", profile) if profile else ()
        self.process = processes.start(
            ["wine", folder + "\\" + name + ".exe", *options],
            {**wine.session.environment, **wine.environment},
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        self.tell("calls")

    def tell(self, command):
        """Returns the answer."""
        self.process.stdin.write((command + "\n").encode())
        self.process.stdin.flush()
        return self.process.stdout.readline().decode().strip()

    def close(self):
        self.process.stdin.close()
        wait_until(lambda: self.process.poll() is not None, "the stand-in to end", 30)
        self.process.stdout.close()
