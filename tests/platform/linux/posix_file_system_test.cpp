// What exists only on Linux: permission bits, pipes, devices, flock, file size limits.
#include "platform/linux/posix_file_system.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <future>

#include "platform/linux/file_descriptor.h"
#include "platform/linux/posix_replacement.h"
#include "support/eventually.h"
#include "support/failure_number.h"
#include "support/linux/child_process.h"
#include "support/linux/file_size_limit.h"
#include "support/temporary_folder.h"

namespace quorrix {
namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;
using std::chrono::steady_clock;
using test::failureNumberOf;

class PosixFileSystemTest : public testing::Test {
 protected:
  static unsigned modeOf(const Path& path) {
    struct stat status {};
    EXPECT_EQ(::stat(path.c_str(), &status), 0);
    return status.st_mode & 0777U;
  }

  // The number of descriptors that this program has open on the file.
  static int openCountOf(const Path& path) {
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
      std::error_code closed;
      if (std::filesystem::read_symlink(entry.path(), closed) == path) ++count;
    }
    return count;
  }

  test::TemporaryFolder folder_;
  PosixFileSystem files_;
  PosixFileSystem impatient_{50ms};
};

TEST_F(PosixFileSystemTest, MakesFilesAndFoldersPrivate) {
  const mode_t before = ::umask(0);
  files_.makeFolder(folder_ / "Data");
  files_.openRandomAccess(folder_ / "nodes.dat")->sync();
  ::umask(before);
  EXPECT_EQ(modeOf(folder_ / "Data"), 0700U);
  EXPECT_EQ(modeOf(folder_ / "nodes.dat"), 0600U);
}

TEST_F(PosixFileSystemTest, LeavesTheModeOfAFileThatIsThere) {
  const Path path = folder_.givenAFile("nodes.dat", "");
  ASSERT_EQ(::chmod(path.c_str(), 0640), 0);
  files_.openRandomAccess(path)->sync();
  EXPECT_EQ(modeOf(path), 0640U);
}

TEST_F(PosixFileSystemTest, TakesAFileWithoutWriteBitsForReadOnlyWhoeverAsks) {
  const Path path = folder_.givenAFile("nodes.dat", "kept");
  ASSERT_EQ(::chmod(path.c_str(), 0444), 0);
  EXPECT_EQ(failureNumberOf([&] { return files_.openRandomAccess(path); }), 75);
  EXPECT_EQ(files_.readFirstLine(path), "kept");
}

TEST_F(PosixFileSystemTest, RefusesAPipeWithoutWaitingForItsOtherEnd) {
  const Path pipe = folder_ / "pipe";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_EQ(failureNumberOf([&] { return files_.openRandomAccess(pipe); }), 75);
  EXPECT_EQ(failureNumberOf([&] { return files_.readFirstLine(pipe); }), 75);
}

TEST_F(PosixFileSystemTest, RefusesADevice) {
  EXPECT_EQ(failureNumberOf([&] { return files_.openRandomAccess("/dev/full"); }), 75);
  EXPECT_EQ(failureNumberOf([&] { return files_.openRandomAccess("/dev/null"); }), 75);
  EXPECT_EQ(failureNumberOf([&] { return files_.readFirstLine("/dev/zero"); }), 75);
}

TEST_F(PosixFileSystemTest, FollowsALinkToTheFileItself) {
  const Path target = folder_.givenAFile("target.dat", "0123");
  std::filesystem::create_symlink(target, folder_ / "nodes.dat");
  files_.openRandomAccess(folder_ / "nodes.dat")->writeAt(0, "ab"s);
  EXPECT_EQ(folder_.bytesOf("target.dat"), "ab23");
}

TEST_F(PosixFileSystemTest, DeletesNoFileWithoutWriteBitsWhoeverAsks) {
  const Path path = folder_.givenAFile("nodes.dat", "kept");
  ASSERT_EQ(::chmod(path.c_str(), 0444), 0);
  EXPECT_EQ(failureNumberOf([&] { files_.deleteFile(path); }), 75);
  EXPECT_EQ(folder_.bytesOf("nodes.dat"), "kept");
}

