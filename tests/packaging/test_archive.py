"""The archive on a Debian without Qt: installing, starting, updating, uninstalling."""

import os
import re
import stat
import subprocess
import unittest

from gi.repository import GLib

import debian_systems
from packages import PackageTest, everything_in, the_package

# Every Linux has these before a desktop is installed: the C library with its character sets, and the
# compiler's runtime.
GIVEN_BY_THE_SYSTEM = re.compile(
    r"(ld-linux-x86-64|lib(c|m|dl|rt|pthread|gcc_s|stdc\+\+))\.so\.[\d.]+$|/gconv/[A-Z0-9-]+\.so$")

PROGRAM_FILES = ["Quorrix", "Quorrix.hlp", "installation.sh", "qt.conf", "quorrix-data",
                 "quorrix-data.1", "quorrix-data.bash-completion", "uninstall"]


class Archive(PackageTest):
    @classmethod
    def original(cls):
        return debian_systems.bare_system()

    def given_a_user(self, name, home):
        """A user who has unpacked the archive in the folder Downloads."""
        user = self.system.add_user(name, home)
        with open(the_package("quorrix-*.tar.xz"), "rb") as archive:
            with open(user.path("archive.tar.xz"), "wb") as copy:
                copy.write(archive.read())
        self.assert_succeeds(user.run("mkdir", "Downloads"))
        self.assert_succeeds(user.run("tar", "-C", "Downloads", "-xf", "archive.tar.xz"))
        os.remove(user.path("archive.tar.xz"))
        name, = os.listdir(user.path("Downloads"))
        user.unpacked = os.path.join("Downloads", name)
        return user

    def install(self, user, *folder, **environment):
        return user.run(f"{user.unpacked}/install", *folder, **environment)

    def given_an_installation(self, name, home):
        user = self.given_a_user(name, home)
        self.assert_succeeds(self.install(user))
        return user

    def given_a_newer_archive(self, user):
        """Appends a byte to the program: it still runs, but differs from the installed one."""
        with open(user.path(user.unpacked, "Quorrix/Quorrix"), "ab") as file:
            file.write(b"2")

    def given_mv_that_kills_at_call(self, number, signal, user):
        """A PATH with an mv that, at call `number`, renames nothing and signals its caller."""
        os.makedirs(user.path("tools"), exist_ok=True)
        with open(user.path("tools/mv"), "w", encoding="ascii") as file:
            file.write("#!/bin/sh\n"
                       "echo >> \"$HOME/calls\"\n"
                       f"if [ $(wc -l < \"$HOME/calls\") -eq {number} ]; then\n"
                       f"  kill -{signal} $PPID; exit 1\n"
                       "fi\n"
                       "exec /bin/mv \"$@\"\n")
        os.chmod(user.path("tools/mv"), 0o755)
        if os.path.exists(user.path("calls")):
            os.remove(user.path("calls"))
        return user.inside("tools") + ":" + user.environment["PATH"]

    def menu_entry(self, user):
        with open(user.path(".local/share/applications/quorrix.desktop"),
                  encoding="utf-8") as file:
            return file.read()

    def command_of_menu_entry(self, user):
        entry = GLib.KeyFile()
        entry.load_from_bytes(GLib.Bytes(self.menu_entry(user).encode()), GLib.KeyFileFlags.NONE)
        command = GLib.shell_parse_argv(entry.get_string("Desktop Entry", "Exec"))[1]
        return [word.replace("%%", "%") for word in command]

    # --- installing ------------------------------------------------------------------------------

    def test_it_is_installed_into_a_home_with_blanks_and_starts_from_the_menu(self):
        user = self.given_an_installation("anna", "/home/Anna Grün")
        folder = user.path(".local/share/Quorrix")
        self.assertEqual(sorted([*PROGRAM_FILES, "Data", "lib"]),
                         sorted(name for name in os.listdir(folder)
                                if not name.startswith("lib-")))
        self.assert_new_data_folder(os.path.join(folder, "Data"))
        for size in ("16x16/apps/quorrix.png", "256x256/apps/quorrix.png",
                     "scalable/apps/quorrix.svg"):
            self.assertTrue(os.path.isfile(user.path(".local/share/icons/hicolor", size)), size)
        self.assertIn("\nIcon=quorrix\n", self.menu_entry(user))
        self.assertEqual(["/home/Anna Grün/.local/share/Quorrix/Quorrix"],
                         self.command_of_menu_entry(user))

        program = self.start(user, *self.command_of_menu_entry(user))
        window = program.wait_for_main_window()
        self.keep_picture(window, "archive.png")
        self.assertEqual(os.path.join(folder, "Quorrix"), program.executable())
        self.assert_shows_its_manual(program, window)
        window.close()
        self.assertEqual(0, program.exit_status())
        self.assertTrue(os.path.isdir(os.path.join(folder, "Archives")))

    def test_it_uses_the_libraries_that_came_along_and_no_others(self):
        user = self.given_an_installation("ben", "/home/ben")
        program = self.start(user, user.inside(".local/share/Quorrix/Quorrix"))
        program.wait_for_main_window()
        own = os.path.realpath(user.path(".local/share/Quorrix/lib"))
        libraries = program.libraries()
        self.assertIn(own + "/libQt6Widgets.so.6", libraries)
        self.assertIn(own + "/plugins/platforms/libqxcb.so", libraries)
        self.assertIn(own + "/plugins/imageformats/libqgif.so", libraries)
        self.assertEqual([], [path for path in libraries if not path.startswith(own + "/")
                              and not GIVEN_BY_THE_SYSTEM.search(path)])

    def test_the_command_beside_it_reads_its_data(self):
        user = self.given_an_installation("gina", "/home/gina")
        self.given_sites(user.path(".local/share/Quorrix"))
        done = user.run(user.inside(".local/share/Quorrix/quorrix-data"), "check")
        # The archive has only one of its four files.
        self.assertEqual((1, "6 files, 4 records, 3 errors"),
                         (done.returncode, done.stdout.splitlines()[-1]), done.stdout)

    def test_each_library_comes_with_its_licence(self):
        user = self.given_a_user("cleo", "/home/cleo")
        lib = user.path(user.unpacked, "Quorrix/lib")
        with open(os.path.join(lib, "licences/packages.txt"), encoding="ascii") as file:
            packages = [line.split()[0] for line in file]
        for package in ("libqt6widgets6", "qt6-wayland", "libxcb1", "libicu72", "libfontconfig1",
                        "libcli11-dev", "nlohmann-json3-dev"):
            self.assertIn(package, packages)
        for package in packages:
            with open(os.path.join(lib, "licences", package, "copyright"),
                      encoding="utf-8", errors="replace") as file:
                self.assertRegex(file.read(), "(?i)copyright", package)
        self.assertTrue(os.path.isfile(os.path.join(lib, "licences/common-licenses/LGPL-3")))

    def test_a_folder_of_any_name_can_be_chosen(self):
        user = self.given_a_user("dora", "/home/dora")
        folder = user.inside("Weiße 100 % \"Seiten\" für $5 `\\ 'x'")
        self.assert_succeeds(self.install(user, folder))
        self.assertEqual([folder + "/Quorrix"], self.command_of_menu_entry(user))
        subprocess.run(["desktop-file-validate",
                        user.path(".local/share/applications/quorrix.desktop")], check=True)
        self.assert_starts_and_ends(user, *self.command_of_menu_entry(user))
        self.assert_succeeds(user.run(folder + "/uninstall"))
        self.assertFalse(os.path.exists(user.path(".local/share/applications/quorrix.desktop")))

    def test_the_data_home_of_the_desktop_is_used(self):
        user = self.given_a_user("egon", "/home/egon")
        self.assert_succeeds(self.install(user, XDG_DATA_HOME=user.inside("share")))
        self.assertTrue(os.path.isfile(user.path("share/Quorrix/Quorrix")))
        self.assertTrue(os.path.isfile(user.path("share/applications/quorrix.desktop")))
        self.assertFalse(os.path.exists(user.path(".local")))

    def test_it_says_why_it_does_not_install(self):
        user = self.given_a_user("finn", "/home/finn")
        os.chmod(user.path(), 0o755)
        before = everything_in(user.path())
        self.assert_refuses(
            "install: The variable HOME does not name your home folder, so there is nowhere to "
            "look.", self.install(user, HOME=None))
        self.assert_refuses("install: Your home folder /home/nobody does not exist.",
                            self.install(user, HOME="/home/nobody"))
        self.assert_refuses(
            "install: Downloads holds something else. Name a new folder or that of an older "
            "Quorrix.", self.install(user, "Downloads"))
        root = debian_systems.User(self.system, "root", "/root")
        self.assert_refuses(
            "install: Quorrix belongs to one user. Run this as yourself, not as root and without "
            "sudo.", root.run(f"/home/finn/{user.unpacked}/install"))
        self.assertEqual(before, everything_in(user.path()))

    # --- updating --------------------------------------------------------------------------------

    def test_an_update_replaces_the_program_and_leaves_the_sites_as_they_are(self):
        user = self.given_an_installation("gesa", "/home/Gesa Öl")
        folder = user.path(".local/share/Quorrix")
        self.given_sites(folder)
        sites = everything_in(folder, "Data", "Archives")
        self.given_a_newer_archive(user)
        self.assert_succeeds(self.install(user))
        self.assertEqual(sites, everything_in(folder, "Data", "Archives"))
        with open(os.path.join(folder, "Quorrix"), "rb") as installed:
            with open(user.path(user.unpacked, "Quorrix/Quorrix"), "rb") as unpacked:
                self.assertEqual(unpacked.read(), installed.read())
        self.assert_holds_one_program(folder)
        program = self.start(user, user.inside(".local/share/Quorrix/Quorrix"))
        window = program.wait_for_main_window()
        self.keep_picture(window, "archive-updated.png")
        window.close()
        self.assertEqual(0, program.exit_status())
        self.assertEqual(sites, everything_in(folder, "Data", "Archives"))

    def test_while_the_program_runs_it_is_neither_updated_nor_uninstalled(self):
        user = self.given_an_installation("hugo", "/home/hugo")
        folder = user.path(".local/share/Quorrix")
        # As from a terminal in that folder: the command line does not contain the path.
        program = self.start(user, "env", "-C", user.inside(".local/share/Quorrix"), "./Quorrix")
        program.wait_for_main_window()
        before = everything_in(folder)
        self.given_a_newer_archive(user)
        running = "Quorrix is running. End it with File > Exit and try again."
        self.assert_refuses("install: " + running, self.install(user))
        self.assert_refuses("uninstall: " + running,
                            user.run(user.inside(".local/share/Quorrix/uninstall")))
        self.assertEqual(before, everything_in(folder))
        program.close()
        self.assertEqual(0, program.exit_status())
        self.assert_succeeds(self.install(user))

    def test_an_update_for_which_the_disk_is_too_small_changes_nothing(self):
        user = self.given_a_user("ida", "/home/ida")
        os.mkdir(user.path("disk"))
        self.system.mount(user.inside("disk"), "-t", "tmpfs", "-o", "size=120m,mode=777", "tmpfs")
        self.addCleanup(self.system.unmount, user.inside("disk"))
        self.assert_succeeds(self.install(user, "disk/Quorrix"))
        self.given_sites(user.path("disk/Quorrix"))
        before = everything_in(user.path("disk/Quorrix"))
        self.given_a_newer_archive(user)
        done = self.install(user, "disk/Quorrix")
        self.assertEqual(1, done.returncode)
        self.assertRegex(done.stdout, "No space left on device")
        self.assertTrue(done.stdout.endswith(
            "install: It did not work. The program is as it was before.\n"), done.stdout)
        self.assertEqual(before, everything_in(user.path("disk/Quorrix")))
        self.assert_starts_and_ends(user, user.inside("disk/Quorrix/Quorrix"))

    def test_an_update_that_is_ended_on_the_way_leaves_the_old_program(self):
        user = self.given_an_installation("jana", "/home/jana")
        folder = user.path(".local/share/Quorrix")
        with open(os.path.join(folder, "Quorrix"), "rb") as file:
            old = file.read()
        self.given_a_newer_archive(user)
        for call in range(1, len(PROGRAM_FILES) + 2):  # and the link to the libraries
            path = self.given_mv_that_kills_at_call(call, "TERM", user)
            self.assertEqual(1, self.install(user, PATH=path).returncode, call)
            with open(os.path.join(folder, "Quorrix"), "rb") as file:
                self.assertEqual(old, file.read(), call)
            self.assert_holds_one_program(folder)
        self.assert_starts_and_ends(user, user.inside(".local/share/Quorrix/Quorrix"))

    def test_an_update_that_is_killed_leaves_a_program_that_starts(self):
        user = self.given_an_installation("karl", "/home/karl")
        folder = user.path(".local/share/Quorrix")
        self.given_sites(folder)
        sites = everything_in(folder, "Data", "Archives")
        self.given_a_newer_archive(user)
        # Before anything is renamed, after the libraries are, and before the program is.
        for call in (1, 2, len(PROGRAM_FILES) + 1):
            path = self.given_mv_that_kills_at_call(call, "KILL", user)
            self.assertNotEqual(0, self.install(user, PATH=path).returncode, call)
            self.assert_starts_and_ends(user, user.inside(".local/share/Quorrix/Quorrix"))
        self.assert_succeeds(self.install(user))
        self.assert_holds_one_program(folder)
        self.assertEqual(sites, everything_in(folder, "Data", "Archives"))

    # --- uninstalling ----------------------------------------------------------------------------

    def test_uninstalling_asks_nothing_and_leaves_the_sites(self):
        user = self.given_an_installation("lena", "/home/Lena Groß")
        folder = user.path(".local/share/Quorrix")
        self.given_sites(folder)
        sites = everything_in(folder, "Data", "Archives")
        done = user.run(user.inside(".local/share/Quorrix/uninstall"))
        self.assertEqual((0, "Quorrix is uninstalled. Your sites are still in "
                             "/home/Lena Groß/.local/share/Quorrix.\n"),
                         (done.returncode, done.stdout))
        self.assertEqual(["Archives", "Data"], sorted(os.listdir(folder)))
        self.assertEqual(sites, everything_in(folder, "Data", "Archives"))
        left = [name for place, _folders, files in os.walk(user.path(".local/share"))
                for name in files if "quorrix" in name.lower()]
        self.assertEqual([], left)

        self.assert_succeeds(self.install(user))
        self.assertEqual(sites, everything_in(folder, "Data", "Archives"))
        self.assert_starts_and_ends(user, user.inside(".local/share/Quorrix/Quorrix"))

    def test_uninstalling_one_of_two_leaves_the_menu_entry_of_the_other(self):
        user = self.given_an_installation("mona", "/home/mona")
        self.assert_succeeds(self.install(user, "second"))
        entry = self.menu_entry(user)
        self.assert_succeeds(user.run(user.inside(".local/share/Quorrix/uninstall")))
        self.assertEqual(entry, self.menu_entry(user))
        self.assertEqual([user.inside("second/Quorrix")], self.command_of_menu_entry(user))

    # --- then ------------------------------------------------------------------------------------

    def assert_holds_one_program(self, folder):
        """Only the set of libraries that is in use, and no remains of an update."""
        libraries = [name for name in os.listdir(folder) if name.startswith("lib-")]
        self.assertEqual([os.readlink(os.path.join(folder, "lib"))], libraries)
        self.assertTrue(stat.S_ISREG(os.lstat(os.path.join(folder, "Quorrix")).st_mode))
        self.assertEqual([], [name for name in os.listdir(folder) if name.startswith(".")])


if __name__ == "__main__":
    unittest.main()
