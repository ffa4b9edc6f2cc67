"""Tracing the system calls of a program that the tests start."""

import subprocess


def tracer(calls, output, *options):
    """A prefix for a program's command. It finally executes the program, whose system calls named
    in `calls` are logged in the file `output`."""
    return ["strace", "--follow-forks", "--daemonize", "--quiet=all", f"--trace={calls}",
            f"--output={output}", *options]


def can_trace():
    return subprocess.run([*tracer("socket", "/dev/null"), "true"],
                          stderr=subprocess.DEVNULL).returncode == 0
