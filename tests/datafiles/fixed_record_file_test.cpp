#include "datafiles/fixed_record_file.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "support/failure_number.h"
#include "support/faulty_file_system.h"
#include "support/memory_file_system.h"

namespace quorrix {
namespace {

using namespace std::string_literals;
using test::failureNumberOf;
using test::FileCall;
using ReadFailures = FixedRecordFile::ReadFailures;

constexpr std::size_t kLength = 4;

class FixedRecordFileTest : public testing::Test {
 protected:
  using Records = std::vector<std::pair<std::uint64_t, std::string>>;

  FixedRecordFileTest() { memory_.givenAFolder("Data"); }

  void givenAFileOf(std::string bytes) { memory_.givenAFile(path_, std::move(bytes)); }

  FixedRecordFile open() { return {files_, path_, kLength, FileAccess::ReadWrite}; }

  // The records that a scan visits, each with its number.
  Records scanned(std::uint64_t last, ReadFailures onFailure) {
    Records records;
    open().scan(last, onFailure, [&records](std::uint64_t number, std::span<const char> record) {
      records.emplace_back(number, std::string(record.begin(), record.end()));
      return true;
    });
    return records;
  }

  const Path path_ = "Data/some.dat";
  test::MemoryFileSystem memory_;
  test::FaultyFileSystem files_{memory_};
};

TEST(RecordCountOf, CountsWholeRecords) {
  EXPECT_EQ(recordCountOf(0, 322), 0U);
  EXPECT_EQ(recordCountOf(322, 322), 1U);
  EXPECT_EQ(recordCountOf(3220, 322), 10U);
}

TEST(RecordCountOf, RoundsToTheNearest) {
  EXPECT_EQ(recordCountOf(160, 322), 0U);
  EXPECT_EQ(recordCountOf(162, 322), 1U);
  EXPECT_EQ(recordCountOf(322 + 160, 322), 1U);
  EXPECT_EQ(recordCountOf(322 + 162, 322), 2U);
  EXPECT_EQ(recordCountOf(644 + 200, 322), 3U);
  EXPECT_EQ(recordCountOf(644 + 321, 322), 3U);
}

TEST(RecordCountOf, RoundsAHalfToTheEvenNumber) {
  EXPECT_EQ(recordCountOf(161, 322), 0U);
  EXPECT_EQ(recordCountOf(322 + 161, 322), 2U);
  EXPECT_EQ(recordCountOf(644 + 161, 322), 2U);
  EXPECT_EQ(recordCountOf(966 + 161, 322), 4U);
}

TEST(RecordCountOf, HasNoHalfInAnOddLength) {
  EXPECT_EQ(recordCountOf(10, 7), 1U);
  EXPECT_EQ(recordCountOf(11, 7), 2U);
}

TEST(RecordCountOf, CountsBeyondFourGigabytes) {
  EXPECT_EQ(recordCountOf(322ULL * 20'000'000 + 162, 322), 20'000'001U);
}

TEST_F(FixedRecordFileTest, CreatesAMissingFile) {
  EXPECT_EQ(open().recordCount(), 0U);
  EXPECT_EQ(memory_.bytesOf(path_), "");
}

TEST_F(FixedRecordFileTest, FailsWhereTheFolderIsMissing) {
  EXPECT_EQ(failureNumberOf([this] {
              FixedRecordFile(files_, "Nowhere/some.dat", kLength, FileAccess::ReadWrite);
            }),
            76);
}

TEST_F(FixedRecordFileTest, ClosesTheFileAtTheEndOfItsLife) {
  {
    const FixedRecordFile file = open();
    EXPECT_EQ(memory_.openFiles(), 1);
  }
  EXPECT_EQ(memory_.openFiles(), 0);
}

TEST_F(FixedRecordFileTest, CountsAHalfRecordLikeRecordCountOf) {
  givenAFileOf("onetwo");
  EXPECT_EQ(open().recordCount(), 2U);
  givenAFileOf("one.two.th");
  EXPECT_EQ(open().recordCount(), 2U);
}

TEST_F(FixedRecordFileTest, KnowsTheRecordsThatBegin) {
  givenAFileOf("");
  EXPECT_EQ(open().recordsBegun(), 0U);
  givenAFileOf("a");
  EXPECT_EQ(open().recordsBegun(), 1U);
  givenAFileOf("aaaa");
  EXPECT_EQ(open().recordsBegun(), 1U);
  givenAFileOf("aaaab");
  EXPECT_EQ(open().recordsBegun(), 2U);
}

TEST_F(FixedRecordFileTest, GetsARecordByItsNumber) {
  givenAFileOf("aaaabbbbcccc");
  std::string record(kLength, '?');
  open().get(2, record);
  EXPECT_EQ(record, "bbbb");
  open().get(1, record);
  EXPECT_EQ(record, "aaaa");
}

TEST_F(FixedRecordFileTest, ReadsMissingBytesAsNul) {
  givenAFileOf("aaaabb");
  std::string record(kLength, '?');
  open().get(2, record);
  EXPECT_EQ(record, "bb\0\0"s);
  open().get(9, record);
  EXPECT_EQ(record, "\0\0\0\0"s);
}

TEST_F(FixedRecordFileTest, PutsARecordInItsPlace) {
  givenAFileOf("aaaabbbbcccc");
  open().put(2, "BBBB"s);
  EXPECT_EQ(memory_.bytesOf(path_), "aaaaBBBBcccc");
  EXPECT_EQ(files_.callsOf(FileCall::WriteAt), 1);
}

TEST_F(FixedRecordFileTest, FillsAGapWithNuls) {
  givenAFileOf("aaaab");
  open().put(4, "dddd"s);
  EXPECT_EQ(memory_.bytesOf(path_), "aaaab\0\0\0\0\0\0\0dddd"s);
}

TEST_F(FixedRecordFileTest, SyncsOnRequestOnly) {
  FixedRecordFile file = open();
  file.put(1, "aaaa"s);
  EXPECT_FALSE(memory_.isSynced(path_));
  file.sync();
  EXPECT_TRUE(memory_.isSynced(path_));
}

TEST_F(FixedRecordFileTest, ScansAllRecordsInOrder) {
  givenAFileOf("aaaabbbbcccc");
  EXPECT_EQ(scanned(3, ReadFailures::Throw), (Records{{1, "aaaa"}, {2, "bbbb"}, {3, "cccc"}}));
}

TEST_F(FixedRecordFileTest, ScansNoFurtherThanTheLast) {
  givenAFileOf("aaaabbbbcccc");
  EXPECT_EQ(scanned(2, ReadFailures::Throw), (Records{{1, "aaaa"}, {2, "bbbb"}}));
  EXPECT_EQ(scanned(0, ReadFailures::Throw), Records{});
}

TEST_F(FixedRecordFileTest, ScansATrailingPartRecord) {
  givenAFileOf("aaaabb");
  EXPECT_EQ(scanned(2, ReadFailures::Throw), (Records{{1, "aaaa"}, {2, "bb\0\0"s}}));
}

TEST_F(FixedRecordFileTest, StopsAScanWhenToldTo) {
  givenAFileOf("aaaabbbbcccc");
  int visits = 0;
  open().scan(3, ReadFailures::Throw, [&visits](std::uint64_t number, std::span<const char>) {
    ++visits;
    return number < 2;
  });
  EXPECT_EQ(visits, 2);
}

TEST_F(FixedRecordFileTest, ScansAFileOfManyBlocks) {
  constexpr std::uint64_t kCount = 300'000;
  std::string bytes;
  for (std::uint64_t number = 1; number <= kCount; ++number) {
    bytes += std::to_string(1'000'000 + number).substr(3);
  }
  givenAFileOf(bytes);
  std::uint64_t expected = 0;
  open().scan(kCount, ReadFailures::Throw,
              [&expected](std::uint64_t number, std::span<const char> record) {
                ++expected;
                EXPECT_EQ(number, expected);
                EXPECT_EQ(std::string(record.begin(), record.end()),
                          std::to_string(1'000'000 + expected).substr(3));
                return number == expected;
              });
  EXPECT_EQ(expected, kCount);
  // One read per record would make loading slow; one read for all of them would take as
  // much memory as the file is long.
  EXPECT_LT(files_.callsOf(FileCall::ReadAt), 100);
  EXPECT_GT(files_.callsOf(FileCall::ReadAt), 2);
}

TEST_F(FixedRecordFileTest, FailsAScanAtAnUnreadableRecord) {
  givenAFileOf("aaaabbbbcccc");
  files_.spoilBytes(5, 1, 57);
  EXPECT_EQ(failureNumberOf([this] { return scanned(3, ReadFailures::Throw); }), 57);
}

TEST_F(FixedRecordFileTest, VisitsEveryRecordBeforeTheOneThatFailsAScan) {
  givenAFileOf("aaaabbbbcccc");
  files_.spoilBytes(9, 1, 57);
  std::vector<std::uint64_t> visited;
  EXPECT_EQ(failureNumberOf([&] {
              open().scan(3, ReadFailures::Throw,
                          [&visited](std::uint64_t number, std::span<const char>) {
                            visited.push_back(number);
                            return true;
                          });
            }),
            57);
  EXPECT_EQ(visited, (std::vector<std::uint64_t>{1, 2}));
}

TEST_F(FixedRecordFileTest, EndsAScanBeforeAnUnreadableRecord) {
  givenAFileOf("aaaabbbbcccc");
  files_.spoilBytes(9, 1, 57);
  open().scan(3, ReadFailures::Throw,
              [](std::uint64_t number, std::span<const char>) { return number < 2; });
}

TEST_F(FixedRecordFileTest, SkipsOnlyTheRecordThatIsUnreadable) {
  givenAFileOf("aaaabbbbcccc");
  files_.spoilBytes(5, 1, 57);
  EXPECT_EQ(scanned(3, ReadFailures::SkipRecord), (Records{{1, "aaaa"}, {3, "cccc"}}));
}

TEST_F(FixedRecordFileTest, FailsNoScanBecauseOneReadFailedOnce) {
  givenAFileOf("aaaabbbb");
  files_.failOneRead(57);
  EXPECT_EQ(scanned(2, ReadFailures::Throw), (Records{{1, "aaaa"}, {2, "bbbb"}}));
}

TEST_F(FixedRecordFileTest, SkipsEveryRecordOfADeadDisk) {
  givenAFileOf("aaaabbbbcccc");
  files_.spoilBytes(0, 12, 71);
  EXPECT_EQ(scanned(3, ReadFailures::SkipRecord), Records{});
}

TEST_F(FixedRecordFileTest, StopsAScanBesideAnUnreadableRecord) {
  givenAFileOf("aaaabbbbcccc");
  files_.spoilBytes(0, 1, 57);
  int visits = 0;
  open().scan(3, ReadFailures::SkipRecord, [&visits](std::uint64_t, std::span<const char>) {
    ++visits;
    return false;
  });
  EXPECT_EQ(visits, 1);
}

TEST_F(FixedRecordFileTest, StopsAScanInABlockWithAnUnreadableRecordForGood) {
  givenAFileOf(std::string(kLength * 200'000, 'x'));
  files_.spoilBytes(0, 1, 57);
  int visits = 0;
  open().scan(200'000, ReadFailures::SkipRecord, [&visits](std::uint64_t, std::span<const char>) {
    ++visits;
    return false;
  });
  EXPECT_EQ(visits, 1);
}

TEST_F(FixedRecordFileTest, GoesOnInTheNextBlockAfterAnUnreadableRecord) {
  givenAFileOf(std::string(kLength * 200'000, 'x'));
  files_.spoilBytes(kLength * 10, kLength, 57);
  EXPECT_EQ(scanned(200'000, ReadFailures::SkipRecord).size(), 199'999U);
}

TEST_F(FixedRecordFileTest, ReadsNulsWhereTheFileWasCutMeanwhile) {
  givenAFileOf("aaaabbbbcccc");
  files_.cutReadShort(1, 6);
  EXPECT_EQ(scanned(3, ReadFailures::Throw),
            (Records{{1, "aaaa"}, {2, "bb\0\0"s}, {3, "\0\0\0\0"s}}));
}

TEST_F(FixedRecordFileTest, ReadsWhereTheFilePermitsNoMore) {
  memory_.givenAReadOnlyFile(path_, "aaaabbbb");
  FixedRecordFile file(files_, path_, kLength, FileAccess::AsPermitted);
  std::string record(kLength, '?');
  file.get(2, record);
  EXPECT_EQ(record, "bbbb");
  EXPECT_EQ(failureNumberOf([&] { file.put(1, "cccc"s); }), 75);
  EXPECT_EQ(memory_.bytesOf(path_), "aaaabbbb");
}

TEST_F(FixedRecordFileTest, WritesWhereTheFilePermitsIt) {
  givenAFileOf("aaaabbbb");
  FixedRecordFile(files_, path_, kLength, FileAccess::AsPermitted).put(1, "cccc"s);
  EXPECT_EQ(memory_.bytesOf(path_), "ccccbbbb");
  EXPECT_EQ(files_.callsOf(FileCall::OpenForReading), 0);
}

TEST_F(FixedRecordFileTest, DemandsWritingWhereTheCallerDoes) {
  memory_.givenAReadOnlyFile(path_, "aaaa");
  EXPECT_EQ(failureNumberOf([this] { open(); }), 75);
  EXPECT_EQ(files_.callsOf(FileCall::OpenForReading), 0);
}

TEST_F(FixedRecordFileTest, TriesALockedFileOnceWhateverItWants) {
  givenAFileOf("aaaa");
  const auto held = memory_.openRandomAccess(path_);
  for (const auto access : {FileAccess::Read, FileAccess::ReadWrite, FileAccess::AsPermitted}) {
    files_.reset();
    EXPECT_EQ(failureNumberOf([&] { FixedRecordFile(files_, path_, kLength, access); }), 75);
    EXPECT_EQ(files_.calls().size(), 1U);
  }
}

TEST_F(FixedRecordFileTest, WantsWritingBesideAReaderWhereThatIsPermitted) {
  givenAFileOf("aaaa");
  const auto held = memory_.openForReading(path_);
  EXPECT_EQ(
      failureNumberOf([this] { FixedRecordFile(files_, path_, kLength, FileAccess::AsPermitted); }),
      75);
  FixedRecordFile beside(files_, path_, kLength, FileAccess::Read);
  EXPECT_EQ(beside.recordCount(), 1U);
}

TEST_F(FixedRecordFileTest, CreatesAMissingFileForReading) {
  EXPECT_EQ(FixedRecordFile(files_, path_, kLength, FileAccess::Read).recordCount(), 0U);
  EXPECT_EQ(memory_.bytesOf(path_), "");
}

TEST_F(FixedRecordFileTest, SaysWhyAMissingFileCannotBeCreatedForReading) {
  files_.failAtCall(FileCall::OpenRandomAccess, 1, 75);
  EXPECT_EQ(failureNumberOf([this] { FixedRecordFile(files_, path_, kLength, FileAccess::Read); }),
            75);
}

TEST_F(FixedRecordFileTest, CreatesOnlyAFileThatIsMissing) {
  givenAFileOf("aaaa");
  for (const int number : {7, 57, 61, 67, 68, 71, 75, 76}) {
    files_.reset();
    files_.failAtCall(FileCall::OpenForReading, 1, number);
    EXPECT_EQ(
        failureNumberOf([this] { FixedRecordFile(files_, path_, kLength, FileAccess::Read); }),
        number);
    EXPECT_EQ(files_.callsOf(FileCall::OpenRandomAccess), 0);
  }
}

TEST_F(FixedRecordFileTest, PassesOnEveryFailure) {
  givenAFileOf("aaaabbbb");
  for (const int number : {7, 53, 57, 61, 67, 68, 71, 75, 76}) {
    files_.reset();
    files_.failAlways(number);
    EXPECT_EQ(failureNumberOf([this] { open(); }), number);
    files_.reset();
    std::string record(kLength, '?');
    FixedRecordFile file = open();
    files_.failAlways(number);
    EXPECT_EQ(failureNumberOf([&] { return file.recordCount(); }), number);
    EXPECT_EQ(failureNumberOf([&] { return file.recordsBegun(); }), number);
    EXPECT_EQ(failureNumberOf([&] { file.get(1, record); }), number);
    EXPECT_EQ(failureNumberOf([&] { file.put(1, record); }), number);
    EXPECT_EQ(failureNumberOf([&] { file.sync(); }), number);
  }
  EXPECT_EQ(memory_.bytesOf(path_), "aaaabbbb");
}

}  // namespace
}  // namespace quorrix
