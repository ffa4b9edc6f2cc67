"""Every record that the program writes, with the time and the address.

The stamps have a resolution of one second, so a record that is written twice within a second has
the same bytes. A file watch reports a write, but not the record. So the program runs under strace,
which stops it at pwrite64 only, and reports which bytes are written to which file.
"""

import os
import re
from collections import namedtuple

from support.site_file import ADDRESS_BYTES, RECORD_BYTES
from support.tracing import tracer

Write = namedtuple("Write", "time address")

# Stops the program only at the traced call, and prints whole records.
_OPTIONS = ("--seccomp-bpf", "-ttt", "--decode-fds=path", f"--string-limit={RECORD_BYTES}")
_WRITE = re.compile(r'(?:\d+ +)?(\d+\.\d+) pwrite64\(\d+<[^>]*/nodes\.dat>, "((?:[^"\\]|\\.)*)", '
                    r"(\d+), \d+")


class Ledger:
    def __init__(self, folder):
        self._path = os.path.join(folder, "writes")
        self._read = 0
        self._rest = ""

    def launcher(self):
        """A prefix for the program's command."""
        return tracer("pwrite64", self._path, *_OPTIONS)

    def new_writes(self):
        """The writes since the last call, in order."""
        try:
            with open(self._path, encoding="latin-1") as file:
                file.seek(self._read)
                text = file.read()
                self._read = file.tell()
        except FileNotFoundError:
            return []
        lines = (self._rest + text).split("\n")
        self._rest = lines.pop()
        return [write for line in lines if (write := _write_in(line))]


def _write_in(line):
    match = _WRITE.match(line)
    if not match:
        return None
    when, record, length = match.groups()
    if int(length) != RECORD_BYTES:
        raise AssertionError(f"a write that is not one whole record: {line}")
    return Write(float(when), record[:ADDRESS_BYTES].rstrip(" "))
