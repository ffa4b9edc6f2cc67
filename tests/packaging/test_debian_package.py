"""The Debian package on a Debian without Qt: installing, users, updating."""

import os
import shutil
import subprocess
import tempfile
import unittest

import debian_systems
from packages import PackageTest, everything_in, the_package


class DebianPackage(PackageTest):
    @classmethod
    def original(cls):
        depends = subprocess.run(["dpkg-deb", "-f", the_package("quorrix_*.deb"), "Depends"],
                                 check=True, text=True, stdout=subprocess.PIPE).stdout
        return debian_systems.system_that_can_get(depends)

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        shutil.copy(the_package("quorrix_*.deb"), cls.system.path("/tmp/quorrix.deb"))
        # Only its dependencies are installed, so the test fails if one is not declared.
        cls.system.run_as_root("dpkg", "--unpack", "/tmp/quorrix.deb")
        cls.system.run_as_root("apt-get", "-qq", "--fix-broken", "install", "--no-download",
                               "--no-install-recommends",
                               "-o", "Dpkg::Options::=--force-unsafe-io")

    def given_a_user_who_started_it(self, name, home):
        user = self.system.add_user(name, home)
        self.assert_starts_and_ends(user, "quorrix")
        return user

    def given_a_newer_package(self):
        """The same package with a later version and one byte appended to the program."""
        folder = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, folder)
        tree, package = os.path.join(folder, "tree"), self.system.path("/tmp/newer.deb")
        subprocess.run(["dpkg-deb", "-R", the_package("quorrix_*.deb"), tree], check=True)
        control = os.path.join(tree, "DEBIAN/control")
        subprocess.run(["sed", "-i", "s/^Version: .*/&+newer/", control], check=True)
        with open(os.path.join(tree, "usr/lib/quorrix/Quorrix"), "ab") as file:
            file.write(b"2")
        subprocess.run(["dpkg-deb", "-Zgzip", "--root-owner-group", "-b", tree, package],
                       check=True, stdout=subprocess.DEVNULL)
        return "/tmp/newer.deb"

    # --- the package -----------------------------------------------------------------------------

    def test_debians_own_check_finds_nothing(self):
        done = subprocess.run(["lintian", "--fail-on", "error,warning", "--allow-root",
                               the_package("quorrix_*.deb")], text=True, check=False,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        self.assertEqual((0, ""), (done.returncode, done.stdout))

    def test_it_puts_the_program_its_help_and_its_menu_entry_into_the_system(self):
        for path in ("usr/lib/quorrix/Quorrix", "usr/lib/quorrix/Quorrix.hlp", "usr/bin/quorrix",
                     "usr/share/applications/quorrix.desktop",
                     "usr/share/icons/hicolor/48x48/apps/quorrix.png",
                     "usr/share/metainfo/org.quorrix.Quorrix.metainfo.xml",
                     "usr/share/man/man1/quorrix.1.gz", "usr/bin/quorrix-data",
                     "usr/share/man/man1/quorrix-data.1.gz",
                     "usr/share/bash-completion/completions/quorrix-data"):
            self.assertTrue(os.path.isfile(self.system.path(path)), path)

    # --- its users -------------------------------------------------------------------------------

    def test_each_user_gets_a_folder_of_their_own_on_first_use(self):
        anna = self.system.add_user("anna", "/home/Anna Grün")
        program = self.start(anna, "quorrix")
        window = program.wait_for_main_window()
        self.keep_picture(window, "debian-package.png")
        folder = anna.path(".local/share/Quorrix")
        self.assertEqual(os.path.join(folder, "Quorrix"), program.executable())
        self.assert_shows_its_manual(program, window)
        window.close()
        self.assertEqual(0, program.exit_status())
        self.assertEqual(["Archives", "Data", "Quorrix", "Quorrix.hlp"],
                         sorted(os.listdir(folder)))
        self.assert_new_data_folder(os.path.join(folder, "Data"))
        self.given_sites(folder)
        sites = everything_in(folder, "Data", "Archives")

        ben = self.given_a_user_who_started_it("ben", "/home/ben")
        self.assert_new_data_folder(ben.path(".local/share/Quorrix/Data"))
        self.assertNotEqual(0, ben.run("cat", anna.inside(".local/share/Quorrix/Data/nodes.dat"))
                            .returncode)
        self.assertEqual(sites, everything_in(folder, "Data", "Archives"))

    def test_a_newer_package_renews_the_program_and_leaves_the_sites(self):
        user = self.given_a_user_who_started_it("cleo", "/home/cleo")
        folder = user.path(".local/share/Quorrix")
        self.given_sites(folder)
        sites = everything_in(folder, "Data", "Archives")
        running = self.start(user, "quorrix")
        running.wait_for_main_window()

        self.system.run_as_root("dpkg", "-i", self.given_a_newer_package())
        again = self.start(user, "quorrix")  # shows the window of the running one
        self.assertEqual(0, again.exit_status(), again.output())
        self.assertEqual(bytes_of(self.system.path("usr/lib/quorrix"), "Quorrix"),
                         bytes_of(folder, "Quorrix"))
        running.close()
        self.assertEqual(0, running.exit_status())
        self.assert_starts_and_ends(user, "quorrix")
        self.assertEqual(sites, everything_in(folder, "Data", "Archives"))
        self.assertEqual(["Archives", "Data", "Quorrix", "Quorrix.hlp"],
                         sorted(os.listdir(folder)))

    def test_removing_the_package_leaves_the_sites(self):
        user = self.given_a_user_who_started_it("dora", "/home/dora")
        self.given_sites(user.path(".local/share/Quorrix"))
        sites = everything_in(user.path(".local/share/Quorrix"), "Data", "Archives")
        self.addCleanup(self.system.run_as_root, "dpkg", "-i", "/tmp/quorrix.deb")
        self.system.run_as_root("dpkg", "--purge", "quorrix")
        self.assertFalse(os.path.exists(self.system.path("usr/lib/quorrix")))
        self.assertEqual(sites, everything_in(user.path(".local/share/Quorrix"), "Data",
                                              "Archives"))

    def test_a_quorrix_that_the_user_installed_is_started_as_it_is(self):
        user = self.system.add_user("egon", "/home/egon")
        folder = user.inside(".local/share/Quorrix")
        self.assert_succeeds(user.run("mkdir", "-p", folder))
        self.assert_succeeds(user.run("sh", "-c", f"""
            printf '#!/bin/sh\\necho my own\\n' > {folder}/Quorrix
            chmod +x {folder}/Quorrix
            touch {folder}/qt.conf"""))
        self.assertEqual("my own\n", user.run("quorrix").stdout)

    def test_the_command_reads_the_folder_of_its_user(self):
        user = self.given_a_user_who_started_it("gert", "/home/gert")
        self.given_sites(user.path(".local/share/Quorrix"))
        done = user.run("quorrix-data", "list", "--format", "csv")
        self.assert_succeeds(done)
        self.assertIn("Spring 2024,www.garden.example/roses,http,,2024-02-29T00:05:09",
                      done.stdout)
        self.assert_succeeds(user.run("quorrix-data", "copy", "backup"))
        self.assertEqual(everything_in(user.path("backup")).keys(), {
            user.path("backup", *names) for names in (
                (), ("Archives",), ("Archives", "Spring 2024"),
                ("Archives", "Spring 2024", "nodes.dat"), ("nodes.dat",), ("notes.dat",),
                ("info.dat",), ("purchases.dat",), ("load.txt",))})

    def test_without_a_home_it_says_so(self):
        user = self.system.add_user("finn", "/home/finn")
        self.assert_refuses("quorrix: The variable HOME does not name your home folder, where "
                            "your sites are kept.", user.run("quorrix", HOME=None))
        done = user.run("quorrix", HOME="/root")
        self.assertEqual(1, done.returncode)
        self.assertTrue(done.stdout.endswith(
            "quorrix: The folder /root/.local/share/Quorrix for your sites cannot be made.\n"),
            done.stdout)


def bytes_of(folder, name):
    with open(os.path.join(folder, name), "rb") as file:
        return file.read()


if __name__ == "__main__":
    unittest.main()
