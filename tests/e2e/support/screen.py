"""The display as the window manager and the user see it: windows, titles, keys, clicks.

Everything here goes through the X server, so it remains correct when the accessibility bus is
stopped or gone.
"""

import ctypes
import select
import subprocess
import threading
import time
from ctypes import POINTER, byref, c_char_p, c_int, c_long, c_ubyte, c_ulong, c_void_p

from support import pictures
from support.waiting import POLL_SECONDS, wait_until

CLIENT_MESSAGE = 33
STRUCTURE_NOTIFY = 1 << 17
SUBSTRUCTURE_NOTIFY = 1 << 19
SUBSTRUCTURE_REDIRECT = 1 << 20

_x = ctypes.CDLL("libX11.so.6")
_x.XOpenDisplay.restype = c_void_p
_x.XOpenDisplay.argtypes = [c_char_p]
_x.XDefaultRootWindow.restype = c_ulong
_x.XInternAtom.restype = c_ulong
_x.XInternAtom.argtypes = [c_void_p, c_char_p, c_int]
_x.XGetWindowProperty.argtypes = [
    c_void_p, c_ulong, c_ulong, c_long, c_long, c_int, c_ulong, POINTER(c_ulong), POINTER(c_int),
    POINTER(c_ulong), POINTER(c_ulong), POINTER(POINTER(c_ubyte))]
_x.XSendEvent.argtypes = [c_void_p, c_ulong, c_int, c_long, c_void_p]
_x.XSelectInput.argtypes = [c_void_p, c_ulong, c_long]
for _name in ("XDefaultRootWindow", "XFlush", "XAutoRepeatOff", "XPending", "XConnectionNumber",
              "XCloseDisplay"):
    getattr(_x, _name).argtypes = [c_void_p]
_x.XNextEvent.argtypes = [c_void_p, c_void_p]

# A window may close between two requests; the default handler would end the interpreter.
_on_error = ctypes.CFUNCTYPE(c_int, c_void_p, c_void_p)(lambda _display, _error: 0)
_x.XSetErrorHandler(_on_error)


class _ClientMessage(ctypes.Structure):
    _fields_ = [("type", c_int), ("serial", c_ulong), ("send_event", c_int), ("display", c_void_p),
                ("window", c_ulong), ("message_type", c_ulong), ("format", c_int),
                ("data", c_long * 5)]


class _Event(ctypes.Union):
    _fields_ = [("type", c_int), ("client", _ClientMessage), ("pad", c_long * 24)]


class _Connection:
    def __init__(self, display):
        self.display = _x.XOpenDisplay(display.encode())
        if not self.display:
            raise RuntimeError(f"no display {display}")
        self.root = _x.XDefaultRootWindow(self.display)

    def close(self):
        _x.XCloseDisplay(self.display)

    def switch_key_repeat_off(self):
        _x.XAutoRepeatOff(self.display)
        _x.XFlush(self.display)

    def atom(self, name):
        return _x.XInternAtom(self.display, name.encode(), 0)

    def property(self, window, name):
        """A property's bytes, or its list of numbers if it has the 32-bit format."""
        kind, form, count, rest = c_ulong(), c_int(), c_ulong(), c_ulong()
        data = POINTER(c_ubyte)()
        _x.XGetWindowProperty(self.display, window, self.atom(name), 0, 65536, 0, 0, byref(kind),
                              byref(form), byref(count), byref(rest), byref(data))
        if not data:
            return None
        try:
            if form.value == 32:
                return list(ctypes.cast(data, POINTER(c_ulong))[:count.value])
            return bytes(data[:count.value])
        finally:
            _x.XFree(data)

    def send_message(self, receiver, window, message, values):
        event = _Event()
        event.client.type = CLIENT_MESSAGE
        event.client.window = window
        event.client.message_type = self.atom(message)
        event.client.format = 32
        event.client.data[:len(values)] = values
        mask = 0 if receiver == window else SUBSTRUCTURE_NOTIFY | SUBSTRUCTURE_REDIRECT
        _x.XSendEvent(self.display, receiver, 0, mask, byref(event))
        _x.XFlush(self.display)


class Window:
    """One top-level window that the window manager manages."""

    def __init__(self, screen, number):
        self.screen = screen
        self.number = number

    @property
    def title(self):
        text = self.screen.connection.property(self.number, "_NET_WM_NAME")
        return text.decode("utf-8", "replace") if isinstance(text, bytes) else ""

    @property
    def process(self):
        numbers = self.screen.connection.property(self.number, "_NET_WM_PID")
        return numbers[0] if numbers else None

    def is_active(self):
        return self.screen.active_window() == self.number

    def is_above(self, other):
        numbers = self.screen.window_numbers_from_below()
        return numbers.index(self.number) > numbers.index(other.number)

    def stays_on_top(self):
        states = self.screen.connection.property(self.number, "_NET_WM_STATE") or []
        return self.screen.connection.atom("_NET_WM_STATE_ABOVE") in states

    def minimise(self):
        self.screen.command("windowminimize", str(self.number))
        wait_until(self.is_minimised, f"the window {self.title!r} to be minimised")

    def is_minimised(self):
        states = self.screen.connection.property(self.number, "_NET_WM_STATE") or []
        return self.screen.connection.atom("_NET_WM_STATE_HIDDEN") in states

    def use(self):
        """Brings the window to the front and gives it the keyboard, as a click on it would."""
        connection = self.screen.connection
        connection.send_message(connection.root, self.number, "_NET_ACTIVE_WINDOW", [2, 0, 0])
        wait_until(self.is_active, f"the window {self.title!r} to be active")

    def close(self):
        """Asks the window to close, as its close button does. It may refuse."""
        connection = self.screen.connection
        connection.send_message(connection.root, self.number, "_NET_CLOSE_WINDOW", [0, 2])

    def frame_widths(self):
        """The widths of the window manager's frame: left, right, top and bottom."""
        return self.screen.connection.property(self.number, "_NET_FRAME_EXTENTS")

    def move(self, left, top):
        self.screen.command("windowmove", "--sync", str(self.number), str(left), str(top))

    def click(self, x, y, button=1):
        self.screen.command("mousemove", "--window", str(self.number), str(x), str(y),
                            "click", str(button))

    def click_and_type(self, x, y, text):
        """Clicks into a box and replaces its text."""
        self.screen.command("mousemove", "--window", str(self.number), str(x), str(y),
                            "click", "1", "key", "--clearmodifiers", "ctrl+a",
                            "type", "--delay", "1", text)


