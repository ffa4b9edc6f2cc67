// A program folder on the real disk with working data and one archive, for tests of what
// remains of them after a crash or on a full disk. These helpers write and read the files
// themselves, without the code of the program.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "archives/program_on_disk.h"
#include "platform/linux/posix_file_system.h"
#include "support/site_record_bytes.h"
#include "support/temporary_folder.h"

namespace quorrix::test {

// Every file fills more than one block of a copy, so that half a file differs from a
// whole one.
class ArchivedFolders : public testing::Test {
 protected:
  // In the order of the letters of a state, which is the order of archiving.
  static constexpr const char* kNames[] = {"nodes.dat", "notes.dat", "purchases.dat", "info.dat"};

  ArchivedFolders() {
    std::filesystem::create_directories(data_);
    std::filesystem::create_directories(may_);
  }

  static std::string repeated(int count, const std::string& record) {
    std::string bytes;
    for (int i = 0; i < count; ++i) bytes += record;
    return bytes;
  }

  static std::string otherRecord(std::string text) {
    text.resize(498, ' ');
    return text + "~\n";
  }

  // In the order of archiving, each is longer than the one before.
  const std::vector<std::string> working_{
      repeated(1000, siteRecord("working.site.example")),  // 322,000 bytes
      repeated(900, otherRecord("a working note")),        // 450,000
      repeated(1000, otherRecord("a working purchase")),   // 500,000
      repeated(1200, otherRecord("a working user ID"))};   // 600,000

  // In the order of loading, each is longer than the one before.
  const std::vector<std::string> archived_{
      repeated(1000, siteRecord("archived.site.example")),  // 322,000 bytes
      repeated(1000, otherRecord("an archived note")),      // 500,000
      repeated(900, otherRecord("an archived purchase")),   // 450,000
      repeated(1200, otherRecord("an archived user ID"))};  // 600,000

  static void write(const Path& path, const std::string& bytes) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << bytes;
    ASSERT_TRUE(file.flush()) << "cannot write " << path;
  }

  static std::string read(const Path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }

  static void givenNothingIn(const Path& folder) {
    for (const std::string& name : namesIn(folder)) std::filesystem::remove(folder / name);
  }

  static void givenFiles(const Path& folder, const std::vector<std::string>& contents) {
    givenNothingIn(folder);
    for (std::size_t i = 0; i < 4; ++i) write(folder / kNames[i], contents[i]);
  }

  // Both folders are complete, and load.txt names an earlier archive.
  void givenWorkingDataAndAnArchive() {
    givenFiles(may_, archived_);
    givenFiles(data_, working_);
    write(data_ / "load.txt", "/Archives/April\r\n");
  }

  static std::vector<std::string> namesIn(const Path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
      names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
  }

  // The names in both folders, except those of the data files and load.txt.
  [[nodiscard]] std::vector<std::string> strangeNames() const {
    std::vector<std::string> strange;
    for (const Path& folder : {may_, data_}) {
      for (const std::string& name : namesIn(folder)) {
        const bool isKnown = name == "load.txt" || std::find(std::begin(kNames), std::end(kNames),
                                                             name) != std::end(kNames);
        if (!isKnown) strange.push_back(name);
      }
    }
    return strange;
  }

  // The archive's four files, the working ones, and load.txt. "w" is the whole file of
  // the working data and "a" that of the archive; "0" is an empty file and "-" a missing
  // one. In load.txt, "b" is the earlier archive, "m" is May, and "n" is none. "?" is
  // anything else, such as half a file.
  [[nodiscard]] std::string state() const {
    return letters(may_) + " " + letters(data_) + " " + recordLetter();
  }

  // Starts the program again on the state `before`. Expects that it shows the sites of
  // the site file and the archive that load.txt names, and that no data file is missing
  // then.
  void expectToStartOn(const std::string& before) {
    ProgramOnDisk program(files_, folder_.path());
    EXPECT_TRUE(program.start());
    const char site = before.at(5);
    EXPECT_EQ(program.shows("working.site.example"), site == 'w');
    EXPECT_EQ(program.shows("archived.site.example"), site == 'a');
    EXPECT_EQ(letters(data_).find('-'), std::string::npos);
    const char named = before.at(10);
    EXPECT_EQ(program.firstPanel(), "Last archive loaded: " + (named == 'n'   ? "none"
                                                               : named == 'm' ? may_.string()
                                                                              : "/Archives/April"));
  }

  TemporaryFolder folder_;
  const Path data_ = folder_ / "Data";
  const Path may_ = folder_ / "Archives" / "May";
  PosixFileSystem files_;

 private:
  [[nodiscard]] std::string letters(const Path& folder) const {
    std::string all;
    for (std::size_t i = 0; i < 4; ++i) all += letter(folder / kNames[i], i);
    return all;
  }

  [[nodiscard]] char letter(const Path& path, std::size_t i) const {
    if (!std::filesystem::exists(path)) return '-';
    const std::string bytes = read(path);
    if (bytes.empty()) return '0';
    if (bytes == working_[i]) return 'w';
    return bytes == archived_[i] ? 'a' : '?';
  }

  [[nodiscard]] char recordLetter() const {
    const std::string line = read(data_ / "load.txt");
    if (line == "/Archives/April\r\n") return 'b';
    if (line == "none\r\n") return 'n';
    return line == may_.string() + "\r\n" ? 'm' : '?';
  }
};

}  // namespace quorrix::test
