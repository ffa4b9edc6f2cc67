// What the file system of Windows promises in addition to the common contract.
#include "platform/windows/windows_file_system.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <future>
#include <string>
#include <system_error>
#include <vector>

#include "support/eventually.h"
#include "support/failure_number.h"
#include "support/temporary_folder.h"
#include "support/windows/helper.h"

namespace quorrix {
namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;
using test::failureNumberOf;

class WindowsFileSystemTest : public testing::Test {
 protected:
  // Starts another program that has the file open as Quorrix has it, until release().
  std::unique_ptr<test::Helper> givenAnotherProgramWith(const Path& path) {
    auto other = std::make_unique<test::Helper>(L"hold \"" + path.wstring() + L"\"");
    EXPECT_TRUE(test::eventually([&] { return std::filesystem::exists(signOf(path)); }));
    return other;
  }

  // The other program may be checking the file at this moment.
  static void release(const Path& path) {
    EXPECT_TRUE(test::eventually([&] {
      std::error_code inUse;
      return std::filesystem::remove(signOf(path), inUse);
    }));
  }

  static Path signOf(const Path& path) { return path.wstring() + L".held"; }

  test::TemporaryFolder folder_;
  WindowsFileSystem files_;
};

using TwoPrograms = WindowsFileSystemTest;

TEST_F(TwoPrograms, DoNotHaveAFileOpenAtOnce) {
  const Path path = folder_.givenAFile("nodes.dat", "kept");
  const auto other = givenAnotherProgramWith(path);
  EXPECT_EQ(failureNumberOf([&] { return files_.openRandomAccess(path); }), 75);
  EXPECT_EQ(failureNumberOf([&] { return files_.openForReading(path); }), 75);
  EXPECT_EQ(failureNumberOf([&] { files_.deleteFile(path); }), 75);
  EXPECT_EQ(failureNumberOf([&] { files_.copyFile(path, folder_ / "copy"); }), 75);
  EXPECT_EQ(folder_.bytesOf("nodes.dat"), "kept");
}

TEST_F(TwoPrograms, WaitForEachOther) {
  WindowsFileSystem patient(60s);
  const Path path = folder_.givenAFile("nodes.dat", "kept");
  const auto other = givenAnotherProgramWith(path);
  release(path);
  EXPECT_EQ(patient.openRandomAccess(path)->length(), 4U);
}

TEST_F(TwoPrograms, LeaveNoLockBehindWhenOneIsEnded) {
  WindowsFileSystem patient(60s);
  const Path path = folder_.givenAFile("nodes.dat", "kept");
  auto other = givenAnotherProgramWith(path);
  other.reset();
  EXPECT_EQ(patient.openRandomAccess(path)->length(), 4U);
}

TEST_F(WindowsFileSystemTest, RefusesAFileThatAnotherProgramHasForItselfAlone) {
  WindowsFileSystem impatient(50ms);
  const Path path = folder_.givenAFile("nodes.dat", "kept");
  HANDLE alone = ::CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(alone, INVALID_HANDLE_VALUE);
  EXPECT_EQ(failureNumberOf([&] { return impatient.openRandomAccess(path); }), 75);
  EXPECT_EQ(failureNumberOf([&] { return impatient.readFirstLine(path); }), 75);
  ::CloseHandle(alone);
  EXPECT_EQ(files_.readFirstLine(path), "kept");
}

TEST_F(WindowsFileSystemTest, RefusesWhatHasTheReadOnlyAttribute) {
  const Path path = folder_.givenAFile("nodes.dat", "kept");
  ASSERT_TRUE(::SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY));
  EXPECT_EQ(failureNumberOf([&] { return files_.openRandomAccess(path); }), 75);
  EXPECT_EQ(failureNumberOf([&] { files_.deleteFile(path); }), 75);
  EXPECT_EQ(failureNumberOf([&] { files_.replaceByLine(path, "x"); }), 75);
  EXPECT_EQ(files_.openForReading(path)->length(), 4U);
  ASSERT_TRUE(::SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL));
}

TEST_F(WindowsFileSystemTest, KeepsTheSystemFromAskingForAMedium) {
  ::SetThreadErrorMode(0, nullptr);
  const WindowsFileSystem files;
  EXPECT_NE(::GetThreadErrorMode() & SEM_FAILCRITICALERRORS, 0U);
}

// A virus scanner or an indexer may hold a file open for a moment while it is deleted.
// Unlike on Windows, such a file loses its name at once under Wine, so these tests are
// skipped there. mayEndSoon() is tested everywhere.
class BeingDeleted : public WindowsFileSystemTest {
 protected:
  // The file is deleted but still open, so its name stays until letGo().
  BeingDeleted() {
    constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    scanned_ =
        ::CreateFileW(path_.c_str(), GENERIC_READ, kShareAll, nullptr, OPEN_EXISTING, 0, nullptr);
    EXPECT_NE(scanned_, INVALID_HANDLE_VALUE);
    files_.deleteFile(path_);
    HANDLE again = ::CreateFileW(path_.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                 CREATE_NEW, 0, nullptr);
    staysNamed_ = again == INVALID_HANDLE_VALUE;
    if (!staysNamed_) ::CloseHandle(again);
  }
  ~BeingDeleted() override { letGo(); }

