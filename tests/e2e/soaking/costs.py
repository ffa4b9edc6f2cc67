"""Memory, descriptors and processor time of the program, the browser and the buses."""

import os

from support import processes

PAGE = os.sysconf("SC_PAGE_SIZE")
BUS_PROGRAMS = ("dbus-daemon", "at-spi2-registr", "at-spi-bus-laun")


def memory_mib(process_id):
    with open(f"/proc/{process_id}/statm", encoding="ascii") as file:
        return int(file.read().split()[1]) * PAGE / 1024 / 1024


def descriptors(process_id):
    """The number of open descriptors, or None if the system denies access."""
    try:
        return len(os.listdir(f"/proc/{process_id}/fd"))
    except PermissionError:
        return None


def bus_processes():
    found = []
    for process_id in processes.children_of(os.getpid()):
        try:
            with open(f"/proc/{process_id}/comm", encoding="ascii") as file:
                if file.read().strip() in BUS_PROGRAMS:
                    found.append(process_id)
        except OSError:
            continue  # It ended.
    return found


class Meter:
    """Processor seconds of groups of processes. Processes that have ended stay counted."""

    def __init__(self):
        self._seconds = {}

    def read(self, group, process_ids):
        for process_id in process_ids:
            try:
                seconds = processes.processor_seconds(process_id)
            except TypeError:
                continue  # It ended.
            self._seconds.setdefault(group, {})[process_id] = seconds

    def total(self, group):
        return sum(self._seconds.get(group, {}).values())