class Screen:
    def __init__(self, environment):
        self.environment = environment
        self.connection = _Connection(environment["DISPLAY"])
        # On a busy machine a key may be released so late that it repeats, and Alt+Left would go back
        # two pages.
        self.connection.switch_key_repeat_off()

    def close(self):
        self.connection.close()

    def has_window_manager(self):
        return bool(self.connection.property(self.connection.root, "_NET_SUPPORTING_WM_CHECK"))

    def window_numbers(self):
        return self.connection.property(self.connection.root, "_NET_CLIENT_LIST") or []

    def window_numbers_from_below(self):
        connection = self.connection
        return connection.property(connection.root, "_NET_CLIENT_LIST_STACKING") or []

    def active_window(self):
        return (self.connection.property(self.connection.root, "_NET_ACTIVE_WINDOW") or [None])[0]

    def windows_of(self, process_ids):
        windows = [Window(self, number) for number in self.window_numbers()]
        return [window for window in windows if window.process in process_ids]

    def click(self, x, y):
        self.command("mousemove", str(x), str(y), "click", "1")

    def press(self, *keys):
        self.command("key", "--clearmodifiers", *keys)

    def type(self, text):
        self.command("type", "--delay", "4", text)

    def set_keyboard(self, layout):
        """Sets the layout of the keyboard, such as "us"."""
        subprocess.run(["setxkbmap", layout], env=self.environment, check=True, timeout=20)

    def command(self, *words):
        subprocess.run(["xdotool", *words], env=self.environment, check=True, timeout=20,
                       stdout=subprocess.DEVNULL)

    def save_picture(self, path, window=None):
        """Saves a picture of the screen as it is, or of a window with its frame. Waits until the
        window is in front and painted."""
        if not window:
            return self._import(path, "-window", "root")
        before = None
        def is_finished():
            nonlocal before
            if not self._lies_in_front(window):
                return False
            self._import(path, "-frame", "-window", str(window.number))
            earlier, before = before, pictures.signature(path)
            return (earlier == before and pictures.is_painted(path)
                    and self._lies_in_front(window))
        return wait_until(is_finished, lambda: f"the window {window.title!r} to "
                          f"{'be painted' if self._lies_in_front(window) else 'lie in front'}")

    def _lies_in_front(self, window):
        return self.window_numbers_from_below()[-1] == window.number

    def _import(self, path, *part):
        subprocess.run(["import", *part, path], env=self.environment, check=True, timeout=20)


class ResponseWatch:
    """Pings a window repeatedly, and stores the longest response time.

    It uses the window manager's ping (_NET_WM_PING), which a program answers from its event loop.
    So the response time is how long a user's click would have waited.
    """

    LONGEST_WAIT = 10.0

    def __init__(self, window):
        self.window = window
        self.longest = 0.0
        self.answers = 0

    def __enter__(self):
        self._connection = _Connection(self.window.screen.environment["DISPLAY"])
        # Toolkits send their answers with one or the other of these event masks.
        _x.XSelectInput(self._connection.display, self._connection.root,
                        STRUCTURE_NOTIFY | SUBSTRUCTURE_NOTIFY)
        self._stopping = threading.Event()
        self._thread = threading.Thread(target=self._watch, daemon=True)
        self._thread.start()
        try:
            wait_until(lambda: self.answers > 0, "the window's first answer")
        except AssertionError:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_exception):
        self._stopping.set()
        self._thread.join()
        self._connection.close()

    def _watch(self):
        serial = 0
        while not self._stopping.wait(POLL_SECONDS):
            serial += 1
            asked = time.monotonic()
            self._connection.send_message(
                self.window.number, self.window.number, "WM_PROTOCOLS",
                [self._connection.atom("_NET_WM_PING"), serial, self.window.number])
            answered = self._wait_for_answer(serial, asked + self.LONGEST_WAIT)
            self.longest = max(self.longest, time.monotonic() - asked)
            if answered:
                self.answers += 1

    def _wait_for_answer(self, serial, deadline):
        event = _Event()
        protocols = self._connection.atom("WM_PROTOCOLS")
        descriptor = _x.XConnectionNumber(self._connection.display)
        while time.monotonic() < deadline:
            while _x.XPending(self._connection.display):
                _x.XNextEvent(self._connection.display, byref(event))
                if (event.type == CLIENT_MESSAGE and event.client.message_type == protocols
                        and event.client.data[1] == serial):
                    return True
            select.select([descriptor], [], [], 0.05)
        return False
