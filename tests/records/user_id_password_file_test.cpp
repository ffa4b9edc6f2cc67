#include "records/user_id_password_file.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "support/failure_number.h"
#include "support/faulty_file_system.h"
#include "support/memory_file_system.h"

namespace quorrix {
namespace {

using test::failureNumberOf;

// A record as stored in the file: 300 bytes of key, 30 of password, 30 of user ID.
std::string record(std::string key, std::string password, std::string userID) {
  key.resize(300, ' ');
  password.resize(30, ' ');
  userID.resize(30, ' ');
  return key + password + userID;
}

class UserIDPasswordFileTest : public testing::Test {
 protected:
  UserIDPasswordFileTest() {
    paths_.setFolder("Data");
    memory_.givenAFolder("Data");
  }

  void givenTheFile(std::string bytes) { memory_.givenAFile("Data/info.dat", std::move(bytes)); }

  const std::string& file() { return memory_.bytesOf("Data/info.dat"); }

  // What is read for "a.b.c", as "user ID|password"; "none" if there is no record.
  std::string readBack() {
    const auto stored = records_.read("a.b.c");
    return stored ? stored->userID() + '|' + stored->password() : "none";
  }

  test::MemoryFileSystem memory_;
  test::FaultyFileSystem files_{memory_};
  WorkingPaths paths_;
  UserIDPasswordFile records_{files_, paths_};
};

TEST_F(UserIDPasswordFileTest, CreatesAMissingFileEmptyOnReading) {
  EXPECT_EQ(readBack(), "none");
  EXPECT_EQ(file(), "");
}

TEST_F(UserIDPasswordFileTest, PutsThePasswordBeforeTheUserIDInClearText) {
  records_.save("a.b.c", {.userID = "me", .password = "Secret1"});
  EXPECT_EQ(file(), "a.b.c" + std::string(295, ' ') + "Secret1                       " +
                        "me                            ");
  EXPECT_TRUE(memory_.isSynced("Data/info.dat"));
  EXPECT_EQ(readBack(), "me|Secret1");
}

TEST_F(UserIDPasswordFileTest, ReplacesInPlaceAndAddsBehindTheLast) {
  givenTheFile(record("x.y.z", "p", "u") + record("a.b.c", "old", "older") +
               record("x.y.z/1", "q", "v"));
  records_.save("a.b.c", {.userID = "n", .password = ""});
  records_.save("d.e.f", {.userID = "", .password = "w"});
  EXPECT_EQ(file(), record("x.y.z", "p", "u") + record("a.b.c", "", "n") +
                        record("x.y.z/1", "q", "v") + record("d.e.f", "w", ""));
}

TEST_F(UserIDPasswordFileTest, CutsEachAtItsFirstBlankOnReadingOnly) {
  records_.save("a.b.c", {.userID = "a b", .password = "c d e"});
  EXPECT_EQ(file(), record("a.b.c", "c d e", "a b"));
  EXPECT_EQ(readBack(), "a|c");
}

TEST_F(UserIDPasswordFileTest, ReadsAnEmptyUserIDBesideAPassword) {
  givenTheFile(record("a.b.c", "p", ""));
  EXPECT_EQ(readBack(), "|p");
}

TEST_F(UserIDPasswordFileTest, ReadsTwentyNineCharacters) {
  givenTheFile(record("a.b.c", std::string(29, 'p'), std::string(29, 'u')));
  EXPECT_EQ(readBack(), std::string(29, 'u') + '|' + std::string(29, 'p'));
}

TEST_F(UserIDPasswordFileTest, FailsToReadAFieldWithoutABlank) {
  givenTheFile(record("a.b.c", "p", std::string(30, 'u')));
  EXPECT_EQ(failureNumberOf([this] { return readBack(); }), 5);
  givenTheFile(record("a.b.c", std::string(30, 'p'), "u"));
  EXPECT_EQ(failureNumberOf([this] { return readBack(); }), 5);
  EXPECT_EQ(memory_.openFiles(), 0);
}

TEST_F(UserIDPasswordFileTest, ReplacesAndRemovesAFieldWithoutABlank) {
  givenTheFile(record("a.b.c", std::string(30, 'p'), std::string(30, 'u')));
  records_.save("a.b.c", {.userID = "u", .password = "p"});
  EXPECT_EQ(file(), record("a.b.c", "p", "u"));
  givenTheFile(record("a.b.c", std::string(30, 'p'), std::string(30, 'u')));
  records_.remove("a.b.c");
  EXPECT_EQ(file(), std::string(360, ' '));
}

TEST_F(UserIDPasswordFileTest, BlanksTheRecordAndNeverReusesIt) {
  givenTheFile(record("a.b.c", "p", "u") + record("d.e.f", "q", "v"));
  records_.remove("a.b.c");
  EXPECT_EQ(file(), std::string(360, ' ') + record("d.e.f", "q", "v"));
  records_.save("a.b.c", {.userID = "n", .password = "m"});
  EXPECT_EQ(file(), std::string(360, ' ') + record("d.e.f", "q", "v") + record("a.b.c", "m", "n"));
}

TEST_F(UserIDPasswordFileTest, WritesNothingWhereThereIsNothingToRemove) {
  givenTheFile(record("d.e.f", "q", "v"));
  records_.remove("a.b.c");
  EXPECT_EQ(file(), record("d.e.f", "q", "v"));
  EXPECT_EQ(files_.callsOf(test::FileCall::WriteAt), 0);
}

TEST_F(UserIDPasswordFileTest, NumbersNoRecordPast32767) {
  const std::string full(std::size_t{360} * 32'767, ' ');
  givenTheFile(full);
  EXPECT_EQ(readBack(), "none");
  EXPECT_EQ(failureNumberOf([this] { records_.save("a.b.c", {.userID = "u", .password = ""}); }),
            6);
  EXPECT_TRUE(file() == full);
  givenTheFile(full + record("a.b.c", "p", "u"));
  EXPECT_EQ(failureNumberOf([this] { return readBack(); }), 6);
}

TEST_F(UserIDPasswordFileTest, ReadsAReadOnlyFileAndFailsToChangeIt) {
  memory_.givenAReadOnlyFile("Data/info.dat", record("a.b.c", "p", "u"));
  EXPECT_EQ(readBack(), "u|p");
  EXPECT_EQ(failureNumberOf([this] { records_.save("a.b.c", {.userID = "n", .password = ""}); }),
            75);
  EXPECT_EQ(failureNumberOf([this] { records_.remove("a.b.c"); }), 75);
  EXPECT_EQ(file(), record("a.b.c", "p", "u"));
}

TEST_F(UserIDPasswordFileTest, PassesOnEveryFailureOfEveryCall) {
  const std::string other = record("d.e.f", "q", "v");
  for (const int number : {7, 53, 57, 61, 67, 68, 71, 75, 76, 51}) {
    for (int call = 1;; ++call) {
      givenTheFile(other + record("a.b.c", "p", "u"));
      files_.reset();
      files_.failAtCall(call, number);
      const int failed = failureNumberOf([this] { records_.remove("a.b.c"); });
      EXPECT_EQ(memory_.openFiles(), 0);
      EXPECT_EQ(file().substr(0, 360), other);
      EXPECT_EQ(file().size(), 720U);
      if (static_cast<int>(files_.calls().size()) < call) break;
      EXPECT_EQ(failed, number) << "at call " << call;
    }
  }
}

}  // namespace
}  // namespace quorrix
