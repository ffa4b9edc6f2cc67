// The contract of every real file system; built and run for each platform.
#include "platform/file_system.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <future>
#include <set>
#include <string>
#include <vector>

#include "platform/real_file_system.h"
#include "support/failure_number.h"
#include "support/temporary_folder.h"

namespace quorrix {
namespace {

using namespace std::string_literals;
using test::failsBecauseInUse;
using test::failureNumberOf;

constexpr std::chrono::milliseconds kShortPatience{50};

constexpr auto kAllWrite = std::filesystem::perms::owner_write |
                           std::filesystem::perms::group_write |
                           std::filesystem::perms::others_write;

class RealFileSystemTest : public testing::Test {
 protected:
  std::string read(RandomAccessFile& file, std::uint64_t offset, std::size_t count) {
    std::string bytes(count, '?');
    bytes.resize(file.readAt(offset, bytes));
    return bytes;
  }

  static void makeReadOnly(const Path& path) {
    std::filesystem::permissions(path, kAllWrite, std::filesystem::perm_options::remove);
  }

  // The names in the folder, to check that nothing was left behind.
  [[nodiscard]] std::set<std::string> names() const {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder_.path())) {
      names.insert(entry.path().filename().string());
    }
    return names;
  }

  test::TemporaryFolder folder_;
  RealFileSystem files_;
};

using FolderExists = RealFileSystemTest;

TEST_F(FolderExists, IsTrueForAFolder) { EXPECT_TRUE(files_.folderExists(folder_.path())); }

TEST_F(FolderExists, IsFalseForAFile) {
  EXPECT_FALSE(files_.folderExists(folder_.givenAFile("file", "")));
}

TEST_F(FolderExists, IsFalseWhereNothingIs) {
  EXPECT_FALSE(files_.folderExists(folder_ / "missing"));
  EXPECT_FALSE(files_.folderExists(folder_ / "missing" / "below"));
}

TEST_F(FolderExists, IsFalseBelowAFile) {
  folder_.givenAFile("file", "");
  EXPECT_FALSE(files_.folderExists(folder_ / "file" / "below"));
}

using FileExists = RealFileSystemTest;

TEST_F(FileExists, IsTrueForAFile) {
  EXPECT_TRUE(files_.fileExists(folder_.givenAFile("file", "")));
  EXPECT_TRUE(files_.fileExists(folder_.givenAFile(Path(u8"Dépôt-€-Ж-書.dat"), "x")));
}

TEST_F(FileExists, IsFalseForAFolder) { EXPECT_FALSE(files_.fileExists(folder_.path())); }

TEST_F(FileExists, IsFalseWhereNothingIs) {
  EXPECT_FALSE(files_.fileExists(folder_ / "missing"));
  EXPECT_FALSE(files_.fileExists(folder_ / "missing" / "below"));
}

TEST_F(FileExists, IsFalseBelowAFile) {
  folder_.givenAFile("file", "");
  EXPECT_FALSE(files_.fileExists(folder_ / "file" / "below"));
}

using MakeFolder = RealFileSystemTest;

TEST_F(MakeFolder, MakesOneLevel) {
  files_.makeFolder(folder_ / "Data");
  EXPECT_TRUE(files_.folderExists(folder_ / "Data"));
  files_.openRandomAccess(folder_ / "Data" / "nodes.dat")->writeAt(0, "x"s);
  EXPECT_EQ(folder_.bytesOf(Path("Data") / "nodes.dat"), "x");
}

TEST_F(MakeFolder, TakesANameBeyondAscii) {
  const Path name(u8"Dépôt-€-Ж-書");
  files_.makeFolder(folder_ / name);
  EXPECT_TRUE(files_.folderExists(folder_ / name));
}

TEST_F(MakeFolder, FailsWhereSomethingIs) {
  files_.makeFolder(folder_ / "Data");
  folder_.givenAFile("file", "kept");
  EXPECT_EQ(failureNumberOf([&] { files_.makeFolder(folder_ / "Data"); }), 75);
  EXPECT_EQ(failureNumberOf([&] { files_.makeFolder(folder_ / "file"); }), 75);
  EXPECT_EQ(folder_.bytesOf("file"), "kept");
}

TEST_F(MakeFolder, FailsWhenTheFolderAboveIsMissing) {
  EXPECT_EQ(failureNumberOf([&] { files_.makeFolder(folder_ / "a" / "b"); }), 76);
  EXPECT_FALSE(files_.folderExists(folder_ / "a"));
}

using OpenRandomAccess = RealFileSystemTest;

TEST_F(OpenRandomAccess, CreatesAMissingFileEmpty) {
  EXPECT_EQ(files_.openRandomAccess(folder_ / "nodes.dat")->length(), 0U);
  EXPECT_EQ(folder_.bytesOf("nodes.dat"), "");
}

TEST_F(OpenRandomAccess, KeepsWhatTheFileHolds) {
  const auto file = files_.openRandomAccess(folder_.givenAFile("nodes.dat", "0123456789"));
  EXPECT_EQ(file->length(), 10U);
  EXPECT_EQ(folder_.bytesOf("nodes.dat"), "0123456789");
}

