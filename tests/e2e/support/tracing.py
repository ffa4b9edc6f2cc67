"""Watching the system calls of a program that the tests start."""

import subprocess


def tracer(calls, output, *options):
    """The command to be put in front of a program's, which ends by becoming that program; what it
    does with these system calls is written to the file `output`."""
    return ["strace", "--follow-forks", "--daemonize", "--quiet=all", f"--trace={calls}",
            f"--output={output}", *options]


def can_trace():
    return subprocess.run([*tracer("socket", "/dev/null"), "true"],
                          stderr=subprocess.DEVNULL).returncode == 0
