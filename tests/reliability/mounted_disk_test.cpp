// The program on a real file system that becomes read-only or full, mounted for a child
// process only.
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/wait.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <optional>

#include "platform/linux/posix_file_system.h"
#include "reliability/user.h"
#include "support/linux/child_process.h"
#include "support/linux/small_disk.h"
#include "support/site_record_bytes.h"
#include "support/temporary_folder.h"

namespace quorrix {
namespace {

constexpr const char* kSite = "one.two.three/a";

constexpr int kMountRefused = 41;

// Remounts the disk of one megabyte that this process mounted at the folder.
bool remount(const Path& folder, unsigned long flags) {
  return ::mount(nullptr, folder.c_str(), nullptr, MS_REMOUNT | flags, "size=1m") == 0;
}

class MountedDisk : public testing::Test {
 protected:
  // Runs `test` in a process that has a disk of its own at the folder. Returns what it
  // returns, or nothing if mounting is not permitted.
  std::optional<std::string> onADisk(const std::function<std::string(test::User&)>& test) {
    const Path report = parent_ / "report";
    const Path disk = parent_ / "Quorrix";
    std::filesystem::create_directories(disk);
    const int status = test::waitStatusOfAChild([&] {
      if (!test::mountOneMegabyteAt(disk)) return kMountRefused;
      std::filesystem::create_directories(disk / "Data");
      if (!test::wrote(disk / "Data" / "load.txt", "none\r\n")) return 1;
      if (!test::wrote(disk / "Data" / "nodes.dat", test::siteRecord(kSite))) return 1;
      PosixFileSystem files;
      test::User user(files, disk);
      return user.start() && test::wrote(report, test(user)) ? 0 : 2;
    });
    if (WIFEXITED(status) && WEXITSTATUS(status) == kMountRefused) return std::nullopt;
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
    return parent_.bytesOf("report");
  }

  // Each command returns what the user is told and the length of the file.
  static std::string saveNotes(test::User& user, char letter) {
    user.messageBox().sentences.clear();
    user.select(kSite);
    user.popUp("PopUpNotes", [letter](QDialog& dialog) {
      test::User::type(dialog, "Text1", std::string(1000, letter));
      test::User::press(dialog, "OKButton");
    });
    return toldAndLengthOf(user, "notes.dat");
  }

  static std::string visit(test::User& user, const std::string& site) {
    user.messageBox().sentences.clear();
    user.visit("http://" + site);
    return toldAndLengthOf(user, "nodes.dat");
  }

  // Starts another program there; returns what the user is told.
  static std::string startTold(const Path& folder) {
    PosixFileSystem files;
    test::User user(files, folder);
    std::string told;
    if (user.start()) told = "started";
    for (const std::string& sentence : user.messageBox().sentences) told += sentence;
    return told + "\n";
  }

  test::TemporaryFolder parent_;

 private:
  static std::string toldAndLengthOf(test::User& user, const char* file) {
    std::string told;
    for (const std::string& sentence : user.messageBox().sentences) told += sentence + " ";
    const Path path = user.programFolder() / "Data" / file;
    return told + std::to_string(std::filesystem::file_size(path)) + "\n";
  }
};

TEST_F(MountedDisk, ThatBecomesReadOnlyRefusesToSaveUntilItIsWritable) {
  const auto found = onADisk([](test::User& user) {
    std::string report = saveNotes(user, 'a');
    if (!remount(user.programFolder(), MS_RDONLY)) return std::string("not remounted");
    report += saveNotes(user, 'b') + startTold(user.programFolder());
    if (!remount(user.programFolder(), 0)) return std::string("not remounted");
    return report + saveNotes(user, 'c');
  });
  if (!found) GTEST_SKIP() << "this system permits no mount of a small file system";
  EXPECT_EQ(*found,
            "1324\nUnable to save notes. Path/file access error. 1324\n"
            "Path/file access error. Ending program.\n1324\n");
}

// A block of the disk takes twelve records of sites, so the twelfth still fits, and of the
// thirteenth only a part.
TEST_F(MountedDisk, ThatIsFullTakesOnlyWhatFitsUntilThereIsRoom) {
  const auto found = onADisk([](test::User& user) {
    for (int i = 2; i <= 11; ++i) visit(user, "site" + std::to_string(i) + ".two.three");
    const Path ballast = user.programFolder() / "ballast";
    std::ofstream filling(ballast, std::ios::binary);
    while (filling.write(std::string(4096, 'x').data(), 4096).flush()) continue;
    filling.close();
    std::string report = saveNotes(user, 'a');
    report += visit(user, "site12.two.three");
    report += visit(user, "site13.two.three");
    std::filesystem::remove(ballast);
    report += visit(user, "site13.two.three");
    report += saveNotes(user, 'b');
    return report;
  });
  if (!found) GTEST_SKIP() << "this system permits no mount of a small file system";
  EXPECT_EQ(*found,
            "Unable to save notes. Unknown error. 0\n"
            "3864\nDisk full. Stopping tracking. 3864\n"
            "4186\n1324\n");
}

}  // namespace
}  // namespace quorrix
