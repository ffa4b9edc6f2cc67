"""quorrix-data as a process: beside the running program, in pipes, on a terminal, in a shell."""

import fcntl
import os
import pty
import re
import shutil
import signal
import struct
import subprocess
import termios
import unittest

from support import processes
from support.browsers import Chromium
from support.data_tool import data_tool, login, notes, run_data_tool, site, write_folder
from support.scenario import QuorrixTest
from support.tracing import can_trace
from support.waiting import wait_until

PARTS = os.path.join(os.path.dirname(__file__), "../../packaging/linux")
COMMANDS = (["list", "--with", "notes,purchases,logins"], ["list", "--format", "json"],
            ["list", "--format", "csv"], ["search", "garden"], ["check"],
            *(["export", "--format", kind] for kind in ("json", "csv", "html",
                                                        "netscape-bookmarks")))


def many_sites(count):
    return b"".join(site(f"www.host{number}.example/page") for number in range(count))


class WhileTracking(QuorrixTest):
    def test_a_visit_is_recorded_although_nobody_reads_the_list(self):
        self.given_bytes("nodes.dat", many_sites(20_000))
        self.given_tracking()
        browser = self.given_a_browser(Chromium)
        with subprocess.Popen([data_tool(), "list", "--data", self.quorrix.data_folder],
                              stdout=subprocess.PIPE) as listing:
            listing.stdout.readline()  # the pipe is full, and the rest waits
            browser.visit("http://www.garden.example/roses")
            self.wait_for_record("www.garden.example/roses")
            rest = listing.stdout.read().decode()
        self.assertEqual(0, listing.returncode)
        # The list has not reached the end of the file when the visit is recorded.
        self.assertEqual(20_001, len(rest.splitlines()))
        self.assertIn("www.garden.example/roses", rest)

    def test_it_is_copied_and_checked_between_visits(self):
        self.given_bytes("nodes.dat", many_sites(1000))
        self.given_tracking()
        browser = self.given_a_browser(Chromium)
        for number in range(3):
            browser.visit(f"http://www.garden.example/bed{number}")
            self.wait_for_record(f"www.garden.example/bed{number}")
            target = os.path.join(processes.temporary_folder(), "Copy")
            run_data_tool("copy", target, "--data", self.quorrix.data_folder)
            for name in ("nodes.dat", "notes.dat", "info.dat", "purchases.dat", "load.txt"):
                with open(os.path.join(target, name), "rb") as file:
                    self.assertEqual(self.bytes_of(name), file.read(), name)
            self.assertRegex(run_data_tool("check", "--data", self.quorrix.data_folder),
                             f"^5 files, {1001 + number} records, 0 errors\n$")


class DataToolTest(unittest.TestCase):
    def setUp(self):
        self.folder = processes.temporary_folder()
        self.data = write_folder(
            os.path.join(self.folder, "Data"),
            nodes=site("www.garden.example") + site("news.harbour.example/tides"),
            notes=notes("www.garden.example", "Prune in March."),
            info=login("www.garden.example", "anna", "tulip7"))
        with open(os.path.join(self.data, "load.txt"), "wb") as file:
            file.write(b"none\r\n")
        write_folder(os.path.join(self.folder, "Archives/May"), nodes=site("www.mill.example"))


