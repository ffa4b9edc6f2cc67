// Archiving onto a file system that is actually full.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <string>
#include <utility>
#include <vector>

#include "archives/archived_folders.h"
#include "support/linux/child_process.h"
#include "support/linux/small_disk.h"

namespace quorrix {
namespace {

constexpr int kDone = 0;
constexpr int kMountRefused = 41;
constexpr int kNotStarted = 42;

using Strings = std::vector<std::string>;

class ArchiveFullDisk : public test::ArchivedFolders {
 protected:
  void SetUp() override {
    const int status = test::waitStatusOfAChild(
        [&] { return test::mountOneMegabyteAt(may_) ? kDone : kMountRefused; });
    if (WIFEXITED(status) && WEXITSTATUS(status) == kMountRefused) {
      GTEST_SKIP() << "this system permits no mount of a small file system";
    }
  }

  // Archives onto a disk of one megabyte that holds these files. Returns what the user is
  // told, the state afterwards, and any unexpected names.
  std::string archiveOnto(const std::vector<std::pair<const char*, std::string>>& earlier) {
    givenFiles(data_, working_);
    write(data_ / "load.txt", "/Archives/April\r\n");
    const Path report = folder_ / "report";
    const int status = test::waitStatusOfAChild([&] {
      if (!test::mountOneMegabyteAt(may_)) return kMountRefused;
      for (const auto& [name, bytes] : earlier) write(may_ / name, bytes);
      test::ProgramOnDisk program(files_, folder_.path());
      if (!program.start()) return kNotStarted;
      std::string found;
      for (const std::string& sentence : program.run("FileArchive", may_)) found += sentence + " ";
      found += state();
      for (const std::string& name : strangeNames()) found += " " + name;
      write(report, found);
      return kDone;
    });
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), kDone);
    return read(report);
  }

  // The disk was mounted in the child only, so here the folder is still empty.
  void expectNoMountLeft() { EXPECT_EQ(namesIn(may_), Strings{}); }
};

TEST_F(ArchiveFullDisk, LeavesWholeFilesAndTheWorkingData) {
  EXPECT_EQ(archiveOnto({}), "Unable to archive sites. Disk full. ww-- wwww b");
  expectNoMountLeft();
}

// Purchases alone do not count as an archive, so they are not deleted first.
TEST_F(ArchiveFullDisk, LeavesTheFileItCouldNotReplaceWhole) {
  EXPECT_EQ(archiveOnto({{"purchases.dat", archived_[2]}}),
            "Unable to archive sites. Disk full. w-a- wwww b");
  expectNoMountLeft();
}

TEST_F(ArchiveFullDisk, LeavesNothingOfAnEarlierArchiveThatWasToBeOverwritten) {
  EXPECT_EQ(
      archiveOnto({{"nodes.dat", ""}, {"notes.dat", ""}, {"purchases.dat", ""}, {"info.dat", ""}}),
      "Unable to archive sites. Disk full. ww-- wwww b");
  expectNoMountLeft();
}

}  // namespace
}  // namespace quorrix
