"""Starting processes so that none of them outlives the tests.

There are three levels of protection. All processes are killed when a session closes. They are also
killed when the interpreter exits or gets SIGTERM, SIGINT or SIGHUP. If the interpreter is killed,
the kernel kills the processes that it started, and their children lose their display and bus.
"""

import atexit
import ctypes
import os
import shutil
import signal
import subprocess
import tempfile
import time

PR_SET_CHILD_SUBREAPER = 36

_folders = []
_started = []


def become_their_keeper():
    """Makes this process adopt its orphaned descendants, so that they can be found and killed."""
    if ctypes.CDLL(None, use_errno=True).prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0) != 0:
        raise OSError(ctypes.get_errno(), "prctl")
    atexit.register(end_everything)
    for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
        signal.signal(number, _leave)


def _leave(number, _frame):
    end_everything()
    signal.signal(number, signal.SIG_DFL)
    os.kill(os.getpid(), number)


def start(command, env, **options):
    """Starts a command in its own session. Call this from the main thread only: the kernel ties the
    death signal to the thread that started the process."""
    process = subprocess.Popen(["setpriv", "--pdeathsig", "KILL", "--", *command],
                               env=env, start_new_session=True,
                               **{"stdin": subprocess.DEVNULL, **options})
    _started.append(process)
    return process


def temporary_folder():
    folder = tempfile.mkdtemp(prefix="quorrix-e2e-")
    _folders.append(folder)
    return folder


def children_of(process_id):
    """All living descendants of a process, children before grandchildren."""
    parents = {}
    for entry in os.listdir("/proc"):
        if entry.isdigit():
            fields = _stat(entry)
            if fields and fields[0] not in "ZX":
                parents.setdefault(int(fields[1]), []).append(int(entry))
    found, to_visit = [], [process_id]
    while to_visit:
        for child in parents.get(to_visit.pop(0), []):
            found.append(child)
            to_visit.append(child)
    return found


def with_environment(name, value):
    """Our descendants that were started with that environment variable. If a process denies access
    to its environment, it counts if its command line contains the value."""
    wanted = f"{name}={value}".encode()
    found = []
    for process_id in children_of(os.getpid()):
        try:
            with open(f"/proc/{process_id}/environ", "rb") as file:
                if wanted in file.read().split(b"\0"):
                    found.append(process_id)
        except PermissionError:
            if value.encode() in _command_line(process_id):
                found.append(process_id)
        except OSError:
            continue  # It has ended or is about to.
    return found


def _command_line(process_id):
    try:
        with open(f"/proc/{process_id}/cmdline", "rb") as file:
            return file.read()
    except OSError:
        return b""


def _stat(process_id):
    """The fields of /proc/PID/stat from the state on; None if the process is gone."""
    try:
        with open(f"/proc/{process_id}/stat", encoding="ascii", errors="replace") as file:
            return file.read().rpartition(")")[2].split()
    except (FileNotFoundError, ProcessLookupError):
        return None


def is_running(process_id):
    fields = _stat(process_id)
    return bool(fields) and fields[0] not in "ZX"


def processor_seconds(process_id):
    """User and system time in seconds that a process has used so far. It must exist."""
    fields = _stat(process_id)
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def send(number, process_ids):
    for process_id in process_ids:
        try:
            os.kill(process_id, number)
        except ProcessLookupError:
            pass


def end_family(process):
    """Kills a process that `start` returned, with all its descendants."""
    family = [process.pid, *children_of(process.pid)]
    send(signal.SIGKILL, family)
    process.wait()


def end_everything():
    """Kills and reaps every descendant and removes the temporary folders."""
    deadline = time.monotonic() + 10
    while time.monotonic() < deadline:
        family = children_of(os.getpid())
        send(signal.SIGKILL, family)
        _reap()
        if not family:
            break
    while _folders:
        shutil.rmtree(_folders.pop(), ignore_errors=True)


def _reap():
    try:
        while os.waitpid(-1, os.WNOHANG)[0] != 0:
            pass
    except ChildProcessError:
        pass
