// Data files with every kind of damage: no command crashes, check names what is wrong, and what
// is intact is still exported.
#include <gtest/gtest.h>

#ifndef _WIN32
#include <sys/stat.h>
#endif

#include <filesystem>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "data_tool/tool_stage.h"
#include "platform/real_file_system.h"
#include "support/temporary_folder.h"

namespace quorrix {
namespace {

using test::siteRecord;

const std::vector<std::pair<std::string, std::string>>& goodFiles() {
  static const std::vector<std::pair<std::string, std::string>> kFiles{
      {"nodes.dat", siteRecord("www.garden.example") + siteRecord("www.mill.example/a", 'S')},
      {"notes.dat", test::notesRecord("www.garden.example", "Prune in March.")},
      {"info.dat", test::loginRecord("www.garden.example", "anna", "tulip7")},
      {"purchases.dat", test::purchaseRecord("www.garden.example")},
      {"load.txt", "none\r\n"}};
  return kFiles;
}

// Every byte is tried, except most of the long text of notes.
std::size_t stepOf(const std::string& name) { return name == "notes.dat" ? 7 : 1; }

class BadInputTest : public testing::Test, protected test::ToolStage {
 protected:
  BadInputTest() {
    for (const auto& [name, bytes] : goodFiles()) given("Data/" + name, bytes);
  }

  // The status of check, after every command has run.
  int runAllWith(const std::string& name, const std::string& bytes) {
    given("Data/" + name, bytes);
    EXPECT_EQ(run({"list", "--with", "notes,purchases,logins"}), 0);
    EXPECT_LE(run({"search", "garden"}), 2);
    for (const char* format : {"json", "html"}) {
      EXPECT_EQ(run({"export", "--format", format}), 0);
    }
    return run({"check"});
  }
};

TEST_F(BadInputTest, FilesOfEveryLengthAreRead) {
  for (const auto& [name, bytes] : goodFiles()) {
    const std::size_t record = name == "nodes.dat" ? 322 : bytes.size();
    for (std::size_t length = 0; length < bytes.size(); length += stepOf(name)) {
      const int status = runAllWith(name, bytes.substr(0, length));
      // A line of load.txt may end anywhere, but not before it begins.
      const bool isRight = name == "load.txt" ? length > 0 : length % record == 0;
      EXPECT_EQ(status, isRight ? 0 : 1) << name << " of " << length << " bytes";
    }
    given("Data/" + name, bytes);
  }
}

TEST_F(BadInputTest, FilesWithAnyByteChangedAreRead) {
  for (const auto& [name, bytes] : goodFiles()) {
    for (std::size_t place = 0; place < bytes.size(); place += stepOf(name)) {
      std::string changed = bytes;
      changed[place] = static_cast<char>(~static_cast<unsigned char>(changed[place]));
      EXPECT_LE(runAllWith(name, changed), 1) << name << " with byte " << place << " changed";
    }
    given("Data/" + name, bytes);
  }
}

TEST_F(BadInputTest, ANulAnywhereIsFound) {
  for (const auto& [name, bytes] : goodFiles()) {
    const std::size_t last = name == "load.txt" ? 4 : bytes.size();
    for (std::size_t place = 0; place < last; place += stepOf(name)) {
      std::string changed = bytes;
      changed[place] = '\0';
      given("Data/" + name, changed);
      EXPECT_EQ(run({"check"}), 1) << name << " with a NUL at byte " << place;
    }
    given("Data/" + name, bytes);
  }
}

TEST_F(BadInputTest, RandomBytesAreRead) {
  std::mt19937 random(1);
  for (const auto& [name, bytes] : goodFiles()) {
    for (int round = 0; round < 20; ++round) {
      std::string noise(random() % 5000, '\0');
      for (char& byte : noise) byte = static_cast<char>(random());
      EXPECT_LE(runAllWith(name, noise), 1) << name;
    }
    given("Data/" + name, bytes);
  }
}

TEST_F(BadInputTest, ManyBlanksAreFineAndManyNulsAreNot) {
  constexpr std::size_t kMuch = 9'982'000;  // 31,000 records of nodes.dat
  given("Data/nodes.dat", std::string(kMuch, ' '));
  EXPECT_EQ(run({"check"}), 0);
  given("Data/nodes.dat", std::string(kMuch, '\0'));
  EXPECT_EQ(run({"check"}), 1);
  EXPECT_TRUE(output.ends_with("5 files, 31003 records, 31000 errors\n"));
}

#ifndef _WIN32
TEST(BadFiles, WhatIsNoFileIsNamedAndTheOthersAreChecked) {
  const test::TemporaryFolder folder;
  std::filesystem::create_directories(folder / "nodes.dat");
  ASSERT_EQ(::mkfifo((folder / "notes.dat").c_str(), 0600), 0);
  std::filesystem::create_symlink("nowhere", folder / "info.dat");
  folder.givenAFile("purchases.dat", "too short");
  RealFileSystem files;
  std::string output;
  std::string error;
  DataTool tool({.files = files,
                 .codePage = test::westernCodePage(),
                 .defaultFolder = folder.path(),
                 .write = [&](std::string_view text) { output += text; },
                 .writeError = [&](std::string_view text) { error += text; },
                 .terminalWidth = {}});
  EXPECT_EQ(tool.run({"check"}), 1);
  const std::string place = folder.path().string();
  EXPECT_EQ(error, "");
  EXPECT_EQ(output, place + "/nodes.dat: Path/file access error.\n" + place +
                        "/notes.dat: Path/file access error.\n" + place +
                        "/info.dat: This file is missing.\n" + place +
                        "/purchases.dat: record 1, byte 0: The last record is incomplete: it "
                        "has 9 of 542 bytes.\n1 file, 0 records, 4 errors\n");
}
#endif

}  // namespace
}  // namespace quorrix