TEST_F(PosixFileSystemTest, DeletesALinkAndLeavesWhatItLeadsTo) {
  const Path target = folder_.givenAFile("target.dat", "kept");
  std::filesystem::create_symlink(target, folder_ / "nodes.dat");
  files_.deleteFile(folder_ / "nodes.dat");
  EXPECT_FALSE(std::filesystem::is_symlink(folder_ / "nodes.dat"));
  EXPECT_EQ(folder_.bytesOf("target.dat"), "kept");
}

TEST_F(PosixFileSystemTest, DeletesNoPipe) {
  const Path pipe = folder_ / "pipe";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_EQ(failureNumberOf([&] { files_.deleteFile(pipe); }), 75);
  EXPECT_TRUE(std::filesystem::is_fifo(pipe));
}

TEST_F(PosixFileSystemTest, DeletesTheNewFileWhenTheOldOneWasReplacedDuringTheWait) {
  PosixFileSystem patient(60s);
  const Path path = folder_.givenAFile("nodes.dat", "old");
  auto held = files_.openRandomAccess(path);
  auto deletion = std::async(std::launch::async, [&] { patient.deleteFile(path); });
  ASSERT_TRUE(test::eventually([&] { return openCountOf(path) == 2; }));

  std::filesystem::rename(folder_.givenAFile("new", "new"), path);
  held.reset();
  deletion.get();
  EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(PosixFileSystemTest, RefusesALinkThatLeadsInACircle) {
  std::filesystem::create_symlink(folder_ / "b", folder_ / "a");
  std::filesystem::create_symlink(folder_ / "a", folder_ / "b");
  EXPECT_EQ(failureNumberOf([&] { return files_.openRandomAccess(folder_ / "a"); }), 75);
}

TEST_F(PosixFileSystemTest, GivesUpWhenTheLockOutlastsItsPatience) {
  const Path path = folder_.givenAFile("nodes.dat", "");
  const FileDescriptor other(::open(path.c_str(), O_RDWR | O_CLOEXEC));
  ASSERT_EQ(::flock(other.number(), LOCK_EX), 0);
  const auto start = steady_clock::now();
  EXPECT_EQ(failureNumberOf([&] { return impatient_.openRandomAccess(path); }), 75);
  EXPECT_GE(steady_clock::now() - start, 50ms);
}

TEST_F(PosixFileSystemTest, WaitsForALockUnlessToldOtherwise) { EXPECT_EQ(kLockPatience, 400ms); }

TEST_F(PosixFileSystemTest, RespectsAnotherProgramsLockUntilThatProgramEnds) {
  const Path path = folder_.givenAFile("nodes.dat", "");
  int locked[2];
  int goOn[2];
  ASSERT_EQ(::pipe(locked), 0);
  ASSERT_EQ(::pipe(goOn), 0);
  const pid_t child = ::fork();
  if (child == 0) {
    ::close(goOn[1]);
    const int file = ::open(path.c_str(), O_RDWR);
    char byte = ::flock(file, LOCK_EX) == 0 ? 'y' : 'n';
    if (::write(locked[1], &byte, 1) != 1 || ::read(goOn[0], &byte, 1) != 0) ::_exit(1);
    ::_exit(0);
  }
  char answer = '?';
  ASSERT_EQ(::read(locked[0], &answer, 1), 1);
  ASSERT_EQ(answer, 'y');
  EXPECT_EQ(failureNumberOf([&] { return impatient_.openRandomAccess(path); }), 75);

  for (const int end : {locked[0], locked[1], goOn[0], goOn[1]}) ::close(end);
  ASSERT_EQ(::waitpid(child, nullptr, 0), child);
  EXPECT_NE(impatient_.openRandomAccess(path), nullptr);
}

TEST_F(PosixFileSystemTest, OpensTheNewFileWhenTheOldOneWasReplacedDuringTheWait) {
  PosixFileSystem patient(60s);
  const Path path = folder_.givenAFile("nodes.dat", "old");
  auto held = files_.openRandomAccess(path);
  auto waiting = std::async(std::launch::async, [&] { return patient.openRandomAccess(path); });
  ASSERT_TRUE(test::eventually([&] { return openCountOf(path) == 2; }));

  std::filesystem::rename(folder_.givenAFile("new", "new"), path);
  held.reset();
  waiting.get()->writeAt(3, " record"s);
  EXPECT_EQ(folder_.bytesOf("nodes.dat"), "new record");
}

TEST_F(PosixFileSystemTest, PassesNoDescriptorOnToAProgramItStarts) {
  const auto file = files_.openRandomAccess(folder_ / "nodes.dat");
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    std::error_code goneMeanwhile;
    if (std::filesystem::read_symlink(entry.path(), goneMeanwhile) != folder_ / "nodes.dat")
      continue;
    const int number = std::stoi(entry.path().filename().string());
    EXPECT_EQ(::fcntl(number, F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
  }
}

TEST_F(PosixFileSystemTest, ReportsADiskThatIsFull) {
  const auto file = files_.openRandomAccess(folder_ / "nodes.dat");
  const test::FileSizeLimit limit(1000);
  EXPECT_EQ(failureNumberOf([&] { file->writeAt(1000, std::string(322, 'r')); }), 61);
}

TEST_F(PosixFileSystemTest, LeavesNoHalfRecordWhenTheDiskFillsUp) {
  const auto file = files_.openRandomAccess(folder_.givenAFile("nodes.dat", "first record"));
  const test::FileSizeLimit limit(100);
  EXPECT_EQ(failureNumberOf([&] { file->writeAt(12, std::string(322, 'r')); }), 61);
  EXPECT_EQ(folder_.bytesOf("nodes.dat"), "first record");
}

TEST_F(PosixFileSystemTest, LeavesTheOldFileWhenTheDiskFillsUpDuringACopy) {
  const Path from = folder_.givenAFile("nodes.dat", std::string(400'000, 'n'));
  const Path to = folder_.givenAFile("copy", "old");
  const test::FileSizeLimit limit(300'000);  // reached in the second block
  EXPECT_EQ(failureNumberOf([&] { files_.copyFile(from, to); }), 61);
  EXPECT_EQ(folder_.bytesOf("copy"), "old");
  EXPECT_FALSE(files_.fileExists(folder_ / "copy.quorrix-new"));
}

TEST_F(PosixFileSystemTest, LeavesTheOldLineWhenTheDiskIsFull) {
  const Path path = folder_.givenAFile("load.txt", "none\r\n");
  const test::FileSizeLimit limit(2);
  EXPECT_EQ(failureNumberOf([&] { files_.replaceByLine(path, "/Archives/May"); }), 61);
  EXPECT_EQ(folder_.bytesOf("load.txt"), "none\r\n");
  EXPECT_FALSE(files_.fileExists(folder_ / "load.txt.quorrix-new"));
}

TEST_F(PosixFileSystemTest, MakesCopiesPrivateWhateverTheFilesWere) {
  const Path from = folder_.givenAFile("nodes.dat", "new");
  const Path to = folder_.givenAFile("copy", "old");
  const Path leftBehind = folder_.givenAFile("copy.quorrix-new", "half");
  for (const Path& path : {from, to, leftBehind}) ASSERT_EQ(::chmod(path.c_str(), 0666), 0);
  files_.copyFile(from, to);
  files_.replaceByLine(from, "line");
  EXPECT_EQ(modeOf(to), 0600U);
  EXPECT_EQ(modeOf(from), 0600U);
}

TEST_F(PosixFileSystemTest, CopiesToWhatALinkLeadsTo) {
  files_.makeFolder(folder_ / "elsewhere");
  const Path target = folder_.givenAFile(Path("elsewhere") / "target", "old");
  std::filesystem::create_symlink(target, folder_ / "copy");
  files_.copyFile(folder_.givenAFile("nodes.dat", "new"), folder_ / "copy");
  EXPECT_TRUE(std::filesystem::is_symlink(folder_ / "copy"));
  EXPECT_EQ(folder_.bytesOf(Path("elsewhere") / "target"), "new");
}

TEST_F(PosixFileSystemTest, PutsTheCopyInPlaceOfALinkThatAnotherUserMade) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root can make a link of another user's";
  const Path target = folder_.givenAFile("target", "kept");
  std::filesystem::create_symlink(target, folder_ / "copy");
  ASSERT_EQ(::lchown((folder_ / "copy").c_str(), 65534, 65534), 0);
  files_.copyFile(folder_.givenAFile("nodes.dat", "new"), folder_ / "copy");
  EXPECT_FALSE(std::filesystem::is_symlink(folder_ / "copy"));
  EXPECT_EQ(folder_.bytesOf("copy"), "new");
  EXPECT_EQ(folder_.bytesOf("target"), "kept");
}

TEST_F(PosixFileSystemTest, PutsTheCopyInPlaceOfALinkThatLeadsNowhere) {
  std::filesystem::create_symlink(folder_ / "missing", folder_ / "copy");
  EXPECT_FALSE(files_.fileExists(folder_ / "copy"));
  files_.copyFile(folder_.givenAFile("nodes.dat", "new"), folder_ / "copy");
  EXPECT_FALSE(std::filesystem::is_symlink(folder_ / "copy"));
  EXPECT_EQ(folder_.bytesOf("copy"), "new");
}

TEST_F(PosixFileSystemTest, LeavesAFileThatIsCopiedOntoItselfThroughALink) {
  const Path path = folder_.givenAFile("nodes.dat", "kept");
  std::filesystem::create_symlink(path, folder_ / "link");
  std::filesystem::create_directory_symlink(folder_.path(), folder_ / "again");
  files_.copyFile(path, folder_ / "link");
  files_.copyFile(folder_ / "link", path);
  files_.copyFile(path, folder_ / "again" / "nodes.dat");
  EXPECT_TRUE(std::filesystem::is_symlink(folder_ / "link"));
  EXPECT_EQ(folder_.bytesOf("nodes.dat"), "kept");
}

// In a folder that others may write to, another user may have created something with the
// name of the replacement, and would then own the copy and be able to read it.
using Replacement = PosixFileSystemTest;

TEST_F(Replacement, IsNeverWrittenIntoAFileThatHasItsName) {
  const Path planted = folder_.givenAFile("copy.quorrix-new", "planted");
  ASSERT_EQ(::chmod(planted.c_str(), 0666), 0);
  const FileDescriptor other(::open(planted.c_str(), O_RDONLY | O_CLOEXEC));
  files_.copyFile(folder_.givenAFile("nodes.dat", "secret"), folder_ / "copy");
  EXPECT_EQ(folder_.bytesOf("copy"), "secret");
  EXPECT_EQ(modeOf(folder_ / "copy"), 0600U);
  char bytes[8] = {};
  EXPECT_EQ(::pread(other.number(), bytes, sizeof bytes, 0), 7);
  EXPECT_STREQ(bytes, "planted");
}

TEST_F(Replacement, IsNeverWrittenIntoAFileOfAnotherUser) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root can make a file of another user's";
  const Path planted = folder_.givenAFile("copy.quorrix-new", "planted");
  ASSERT_EQ(::chmod(planted.c_str(), 0666), 0);
  ASSERT_EQ(::chown(planted.c_str(), 65534, 65534), 0);
  const FileDescriptor other(::open(planted.c_str(), O_RDWR | O_CLOEXEC));
  ASSERT_EQ(::flock(other.number(), LOCK_EX), 0);  // never released
  files_.copyFile(folder_.givenAFile("nodes.dat", "secret"), folder_ / "copy");
  struct stat status {};
  ASSERT_EQ(::stat((folder_ / "copy").c_str(), &status), 0);
  EXPECT_EQ(status.st_uid, 0U);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);
  EXPECT_EQ(folder_.bytesOf("copy"), "secret");
}

TEST_F(Replacement, TakesThePlaceOfALinkThatHasItsName) {
  const Path other = folder_.givenAFile("other", "kept");
  std::filesystem::create_symlink(other, folder_ / "copy.quorrix-new");
  files_.copyFile(folder_.givenAFile("nodes.dat", "new"), folder_ / "copy");
  EXPECT_EQ(folder_.bytesOf("other"), "kept");
  EXPECT_EQ(folder_.bytesOf("copy"), "new");
  EXPECT_FALSE(std::filesystem::is_symlink(folder_ / "copy"));
}

TEST_F(Replacement, TakesThePlaceOfAPipeThatHasItsName) {
  ASSERT_EQ(::mkfifo((folder_ / "copy.quorrix-new").c_str(), 0666), 0);
  files_.copyFile(folder_.givenAFile("nodes.dat", "new"), folder_ / "copy");
  EXPECT_EQ(folder_.bytesOf("copy"), "new");
}

TEST_F(Replacement, FailsWhenWhatHasItsNameCannotBeRemoved) {
  files_.makeFolder(folder_ / "load.txt.quorrix-new");
  const Path path = folder_.givenAFile("load.txt", "none\r\n");
  EXPECT_EQ(failureNumberOf([&] { files_.replaceByLine(path, "x"); }), 75);
  EXPECT_EQ(folder_.bytesOf("load.txt"), "none\r\n");
}

TEST_F(Replacement, WaitsWhileAnotherProgramWritesUnderItsName) {
  const Path name = folder_.givenAFile("copy.quorrix-new", "half");
  FileDescriptor other(::open(name.c_str(), O_RDWR | O_CLOEXEC));
  ASSERT_EQ(::flock(other.number(), LOCK_EX), 0);
  const Path from = folder_.givenAFile("nodes.dat", "new");
  EXPECT_EQ(failureNumberOf([&] { impatient_.copyFile(from, folder_ / "copy"); }), 75);
  EXPECT_EQ(folder_.bytesOf("copy.quorrix-new"), "half");

  PosixFileSystem patient(60s);
  auto copying = std::async(std::launch::async, [&] { patient.copyFile(from, folder_ / "copy"); });
  ASSERT_TRUE(test::eventually([&] { return openCountOf(from) == 1; }));
  other = FileDescriptor();
  copying.get();
  EXPECT_EQ(folder_.bytesOf("copy"), "new");
}

TEST_F(Replacement, IsNotRenamedWhenAnotherFileHasTakenItsName) {
  PosixReplacement next(folder_ / "new", 50ms);
  next.file().writeAt(0, "own"s);
  std::filesystem::remove(folder_ / "new");
  folder_.givenAFile("new", "another's");
  EXPECT_EQ(failureNumberOf([&] { next.takePlaceOf(folder_ / "copy"); }), 75);
  EXPECT_FALSE(std::filesystem::exists(folder_ / "copy"));
}

TEST_F(Replacement, DoesNotRemoveAFileThatHasTakenItsName) {
  {
    PosixReplacement next(folder_ / "new", 50ms);
    std::filesystem::remove(folder_ / "new");
    folder_.givenAFile("new", "another's");
  }
  EXPECT_EQ(folder_.bytesOf("new"), "another's");
}

TEST_F(Replacement, IsRemovedWhenItIsNotUsed) {
  { const PosixReplacement next(folder_ / "new", 50ms); }
  EXPECT_FALSE(std::filesystem::exists(folder_ / "new"));
}

TEST_F(PosixFileSystemTest, CopiesFilesNamedWithoutTheirFolder) {
  folder_.givenAFile("nodes.dat", "new");
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(folder_.path());
  EXPECT_EQ(failureNumberOf([&] { files_.copyFile("nodes.dat", "copy"); }), test::kNoFailure);
  std::filesystem::current_path(before);
  EXPECT_EQ(folder_.bytesOf("copy"), "new");
}

TEST_F(PosixFileSystemTest, SyncsAFileNamedWithoutItsFolder) {
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(folder_.path());
  const auto file = files_.openRandomAccess("nodes.dat");
  file->writeAt(0, "x"s);
  EXPECT_EQ(failureNumberOf([&] { file->sync(); }), test::kNoFailure);
  std::filesystem::current_path(before);
}

TEST_F(PosixFileSystemTest, KnowsAFileAgainThroughALinkToItsFolder) {
  files_.makeFolder(folder_ / "Data");
  const Path path = folder_.givenAFile(Path("Data") / "nodes.dat", "");
  std::filesystem::create_directory_symlink(folder_ / "Data", folder_ / "May");
  EXPECT_TRUE(files_.isSameFile(folder_ / "May" / "nodes.dat", path));
  EXPECT_TRUE(files_.isSameFile(path, folder_ / "May" / "nodes.dat"));
}

// The question is what deleting the first one would delete: deleting the link keeps the
// file.
TEST_F(PosixFileSystemTest, TellsALinkFromTheFileThatItLeadsTo) {
  const Path path = folder_.givenAFile("nodes.dat", "");
  std::filesystem::create_symlink(path, folder_ / "link");
  EXPECT_FALSE(files_.isSameFile(folder_ / "link", path));
  EXPECT_TRUE(files_.isSameFile(path, folder_ / "link"));
  EXPECT_TRUE(files_.isSameFile(folder_ / "link", folder_ / "link"));
}

// Runs as a user other than root, because permissions do not restrict root.
TEST_F(PosixFileSystemTest, OpensForReadingOnlyWhenWritingIsNotPermitted) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root can become another user";
  const Path path = folder_.givenAFile("notes.dat", "kept");
  ASSERT_EQ(::chmod(path.c_str(), 0644), 0);
  ASSERT_EQ(::chmod(folder_.path().c_str(), 0755), 0);
  const int status = test::waitStatusOfAChild([&] {
    if (::setresuid(65534, 65534, 65534) != 0) return 1;
    if (files_.openAsPermitted(path)->length() != 4) return 2;
    if (failureNumberOf([&] { return files_.openRandomAccess(path); }) != 75) return 3;
    return failureNumberOf([&] { return files_.openAsPermitted(folder_ / "missing"); }) == 75 ? 0
                                                                                              : 4;
  });
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 0);
}

