"""A private desktop session: display, window manager, session bus, accessibility bus.

It shares nothing with the session from which the tests are started, so the tests neither see nor
disturb the user's browsers and settings.
"""

import os
import re
import subprocess

from gi.repository import Gio, GLib

from support import processes
from support.screen import Screen
from support.waiting import wait_until

SCREEN_SIZE = "1280x960x24"


class PrivateSession:
    def __init__(self):
        self.folder = processes.temporary_folder()
        self.home = self._make_folder("home")
        self.environment = {
            "PATH": "/usr/local/bin:/usr/bin:/bin",
            "HOME": self.home,
            "LANG": "C.UTF-8",
            "TZ": os.environ.get("TZ", ""),
            "XDG_RUNTIME_DIR": self._make_folder("runtime"),
            "TMPDIR": self._make_folder("tmp"),
            # Browsers, portals and the settings service then only use the settings of this session.
            "GSETTINGS_BACKEND": "memory",
        }
        if not self.environment["TZ"]:
            del self.environment["TZ"]
        self._start_display()
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = self._start_bus()
        self.bus = connect(self.environment["DBUS_SESSION_BUS_ADDRESS"])
        self._start_window_manager()

    def close(self):
        self.bus.close_sync()
        self.screen.close()
        processes.end_everything()

    def start(self, command, log=None, **more_environment):
        """Starts a command in this session; its output is appended to `log` in our folder."""
        with open(os.path.join(self.folder, log or "session.log"), "ab") as output:
            return processes.start(command, {**self.environment, **more_environment},
                                   stdout=output, stderr=output, cwd=self.home)

    def log(self, name):
        with open(os.path.join(self.folder, name), encoding="utf-8", errors="replace") as file:
            return file.read()

    # --- accessibility ---------------------------------------------------------------------------

    def accessibility_address(self):
        """The address of the accessibility bus. The call starts the bus if it is not running."""
        return self._ask_launcher("org.a11y.Bus", "GetAddress", None).unpack()[0]

    def accessibility_is_on(self):
        answer = self._ask_launcher("org.freedesktop.DBus.Properties", "Get",
                                    GLib.Variant("(ss)", ("org.a11y.Status", "IsEnabled")))
        return answer.unpack()[0]

    def switch_accessibility(self, on):
        self._ask_launcher("org.freedesktop.DBus.Properties", "Set",
                           GLib.Variant("(ssv)", ("org.a11y.Status", "IsEnabled",
                                                  GLib.Variant("b", on))))

    def kill_accessibility_bus(self):
        """Kills the accessibility bus and its launcher; the next call to it starts a new one."""
        launcher = self._process_of("org.a11y.Bus")
        processes.send(9, self.accessibility_processes())
        wait_until(lambda: self._process_of("org.a11y.Bus") != launcher, "the bus to be gone")

    def accessibility_processes(self):
        """IDs of the accessibility bus's processes and of its launcher."""
        launcher = self._process_of("org.a11y.Bus")
        return [*processes.children_of(launcher), launcher]

    def bus_process(self):
        """ID of the process of the session bus."""
        return self._process_of("org.freedesktop.DBus")

    def registry_process(self):
        """ID of the process that lists the programs on the accessibility bus."""
        bus = connect(self.accessibility_address())
        try:
            return self._process_of("org.a11y.atspi.Registry", bus)
        finally:
            bus.close_sync()

    def _process_of(self, name, bus=None):
        try:
            return (bus or self.bus).call_sync(
                "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                "GetConnectionUnixProcessID", GLib.Variant("(s)", (name,)), None,
                Gio.DBusCallFlags.NONE, 5000, None).unpack()[0]
        except GLib.Error:
            return None

    def _ask_launcher(self, interface, method, arguments):
        return self.bus.call_sync("org.a11y.Bus", "/org/a11y/bus", interface, method, arguments,
                                  None, Gio.DBusCallFlags.NONE, 10000, None)

    # --- parts -----------------------------------------------------------------------------------

    def _make_folder(self, name):
        folder = os.path.join(self.folder, name)
        os.mkdir(folder, 0o700)
        return folder

    def _start_display(self):
        number = self._start_and_read(lambda fd: ["Xvfb", "-displayfd", str(fd), "-screen", "0",
                                                  SCREEN_SIZE, "-nolisten", "tcp", "-noreset"])
        self.environment["DISPLAY"] = ":" + number

    def _start_window_manager(self):
        self.screen = Screen(dict(self.environment))
        self.start(["openbox", "--sm-disable"])
        wait_until(self.screen.has_window_manager, "the window manager")

    def _start_bus(self):
        return self._start_and_read(lambda fd: ["dbus-daemon", "--session", "--nofork",
                                                f"--print-address={fd}"])

    def _start_and_read(self, command):
        """Starts a server that writes its address to a file descriptor, as one line. Returns the
        address."""
        reading, writing = os.pipe()
        with open(os.path.join(self.folder, "session.log"), "ab") as output:
            server = processes.start(command(writing), self.environment, pass_fds=[writing],
                                     stdout=output, stderr=subprocess.STDOUT)
        os.close(writing)
        with os.fdopen(reading, encoding="ascii") as answer:
            line = answer.readline().strip()
        if not re.search(r"\S", line):
            raise RuntimeError(f"{server.args[4]} did not start: {self.log('session.log')}")
        return line


def connect(address):
    return Gio.DBusConnection.new_for_address_sync(
        address,
        Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
        | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION,
        None, None)
