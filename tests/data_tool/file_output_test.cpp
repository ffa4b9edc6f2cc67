#include "data_tool/file_output.h"

#include <gtest/gtest.h>
#ifndef _WIN32
#include <sys/stat.h>
#include <unistd.h>
#endif

#include <filesystem>
#include <stdexcept>
#include <string>

#include "data_tool/problem.h"
#include "platform/real_file_system.h"
#include "support/faulty_file_system.h"
#include "support/temporary_folder.h"

namespace quorrix {
namespace {

class FileOutputTest : public testing::Test {
 protected:
  std::string write(const std::string& text, const std::string& name = "sites.json") {
    try {
      writeFile(files_, folder_ / name,
                [&](Output& output, const DeferredSignals&) { output.write(text); });
    } catch (const Problem& problem) {
      return problem.what();
    }
    return "";
  }

  void expectAlone() {
    for (const auto& entry : std::filesystem::directory_iterator(folder_.path())) {
      EXPECT_EQ(entry.path().filename(), Path("sites.json"));
    }
  }

  test::TemporaryFolder folder_;
  RealFileSystem real_;
  test::FaultyFileSystem files_{real_};
};

TEST_F(FileOutputTest, WritesANewFile) {
  EXPECT_EQ(write("new"), "");
  EXPECT_EQ(folder_.bytesOf("sites.json"), "new");
  expectAlone();
}

TEST_F(FileOutputTest, ReplacesALongerFile) {
  folder_.givenAFile("sites.json", "an old and longer text");
  const std::string large(300'000, 'x');
  EXPECT_EQ(write(large), "");
  EXPECT_EQ(folder_.bytesOf("sites.json"), large);
  EXPECT_EQ(write("new"), "");
  EXPECT_EQ(folder_.bytesOf("sites.json"), "new");
  expectAlone();
}

TEST_F(FileOutputTest, KeepsTheOldFileWhicheverCallFails) {
  ASSERT_EQ(write("new"), "");
  const auto calls = static_cast<int>(files_.calls().size());
  for (int call = 1; call <= calls; ++call) {
    folder_.givenAFile("sites.json", "old");
    files_.reset();
    files_.failAtCall(call, 61);
    EXPECT_NE(write("new").find(": Disk full."), std::string::npos) << call;
    EXPECT_EQ(folder_.bytesOf("sites.json"), "old") << call;
    expectAlone();
  }
}

TEST_F(FileOutputTest, KeepsTheOldFileIfTheWriterGivesUp) {
  folder_.givenAFile("sites.json", "old");
  EXPECT_THROW(writeFile(files_, folder_ / "sites.json",
                         [](Output& output, const DeferredSignals&) {
                           output.write("half");
                           throw std::runtime_error("enough");
                         }),
               std::runtime_error);
  EXPECT_EQ(folder_.bytesOf("sites.json"), "old");
  expectAlone();
}

TEST_F(FileOutputTest, RefusesAFolder) {
  std::filesystem::create_directory(folder_ / "sites.json");
  EXPECT_TRUE(write("new").ends_with("sites.json: This is a folder. Name a file."));
  EXPECT_TRUE(
      write("new", "missing/").ends_with("missing/: This is the name of a folder. Name a file."));
  EXPECT_FALSE(std::filesystem::exists(folder_ / "missing"));
}

TEST_F(FileOutputTest, RefusesAWriteProtectedFile) {
  folder_.givenAFile("sites.json", "old");
  std::filesystem::permissions(folder_ / "sites.json", std::filesystem::perms::owner_read);
  EXPECT_TRUE(write("new").ends_with("sites.json: Path/file access error."));
  EXPECT_EQ(folder_.bytesOf("sites.json"), "old");
  std::filesystem::permissions(folder_ / "sites.json", std::filesystem::perms::owner_all);
  expectAlone();
}

TEST_F(FileOutputTest, NamesTheFolderThatIsLeft) {
  std::filesystem::create_directory(folder_ / "sites.json.quorrix-new");
  EXPECT_TRUE(
      write("new").ends_with("sites.json.quorrix-new: This folder belongs to an export that is "
                             "running or was interrupted. "
                             "If it was interrupted, remove the folder and try again."));
}

TEST_F(FileOutputTest, NamesTheFolderInWhichNothingCanBeWritten) {
  ASSERT_EQ(write("old"), "");
  const auto calls = static_cast<int>(files_.calls().size());
  int refusals = 0;
  for (int call = 1; call <= calls; ++call) {
    files_.reset();
    files_.failAtCall(call, 75);
    const std::string problem = write("new");
    EXPECT_EQ(problem.find(".quorrix-new"), std::string::npos) << problem;
    if (problem == folder_.path().string() + ": Nothing can be written in this folder.") ++refusals;
  }
  EXPECT_EQ(refusals, 1);
}

#ifndef _WIN32
TEST_F(FileOutputTest, ReplacesWhatALinkLeadsTo) {
  folder_.givenAFile("real.json", "old");
  std::filesystem::create_symlink("real.json", folder_ / "sites.json");
  EXPECT_EQ(write("new"), "");
  EXPECT_EQ(folder_.bytesOf("real.json"), "new");
  EXPECT_TRUE(std::filesystem::is_symlink(folder_ / "sites.json"));
}

TEST_F(FileOutputTest, RefusesALinkToNothing) {
  std::filesystem::create_symlink("missing.json", folder_ / "sites.json");
  EXPECT_TRUE(write("new").ends_with("sites.json: This is a link to a file that is missing."));
  expectAlone();
}

TEST_F(FileOutputTest, RefusesALinkOfAnotherUser) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root can give a link to another user";
  folder_.givenAFile("real.json", "old");
  std::filesystem::create_symlink("real.json", folder_ / "sites.json");
  ASSERT_EQ(::lchown((folder_ / "sites.json").c_str(), 12345, 12345), 0);
  EXPECT_TRUE(write("new").ends_with(
      "sites.json: This link belongs to another user. Name the place it leads to."));
  // On the way, and after a link of one's own.
  std::filesystem::create_symlink("sites.json", folder_ / "own.json");
  EXPECT_TRUE(write("new", "own.json").starts_with((folder_ / "sites.json").string() + ": This"));
  std::filesystem::create_directory(folder_ / "real");
  std::filesystem::create_symlink("real", folder_ / "theirs");
  ASSERT_EQ(::lchown((folder_ / "theirs").c_str(), 12345, 12345), 0);
  EXPECT_TRUE(write("new", "theirs/new.json").find("theirs: This link belongs") !=
              std::string::npos);
  EXPECT_EQ(folder_.bytesOf("real.json"), "old");
  EXPECT_FALSE(std::filesystem::exists(folder_ / "real" / "new.json"));
}

TEST_F(FileOutputTest, RefusesAPipe) {
  ASSERT_EQ(::mkfifo((folder_ / "sites.json").c_str(), 0600), 0);
  EXPECT_TRUE(write("new").ends_with(
      "sites.json: This is a device or a pipe. Use standard output instead."));
  expectAlone();
}

// It could be redirected to a file, which would be replaced while others write to it.
TEST_F(FileOutputTest, RefusesStandardOutput) {
  for (const char* name : {"/dev/stdout", "/dev/fd/1", "/proc/self/fd/1"}) {
    EXPECT_NE(write("new", name).find(": This is a device or a pipe. Use standard output instead."),
              std::string::npos)
        << name;
  }
}
#endif

}  // namespace
}  // namespace quorrix