TEST_F(PosixFileSystemTest, ListsALinkAsWhatItLeadsTo) {
  files_.makeFolder(folder_ / "May");
  folder_.givenAFile("file", "");
  std::filesystem::create_symlink("May", folder_ / "toFolder");
  std::filesystem::create_symlink("file", folder_ / "toFile");
  std::filesystem::create_symlink("nothing", folder_ / "toNothing");
  using Names = std::vector<Path>;
  EXPECT_EQ(files_.folderNames(folder_.path()), (Names{"May", "toFolder"}));
  EXPECT_EQ(files_.fileNames(folder_.path()), (Names{"file", "toFile", "toNothing"}));
}

TEST_F(PosixFileSystemTest, ListsNamesThatAreNoText) {
  files_.makeFolder(folder_ / "caf\xE9");
  folder_.givenAFile("\xFF\n.dat", "");
  EXPECT_EQ(files_.folderNames(folder_.path()), std::vector<Path>{"caf\xE9"});
  EXPECT_EQ(files_.fileNames(folder_.path()), std::vector<Path>{"\xFF\n.dat"});
}

TEST_F(PosixFileSystemTest, ListsNoFolderThatMayNotBeRead) {
  if (::geteuid() == 0) GTEST_SKIP() << "root may read every folder";
  files_.makeFolder(folder_ / "closed");
  std::filesystem::permissions(folder_ / "closed", std::filesystem::perms::none);
  EXPECT_EQ(failureNumberOf([&] { return files_.fileNames(folder_ / "closed"); }), 75);
  std::filesystem::permissions(folder_ / "closed", std::filesystem::perms::owner_all);
}

}  // namespace
}  // namespace quorrix
