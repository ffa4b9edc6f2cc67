#include "reliability/kept_records.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "records/record_file_stage.h"
#include "support/site_record_bytes.h"
#include "support/temporary_folder.h"

namespace quorrix {
namespace {

using test::KeptRecords;
using test::UserStep;
using Faults = std::vector<std::string>;
using Kind = UserStep::Kind;

const UserStep kVisit{Kind::Visit, "www.a.example", "04:05"};
const UserStep kNextVisit{Kind::Visit, "www.a.example", "04:06"};
const UserStep kNotes{Kind::Notes, "www.a.example", "old"};
const UserStep kNewNotes{Kind::Notes, "www.a.example", "new"};
const UserStep kDelete{Kind::Delete, "www.a.example", ""};
const UserStep kArchive{Kind::Archive, "", "May"};

class KeptRecordsTest : public testing::Test {
 protected:
  void givenASite(const std::string& folder, const std::string& time = "3:04:05") const {
    folder_.givenAFile(folder + "/nodes.dat",
                       test::siteRecord("www.a.example", 'N', "7/9/26 " + time + " PM~"));
  }

  void givenNotes(const std::string& folder, const std::string& notes) const {
    folder_.givenAFile(folder + "/notes.dat", test::notesRecord("www.a.example", notes));
  }

  [[nodiscard]] KeptRecords emptyFolders() const {
    std::filesystem::create_directories(folder_ / "Data");
    std::filesystem::create_directories(folder_ / "Archives/May");
    return onDisk();
  }

  [[nodiscard]] KeptRecords onDisk() const { return KeptRecords::onDisk(folder_.path()); }

  const test::TemporaryFolder folder_;
  const KeptRecords none_ = emptyFolders();
  const KeptRecords kept_ = none_.after(kVisit).after(kNotes);
};

TEST_F(KeptRecordsTest, FindNoFaultInWhatTheStepsWrite) {
  givenASite("Data");
  givenNotes("Data", "old");
  EXPECT_EQ(kept_.faultsOf(onDisk(), std::nullopt), Faults{});
  EXPECT_EQ(onDisk().sites(), std::vector<std::string>{"www.a.example"});
}

TEST_F(KeptRecordsTest, FindALostRecord) {
  givenASite("Data");
  const Faults lost = {"lost: notes www.a.example: old"};
  EXPECT_EQ(kept_.faultsOf(onDisk(), std::nullopt), lost);
  EXPECT_EQ(kept_.faultsOf(onDisk(), kNewNotes), lost);
  EXPECT_EQ(kept_.faultsOf(onDisk(), kArchive), lost);
  EXPECT_EQ(kept_.faultsOf(onDisk(), kDelete), Faults{});
}

TEST_F(KeptRecordsTest, AcceptTheOldOrTheNewNotesWhileTheyAreSaved) {
  givenASite("Data");
  givenNotes("Data", "new");
  EXPECT_EQ(kept_.faultsOf(onDisk(), kNewNotes), Faults{});
  EXPECT_EQ(kept_.faultsOf(onDisk(), std::nullopt),
            (Faults{"lost: notes www.a.example: old", "unexpected: notes www.a.example: new"}));
}

TEST_F(KeptRecordsTest, AcceptTheOldOrTheNewStampOfAVisit) {
  givenNotes("Data", "old");
  givenASite("Data", "3:04:06");
  EXPECT_EQ(kept_.faultsOf(onDisk(), kNextVisit), Faults{});
  givenASite("Data", "3:04:05");
  EXPECT_EQ(kept_.faultsOf(onDisk(), kNextVisit), Faults{});
  EXPECT_EQ(kept_.after(kNextVisit).faultsOf(onDisk(), std::nullopt),
            (Faults{"lost: site www.a.example: 04:06", "unexpected: site www.a.example: 04:05"}));
  givenASite("Data", "3:14:06");
  EXPECT_EQ(kept_.faultsOf(onDisk(), kNextVisit).size(), 2U) << "neither of them";
}

TEST_F(KeptRecordsTest, FindTheOldAndTheNewRecordTogether) {
  givenASite("Data");
  folder_.givenAFile("Data/notes.dat", test::notesRecord("www.a.example", "old") +
                                           test::notesRecord("www.a.example", "new"));
  EXPECT_EQ(kept_.faultsOf(onDisk(), kNewNotes), Faults{"more than one: notes www.a.example"});
}

TEST_F(KeptRecordsTest, AcceptARecordInTheArchiveOnlyWhileItIsMade) {
  givenASite("Data");
  givenNotes("Archives/May", "old");
  EXPECT_EQ(kept_.faultsOf(onDisk(), kArchive), Faults{});
  EXPECT_EQ(kept_.faultsOf(onDisk(), kDelete).size(), 1U) << "the archive changed";
}

TEST_F(KeptRecordsTest, FindARecordThatWasDeleted) {
  givenASite("Data");
  EXPECT_EQ(kept_.after(kDelete).faultsOf(onDisk(), std::nullopt),
            Faults{"unexpected: site www.a.example: 04:05"});
}

TEST_F(KeptRecordsTest, FindAPartOfARecord) {
  folder_.givenAFile("Data/notes.dat", test::notesRecord("www.a.example", "old").substr(1));
  EXPECT_EQ(none_.faultsOf(onDisk(), std::nullopt),
            Faults{"unexpected: broken length of notes.dat"});
  folder_.givenAFile("Data/notes.dat", "");
  folder_.givenAFile("Data/nodes.dat", test::siteRecord("www.a.example", 'N', "7/9/26~"));
  EXPECT_EQ(none_.faultsOf(onDisk(), kVisit), Faults{"unexpected: broken site www.a.example"});
}

}  // namespace
}  // namespace quorrix
