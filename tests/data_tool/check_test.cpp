// What check finds, and what it prints.
#include <gtest/gtest.h>

#include "data_tool/tool_stage.h"
#include "support/slashes.h"

namespace quorrix {
namespace {

using namespace std::string_literals;
using test::loginRecord;
using test::notesRecord;
using test::purchaseRecord;
using test::siteRecord;
using test::ToolStage;

class CheckTest : public testing::Test, protected ToolStage {
 protected:
  CheckTest() { givenEmptyFiles(); }

  // What is found in a file of Data: the lines without "Quorrix/Data/" and without the summary.
  std::string found(const std::string& file, const std::string& bytes) {
    given("Data/" + file, bytes);
    status = run({"check"});
    return lines();
  }

  std::string lines() const {
    std::string lines = output.substr(0, output.rfind('\n', output.size() - 2) + 1);
    for (auto at = lines.find('\\'); at != std::string::npos; at = lines.find('\\'))
      lines[at] = '/';
    const std::string folder = "Quorrix/Data/";
    for (auto at = lines.find(folder); at != std::string::npos; at = lines.find(folder)) {
      lines.erase(at, folder.size());
    }
    return lines;
  }

  int status = -1;
};

TEST_F(CheckTest, FindsNothingInGoodFiles) {
  given("Data/nodes.dat", siteRecord("www.garden.example/a", 'N', "11/21/26 4:05:00 PM~") +
                              siteRecord("a.b.c", 'S') + siteRecord("a.b.c", 'F') +
                              siteRecord("d.e.f", 'U', "12/31/99 12:00:00 AM~") +
                              std::string(322, ' '));
  given("Data/notes.dat",
        notesRecord("a.b.c", "One\r\n\ttwo") + std::string(1324, ' ') + notesRecord("d.e.f", ""));
  given("Data/info.dat", loginRecord("a.b.c", "anna", "") + std::string(360, ' '));
  given("Data/purchases.dat", purchaseRecord("a.b.c") + purchaseRecord("a.b.c") +
                                  purchaseRecord("a.b.c", {.date = "~", .item = "a~b~"}) +
                                  std::string(542, ' '));
  EXPECT_EQ(run({"check"}), 0);
  EXPECT_EQ(output, "5 files, 14 records, 0 errors\n");
  EXPECT_EQ(error, "");
}

TEST_F(CheckTest, NamesFileRecordAndByte) {
  given("Data/nodes.dat", siteRecord("a.b.c") + siteRecord("d.e.f", 'x'));
  EXPECT_EQ(run({"check"}), 1);
  EXPECT_EQ(output, (Path("Quorrix/Data") / "nodes.dat").string() +
                        ": record 2, byte 622: The scheme is 0x78, not N, S, F or U.\n5 files, 2 "
                        "records, 1 error\n");
}

TEST_F(CheckTest, FindsAddressesThatCannotBeRight) {
  EXPECT_EQ(found("nodes.dat", siteRecord(" a.b.c")),
            "nodes.dat: record 1, byte 1: This record has text but no address.\n");
  EXPECT_EQ(found("nodes.dat", siteRecord("\0a.b.c"s)),
            "nodes.dat: record 1, byte 0: The address begins with a NUL.\n");
  EXPECT_EQ(found("nodes.dat", siteRecord("a.b.c/d e")),
            "nodes.dat: record 1, byte 7: The address contains a blank.\n");
  EXPECT_EQ(found("nodes.dat", siteRecord("a.b.c\0"s)),
            "nodes.dat: record 1, byte 5: The address contains a NUL.\n");
  EXPECT_EQ(found("nodes.dat", siteRecord("a.b.c/\x1B[2J")),
            "nodes.dat: record 1, byte 6: The address contains the control character 0x1B.\n");
  EXPECT_EQ(found("nodes.dat", siteRecord("a.b.c/\x7F")),
            "nodes.dat: record 1, byte 6: The address contains the control character 0x7F.\n");
  EXPECT_EQ(status, 1);
}

TEST_F(CheckTest, FindsAddressesThatQuorrixNeverRecords) {
  for (const char* address : {"a.b", "a.b/c.d.e", "www.a.", "www.a./b", "ROOT",
                              "https:", "localhost", "ftp://www.a.example"}) {
    EXPECT_EQ(found("nodes.dat", siteRecord(address)),
              "nodes.dat: record 1, byte 0: Quorrix cannot have recorded this address.\n")
        << address;
    EXPECT_EQ(status, 1);
  }
  EXPECT_EQ(found("nodes.dat", siteRecord("www..a") + siteRecord("a.b.c//d") + siteRecord("a.b..")),
            "");
}

// Quorrix records the first two of these for www.a.example/?http://b and a.b.cdhttp://c.
TEST_F(CheckTest, RemarksAnAddressThatQuorrixMayHaveCut) {
  for (const char* address :
       {"xample/?http://b", "ttp://c", "http://www.c.example/", "s://a", "/a"}) {
    EXPECT_EQ(found("nodes.dat", siteRecord(address)),
              "nodes.dat: record 1, byte 0: remark: The address does not begin with a complete "
              "host.\n")
        << address;
    EXPECT_EQ(status, 0);
  }
}

TEST_F(CheckTest, AcceptsTheKeysOfAllLevels) {
  EXPECT_EQ(found("notes.dat", notesRecord("xample", "One") + notesRecord("xample/?http:", "Two")),
            "");
}

TEST_F(CheckTest, FindsAnAddressOfMoreThanFiftyLevels) {
  std::string address = "a.b.c";
  for (int level = 2; level <= 50; ++level) address += "/x";
  EXPECT_EQ(found("nodes.dat", siteRecord(address)), "");
  EXPECT_EQ(found("nodes.dat", siteRecord(address + "/x")),
            "nodes.dat: record 1, byte 103: The address has more than 50 levels.\n");
  EXPECT_EQ(found("notes.dat", notesRecord(address + "/x", "text")).substr(0, 32),
            "nodes.dat: record 1, byte 103: T");
}

TEST_F(CheckTest, FindsDatesThatCannotBeRead) {
  EXPECT_EQ(found("nodes.dat", siteRecord("a.b.c", 'N', "2/30/26 1:00:00 AM~")),
            "nodes.dat: record 1, byte 301: The date cannot be read.\n");
  EXPECT_EQ(found("nodes.dat", siteRecord("a.b.c", 'N', "1/2/26 13:00:00 AM~")),
            "nodes.dat: record 1, byte 301: The date cannot be read.\n");
  EXPECT_EQ(found("nodes.dat", siteRecord("a.b.c", 'N', "1/2/26 1:00:00 AM")),
            "nodes.dat: record 1, byte 301: The date has no \"~\" at its end.\n");
  EXPECT_EQ(found("nodes.dat", siteRecord("a.b.c", 'N', "1/2/26 1:00:00 AM~x")),
            "nodes.dat: record 1, byte 319: The date is followed by more than blanks.\n");
}

TEST_F(CheckTest, FindsDatesThatAreNotInTheFormOfQuorrix) {
  for (const char* stamp : {"01/2/26 1:00:00 AM~", "1/02/26 1:00:00 AM~", "1/2/2026 1:00:00 AM~",
                            "1/2/26 01:00:00 AM~", "1/2/26 1:0:00 AM~", "1/2/26  1:00:00 AM~"}) {
    EXPECT_EQ(found("nodes.dat", siteRecord("a.b.c", 'N', stamp)),
              "nodes.dat: record 1, byte 301: The date is not in the form in which Quorrix writes "
              "it.\n")
        << stamp;
    EXPECT_EQ(status, 1);
  }
  for (const char* stamp : {"1/2/03 1:00:00 AM~", "12/31/99 12:00:00 PM~", "2/29/00 12:00:00 AM~",
                            "10/20/98 10:10:10 PM~"}) {
    EXPECT_EQ(found("nodes.dat", siteRecord("a.b.c", 'N', stamp)), "") << stamp;
  }
}

TEST_F(CheckTest, FindsAnIncompleteRecord) {
  EXPECT_EQ(found("nodes.dat", siteRecord("a.b.c") + "d.e.f"),
            "nodes.dat: record 2, byte 322: The last record is incomplete: it has 5 of 322 "
            "bytes.\n");
}

TEST_F(CheckTest, FindsNotesThatContainANul) {
  EXPECT_EQ(found("notes.dat", notesRecord("a.b.c", "One\0two"s)),
            "notes.dat: record 1, byte 303: The text contains a NUL.\n");
  EXPECT_EQ(status, 1);
}

TEST_F(CheckTest, RemarksWhatQuorrixAllows) {
  EXPECT_EQ(found("notes.dat", notesRecord("a.b.c", "One\x01") + notesRecord("a.b.c", "Two")),
            "notes.dat: record 1, byte 303: remark: The text contains the control character "
            "0x01.\n"
            "notes.dat: record 2, byte 1324: remark: Record 1 belongs to the same site and "
            "counts.\n");
  EXPECT_EQ(status, 0);
  given("Data/notes.dat", "");
  EXPECT_EQ(found("nodes.dat.quorrix-new", ""),
            "nodes.dat.quorrix-new: remark: This is an unfinished copy.\n");
  EXPECT_EQ(status, 0);
}

TEST_F(CheckTest, FindsUserIDsAndPasswordsWithoutEnd) {
  EXPECT_EQ(found("info.dat", loginRecord("a.b.c", std::string(30, 'u'), std::string(30, 'p'))),
            "info.dat: record 1, byte 300: The password has no blank at its end.\n"
            "info.dat: record 1, byte 330: The user ID has no blank at its end.\n");
  EXPECT_EQ(found("info.dat", loginRecord("a.b.c", "a\0b"s, "p")),
            "info.dat: record 1, byte 331: The user ID contains a NUL.\n");
}

TEST_F(CheckTest, RemarksUserIDsAndPasswordsThatAreNotShownWhole) {
  EXPECT_EQ(found("info.dat", loginRecord("a.b.c", "anna b", " tulip7")),
            "info.dat: record 1, byte 300: remark: The password contains a blank. Quorrix shows "
            "only what is before it.\n"
            "info.dat: record 1, byte 334: remark: The user ID contains a blank. Quorrix shows "
            "only what is before it.\n");
  EXPECT_EQ(found("info.dat", loginRecord("a.b.c", "", "")),
            "info.dat: record 1, byte 300: remark: The user ID and the password are empty.\n");
  EXPECT_EQ(status, 0);
}

TEST_F(CheckTest, CountsAnArchiveThatCannotBeReadAsAnError) {
  for (const char* name : {"1", "2"}) {
    for (const char* file : {"nodes.dat", "notes.dat", "info.dat", "purchases.dat"}) {
      given("Archives/" + std::string(name) + "/" + file, "");
    }
  }
  memory.failListing("Quorrix/Archives/1", 75);
  EXPECT_EQ(run({"check"}), 1);
  EXPECT_EQ(error, "");
  EXPECT_EQ(output, (Path("Quorrix") / "Archives" / "1").string() +
                        ": Path/file access error.\n9 files, 0 records, 1 error\n");
}

TEST_F(CheckTest, FindsPurchaseTextsWithoutEnd) {
  EXPECT_EQ(
      found("purchases.dat",
            purchaseRecord("a.b.c", {.date = "3/14/26", .price = "1~x", .quantity = "2~\0"s})),
      "purchases.dat: record 1, byte 300: The date has no \"~\" at its end.\n"
      "purchases.dat: record 1, byte 327: The price is followed by more than blanks.\n"
      "purchases.dat: record 1, byte 539: The quantity is followed by more than blanks.\n"
      "purchases.dat: record 1, byte 539: The quantity contains a NUL.\n");
}

TEST_F(CheckTest, FindsMoreRecordsThanCanBeNumbered) {
  std::string bytes;
  for (int i = 0; i < 32768; ++i) bytes += std::string(360, ' ');
  EXPECT_EQ(found("info.dat", bytes),
            "info.dat: record 32768, byte 11796120: The file has more than 32,767 records.\n");
  bytes.resize(bytes.size() - 360);
  EXPECT_EQ(found("info.dat", bytes), "");
}

TEST_F(CheckTest, NamesARecordThatCannotBeRead) {
  files.spoilBytes(322, 1, 57);  // of every file
  EXPECT_EQ(found("nodes.dat", siteRecord("a.b.c") + siteRecord("d.e.f") + siteRecord("g.h.i")),
            "nodes.dat: record 2, byte 322: This record cannot be read. Device I/O error.\n"
            "load.txt: Device I/O error.\n");
}

TEST_F(CheckTest, FindsAMissingFile) {
  memory.deleteFile("Quorrix/Data/info.dat");
  memory.deleteFile("Quorrix/Data/load.txt");
  EXPECT_EQ(found("nodes.dat", ""),
            "info.dat: This file is missing.\nload.txt: This file is missing.\n");
  EXPECT_EQ(status, 1);
}

TEST_F(CheckTest, NeedsNoLoadFileInAnArchive) {
  for (const char* name : {"nodes.dat", "notes.dat", "info.dat", "purchases.dat"}) {
    given("Archives/May/" + std::string(name), "");
  }
  EXPECT_EQ(run({"check"}), 0);
  EXPECT_EQ(output, "9 files, 0 records, 0 errors\n");
  EXPECT_EQ(run({"check", "--data", "Quorrix/Archives/May"}), 0);
  EXPECT_EQ(output, "4 files, 0 records, 0 errors\n");
}

TEST_F(CheckTest, ReadsTheLineOfTheLoadFile) {
  EXPECT_EQ(found("load.txt", "/home/anna/Archives/May\n"), "");
  EXPECT_EQ(found("load.txt", ""), "load.txt: byte 0: The first line is empty.\n");
  EXPECT_EQ(found("load.txt", "   \r\nnone\r\n"), "load.txt: byte 0: The first line is empty.\n");
  EXPECT_EQ(found("load.txt", "no\0ne\r\n"s),
            "load.txt: byte 2: The first line contains a control character.\n");
  EXPECT_EQ(found("load.txt", std::string(70000, 'x')),
            "load.txt: byte 65536: The first line has no end.\n");
}

TEST_F(CheckTest, ContinuesAfterAFileThatCannotBeOpened) {
  given("Data/info.dat", loginRecord("a.b.c", "a\0"s, "p"));
  files.failAtCall(test::FileCall::OpenForReading, 1, 67);
  EXPECT_EQ(run({"check"}), 1);
  EXPECT_EQ(error, "");
  EXPECT_EQ(lines(),
            "nodes.dat: Too many files open.\n"
            "info.dat: record 1, byte 331: The user ID contains a NUL.\n");
}

TEST_F(CheckTest, ChangesNothing) {
  given("Data/nodes.dat", siteRecord("a b"));
  memory.deleteFile("Quorrix/Data/notes.dat");
  run({"check"});
  EXPECT_EQ(memory.bytesOf("Quorrix/Data/nodes.dat"), siteRecord("a b"));
  EXPECT_FALSE(memory.holdsFile("Quorrix/Data/notes.dat"));
  for (const auto call :
       {test::FileCall::OpenRandomAccess, test::FileCall::OpenAsPermitted, test::FileCall::WriteAt,
        test::FileCall::DeleteFile, test::FileCall::Rename, test::FileCall::MakeFolder}) {
    EXPECT_EQ(files.callsOf(call), 0);
  }
}

}  // namespace
}  // namespace quorrix