class Files(DataToolTest):
    @unittest.skipUnless(can_trace(), "this system does not let processes be traced")
    def test_nothing_in_the_folder_is_opened_for_writing(self):
        os.remove(os.path.join(self.data, "purchases.dat"))
        targets = processes.temporary_folder()
        commands = [*COMMANDS, ["copy", os.path.join(targets, "Copy")],
                    ["export", "--format", "json", "--output", os.path.join(targets, "out.json")]]
        for command in commands:
            log = os.path.join(targets, "calls")
            subprocess.run(["strace", "-f", "-y", "-e", "trace=%file,ftruncate,fchmod,flock", "-o",
                            log, data_tool(), *command, "--data", self.data],
                           stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=False)
            with open(log, encoding="utf-8") as file:
                calls = [line for line in file if self.folder in line and " execve(" not in line]
            self.assertGreater(len(calls), 3, command)
            for call in calls:
                self.assertNotRegex(call, "O_WRONLY|O_RDWR|O_CREAT|O_TRUNC|LOCK_EX")
                self.assertRegex(call, r" (openat|newfstatat|statx?|access|readlink|flock)\(")
        self.assertNotIn("purchases.dat", os.listdir(self.data))

    @unittest.skipUnless(can_trace(), "this system does not let processes be traced")
    def test_nothing_is_locked_while_a_copy_is_written(self):
        targets = processes.temporary_folder()
        log = os.path.join(targets, "calls")
        subprocess.run(["strace", "-y", "-e", "trace=flock,close,pwrite64,fdatasync,fsync", "-o",
                        log, data_tool(), "copy", os.path.join(targets, "Copy"), "--data",
                        self.data], check=True)
        locked, locks, writes = set(), 0, 0
        with open(log, encoding="utf-8") as file:
            for call, path in re.findall(r"^(\w+)\(\d+<([^>]*)>", file.read(), re.M):
                if call == "flock" and path.startswith(self.folder):
                    locked.add(path)
                    locks += 1
                elif call == "close":
                    locked.discard(path)
                elif call != "flock":
                    writes += 1
                    self.assertEqual(set(), locked)
        self.assertGreater(locks, 10)
        self.assertGreater(writes, 10)

    def test_one_archive_that_cannot_be_read_does_not_hide_the_others(self):
        damaged = write_folder(os.path.join(self.folder, "Archives/2025"), nodes=site("a.b.c"))
        os.remove(os.path.join(damaged, "notes.dat"))
        os.mkdir(os.path.join(damaged, "notes.dat"))
        for command in COMMANDS:
            done = subprocess.run([data_tool(), *command, "--data", self.data],
                                  capture_output=True, text=True, check=False)
            problem = f"{damaged}/notes.dat: Path/file access error.\n"
            if command == ["check"]:
                self.assertEqual((1, ""), (done.returncode, done.stderr))
                self.assertIn(problem, done.stdout)
                continue
            self.assertEqual((2, "quorrix-data: " + problem), (done.returncode, done.stderr),
                             command)
            if command != ["search", "garden"]:
                self.assertIn("www.mill.example", done.stdout, command)

    def test_the_folder_beside_the_program_is_the_default(self):
        # A copy of the program, because build/dev/bin may have a Data of its own.
        program = shutil.copy(data_tool(), self.folder)
        listing = subprocess.run([program, "list"], capture_output=True, check=True).stdout
        self.assertIn(b"news.harbour.example/tides", listing)

    def test_the_users_folder_is_the_default_of_an_installed_program(self):
        home = processes.temporary_folder()
        os.makedirs(os.path.join(home, ".local/share"))
        os.symlink(self.folder, os.path.join(home, ".local/share/Quorrix"))
        program = shutil.copy(data_tool(), home)
        environment = {"HOME": home, "PATH": os.environ["PATH"]}
        listing = subprocess.run([program, "list", "--format", "csv"], capture_output=True,
                                 env=environment, check=True).stdout.decode()
        self.assertIn("\r\nMay,www.mill.example,http,,2026-03-14T10:00:00,\r\n", listing)


@unittest.skipUnless(can_trace(), "this system does not let processes be traced")
class Interruption(DataToolTest):
    """Output to a disk that is so slow that a signal arrives in the middle."""

    def setUp(self):
        super().setUp()
        self.big = write_folder(os.path.join(self.folder, "Big"), nodes=many_sites(20_000))
        self.target = processes.temporary_folder()

    def started(self, *command):
        slow = ["strace", "-o", "/dev/null", "-e", "trace=pwrite64", "-e",
                "inject=pwrite64:delay_enter=200000"]
        traced = subprocess.Popen([*slow, data_tool(), *command, "--data", self.big])
        self.addCleanup(traced.wait)
        wait_until(lambda: os.listdir(self.target), "an unfinished output")
        return traced

    def end(self, traced, ending):
        with open(f"/proc/{traced.pid}/task/{traced.pid}/children", encoding="ascii") as children:
            os.kill(int(children.read()), ending)
        # strace ends as the program did.
        self.assertEqual(-ending, traced.wait(timeout=60))
        self.assertEqual([], os.listdir(self.target))

    def test_a_signal_leaves_nothing_of_a_copy(self):
        for ending in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            self.end(self.started("copy", os.path.join(self.target, "Copy")), ending)

    def test_a_signal_leaves_nothing_of_an_export(self):
        self.end(self.started("export", "--format", "json", "--output",
                              os.path.join(self.target, "sites.json")), signal.SIGINT)


