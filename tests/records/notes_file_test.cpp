#include "records/notes_file.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "support/failure_number.h"
#include "support/faulty_file_system.h"
#include "support/memory_file_system.h"

namespace quorrix {
namespace {

using namespace std::string_literals;
using test::failureNumberOf;
using test::kFileFailures;

constexpr std::size_t kMostRecords = 32'767;

const std::string kBlankRecord(1324, ' ');

// A record as stored in the file: 300 bytes of key, 1,024 of text.
std::string record(std::string key, std::string text) {
  key.resize(300, ' ');
  text.resize(1024, ' ');
  return key + text;
}

std::string fieldOfNotes(std::string text) {
  text.resize(1024, ' ');
  return text;
}

class NotesFileTest : public testing::Test {
 protected:
  NotesFileTest() {
    paths_.setFolder("Data");
    memory_.givenAFolder("Data");
  }

  void givenTheFile(std::string bytes) { memory_.givenAFile("Data/notes.dat", std::move(bytes)); }

  const std::string& file() { return memory_.bytesOf("Data/notes.dat"); }

  test::MemoryFileSystem memory_;
  test::FaultyFileSystem files_{memory_};
  WorkingPaths paths_;
  NotesFile notes_{files_, paths_};
};

TEST_F(NotesFileTest, CreatesAMissingFileEmptyOnReading) {
  EXPECT_EQ(notes_.read("one.two.three"), std::nullopt);
  EXPECT_EQ(file(), "");
}

TEST_F(NotesFileTest, WritesTheFirstRecordOfAnEmptyFile) {
  notes_.save("one.two.three", "first\r\nsecond");
  EXPECT_EQ(file(),
            "one.two.three" + std::string(287, ' ') + "first\r\nsecond" + std::string(1011, ' '));
  EXPECT_TRUE(memory_.isSynced("Data/notes.dat"));
  EXPECT_EQ(memory_.openFiles(), 0);
}

TEST_F(NotesFileTest, AddsBehindTheLastRecord) {
  givenTheFile(record("a.b.c", "x"));
  notes_.save("one.two.three", "y");
  EXPECT_EQ(file(), record("a.b.c", "x") + record("one.two.three", "y"));
}

TEST_F(NotesFileTest, ReplacesInPlace) {
  givenTheFile(record("a.b.c", "x") + record("one.two.three", "a long text") +
               record("d.e.f", "z"));
  notes_.save("one.two.three", "new");
  EXPECT_EQ(file(), record("a.b.c", "x") + record("one.two.three", "new") + record("d.e.f", "z"));
}

TEST_F(NotesFileTest, ReadsTheWholeFieldUntrimmed) {
  givenTheFile(record("one.two.three", "a b ~ c\r\n"));
  EXPECT_EQ(notes_.read("one.two.three"), "a b ~ c\r\n" + std::string(1015, ' '));
}

TEST_F(NotesFileTest, ChangesNoByteWhenWhatWasReadIsSavedAgain) {
  const auto bytes = record("one.two.three", "a\0b\nc"s);
  givenTheFile(bytes);
  notes_.save("one.two.three", notes_.read("one.two.three").value());
  EXPECT_EQ(file(), bytes);
}

TEST_F(NotesFileTest, CutsAtTheWidthOfTheField) {
  notes_.save("one.two.three", std::string(1024, 'x') + "over");
  EXPECT_EQ(file(), "one.two.three" + std::string(287, ' ') + std::string(1024, 'x'));
}

TEST_F(NotesFileTest, BlanksEveryByteAndKeepsTheLength) {
  givenTheFile(record("a.b.c", "x") + record("one.two.three", "y") + record("d.e.f", "z"));
  notes_.remove("one.two.three");
  EXPECT_EQ(file(), record("a.b.c", "x") + kBlankRecord + record("d.e.f", "z"));
  EXPECT_TRUE(memory_.isSynced("Data/notes.dat"));
}

TEST_F(NotesFileTest, NeverReusesABlankRecord) {
  givenTheFile(record("one.two.three", "old"));
  notes_.remove("one.two.three");
  EXPECT_EQ(file(), kBlankRecord);
  notes_.save("one.two.three", "new");
  EXPECT_EQ(file(), kBlankRecord + record("one.two.three", "new"));
}

TEST_F(NotesFileTest, WritesNothingWhereThereIsNothingToRemove) {
  givenTheFile(record("a.b.c", "x"));
  notes_.remove("one.two.three");
  EXPECT_EQ(file(), record("a.b.c", "x"));
  EXPECT_EQ(files_.callsOf(test::FileCall::WriteAt), 0);
}

TEST_F(NotesFileTest, TakesTheLowerOfTwoRecordsOfOneSite) {
  givenTheFile(record("a.b.c", "first") + record("a.b.c", "second"));
  EXPECT_EQ(notes_.read("a.b.c"), fieldOfNotes("first"));
  notes_.save("a.b.c", "new");
  EXPECT_EQ(file(), record("a.b.c", "new") + record("a.b.c", "second"));
  notes_.remove("a.b.c");
  EXPECT_EQ(file(), kBlankRecord + record("a.b.c", "second"));
}

TEST_F(NotesFileTest, ComparesWholeKeysAndLetterCase) {
  givenTheFile(record("one.two.three/a", "x") + record("one.two", "y") +
               record("ONE.two.three", "z"));
  EXPECT_EQ(notes_.read("one.two.three"), std::nullopt);
}

TEST_F(NotesFileTest, PassesOverAKeyWithALeadingBlank) {
  givenTheFile(record(" a.b.c", "x"));
  EXPECT_EQ(notes_.read("a.b.c"), std::nullopt);
  EXPECT_EQ(notes_.read(" a.b.c"), std::nullopt);
  EXPECT_EQ(notes_.read(""), std::nullopt);
}

TEST_F(NotesFileTest, CutsAKeyAtItsNulBeforeItsBlank) {
  givenTheFile(record("a b\0c"s, "x") + record("a", "y"));
  EXPECT_EQ(notes_.read("a b"), fieldOfNotes("x"));
  EXPECT_EQ(notes_.read("a"), fieldOfNotes("y"));
}

TEST_F(NotesFileTest, KeepsTheBytesOfTheKeyOnReplacing) {
  givenTheFile(record("a\0rest"s, "x"));
  notes_.save("a", "y");
  EXPECT_EQ(file(), record("a\0rest"s, "y"));
}

TEST_F(NotesFileTest, FindsAKeyThatFillsItsField) {
  const std::string key = "one.two.three/" + std::string(286, 'x');
  notes_.save(key, "n");
  notes_.save(key, "m");
  EXPECT_EQ(file(), key + "m" + std::string(1023, ' '));
}

TEST_F(NotesFileTest, OverwritesATrailingPartRecordOfLessThanHalf) {
  givenTheFile(record("a.b.c", "x") + std::string(661, 'p'));
  notes_.save("d.e.f", "y");
  EXPECT_EQ(file(), record("a.b.c", "x") + record("d.e.f", "y"));
}

TEST_F(NotesFileTest, CountsATrailingPartRecordOfMoreThanHalf) {
  givenTheFile(record("a.b.c", "x") + record("one.two.three", "yy").substr(0, 663));
  EXPECT_EQ(notes_.read("one.two.three"), "yy" + std::string(361, ' ') + std::string(661, '\0'));
  notes_.save("d.e.f", "z");
  EXPECT_EQ(file().size(), 3U * 1324);
  EXPECT_EQ(file().substr(2648), record("d.e.f", "z"));
}

TEST_F(NotesFileTest, CountsAHalfRecordToTheEvenNumber) {
  givenTheFile(record("a.b.c", "x").substr(0, 662));
  EXPECT_EQ(notes_.read("a.b.c"), std::nullopt);
  givenTheFile(record("a.b.c", "x") + record("d.e.f", "y").substr(0, 662));
  EXPECT_EQ(notes_.read("d.e.f"), "y" + std::string(361, ' ') + std::string(662, '\0'));
}

TEST_F(NotesFileTest, FindsAndReplacesTheLastPossibleRecord) {
  const std::string others(1324 * (kMostRecords - 1), ' ');
  givenTheFile(others + record("a.b.c", "x"));
  notes_.save("a.b.c", "y");
  EXPECT_TRUE(file() == others + record("a.b.c", "y"));
}

TEST_F(NotesFileTest, FailsToAddARecordPastTheLastNumber) {
  const std::string full(1324 * kMostRecords, ' ');
  givenTheFile(full);
  EXPECT_EQ(notes_.read("a.b.c"), std::nullopt);
  EXPECT_EQ(failureNumberOf([this] { notes_.save("a.b.c", "x"); }), 6);
  EXPECT_TRUE(file() == full);
}

TEST_F(NotesFileTest, FailsInAFileOfTooManyRecords) {
  const std::string bytes = record("a.b.c", "x") + std::string(1324 * kMostRecords, ' ');
  givenTheFile(bytes);
  EXPECT_EQ(failureNumberOf([this] { return notes_.read("a.b.c"); }), 6);
  EXPECT_EQ(failureNumberOf([this] { notes_.save("a.b.c", "y"); }), 6);
  EXPECT_EQ(failureNumberOf([this] { notes_.remove("a.b.c"); }), 6);
  EXPECT_TRUE(file() == bytes);
}

TEST_F(NotesFileTest, ReadsAReadOnlyFileAndFailsToChangeIt) {
  memory_.givenAReadOnlyFile("Data/notes.dat", record("a.b.c", "x"));
  EXPECT_EQ(notes_.read("a.b.c"), fieldOfNotes("x"));
  EXPECT_EQ(failureNumberOf([this] { notes_.save("a.b.c", "y"); }), 75);
  EXPECT_EQ(failureNumberOf([this] { notes_.save("d.e.f", "y"); }), 75);
  EXPECT_EQ(failureNumberOf([this] { notes_.remove("a.b.c"); }), 75);
  EXPECT_EQ(file(), record("a.b.c", "x"));
}

TEST_F(NotesFileTest, FollowsThePathInForce) {
  notes_.save("a.b.c", "x");
  memory_.givenAFolder("Other");
  paths_.setFolder("Other");
  EXPECT_EQ(notes_.read("a.b.c"), std::nullopt);
  notes_.save("a.b.c", "y");
  EXPECT_EQ(file(), record("a.b.c", "x"));
  EXPECT_EQ(memory_.bytesOf("Other/notes.dat"), record("a.b.c", "y"));
}

TEST_F(NotesFileTest, AreReadBeforeARecordThatCannotBe) {
  givenTheFile(record("a.b.c", "x") + record("one.two.three", "y") + record("d.e.f", "z"));
  files_.spoilBytes(2648, 1, 57);
  EXPECT_EQ(notes_.read("one.two.three"), fieldOfNotes("y"));
  EXPECT_EQ(failureNumberOf([this] { return notes_.read("d.e.f"); }), 57);
}

TEST_F(NotesFileTest, AreReadWhileAnotherProgramReadsThem) {
  givenTheFile(record("one.two.three", "y"));
  const auto held = memory_.openForReading("Data/notes.dat");
  EXPECT_EQ(notes_.read("one.two.three"), fieldOfNotes("y"));
  EXPECT_EQ(failureNumberOf([this] { notes_.save("one.two.three", "z"); }), 75);
  EXPECT_EQ(failureNumberOf([this] { notes_.remove("one.two.three"); }), 75);
}

TEST_F(NotesFileTest, PassesOnEveryFailureOfEveryCallAndTouchesNoOtherRecord) {
  const std::string before = record("a.b.c", "x") + record("one.two.three", "y");
  for (const int number : kFileFailures) {
    for (int call = 1;; ++call) {
      givenTheFile(before);
      files_.reset();
      files_.failAtCall(call, number);
      const int failed = failureNumberOf([this] { notes_.save("one.two.three", "z"); });
      EXPECT_EQ(memory_.openFiles(), 0);
      EXPECT_EQ(file().substr(0, 1324), record("a.b.c", "x"));
      EXPECT_EQ(file().size(), 2648U);
      if (static_cast<int>(files_.calls().size()) < call) {
        EXPECT_EQ(failed, 0);
        EXPECT_GT(call, 4);
        break;
      }
      EXPECT_EQ(failed, number) << "at call " << call;
    }
  }
}

}  // namespace
}  // namespace quorrix