TEST_F(OpenRandomAccess, TakesANameBeyondAscii) {
  const Path name(u8"Dépôt-€-Ж-書.dat");
  files_.openRandomAccess(folder_ / name)->writeAt(0, "x"s);
  EXPECT_EQ(folder_.bytesOf(name), "x");
}

TEST_F(OpenRandomAccess, FailsForAFolder) {
  EXPECT_EQ(failureNumberOf([&] { return files_.openRandomAccess(folder_.path()); }), 75);
  EXPECT_FALSE(failsBecauseInUse([&] { return files_.openRandomAccess(folder_.path()); }));
}

TEST_F(OpenRandomAccess, FailsInAMissingFolder) {
  EXPECT_EQ(failureNumberOf([&] { return files_.openRandomAccess(folder_ / "no" / "file"); }), 76);
}

TEST_F(OpenRandomAccess, FailsForAReadOnlyFile) {
  const Path path = folder_.givenAFile("nodes.dat", "kept");
  makeReadOnly(path);
  EXPECT_EQ(failureNumberOf([&] { return files_.openRandomAccess(path); }), 75);
  EXPECT_FALSE(failsBecauseInUse([&] { return files_.openRandomAccess(path); }));
  EXPECT_EQ(folder_.bytesOf("nodes.dat"), "kept");
}

TEST_F(OpenRandomAccess, FailsAsInUseWhileTheFileIsOpenElsewhere) {
  RealFileSystem impatient(kShortPatience);
  const auto held = files_.openRandomAccess(folder_ / "nodes.dat");
  const auto open = [&] { return impatient.openRandomAccess(folder_ / "nodes.dat"); };
  EXPECT_EQ(failureNumberOf(open), 75);
  EXPECT_TRUE(failsBecauseInUse(open));
}

TEST_F(OpenRandomAccess, IsPossibleAgainOnceTheFileIsClosed) {
  files_.openRandomAccess(folder_ / "nodes.dat")->writeAt(0, "first"s);
  files_.openRandomAccess(folder_ / "nodes.dat")->writeAt(5, " second"s);
  EXPECT_EQ(folder_.bytesOf("nodes.dat"), "first second");
}

TEST_F(OpenRandomAccess, WaitsForTheFileToBeClosed) {
  RealFileSystem patient(std::chrono::seconds(60));
  auto held = files_.openRandomAccess(folder_ / "nodes.dat");
  auto second = std::async(std::launch::async,
                           [&] { return patient.openRandomAccess(folder_ / "nodes.dat"); });
  held->writeAt(0, "first"s);
  held.reset();
  EXPECT_EQ(read(*second.get(), 0, 100), "first");
}

TEST_F(OpenRandomAccess, HoldsTheLockOfOneFileOnly) {
  const auto nodes = files_.openRandomAccess(folder_ / "nodes.dat");
  const auto notes = files_.openRandomAccess(folder_ / "notes.dat");
  EXPECT_NE(notes, nullptr);
}

TEST_F(OpenRandomAccess, LocksOutNobodyWhoDoesNotAsk) {
  const auto file = files_.openRandomAccess(folder_.givenAFile("load.txt", "spring\r\n"));
  EXPECT_EQ(files_.readFirstLine(folder_ / "load.txt"), "spring");
  EXPECT_EQ(folder_.bytesOf("load.txt"), "spring\r\n");
}

using OpenForReading = RealFileSystemTest;

TEST_F(OpenForReading, ReadsAReadOnlyFile) {
  const Path path = folder_.givenAFile("notes.dat", "0123456789");
  std::filesystem::permissions(path, std::filesystem::perms::owner_read);
  const auto file = files_.openForReading(path);
  EXPECT_EQ(file->length(), 10U);
  EXPECT_EQ(read(*file, 6, 100), "6789");
}

TEST_F(OpenForReading, LetsNothingBeWritten) {
  const auto file = files_.openForReading(folder_.givenAFile("notes.dat", "kept"));
  EXPECT_EQ(failureNumberOf([&] { file->writeAt(0, "x"s); }), 75);
  EXPECT_EQ(folder_.bytesOf("notes.dat"), "kept");
}

TEST_F(OpenForReading, FailsForAMissingFileAndMakesNone) {
  EXPECT_EQ(failureNumberOf([&] { return files_.openForReading(folder_ / "notes.dat"); }), 53);
  EXPECT_EQ(failureNumberOf([&] { return files_.openForReading(folder_ / "no" / "file"); }), 76);
  EXPECT_FALSE(std::filesystem::exists(folder_ / "notes.dat"));
}

TEST_F(OpenForReading, FailsForAFolder) {
  EXPECT_EQ(failureNumberOf([&] { return files_.openForReading(folder_.path()); }), 75);
  EXPECT_FALSE(failsBecauseInUse([&] { return files_.openForReading(folder_.path()); }));
}

TEST_F(OpenForReading, IsPossibleForSeveralAtOnce) {
  const Path path = folder_.givenAFile("notes.dat", "0123");
  const auto first = files_.openForReading(path);
  const auto second = files_.openForReading(path);
  EXPECT_EQ(read(*second, 0, 100), "0123");
}

