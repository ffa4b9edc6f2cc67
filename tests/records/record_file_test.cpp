#include "records/record_file.h"

#include <string>
#include <vector>

#include "records/record_file_stage.h"

namespace quorrix {
namespace {

using namespace std::string_literals;
using test::failureNumberOf;
using test::padded;

constexpr std::size_t kLength = 310;  // a key and ten characters

std::string record(const std::string& key, const std::string& text) {
  return padded(key, 300) + padded(text, 10);
}

class RecordFileTest : public test::RecordFileStage {
 protected:
  const Path path_ = Path("Data") / "some.dat";

  RecordFile open(FileAccess access = FileAccess::ReadWrite) {
    return {files_, path_, kLength, access, likely_};
  }

  void givenTheFile(std::string bytes) { memory_.givenAFile(path_, std::move(bytes)); }
  const std::string& file() { return memory_.bytesOf(path_); }

  std::vector<std::string> textsOf(const std::string& key) {
    std::vector<std::string> texts;
    open().forEach(key, [&](RecordFile::Record found) {
      texts.emplace_back(fieldText(fieldOf(found, {300, 10})));
    });
    return texts;
  }

  LikelyRecord likely_;
};

TEST_F(RecordFileTest, CreatesAMissingFileEmpty) {
  EXPECT_EQ(open().find("one.two.three"), -1);
  EXPECT_EQ(file(), "");
}

TEST_F(RecordFileTest, FindsTheFirstOfTwoRecordsWithTheKey) {
  givenTheFile(record("a.b.c", "x") + record("one.two.three", "first") +
               record("one.two.three", "second"));
  EXPECT_EQ(open().find("one.two.three"), 2);
}

TEST_F(RecordFileTest, FindsARecordAgainWithoutSearching) {
  givenTheFile(record("d.e.f", "") + record("a.b.c", "first") + record("a.b.c", "second"));
  EXPECT_EQ(open().find("a.b.c"), 2);
  files_.reset();
  EXPECT_EQ(open().find("a.b.c"), 2);
  EXPECT_EQ(files_.callsOf(test::FileCall::ReadAt), 1);
  EXPECT_EQ(open().find("d.e.f"), 1);
}

TEST_F(RecordFileTest, SearchesAgainForWhatIsNotFoundAtItsPlace) {
  givenTheFile(record("d.e.f", "") + record("a.b.c", "first") + record("a.b.c", "second"));
  EXPECT_EQ(open().find("a.b.c"), 2);
  open().blank(2);
  EXPECT_EQ(open().find("a.b.c"), 3);
  givenTheFile(record("a.b.c", "another file"));
  EXPECT_EQ(open().find("a.b.c"), 1);
  EXPECT_EQ(open().find("a.b.c", [](RecordFile::Record) { return false; }), -1);
}

TEST_F(RecordFileTest, SearchesAnotherFileFromItsBeginning) {
  givenTheFile(record("d.e.f", "") + record("a.b.c", ""));
  EXPECT_EQ(open().find("a.b.c"), 2);
  const Path other = Path("Data") / "other.dat";
  memory_.givenAFile(other, record("a.b.c", "") + record("a.b.c", ""));
  EXPECT_EQ(RecordFile(files_, other, kLength, FileAccess::Read, likely_).find("a.b.c"), 1);
}

TEST_F(RecordFileTest, ComparesKeysExactly) {
  givenTheFile(record("One.two.three", "x") + record("one.two.three/a", "x"));
  EXPECT_EQ(open().find("one.two.three"), -1);
}

TEST_F(RecordFileTest, NeverFindsAKeyThatBeginsWithABlank) {
  givenTheFile(record(" one.two.three", "x"));
  EXPECT_EQ(open().find(" one.two.three"), -1);
  EXPECT_EQ(open().find("one.two.three"), -1);
  EXPECT_EQ(open().find(""), -1);
}

TEST_F(RecordFileTest, CutsAKeyAtItsFirstNul) {
  givenTheFile(record("one.two.three\0rest"s, "x"));
  EXPECT_EQ(open().find("one.two.three"), 1);
}

TEST_F(RecordFileTest, FindsAKeyThatFillsItsField) {
  givenTheFile(record(std::string(300, 'k'), "x"));
  EXPECT_EQ(open().find(std::string(300, 'k')), 1);
}

TEST_F(RecordFileTest, CountsATrailingPartRecordOfMoreThanHalf) {
  givenTheFile(record("a.b.c", "x") + std::string(156, 'k'));
  EXPECT_EQ(open().recordCount(), 2);
  givenTheFile(record("a.b.c", "x") + std::string(154, 'k'));
  EXPECT_EQ(open().recordCount(), 1);
}

TEST_F(RecordFileTest, CountsAHalfRecordToTheEvenSide) {
  givenTheFile(record("a.b.c", "x") + std::string(155, 'k'));
  EXPECT_EQ(open().recordCount(), 2);
  givenTheFile(record("a.b.c", "x") + record("a.b.c", "x") + std::string(155, 'k'));
  EXPECT_EQ(open().recordCount(), 2);
}

TEST_F(RecordFileTest, AppendsBehindTheLastRecord) {
  givenTheFile(record("a.b.c", "x"));
  open().putOrAppend(kNoRecord, record("one.two.three", "new"));
  EXPECT_EQ(file(), record("a.b.c", "x") + record("one.two.three", "new"));
  EXPECT_TRUE(memory_.isSynced(path_));
}

TEST_F(RecordFileTest, AppendsToAnEmptyFileAsRecordOne) {
  open().putOrAppend(kNoRecord, record("one.two.three", "new"));
  EXPECT_EQ(file(), record("one.two.three", "new"));
}

TEST_F(RecordFileTest, ReplacesARecordInItsPlace) {
  givenTheFile(record("a.b.c", "x") + record("d.e.f", "y") + record("g.h.i", "z"));
  open().putOrAppend(2, record("d.e.f", "new"));
  EXPECT_EQ(file(), record("a.b.c", "x") + record("d.e.f", "new") + record("g.h.i", "z"));
  EXPECT_TRUE(memory_.isSynced(path_));
}

TEST_F(RecordFileTest, BlanksEveryByteAndKeepsTheLength) {
  givenTheFile(record("a.b.c", "x") + record("d.e.f", "y"));
  open().blank(1);
  EXPECT_EQ(file(), std::string(310, ' ') + record("d.e.f", "y"));
  EXPECT_TRUE(memory_.isSynced(path_));
}

TEST_F(RecordFileTest, WritesNothingForNoRecord) {
  givenTheFile(record("a.b.c", "x"));
  open().blank(kNoRecord);
  EXPECT_EQ(file(), record("a.b.c", "x"));
  EXPECT_EQ(files_.callsOf(test::FileCall::WriteAt), 0);
}

TEST_F(RecordFileTest, NeverReusesABlankRecord) {
  givenTheFile(std::string(310, ' '));
  open().putOrAppend(kNoRecord, record("one.two.three", "new"));
  EXPECT_EQ(file(), std::string(310, ' ') + record("one.two.three", "new"));
}

TEST_F(RecordFileTest, ListsTheRecordsOfASiteInFileOrder) {
  givenTheFile(record("a.b.c", "1") + record("d.e.f", "2") + record("a.b.c", "3") +
               std::string(310, ' ') + record("a.b.c", "4"));
  EXPECT_EQ(textsOf("a.b.c"), (std::vector<std::string>{"1", "3", "4"}));
}

TEST_F(RecordFileTest, ListsATrailingPartRecordOfAnyLength) {
  givenTheFile(record("d.e.f", "2") + "a.b.c\0"s);
  EXPECT_EQ(textsOf("a.b.c"), (std::vector<std::string>{""}));
}

TEST_F(RecordFileTest, ReadsAndReplacesTheLastNumber) {
  std::string bytes(std::size_t{32'766} * kLength, ' ');
  givenTheFile(bytes + record("one.two.three", "last"));
  EXPECT_EQ(open().recordCount(), 32'767);
  EXPECT_EQ(open().find("one.two.three"), 32'767);
  open().putOrAppend(32'767, record("one.two.three", "new"));
  EXPECT_EQ(file(), bytes + record("one.two.three", "new"));
}

TEST_F(RecordFileTest, OverflowsWhenARecordIsAddedBehindTheLastNumber) {
  const std::string bytes(std::size_t{32'767} * kLength, ' ');
  givenTheFile(bytes);
  RecordFile file = open();
  EXPECT_EQ(failureNumberOf([&] {
              file.putOrAppend(kNoRecord, record("one.two.three", "new"));
              return 0;
            }),
            6);
  EXPECT_EQ(this->file(), bytes);
}

TEST_F(RecordFileTest, OverflowsInAFileOfMoreRecordsThanNumbers) {
  givenTheFile(std::string(std::size_t{32'768} * kLength, ' '));
  EXPECT_EQ(failureNumberOf([this] { return open().recordCount(); }), 6);
  EXPECT_EQ(failureNumberOf([this] { return open().find("one.two.three"); }), 6);
  EXPECT_EQ(failureNumberOf([this] { return textsOf("one.two.three"); }), 6);
}

TEST_F(RecordFileTest, ReadsAFileThatMayOnlyBeRead) {
  memory_.givenAReadOnlyFile(path_, record("one.two.three", "x"));
  EXPECT_EQ(open(FileAccess::Read).find("one.two.three"), 1);
  EXPECT_EQ(failureNumberOf([this] { open(FileAccess::Read).blank(1); }), 75);
  EXPECT_EQ(failureNumberOf([this] { return open().recordCount(); }), 75);
  EXPECT_EQ(file(), record("one.two.three", "x"));
}

TEST(CutAtTilde, IsTheTextBeforeTheFirstTilde) {
  EXPECT_EQ(cutAtTilde("lamp~   "), "lamp");
  EXPECT_EQ(cutAtTilde("a~b~  "), "a");
  EXPECT_EQ(cutAtTilde("~      "), "");
  EXPECT_EQ(cutAtTilde("a b ~  "), "a b ");
}

TEST(CutAtTilde, FailsWithoutATilde) {
  EXPECT_EQ(failureNumberOf([] { return cutAtTilde("1/2/26 3:04:05 PM       "); }), 5);
}

TEST(CutAtBlank, IsTheTextBeforeTheFirstBlank) {
  EXPECT_EQ(cutAtBlank("secret    "), "secret");
  EXPECT_EQ(cutAtBlank("a b   "), "a");
  EXPECT_EQ(cutAtBlank("      "), "");
}

TEST(CutAtBlank, FailsWithoutABlank) {
  EXPECT_EQ(failureNumberOf([] { return cutAtBlank("123456789012345678901234567890"); }), 5);
}

}  // namespace
}  // namespace quorrix
