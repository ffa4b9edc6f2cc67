"""quorrix-data, as a user runs it, and a folder of data for it."""

import os
import subprocess


def data_tool():
    """The path of the built quorrix-data, which is beside the program."""
    return os.path.join(os.path.dirname(os.environ["QUORRIX_PROGRAM"]), "quorrix-data")


def run_data_tool(*arguments, status=0, **options):
    """What quorrix-data prints, as text. It must end with that status, and report nothing unless it
    fails."""
    done = subprocess.run([data_tool(), *arguments], capture_output=True, check=False, timeout=60,
                          env={**os.environ, "LC_ALL": "C.UTF-8"}, **options)
    error = done.stderr.decode()
    if done.returncode != status or (error and status == 0):
        raise AssertionError(f"status {done.returncode}: {error}")
    return done.stdout.decode()


def site(address, flag="N", stamp="3/14/26 10:00:00 AM"):
    return (address.ljust(300) + flag + (stamp + "~").ljust(21)).encode("cp1252")


def notes(address, text):
    return (address.ljust(300) + text.ljust(1024)).encode("cp1252")


def login(address, user_id, password):
    return (address.ljust(300) + password.ljust(30) + user_id.ljust(30)).encode("cp1252")


def write_folder(folder, **files):
    """Makes a data folder; write_folder(folder, nodes=..., notes=...) says what is in its files."""
    os.makedirs(folder)
    for name in ("nodes", "notes", "info", "purchases"):
        with open(os.path.join(folder, name + ".dat"), "wb") as file:
            file.write(files.get(name, b""))
    return folder
