#include "data_tool/record_reader.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "data_tool/problem.h"
#include "support/faulty_file_system.h"
#include "support/memory_file_system.h"

namespace quorrix {
namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;
using test::FileCall;

class RecordReaderTest : public testing::Test {
 protected:
  RecordReaderTest() { memory_.givenAFolder("Data"); }

  std::vector<std::string> read(std::size_t length) {
    std::vector<std::string> records;
    reader_.forEach(kFile, length, [&](std::uint64_t number, std::span<const char> record) {
      EXPECT_EQ(number, records.size() + 1);
      EXPECT_EQ(memory_.openFiles(), 0) << "the file is locked while a record is visited";
      records.emplace_back(record.begin(), record.end());
      return true;
    });
    return records;
  }

  std::string problem(std::size_t length) {
    try {
      read(length);
    } catch (const Problem& reason) {
      return reason.what();
    }
    return "";
  }

  const Path kFile = "Data/nodes.dat";
  test::MemoryFileSystem memory_;
  test::FaultyFileSystem files_{memory_};
  RecordReader reader_{files_, LockTurns({.patience = 0ms})};
};

TEST_F(RecordReaderTest, ReadsRecordsInOrderAndFillsTheLastWithNuls) {
  memory_.givenAFile(kFile, "aaabbbc");
  EXPECT_EQ(read(3), (std::vector<std::string>{"aaa", "bbb", "c\0\0"s}));
}

TEST_F(RecordReaderTest, NeitherCreatesNorReportsAMissingFile) {
  const auto visit = [](std::uint64_t, std::span<const char>) { return true; };
  EXPECT_FALSE(reader_.forEach(kFile, 3, visit));
  EXPECT_FALSE(memory_.holdsFile(kFile));
  EXPECT_FALSE(reader_.forEach("Nowhere/nodes.dat", 3, visit));
}

TEST_F(RecordReaderTest, OpensFilesOnlyForReading) {
  memory_.givenAFile(kFile, "aaabbb");
  read(3);
  EXPECT_EQ(files_.callsOf(FileCall::OpenForReading), 1);
  EXPECT_EQ(files_.callsOf(FileCall::OpenRandomAccess), 0);
  EXPECT_EQ(files_.callsOf(FileCall::OpenAsPermitted), 0);
}

TEST_F(RecordReaderTest, ReadsALargeFileInBlocksOfARestrictedSize) {
  std::string bytes;
  for (int i = 0; i < 3000; ++i) bytes += std::string(322, static_cast<char>('a' + i % 26));
  memory_.givenAFile(kFile, bytes);
  const auto records = read(322);
  ASSERT_EQ(records.size(), 3000U);
  EXPECT_EQ(records[2999], std::string(322, 'a' + 2999 % 26));
  // 814 records in a block of 256 KiB.
  EXPECT_EQ(files_.callsOf(FileCall::OpenForReading), 4);
}

TEST_F(RecordReaderTest, StopsWhenTheVisitorHasEnough) {
  memory_.givenAFile(kFile, "aaabbb");
  int visits = 0;
  reader_.forEach(kFile, 3, [&](std::uint64_t, std::span<const char>) { return ++visits < 1; });
  EXPECT_EQ(visits, 1);
}

TEST_F(RecordReaderTest, NamesAFileThatAnotherProgramKeepsLocked) {
  memory_.givenAFile(kFile, "aaa");
  const auto writer = memory_.openRandomAccess(kFile);
  EXPECT_EQ(problem(3), kFile.string() + ": Another program is using this file. Try again later.");
}

TEST_F(RecordReaderTest, KeepsTryingWhileAnotherProgramHasTheFileLocked) {
  memory_.givenAFile(kFile, "aaa");
  auto writer = memory_.openRandomAccess(kFile);
  int attempts = 0;
  files_.onEveryCall([&] {
    if (++attempts == 3) writer.reset();
  });
  RecordReader patient(files_, LockTurns({.patience = 1h}));
  int visits = 0;
  patient.forEach(kFile, 3, [&](std::uint64_t, std::span<const char>) { return ++visits > 0; });
  EXPECT_EQ(visits, 1);
}

TEST_F(RecordReaderTest, NamesAFileThatCannotBeOpened) {
  memory_.givenAFile(kFile, "aaa");
  files_.failAtCall(FileCall::OpenForReading, 1, 67);
  EXPECT_EQ(problem(3), kFile.string() + ": Too many files open.");
}

TEST_F(RecordReaderTest, VisitsWhatComesBeforeARecordThatCannotBeRead) {
  memory_.givenAFile(kFile, "aaabbbccc");
  files_.spoilBytes(4, 1, 57);
  EXPECT_EQ(problem(3), kFile.string() + ": Device I/O error.");
}

TEST_F(RecordReaderTest, PassesOverARecordThatCannotBeRead) {
  memory_.givenAFile(kFile, "aaabbbccc");
  files_.spoilBytes(4, 1, 57);
  std::vector<std::string> found;
  reader_.forEach(
      kFile, 3,
      [&](std::uint64_t, std::span<const char> record) {
        found.emplace_back(record.begin(), record.end());
        return true;
      },
      [&](std::uint64_t number, int failureNumber) {
        found.push_back(std::to_string(number) + " fails with " + std::to_string(failureNumber));
        return true;
      });
  EXPECT_EQ(found, (std::vector<std::string>{"aaa", "2 fails with 57", "ccc"}));
}

}  // namespace
}  // namespace quorrix
