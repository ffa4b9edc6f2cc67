// Archiving onto a file system that is really full.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <string>
#include <vector>

#include "archives/archived_folders.h"
#include "support/linux/child_process.h"
#include "support/linux/small_disk.h"

namespace quorrix {
namespace {

constexpr int kDone = 0;
constexpr int kMountRefused = 41;

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

  // Archives onto a disk of one megabyte that holds `earlier`. The failure's number,
  // the state afterwards, and what names there are besides.
  std::string archiveOnto(const Strings& earlier) {
    givenFiles(data_, working_);
    write(data_ / "load.txt", "/Archives/April\r\n");
    const Path report = folder_ / "report";
    const int status = test::waitStatusOfAChild([&] {
      if (!test::mountOneMegabyteAt(may_)) return kMountRefused;
      if (!earlier.empty()) givenFiles(may_, earlier);
      const int number = test::failureNumberOf([&] { archive(files_, EarlierArchive::None); });
      std::string found = std::to_string(number) + " " + state();
      for (const std::string& name : strangeNames()) found += " " + name;
      write(report, found);
      return kDone;
    });
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), kDone);
    return read(report);
  }

  // The disk was the child's own: here the folder below it is still empty.
  void expectNoMountLeft() { EXPECT_EQ(namesIn(may_), Strings{}); }
};

TEST_F(ArchiveFullDisk, LeavesWholeFilesAndTheWorkingData) {
  EXPECT_EQ(archiveOnto({}), "61 ww-- wwww b");
  expectNoMountLeft();
}

TEST_F(ArchiveFullDisk, LeavesTheFilesItCouldNotReplaceWhole) {
  EXPECT_EQ(archiveOnto({archived_[0], "", "", archived_[3]}), "61 a00a wwww b");
  expectNoMountLeft();
}

TEST_F(ArchiveFullDisk, LeavesAnEmptyFileWhereThereWasOne) {
  EXPECT_EQ(archiveOnto({"", "", "", ""}), "61 ww00 wwww b");
  expectNoMountLeft();
}

}  // namespace
}  // namespace quorrix