class Output(DataToolTest):
    def test_a_reader_that_has_enough_ends_it_quietly(self):
        big = write_folder(os.path.join(self.folder, "Big"), nodes=many_sites(20_000))
        done = subprocess.run(["bash", "-c", '"$1" list --data "$2" | head -n 2; '
                               'echo "${PIPESTATUS[0]}"', "bash", data_tool(), big],
                              capture_output=True, text=True, check=True)
        self.assertEqual(str(128 + signal.SIGPIPE), done.stdout.splitlines()[-1])
        self.assertEqual("", done.stderr)

    def test_a_full_disk_is_reported(self):
        for command in COMMANDS:
            with open("/dev/full", "wb") as full:
                done = subprocess.run([data_tool(), *command, "--data", self.data], stdout=full,
                                      stderr=subprocess.PIPE, text=True, check=False)
            self.assertEqual((2, "quorrix-data: Disk full.\n"), (done.returncode, done.stderr),
                             command)

    def test_lines_are_cut_at_the_width_of_a_terminal(self):
        for columns, address in ((200, "news.harbour.example/tides"), (60, "news.harbour.example…")):
            ours, theirs = pty.openpty()
            fcntl.ioctl(theirs, termios.TIOCSWINSZ, struct.pack("HHHH", 24, columns, 0, 0))
            subprocess.run([data_tool(), "list", "--data", self.data], stdout=theirs, check=True)
            os.close(theirs)
            lines = os.read(ours, 65536).decode().split("\r\n")
            os.close(ours)
            self.assertTrue(lines[2].endswith(" " + address), lines)

    def test_a_limit_of_the_length_of_files_is_reported_and_leaves_nothing(self):
        big = write_folder(os.path.join(self.folder, "Big"), nodes=many_sites(2_000))
        outputs = processes.temporary_folder()
        for command in (["export", "--format", "json", "--output", "sites.json"],
                        ["copy", "Copy"]):
            done = subprocess.run(["bash", "-c", 'ulimit -f 64; exec "$@"', "bash", data_tool(),
                                   *command, "--data", big], cwd=outputs, capture_output=True,
                                  text=True, check=False)
            self.assertEqual(2, done.returncode, done)
            self.assertRegex(done.stderr, r"\Aquorrix-data: .+: Disk full\.\n\Z")
            self.assertEqual([], os.listdir(outputs))

    def test_a_deleted_working_folder_is_reported(self):
        deleted = "x: The working folder has been deleted."
        for command, reason in (
                (["list", "--data", "."], ".: This folder has no data files."),
                (["export", "--format", "json", "--output", "x", "--data", self.data], deleted),
                (["copy", "x", "--data", self.data], deleted)):
            folder = processes.temporary_folder()
            done = subprocess.run(["bash", "-c", 'rmdir "$PWD" && exec "$@"', "bash", data_tool(),
                                   *command], cwd=folder, capture_output=True, text=True,
                                  check=False)
            os.mkdir(folder)
            self.assertEqual((2, f"quorrix-data: {reason}\n"), (done.returncode, done.stderr))

    def test_it_speaks_utf8_in_every_locale(self):
        data = write_folder(os.path.join(self.folder, "Café"), nodes=site("café.garden.example"))
        for locale in ("C", "C.UTF-8"):
            done = subprocess.run([data_tool(), "search", "CAFÉ", "--data", data], check=True,
                                  capture_output=True, env={**os.environ, "LC_ALL": locale})
            self.assertIn("café.garden.example", done.stdout.decode("utf-8"))


def options_of(command):
    options = re.findall(r"^  (?:-h,)?(--[\w-]+)", run_data_tool(command, "--help"), re.M)
    assert "--help" in options
    return options


