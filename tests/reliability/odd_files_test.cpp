// Something else where a data file should be, on the real disk: a folder, a pipe, a link
// that leads nowhere, a file that may not be read. The operation on that file fails at
// once, and the others work.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>
#include <set>
#include <string>

#include "platform/linux/posix_file_system.h"
#include "reliability/kept_data.h"
#include "support/linux/ordinary_user.h"
#include "support/temporary_folder.h"

namespace quorrix {
namespace {

using test::DataFile;

constexpr const char* kLoadTxt = "load.txt";

// What the user is doing when each file is read.
struct Reading {
  const char* file;
  const char* operation;
};
constexpr Reading kReadings[] = {{"nodes.dat", "start"},
                                 {"notes.dat", "notes"},
                                 {"info.dat", "passwords"},
                                 {"purchases.dat", "purchases"},
                                 {kLoadTxt, "start"}};

class OddFiles : public testing::Test {
 protected:
  OddFiles() {
    namespace fs = std::filesystem;
    fs::create_directory(data_);
    for (const DataFile& file : test::keptData()) write(data_ / file.name, file.bytes());
    write(data_ / kLoadTxt, "none\r\n");
    for (const auto& entry : fs::recursive_directory_iterator(folder_.path())) {
      fs::permissions(entry.path(), fs::perms::all);
    }
    fs::permissions(folder_.path(), fs::perms::all);
  }

  static void write(const Path& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
  }

  // Calls `replace` for each data file in turn, and reads everything as an ordinary user.
  // Expects that the operation which reads that file fails with this number, no other
  // operation fails, and the texts from all other files are shown. After a failed start
  // there is no other operation.
  void expectFailure(int number, const std::function<void(const Path&)>& replace) {
    for (const auto& [file, operation] : kReadings) {
      SCOPED_TRACE(file);
      const Path path = data_ / file;
      const Path kept = folder_ / "kept";
      std::filesystem::rename(path, kept);
      replace(path);
      expectFailure(number, file, operation);
      std::filesystem::remove_all(path);
      std::filesystem::rename(kept, path);
    }
  }

  void expectFailure(int number, const std::string& file, const std::string& operation) {
    const test::OrdinaryUser user;
    PosixFileSystem files(std::chrono::milliseconds(0));
    test::ShownData shown(files, folder_.path());
    const std::set<std::string> facts = shown.read();
    for (const Reading& reading : kReadings) {
      const int expected = reading.operation == operation ? number : 0;
      EXPECT_EQ(shown.failureOf(reading.operation), expected) << reading.operation;
    }
    if (operation == "start") return;
    expectAllShown(facts, file);
    EXPECT_TRUE(facts.contains("load.txt: none"));
  }

  static void expectAllShown(const std::set<std::string>& facts, const std::string& except = "") {
    for (const DataFile& other : test::keptData()) {
      if (other.name == except) continue;
      for (const std::string& fact : other.facts) EXPECT_TRUE(facts.contains(fact)) << fact;
    }
  }

  const test::TemporaryFolder folder_;
  const Path data_ = folder_ / "Data";
};

TEST_F(OddFiles, ThatAreFoldersFailAtOnce) {
  expectFailure(75, [](const Path& path) { std::filesystem::create_directory(path); });
}

TEST_F(OddFiles, ThatArePipesFailAtOnce) {
  expectFailure(75, [](const Path& path) {
    ASSERT_EQ(::mkfifo(path.c_str(), 0666), 0);
    ASSERT_EQ(::chmod(path.c_str(), 0666), 0);
  });
}

TEST_F(OddFiles, ThatAreLinksIntoAMissingFolderFailAtOnce) {
  expectFailure(
      53, [](const Path& path) { std::filesystem::create_symlink("/nonexistent/file", path); });
}

TEST_F(OddFiles, ThatAreLinksToThemselvesFailAtOnce) {
  expectFailure(75,
                [](const Path& path) { std::filesystem::create_symlink(path.filename(), path); });
}

TEST_F(OddFiles, ThatMayNotBeReadFailAtOnce) {
  expectFailure(75, [](const Path& path) {
    write(path, "");
    ASSERT_EQ(::chmod(path.c_str(), 0), 0);
  });
}

TEST_F(OddFiles, ThatAreDevicesFailAtOnce) {
  expectFailure(75, [](const Path& path) { std::filesystem::create_symlink("/dev/zero", path); });
}

TEST_F(OddFiles, ShowAtMost64KiBOfLoadTxt) {
  std::mt19937 random(3);
  std::string noise(10'000'000, '\0');
  std::ranges::generate(noise, [&] { return static_cast<char>(random() % 200 + 32); });
  for (const std::string& bytes :
       {std::string(10'000'000, ' '), std::string(10'000'000, '\0'), noise}) {
    write(data_ / kLoadTxt, bytes);
    PosixFileSystem files(std::chrono::milliseconds(0));
    const std::set<std::string> facts = test::ShownData(files, folder_.path()).read();
    expectAllShown(facts);
    const std::string shown = "load.txt: ";
    const bool isBlank = bytes[0] == ' ';  // and all of it is
    const std::string text = isBlank ? "" : bytes.substr(0, 65'536);
    EXPECT_TRUE(facts.contains(shown + text));
  }
}

}  // namespace
}  // namespace quorrix