TEST_F(OpenForReading, AndOpeningForWritingExcludeEachOther) {
  RealFileSystem impatient(kShortPatience);
  const Path path = folder_.givenAFile("notes.dat", "kept");
  {
    const auto held = files_.openForReading(path);
    EXPECT_EQ(failureNumberOf([&] { return impatient.openRandomAccess(path); }), 75);
    EXPECT_TRUE(failsBecauseInUse([&] { return impatient.openRandomAccess(path); }));
  }
  const auto held = files_.openRandomAccess(path);
  EXPECT_EQ(failureNumberOf([&] { return impatient.openForReading(path); }), 75);
  EXPECT_TRUE(failsBecauseInUse([&] { return impatient.openForReading(path); }));
}

using OpenAsPermitted = RealFileSystemTest;

TEST_F(OpenAsPermitted, WritesWhereThatIsPermitted) {
  files_.openAsPermitted(folder_.givenAFile("notes.dat", "0123"))->writeAt(0, "ab"s);
  EXPECT_EQ(folder_.bytesOf("notes.dat"), "ab23");
}

TEST_F(OpenAsPermitted, CreatesAMissingFile) {
  files_.openAsPermitted(folder_ / "notes.dat")->writeAt(0, "x"s);
  EXPECT_EQ(folder_.bytesOf("notes.dat"), "x");
}

TEST_F(OpenAsPermitted, ReadsAReadOnlyFile) {
  const Path path = folder_.givenAFile("notes.dat", "kept");
  std::filesystem::permissions(path, std::filesystem::perms::owner_read);
  const auto file = files_.openAsPermitted(path);
  EXPECT_EQ(read(*file, 0, 100), "kept");
  EXPECT_EQ(failureNumberOf([&] { file->writeAt(0, "x"s); }), 75);
}

TEST_F(OpenAsPermitted, FailsWhileTheFileIsOpenElsewhereInsteadOfOpeningItForReading) {
  RealFileSystem impatient(kShortPatience);
  const Path path = folder_.givenAFile("notes.dat", "kept");
  const auto held = files_.openForReading(path);
  EXPECT_EQ(failureNumberOf([&] { return impatient.openAsPermitted(path); }), 75);
  EXPECT_TRUE(failsBecauseInUse([&] { return impatient.openAsPermitted(path); }));
}

TEST_F(OpenAsPermitted, FailsForAFolderAndInAMissingOne) {
  EXPECT_EQ(failureNumberOf([&] { return files_.openAsPermitted(folder_.path()); }), 75);
  EXPECT_EQ(failureNumberOf([&] { return files_.openAsPermitted(folder_ / "no" / "file"); }), 76);
}

using IsSameFile = RealFileSystemTest;

TEST_F(IsSameFile, IsTrueHoweverThePathIsSpelt) {
  const Path path = folder_.givenAFile("nodes.dat", "");
  files_.makeFolder(folder_ / "May");
  EXPECT_TRUE(files_.isSameFile(path, path));
  EXPECT_TRUE(files_.isSameFile(folder_ / "May" / ".." / "nodes.dat", path));
}

TEST_F(IsSameFile, IsFalseForACopyAndForWhatIsMissing) {
  const Path path = folder_.givenAFile("nodes.dat", "");
  EXPECT_FALSE(files_.isSameFile(path, folder_.givenAFile("copy", "")));
  EXPECT_FALSE(files_.isSameFile(path, folder_ / "missing"));
  EXPECT_FALSE(files_.isSameFile(folder_ / "missing", path));
  EXPECT_FALSE(files_.isSameFile(folder_ / "missing", folder_ / "missing"));
}

using DeleteFile = RealFileSystemTest;

TEST_F(DeleteFile, RemovesTheFileAndNoOther) {
  const Path path = folder_.givenAFile("nodes.dat", "0123456789");
  folder_.givenAFile("notes.dat", "kept");
  files_.deleteFile(path);
  EXPECT_FALSE(std::filesystem::exists(path));
  EXPECT_EQ(folder_.bytesOf("notes.dat"), "kept");
}

