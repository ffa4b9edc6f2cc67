"""Debian systems in folders: made once by debootstrap, kept in the user's cache, copied for use.

They have the release of this machine, because the program is built with its libraries. They
come from the mirror that apt uses on this machine.
"""

import fcntl
import hashlib
import os
import re
import shutil
import subprocess
import tempfile

from support import processes

CACHE = os.path.join(os.environ.get("XDG_CACHE_HOME") or os.path.expanduser("~/.cache"), "quorrix")

# No libraries: only what comes with an X server and every desktop, and the decompressor.
BESIDES_THE_BASE = ("fontconfig-config", "fonts-dejavu-core", "xkb-data", "xz-utils")


def bare_system():
    """The folder of a Debian system that contains only the base system and BESIDES_THE_BASE."""
    release = _release()

    def make(folder):
        _run("debootstrap", "--variant=minbase", "--include=" + ",".join(BESIDES_THE_BASE),
             release, folder, _mirror(release))
        _empty(os.path.join(folder, "var/cache/apt/archives"))

    return _kept(f"bare-{release}-{_digest(*BESIDES_THE_BASE)}", make)


def system_that_can_get(depends):
    """The bare system, with the packages of that Depends line downloaded into its apt cache."""
    names = [re.sub(r"\(.*?\)", "", part).strip() for part in depends.split(",")]

    def make(folder):
        _copy(bare_system(), folder)
        with open(os.path.join(folder, "etc/apt/apt.conf.d/90machine"), "w",
                  encoding="ascii") as file:
            file.write(_way_to_the_mirror())
        _run("chroot", folder, "apt-get", "-qq", "update")
        _run("chroot", folder, "apt-get", "-qq", "install", "--download-only",
             "--no-install-recommends", *names)

    return _kept(f"packages-{_release()}-{_digest(*names)}", make)


class System:
    """A disposable copy of such a system, to install into."""

    def __init__(self, original):
        work = os.path.join(CACHE, "work")
        os.makedirs(work, exist_ok=True)
        self.folder = tempfile.mkdtemp(dir=work)
        _copy(original, self.folder)
        os.chmod(self.folder, 0o755)
        self._mounted = []
        # The program finds its own path there.
        self.mount("/proc", "-t", "proc", "proc")

    def close(self):
        while self._mounted:
            subprocess.run(["umount", self._mounted.pop()], check=True)
        # Whatever else happens, nothing outside our own folder is removed.
        subprocess.run(["rm", "-rf", "--one-file-system", self.folder], check=True)

    def mount(self, path, *arguments):
        subprocess.run(["mount", *arguments, self.path(path)], check=True)
        self._mounted.append(self.path(path))

    def unmount(self, path):
        subprocess.run(["umount", self.path(path)], check=True)
        self._mounted.remove(self.path(path))

    def path(self, path):
        """The path of a file of the system, as seen by the tests, which run outside it."""
        return os.path.join(self.folder, path.lstrip("/"))

    def add_user(self, name, home):
        self.run_as_root("useradd", "--create-home", "--home-dir", home, name)
        return User(self, name, home)

    def run_as_root(self, *command):
        return _run("chroot", self.folder, "env", "-i", "PATH=/usr/sbin:/usr/bin:/sbin:/bin",
                    "LANG=C.UTF-8", "DEBIAN_FRONTEND=noninteractive", *command)


class User:
    def __init__(self, system, name, home):
        self.system = system
        self.name = name
        self.home = home
        self.environment = {"HOME": home, "PATH": "/usr/local/bin:/usr/bin:/bin",
                            "LANG": "C.UTF-8"}

    def path(self, *names):
        """The path of a file in the home folder, as seen by the tests."""
        return os.path.join(self.system.path(self.home), *names)

    def inside(self, *names):
        """The same path, as seen by the user."""
        return os.path.join(self.home, *names)

    def run(self, *command, **more_environment):
        """Runs a command to its end. Its standard input is empty, so it cannot ask questions."""
        return subprocess.run(self._entering(command, more_environment), text=True, timeout=120,
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, check=False)

    def start(self, command, log, **more_environment):
        with open(log, "ab") as output:
            return processes.start(self._entering(command, more_environment), os.environ,
                                   stdout=output, stderr=output)

    def _entering(self, command, more_environment):
        variables = {**self.environment, **more_environment}
        return ["chroot", f"--userspec={self.name}:{self.name}", self.system.folder,
                "env", "-i", "-C", self.home,
                *(f"{name}={value}" for name, value in variables.items() if value is not None),
                *command]


# --- the cache -----------------------------------------------------------------------------------

def clear_leavings():
    """Removes the copies left behind by tests that were killed."""
    subprocess.run(["rm", "-rf", "--one-file-system", os.path.join(CACHE, "work")], check=True)


def keep_others_out():
    """Takes a lock until the process ends: two test runs would delete each other's copies."""
    os.makedirs(CACHE, exist_ok=True)
    fcntl.flock(os.open(os.path.join(CACHE, "lock"), os.O_CREAT | os.O_WRONLY), fcntl.LOCK_EX)


def _kept(name, make):
    folder = os.path.join(CACHE, name)
    if not os.path.isdir(folder):
        print(f"making {folder}", flush=True)
        subprocess.run(["rm", "-rf", "--one-file-system", folder + ".part"], check=True)
        make(folder + ".part")
        os.rename(folder + ".part", folder)
    return folder


def _copy(original, folder):
    os.makedirs(folder, exist_ok=True)
    _run("cp", "-a", "--reflink=auto", original + "/.", folder)


def _empty(folder):
    shutil.rmtree(folder)
    os.makedirs(os.path.join(folder, "partial"))


def _digest(*words):
    return hashlib.sha256("\n".join(words).encode()).hexdigest()[:12]


# --- the machine's own system --------------------------------------------------------------------

def _release():
    with open("/etc/os-release", encoding="utf-8") as file:
        return re.search(r"^VERSION_CODENAME=(\w+)$", file.read(), re.MULTILINE).group(1)


def _mirror(release):
    targets = _run("apt-get", "indextargets", "--format",
                   "$(SITE) $(CODENAME) $(COMPONENT) $(ORIGIN)", "Created-By: Packages")
    for line in targets.splitlines():
        site, *what = line.split()
        if what == [release, "main", "Debian"]:
            return site
    raise RuntimeError(f"apt knows no mirror of Debian {release}")


def _way_to_the_mirror():
    """apt's settings for a proxy, and for a mirror that is no longer updated."""
    wanted = re.compile(r"^Acquire::(Check-|https?::Proxy).* \".+\";$", re.MULTILINE)
    return "".join(found.group() + "\n" for found in wanted.finditer(_run("apt-config", "dump")))


def _run(*command):
    done = subprocess.run(command, text=True, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, check=False)
    if done.returncode != 0:
        raise RuntimeError(f"{' '.join(command)}: {done.stdout[-2000:]}")
    return done.stdout