class Documents(unittest.TestCase):
    def test_the_manual_page_is_well_formed(self):
        done = subprocess.run(["man", "--warnings", "-E", "UTF-8", "-l", "-Tutf8", "-Z",
                               os.path.join(PARTS, "quorrix-data.1")], capture_output=True,
                              env={**os.environ, "MANROFFSEQ": "", "LC_ALL": "C.UTF-8"}, check=True)
        self.assertEqual(b"", done.stderr)

    def test_the_manual_page_names_every_command_and_option(self):
        with open(os.path.join(PARTS, "quorrix-data.1"), encoding="ascii") as file:
            page = file.read().replace("\\-", "-")
        commands = re.findall(r"^  (\w+) ", run_data_tool("--help"), re.M)
        self.assertEqual(["list", "search", "export", "check", "copy"], commands)
        for command in commands:
            self.assertIn(f"\n.B {command}\n", page)
            for option in options_of(command):
                self.assertRegex(page, rf"\n\.B[IR]? .*{option}\b", command)


class Completion(unittest.TestCase):
    def completed(self, line):
        """What bash offers at the end of a line."""
        script = f"""
            source /usr/share/bash-completion/bash_completion
            source '{os.path.join(PARTS, "quorrix-data.bash-completion")}'
            COMP_LINE='{line}' COMP_POINT={len(line)}
            read -r -a COMP_WORDS <<< "$COMP_LINE"
            [[ $COMP_LINE != *' ' ]] || COMP_WORDS+=('')
            COMP_CWORD=$((${{#COMP_WORDS[@]}} - 1))
            compopt() {{ :; }}
            _quorrix_data
            printf '%s\\n' "${{COMPREPLY[@]}}"
        """
        done = subprocess.run(["bash", "--norc", "-c", script], capture_output=True, text=True,
                              check=False, cwd=PARTS)
        self.assertEqual("", done.stderr)
        return done.stdout.split()

    def test_commands_options_and_values_are_completed(self):
        self.assertEqual(["list", "search", "export", "check", "copy", "--help", "--version"],
                         self.completed("quorrix-data "))
        self.assertEqual(["search"], self.completed("quorrix-data se"))
        self.assertEqual(["--after"], self.completed("quorrix-data search --af"))
        self.assertEqual([], self.completed("quorrix-data list --af"))
        self.assertEqual(["table", "json", "csv"], self.completed("quorrix-data list --format "))
        self.assertEqual(["netscape-bookmarks"],
                         self.completed("quorrix-data export --format n"))
        self.assertEqual(["notes,purchases"], self.completed("quorrix-data list --with notes,p"))
        self.assertEqual(["debian"], self.completed("quorrix-data copy deb"))

    def test_a_kind_is_offered_once(self):
        self.assertEqual(["notes,purchases", "notes,logins"],
                         self.completed("quorrix-data list --with notes,"))
        self.assertEqual([], self.completed("quorrix-data list --with notes,n"))
        self.assertEqual(["logins,notes,purchases"],
                         self.completed("quorrix-data list --with logins,notes,"))

    def test_values_of_options_that_a_command_lacks_are_not_offered(self):
        for line in ("export --with ", "check --format ", "check --output ", "copy --format ",
                     "list --output ", "list --after "):
            self.assertEqual([], self.completed("quorrix-data " + line), line)

    def test_a_second_folder_for_a_copy_is_not_offered(self):
        self.assertEqual([], self.completed("quorrix-data copy debian "))
        self.assertEqual(["debian"], self.completed("quorrix-data copy --data debian deb"))
        self.assertEqual(["--data"], self.completed("quorrix-data copy debian --da"))

    def test_no_option_is_offered_where_it_would_be_refused(self):
        self.assertEqual([], self.completed("quorrix-data --data deb"))
        self.assertEqual([], self.completed("quorrix-data list -- --"))
        self.assertEqual(["debian"], self.completed("quorrix-data copy -- deb"))

    def test_every_option_is_completed(self):
        for command in ("list", "search", "export", "check", "copy"):
            offered = self.completed(f"quorrix-data {command} --")
            for option in options_of(command):
                self.assertIn(option, offered, command)


if __name__ == "__main__":
    unittest.main()