TEST_F(DeleteFile, TakesANameBeyondAscii) {
  const Path path = folder_.givenAFile(Path(u8"Dépôt-€-Ж-書.dat"), "x");
  files_.deleteFile(path);
  EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(DeleteFile, LeavesRoomForANewFile) {
  const Path path = folder_.givenAFile("nodes.dat", "old");
  files_.deleteFile(path);
  EXPECT_EQ(files_.openRandomAccess(path)->length(), 0U);
  EXPECT_EQ(folder_.bytesOf("nodes.dat"), "");
}

TEST_F(DeleteFile, FailsForAMissingFileAndMakesNone) {
  EXPECT_EQ(failureNumberOf([&] { files_.deleteFile(folder_ / "nodes.dat"); }), 53);
  EXPECT_FALSE(std::filesystem::exists(folder_ / "nodes.dat"));
}

TEST_F(DeleteFile, FailsInAMissingFolder) {
  EXPECT_EQ(failureNumberOf([&] { files_.deleteFile(folder_ / "no" / "nodes.dat"); }), 76);
}

TEST_F(DeleteFile, FailsForAFolderEvenAnEmptyOne) {
  files_.makeFolder(folder_ / "Data");
  EXPECT_EQ(failureNumberOf([&] { files_.deleteFile(folder_ / "Data"); }), 75);
  EXPECT_TRUE(files_.folderExists(folder_ / "Data"));
}

TEST_F(DeleteFile, FailsForAReadOnlyFile) {
  const Path path = folder_.givenAFile("nodes.dat", "kept");
  std::filesystem::permissions(path, std::filesystem::perms::owner_read);
  EXPECT_EQ(failureNumberOf([&] { files_.deleteFile(path); }), 75);
  EXPECT_FALSE(failsBecauseInUse([&] { files_.deleteFile(path); }));
  EXPECT_EQ(folder_.bytesOf("nodes.dat"), "kept");
}

TEST_F(DeleteFile, FailsWhileTheFileIsOpenElsewhere) {
  RealFileSystem impatient(kShortPatience);
  const Path path = folder_.givenAFile("nodes.dat", "kept");
  for (const bool isForReading : {false, true}) {
    const auto held = isForReading ? files_.openForReading(path) : files_.openRandomAccess(path);
    EXPECT_EQ(failureNumberOf([&] { impatient.deleteFile(path); }), 75);
    EXPECT_TRUE(failsBecauseInUse([&] { impatient.deleteFile(path); }));
    EXPECT_EQ(read(*held, 0, 100), "kept");
  }
  EXPECT_EQ(folder_.bytesOf("nodes.dat"), "kept");
}

TEST_F(DeleteFile, WaitsForTheFileToBeClosed) {
  RealFileSystem patient(std::chrono::seconds(60));
  const Path path = folder_.givenAFile("nodes.dat", "first");
  auto held = files_.openRandomAccess(path);
  auto deletion = std::async(std::launch::async, [&] { patient.deleteFile(path); });
  EXPECT_EQ(read(*held, 0, 100), "first");
  held.reset();
  deletion.get();
  EXPECT_FALSE(std::filesystem::exists(path));
}

using DeleteCopiedFile = RealFileSystemTest;

TEST_F(DeleteCopiedFile, CopiesAgainWhatWasWrittenSinceTheCopy) {
  for (const char* const written : {"recorD", "record and more", "rec"}) {
    const Path path = folder_.givenAFile("nodes.dat", "record");
    files_.copyFile(path, folder_ / "copy");
    folder_.givenAFile("nodes.dat", written);
    files_.deleteCopiedFile(path, folder_ / "copy");
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_EQ(folder_.bytesOf("copy"), written);
  }
}

TEST_F(DeleteCopiedFile, DeletesAFileThatWasCopiedOntoItself) {
  const Path path = folder_.givenAFile("nodes.dat", "record");
  files_.deleteCopiedFile(path, folder_ / "." / "nodes.dat");
  EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(DeleteCopiedFile, FailsWithoutTheCopy) {
  const Path path = folder_.givenAFile("nodes.dat", "record");
  EXPECT_EQ(failureNumberOf([&] { files_.deleteCopiedFile(path, folder_ / "copy"); }), 53);
  EXPECT_EQ(folder_.bytesOf("nodes.dat"), "record");
}

TEST_F(DeleteCopiedFile, FailsWhileTheFileIsOpenElsewhere) {
  RealFileSystem impatient(kShortPatience);
  const Path path = folder_.givenAFile("nodes.dat", "record");
  const Path copy = folder_.givenAFile("copy", "rec");
  const auto held = files_.openForReading(path);
  EXPECT_TRUE(failsBecauseInUse([&] { impatient.deleteCopiedFile(path, copy); }));
  EXPECT_EQ(folder_.bytesOf("nodes.dat"), "record");
  EXPECT_EQ(folder_.bytesOf("copy"), "rec");
}

TEST_F(DeleteCopiedFile, KeepsAFileThatCannotBeCopiedAgain) {
  const Path path = folder_.givenAFile("nodes.dat", "record");
  const Path copy = folder_.givenAFile("copy", "rec");
  std::filesystem::permissions(copy, std::filesystem::perms::owner_read);
  EXPECT_EQ(failureNumberOf([&] { files_.deleteCopiedFile(path, copy); }), 75);
  EXPECT_EQ(folder_.bytesOf("nodes.dat"), "record");
  EXPECT_EQ(folder_.bytesOf("copy"), "rec");
}

using CopyFile = RealFileSystemTest;

TEST_F(CopyFile, MakesAFileOfTheSameBytes) {
  const auto bytes = "\x00\x1A\r\n\n\xFF"s;
  files_.copyFile(folder_.givenAFile("nodes.dat", bytes), folder_ / "copy");
  EXPECT_EQ(folder_.bytesOf("copy"), bytes);
  EXPECT_EQ(folder_.bytesOf("nodes.dat"), bytes);
  EXPECT_EQ(names(), (std::set<std::string>{"copy", "nodes.dat"}));
}

TEST_F(CopyFile, LeavesNothingOfALongerFile) {
  files_.copyFile(folder_.givenAFile("nodes.dat", "new"), folder_.givenAFile("copy", "much older"));
  EXPECT_EQ(folder_.bytesOf("copy"), "new");
}

TEST_F(CopyFile, CopiesAnEmptyFile) {
  files_.copyFile(folder_.givenAFile("nodes.dat", ""), folder_.givenAFile("copy", "old"));
  EXPECT_EQ(folder_.bytesOf("copy"), "");
}

TEST_F(CopyFile, CopiesAFileOfManyBlocks) {
  for (const std::size_t length : {262143U, 262144U, 262145U, 1000000U}) {
    std::string bytes(length, 'q');
    bytes.back() = 'z';
    files_.copyFile(folder_.givenAFile("nodes.dat", bytes), folder_ / "copy");
    EXPECT_EQ(folder_.bytesOf("copy"), bytes);
  }
}

TEST_F(CopyFile, TakesNamesBeyondAscii) {
  const Path from = folder_.givenAFile(Path(u8"Dépôt-€-Ж-書.dat"), "x");
  const Path name(u8"書-copy.dat");
  files_.copyFile(from, folder_ / name);
  EXPECT_EQ(folder_.bytesOf(name), "x");
}

TEST_F(CopyFile, CopiesAReadOnlyFileToOneThatMayBeWritten) {
  const Path from = folder_.givenAFile("nodes.dat", "bytes");
  makeReadOnly(from);
  files_.copyFile(from, folder_ / "copy");
  files_.openRandomAccess(folder_ / "copy")->writeAt(0, "B"s);
  EXPECT_EQ(folder_.bytesOf("copy"), "Bytes");
}

TEST_F(CopyFile, LeavesAFileThatIsCopiedOntoItself) {
  const Path path = folder_.givenAFile("nodes.dat", "kept");
  files_.copyFile(path, path);
  files_.copyFile(path, folder_ / "." / "nodes.dat");
  makeReadOnly(path);
  files_.copyFile(path, path);
  EXPECT_EQ(folder_.bytesOf("nodes.dat"), "kept");
  EXPECT_EQ(names(), std::set<std::string>{"nodes.dat"});
}

TEST_F(CopyFile, LeavesAFileThatIsCopiedOntoItsOtherName) {
  const Path path = folder_.givenAFile("nodes.dat", "kept");
  std::filesystem::create_hard_link(path, folder_ / "other");
  files_.copyFile(path, folder_ / "other");
  EXPECT_EQ(folder_.bytesOf("other"), "kept");
  files_.openRandomAccess(folder_ / "other")->writeAt(0, "both"s);
  EXPECT_EQ(folder_.bytesOf("nodes.dat"), "both");
}

TEST_F(CopyFile, FailsForAMissingFileAndMakesNone) {
  const Path old = folder_.givenAFile("copy", "old");
  EXPECT_EQ(failureNumberOf([&] { files_.copyFile(folder_ / "nodes.dat", old); }), 53);
  EXPECT_EQ(failureNumberOf([&] { files_.copyFile(folder_ / "no" / "file", old); }), 76);
  EXPECT_EQ(failureNumberOf([&] { files_.copyFile(folder_ / "no", folder_ / "no"); }), 53);
  EXPECT_EQ(folder_.bytesOf("copy"), "old");
  EXPECT_EQ(names(), std::set<std::string>{"copy"});
}

TEST_F(CopyFile, FailsIntoAMissingFolder) {
  const Path from = folder_.givenAFile("nodes.dat", "kept");
  EXPECT_EQ(failureNumberOf([&] { files_.copyFile(from, folder_ / "no" / "copy"); }), 76);
}

TEST_F(CopyFile, FailsFromAndToAFolder) {
  const Path file = folder_.givenAFile("nodes.dat", "kept");
  files_.makeFolder(folder_ / "Data");
  EXPECT_EQ(failureNumberOf([&] { files_.copyFile(folder_ / "Data", file); }), 75);
  EXPECT_EQ(failureNumberOf([&] { files_.copyFile(file, folder_ / "Data"); }), 75);
  EXPECT_EQ(folder_.bytesOf("nodes.dat"), "kept");
  EXPECT_EQ(names(), (std::set<std::string>{"Data", "nodes.dat"}));
}

TEST_F(CopyFile, FailsForAReadOnlyTarget) {
  const Path from = folder_.givenAFile("nodes.dat", "new");
  const Path to = folder_.givenAFile("copy", "old");
  makeReadOnly(to);
  EXPECT_EQ(failureNumberOf([&] { files_.copyFile(from, to); }), 75);
  EXPECT_EQ(folder_.bytesOf("copy"), "old");
  EXPECT_EQ(names(), (std::set<std::string>{"copy", "nodes.dat"}));
}

TEST_F(CopyFile, FailsWhileEitherFileIsOpenElsewhere) {
  RealFileSystem impatient(kShortPatience);
  const Path from = folder_.givenAFile("nodes.dat", "new");
  const Path to = folder_.givenAFile("copy", "old");
  for (const Path& path : {from, to}) {
    const auto held = files_.openRandomAccess(path);
    EXPECT_EQ(failureNumberOf([&] { impatient.copyFile(from, to); }), 75);
  }
  EXPECT_EQ(folder_.bytesOf("copy"), "old");
  EXPECT_EQ(names(), (std::set<std::string>{"copy", "nodes.dat"}));
}

TEST_F(CopyFile, WaitsForTheTargetToBeClosed) {
  RealFileSystem patient(std::chrono::seconds(60));
  const Path from = folder_.givenAFile("nodes.dat", "new");
  const Path to = folder_.givenAFile("copy", "old");
  auto held = files_.openRandomAccess(to);
  auto copying = std::async(std::launch::async, [&] { patient.copyFile(from, to); });
  EXPECT_EQ(read(*held, 0, 100), "old");
  held.reset();
  copying.get();
  EXPECT_EQ(folder_.bytesOf("copy"), "new");
}

TEST_F(CopyFile, IsNotHinderedByWhatACrashLeftBehind) {
  folder_.givenAFile("copy.quorrix-new", "half of a much longer file");
  files_.copyFile(folder_.givenAFile("nodes.dat", "new"), folder_.givenAFile("copy", "old"));
  EXPECT_EQ(folder_.bytesOf("copy"), "new");
  EXPECT_EQ(names(), (std::set<std::string>{"copy", "nodes.dat"}));
}

TEST_F(CopyFile, LeavesTheTargetWhenTheReplacementCannotBeMade) {
  files_.makeFolder(folder_ / "copy.quorrix-new");
  const Path from = folder_.givenAFile("nodes.dat", "new");
  const Path to = folder_.givenAFile("copy", "old");
  EXPECT_EQ(failureNumberOf([&] { files_.copyFile(from, to); }), 75);
  EXPECT_EQ(folder_.bytesOf("copy"), "old");
}

using ReplaceByLine = RealFileSystemTest;

TEST_F(ReplaceByLine, LeavesTheLineAndItsEnd) {
  const Path path = folder_.givenAFile("load.txt", "/a/much/longer/folder\r\nmore\r\n");
  files_.replaceByLine(path, "none");
  EXPECT_EQ(folder_.bytesOf("load.txt"), "none\r\n");
  EXPECT_EQ(names(), std::set<std::string>{"load.txt"});
}

TEST_F(ReplaceByLine, WritesEveryByteAsItIs) {
  files_.replaceByLine(folder_.givenAFile("load.txt", ""), " \xE9\x1A\xC3\xA9 ");
  EXPECT_EQ(folder_.bytesOf("load.txt"), " \xE9\x1A\xC3\xA9 \r\n");
}

TEST_F(ReplaceByLine, FailsForAMissingFileAndMakesNone) {
  EXPECT_EQ(failureNumberOf([&] { files_.replaceByLine(folder_ / "load.txt", "x"); }), 53);
  EXPECT_EQ(failureNumberOf([&] { files_.replaceByLine(folder_ / "no" / "load.txt", "x"); }), 76);
  EXPECT_EQ(names(), std::set<std::string>{});
}

TEST_F(ReplaceByLine, FailsForAFolder) {
  files_.makeFolder(folder_ / "load.txt");
  EXPECT_EQ(failureNumberOf([&] { files_.replaceByLine(folder_ / "load.txt", "x"); }), 75);
}

TEST_F(ReplaceByLine, FailsForAReadOnlyFile) {
  const Path path = folder_.givenAFile("load.txt", "none\r\n");
  makeReadOnly(path);
  EXPECT_EQ(failureNumberOf([&] { files_.replaceByLine(path, "x"); }), 75);
  EXPECT_EQ(folder_.bytesOf("load.txt"), "none\r\n");
}

TEST_F(ReplaceByLine, FailsWhileTheFileIsOpenElsewhere) {
  RealFileSystem impatient(kShortPatience);
  const Path path = folder_.givenAFile("load.txt", "none\r\n");
  const auto held = files_.openRandomAccess(path);
  EXPECT_EQ(failureNumberOf([&] { impatient.replaceByLine(path, "x"); }), 75);
  EXPECT_EQ(names(), std::set<std::string>{"load.txt"});
}

using ReadAt = RealFileSystemTest;

TEST_F(ReadAt, ReadsFromTheOffset) {
  const auto file = files_.openRandomAccess(folder_.givenAFile("nodes.dat", "0123456789"));
  EXPECT_EQ(read(*file, 0, 4), "0123");
  EXPECT_EQ(read(*file, 6, 4), "6789");
  EXPECT_EQ(read(*file, 2, 1), "2");
}

TEST_F(ReadAt, EndsWithTheFile) {
  const auto file = files_.openRandomAccess(folder_.givenAFile("nodes.dat", "0123456789"));
  EXPECT_EQ(read(*file, 8, 100), "89");
  EXPECT_EQ(read(*file, 10, 1), "");
  EXPECT_EQ(read(*file, 322, 322), "");
}

TEST_F(ReadAt, KnowsOffsetsOfMoreThan32Bits) {
  const auto file = files_.openRandomAccess(folder_.givenAFile("nodes.dat", "0123456789"));
  EXPECT_EQ(read(*file, 4294967296U, 4), "");
}

TEST_F(ReadAt, ReadsNothingIntoNoRoom) {
  const auto file = files_.openRandomAccess(folder_.givenAFile("nodes.dat", "0123456789"));
  EXPECT_EQ(read(*file, 0, 0), "");
}

TEST_F(ReadAt, ReadsALargeBlockWhole) {
  const std::string megabytes(std::size_t{3} << 20U, 'q');
  const auto file = files_.openRandomAccess(folder_.givenAFile("nodes.dat", megabytes));
  EXPECT_EQ(read(*file, 0, megabytes.size() + 1), megabytes);
}

using WriteAt = RealFileSystemTest;

TEST_F(WriteAt, ReplacesInPlace) {
  const auto file = files_.openRandomAccess(folder_.givenAFile("nodes.dat", "0123456789"));
  file->writeAt(4, "ab"s);
  EXPECT_EQ(file->length(), 10U);
  EXPECT_EQ(folder_.bytesOf("nodes.dat"), "0123ab6789");
}

TEST_F(WriteAt, Appends) {
  const auto file = files_.openRandomAccess(folder_.givenAFile("nodes.dat", "0123"));
  file->writeAt(4, "ab"s);
  EXPECT_EQ(file->length(), 6U);
  EXPECT_EQ(folder_.bytesOf("nodes.dat"), "0123ab");
}

TEST_F(WriteAt, LeavesNulsInAGap) {
  const auto file = files_.openRandomAccess(folder_.givenAFile("nodes.dat", "0123"));
  file->writeAt(6, "ab"s);
  EXPECT_EQ(folder_.bytesOf("nodes.dat"), "0123\0\0ab"s);
}

TEST_F(WriteAt, WritesEveryByteValue) {
  const auto bytes = "\x00\x1A\r\n\n\xFF"s;
  files_.openRandomAccess(folder_ / "notes.dat")->writeAt(0, bytes);
  EXPECT_EQ(folder_.bytesOf("notes.dat"), bytes);
}

TEST_F(WriteAt, WritesNothingForNoBytes) {
  const auto file = files_.openRandomAccess(folder_ / "nodes.dat");
  file->writeAt(322, ""s);
  EXPECT_EQ(file->length(), 0U);
}

TEST_F(WriteAt, IsFollowedBySync) {
  const auto file = files_.openRandomAccess(folder_ / "nodes.dat");
  file->writeAt(0, "record"s);
  file->sync();
  file->sync();
  EXPECT_EQ(folder_.bytesOf("nodes.dat"), "record");
}

using Rename = RealFileSystemTest;

TEST_F(Rename, GivesAFileItsName) {
  files_.rename(folder_.givenAFile("one", "text"), folder_ / "two");
  EXPECT_EQ(names(), std::set<std::string>{"two"});
  EXPECT_EQ(folder_.bytesOf("two"), "text");
}

TEST_F(Rename, ReplacesAFile) {
  folder_.givenAFile("two", "a longer text");
  files_.rename(folder_.givenAFile("one", "text"), folder_ / "two");
  EXPECT_EQ(names(), std::set<std::string>{"two"});
  EXPECT_EQ(folder_.bytesOf("two"), "text");
}

TEST_F(Rename, GivesAFolderItsName) {
  std::filesystem::create_directory(folder_ / "one");
  folder_.givenAFile(Path("one") / "file", "text");
  files_.rename(folder_ / "one", folder_ / "two");
  EXPECT_EQ(folder_.bytesOf(Path("two") / "file"), "text");
}

TEST_F(Rename, KeepsAFolderThatHoldsAnything) {
  for (const char* name : {"one", "two"}) {
    std::filesystem::create_directory(folder_ / name);
    folder_.givenAFile(Path(name) / "file", name);
  }
  EXPECT_EQ(failureNumberOf([&] { return files_.rename(folder_ / "one", folder_ / "two"), 0; }),
            75);
  EXPECT_EQ(folder_.bytesOf(Path("two") / "file"), "two");
}

TEST_F(Rename, FailsForAMissingFile) {
  EXPECT_EQ(failureNumberOf([&] { return files_.rename(folder_ / "one", folder_ / "two"), 0; }),
            53);
}

using ReadFirstLine = RealFileSystemTest;

TEST_F(ReadFirstLine, StopsAtEveryKindOfLineEnd) {
  EXPECT_EQ(files_.readFirstLine(folder_.givenAFile("dos", "spring\r\nsummer\r\n")), "spring");
  EXPECT_EQ(files_.readFirstLine(folder_.givenAFile("unix", "spring\nsummer\n")), "spring");
  EXPECT_EQ(files_.readFirstLine(folder_.givenAFile("mac", "spring\rsummer\r")), "spring");
}

TEST_F(ReadFirstLine, NeedsNoLineEnd) {
  EXPECT_EQ(files_.readFirstLine(folder_.givenAFile("load.txt", "none")), "none");
}

TEST_F(ReadFirstLine, IsEmptyForAnEmptyFileOrLine) {
  EXPECT_EQ(files_.readFirstLine(folder_.givenAFile("empty", "")), "");
  EXPECT_EQ(files_.readFirstLine(folder_.givenAFile("line", "\r\nsecond")), "");
}

TEST_F(ReadFirstLine, KeepsBlanksAndEveryOtherByte) {
  EXPECT_EQ(files_.readFirstLine(folder_.givenAFile("load.txt", " a\0\t\x1A\xE9 \nb"s)),
            " a\0\t\x1A\xE9 "s);
}

TEST_F(ReadFirstLine, ReadsALineOfManyBlocks) {
  const std::string line(5000, 'q');
  EXPECT_EQ(files_.readFirstLine(folder_.givenAFile("load.txt", line + "\r\nmore")), line);
}

TEST_F(ReadFirstLine, CutsALineWithoutAnEndInSight) {
  const std::string flood(std::size_t{1} << 20U, 'q');
  EXPECT_EQ(files_.readFirstLine(folder_.givenAFile("load.txt", flood)).size(), 65536U);
}

TEST_F(ReadFirstLine, FailsForAMissingFile) {
  EXPECT_EQ(failureNumberOf([&] { return files_.readFirstLine(folder_ / "load.txt"); }), 53);
  EXPECT_EQ(failureNumberOf([&] { return files_.readFirstLine(folder_ / "no" / "load.txt"); }), 76);
  EXPECT_FALSE(std::filesystem::exists(folder_ / "load.txt"));
}

TEST_F(ReadFirstLine, FailsForAFolder) {
  EXPECT_EQ(failureNumberOf([&] { return files_.readFirstLine(folder_.path()); }), 75);
}

TEST_F(ReadFirstLine, ReadsAReadOnlyFile) {
  const Path path = folder_.givenAFile("load.txt", "spring\n");
  std::filesystem::permissions(path, std::filesystem::perms::owner_read);
  EXPECT_EQ(files_.readFirstLine(path), "spring");
}

using ListFolder = RealFileSystemTest;
using Names = std::vector<Path>;

TEST_F(ListFolder, TellsFilesFromFolders) {
  folder_.givenAFile("nodes.dat", "x");
  folder_.givenAFile("notes", "");
  files_.makeFolder(folder_ / "May");
  files_.makeFolder(folder_ / "May" / "below");
  EXPECT_EQ(files_.fileNames(folder_.path()), (Names{"nodes.dat", "notes"}));
  EXPECT_EQ(files_.folderNames(folder_.path()), Names{"May"});
}

TEST_F(ListFolder, FindsNothingInAnEmptyFolder) {
  EXPECT_EQ(files_.fileNames(folder_.path()), Names{});
  EXPECT_EQ(files_.folderNames(folder_.path()), Names{});
}

TEST_F(ListFolder, SortsByBytes) {
  for (const char* name : {"b", "a", "B2", "a b", ".hidden"}) {
    folder_.givenAFile(std::string(name) + ".f", "");
    files_.makeFolder(folder_ / name);
  }
  EXPECT_EQ(files_.fileNames(folder_.path()), (Names{".hidden.f", "B2.f", "a b.f", "a.f", "b.f"}));
  EXPECT_EQ(files_.folderNames(folder_.path()), (Names{".hidden", "B2", "a", "a b", "b"}));
}

TEST_F(ListFolder, KeepsNamesBeyondAscii) {
  const Path name(u8"Dépôt-€-Ж-書");
  files_.makeFolder(folder_ / name);
  folder_.givenAFile(Path(u8"Ж"), "");
  EXPECT_EQ(files_.folderNames(folder_.path()), Names{name});
  EXPECT_EQ(files_.fileNames(folder_.path()), Names{Path(u8"Ж")});
}

TEST_F(ListFolder, FailsForAMissingFolder) {
  EXPECT_EQ(failureNumberOf([&] { return files_.fileNames(folder_ / "no"); }), 76);
  EXPECT_EQ(failureNumberOf([&] { return files_.folderNames(folder_ / "no"); }), 76);
  EXPECT_EQ(failureNumberOf([&] { return files_.folderNames(folder_ / "no" / "below"); }), 76);
}

TEST_F(ListFolder, FailsForAFile) {
  folder_.givenAFile("file", "");
  EXPECT_EQ(failureNumberOf([&] { return files_.fileNames(folder_ / "file"); }), 75);
  EXPECT_EQ(failureNumberOf([&] { return files_.folderNames(folder_ / "file"); }), 75);
  EXPECT_EQ(failureNumberOf([&] { return files_.folderNames(folder_ / "file" / "below"); }), 76);
}

using Volumes = RealFileSystemTest;

TEST_F(Volumes, HoldTheRootOfWhereTheTestRuns) {
  const Names volumes = files_.volumes();
  EXPECT_EQ(std::count(volumes.begin(), volumes.end(), folder_.path().root_path()), 1);
}

}  // namespace
}  // namespace quorrix
