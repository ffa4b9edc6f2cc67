"""Reads nodes.dat as the documentation describes it, without any code of the program."""

import ctypes
import os
import re
import struct
from collections import namedtuple
from datetime import datetime

RECORD_BYTES = 322
ADDRESS_BYTES = 300
STAMP_BYTES = 21

Record = namedtuple("Record", "address flag stamp")

# M/d/yy h:mm:ss AM~ : leading zeros only in minutes and seconds.
_STAMP = re.compile(r"([1-9]|1[0-2])/([1-9]|[12][0-9]|3[01])/([0-9]{2}) "
                    r"([1-9]|1[0-2]):([0-5][0-9]):([0-5][0-9]) (AM|PM)~ *")


def read_records(path):
    with open(path, "rb") as file:
        data = file.read()
    if len(data) % RECORD_BYTES != 0:
        raise AssertionError(f"{path} has {len(data)} bytes, not a multiple of {RECORD_BYTES}")
    return [read_record(data[start:start + RECORD_BYTES])
            for start in range(0, len(data), RECORD_BYTES)]


def read_record(data):
    address = data[:ADDRESS_BYTES].decode("cp1252")
    stamp = data[ADDRESS_BYTES + 1:].decode("cp1252")
    if "\0" in address or " " in address.rstrip(" "):
        raise AssertionError(f"not padded with blanks: {address!r}")
    return Record(address.rstrip(" "), chr(data[ADDRESS_BYTES]), stamp)


def time_of(stamp):
    """The local date and time of a stamp. Fails if the stamp has any other format."""
    if len(stamp) != STAMP_BYTES or not _STAMP.fullmatch(stamp):
        raise AssertionError(f"not a stamp: {stamp!r}")
    month, day, year, hour, minute, second, half = _STAMP.fullmatch(stamp).groups()
    hours = int(hour) % 12 + (12 if half == "PM" else 0)
    return datetime(2000 + int(year), int(month), int(day), hours, int(minute), int(second))


class WriteCount:
    """Counts the writes to a file, including those that do not change its bytes."""

    IN_MODIFY, IN_OPEN, IN_CLOSE_WRITE = 0x2, 0x20, 0x8
    _libc = ctypes.CDLL(None, use_errno=True)

    def __init__(self, path):
        self._descriptor = self._libc.inotify_init1(os.O_NONBLOCK | os.O_CLOEXEC)
        # Opening and closing are watched only so that two successive writes are not merged.
        self._libc.inotify_add_watch(self._descriptor, os.fsencode(path),
                                     self.IN_MODIFY | self.IN_OPEN | self.IN_CLOSE_WRITE)
        self._count = 0

    def now(self):
        try:
            events = os.read(self._descriptor, 65536)
        except BlockingIOError:
            return self._count
        start = 0
        while start < len(events):
            _watch, mask, _cookie, length = struct.unpack_from("iIII", events, start)
            self._count += bool(mask & self.IN_MODIFY)
            start += struct.calcsize("iIII") + length
        return self._count

    def close(self):
        os.close(self._descriptor)