  void SetUp() override {
    if (!staysNamed_) GTEST_SKIP() << "here a file loses its name at once";
  }

  void letGo() {
    if (scanned_ != INVALID_HANDLE_VALUE) ::CloseHandle(scanned_);
    scanned_ = INVALID_HANDLE_VALUE;
  }

  const Path path_ = folder_.givenAFile("nodes.dat", "old");
  HANDLE scanned_ = INVALID_HANDLE_VALUE;
  bool staysNamed_ = false;
  WindowsFileSystem patient_{60s};
  WindowsFileSystem impatient_{50ms};
};

TEST_F(BeingDeleted, AFileIsWaitedForBeforeACopyTakesItsPlace) {
  const Path from = folder_.givenAFile("from", "new");
  EXPECT_EQ(failureNumberOf([&] { impatient_.copyFile(from, path_); }), 75);
  EXPECT_FALSE(files_.fileExists(folder_ / "nodes.dat.quorrix-new"));
  auto copying = std::async(std::launch::async, [&] { patient_.copyFile(from, path_); });
  EXPECT_EQ(copying.wait_for(100ms), std::future_status::timeout);
  letGo();
  copying.get();
  EXPECT_EQ(folder_.bytesOf("nodes.dat"), "new");
}

TEST_F(WindowsFileSystemTest, RefusesAFolderWithoutWaiting) {
  WindowsFileSystem patient(60s);
  EXPECT_EQ(failureNumberOf([&] { return patient.openRandomAccess(folder_.path()); }), 75);
}

TEST_F(WindowsFileSystemTest, KnowsAFileAgainInOtherLetterCase) {
  const Path path = folder_.givenAFile("nodes.dat", "");
  EXPECT_TRUE(files_.isSameFile(folder_ / "NODES.dat", path));
  EXPECT_FALSE(files_.isSameFile(folder_.givenAFile("notes.dat", ""), path));
}

TEST_F(WindowsFileSystemTest, WritesNoReplacementIntoAFileThatIsThere) {
  constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  const Path planted = folder_.givenAFile("copy.quorrix-new", "planted");
  HANDLE other =
      ::CreateFileW(planted.c_str(), GENERIC_READ, kShareAll, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(other, INVALID_HANDLE_VALUE);
  WindowsFileSystem impatient(50ms);
  static_cast<void>(failureNumberOf(
      [&] { impatient.copyFile(folder_.givenAFile("nodes.dat", "secret"), folder_ / "copy"); }));
  char bytes[8] = {};
  DWORD count = 0;
  EXPECT_TRUE(::ReadFile(other, bytes, sizeof bytes, &count, nullptr));
  EXPECT_STREQ(bytes, "planted");
  ::CloseHandle(other);
}

using NameOfAFolder = WindowsFileSystemTest;

TEST_F(NameOfAFolder, LosesDotsAndBlanksAtItsEnd) {
  for (const wchar_t* name : {L"May.", L"June ", L"July. . "}) {
    const Path made = files_.makeFolder(folder_ / name);
    EXPECT_TRUE(made.filename() == "May" || made.filename() == "June" || made.filename() == "July")
        << made;
    files_.openRandomAccess(made / "nodes.dat")->writeAt(0, "x"s);
    EXPECT_TRUE(files_.fileExists(made / "nodes.dat"));
  }
  EXPECT_EQ(files_.folderNames(folder_.path()), (std::vector<Path>{"July", "June", "May"}));
}

TEST_F(NameOfAFolder, IsNotThatOfADevice) {
  for (const wchar_t* name : {L"CON", L"nul", L"Aux", L"COM1", L"lpt9", L"NUL."}) {
    EXPECT_EQ(failureNumberOf([&] { files_.makeFolder(folder_ / name); }), 75) << Path(name);
  }
  EXPECT_EQ(files_.folderNames(folder_.path()), std::vector<Path>{});
}

TEST_F(NameOfAFolder, IsThatOfNoFileAlready) {
  folder_.givenAFile("May", "kept");
  EXPECT_EQ(failureNumberOf([&] { files_.makeFolder(folder_ / "May. "); }), 75);
}

TEST_F(WindowsFileSystemTest, OpensNoDeviceForAFile) {
  EXPECT_EQ(failureNumberOf([&] { return files_.openRandomAccess("NUL"); }), 75);
  EXPECT_EQ(failureNumberOf([&] { return files_.readFirstLine("NUL"); }), 75);
}

TEST_F(WindowsFileSystemTest, ListsTheRootsOfDriveLetters) {
  const std::vector<Path> volumes = files_.volumes();
  EXPECT_TRUE(std::is_sorted(volumes.begin(), volumes.end()));
  EXPECT_EQ(std::count(volumes.begin(), volumes.end(), Path("C:\\")), 1);
}

}  // namespace
}  // namespace quorrix
