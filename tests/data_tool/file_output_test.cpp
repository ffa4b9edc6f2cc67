#include "data_tool/file_output.h"

#include <gtest/gtest.h>

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
  std::string write(const std::string& text) {
    try {
      writeFile(files_, folder_ / "sites.json",
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
  EXPECT_TRUE(write("new").ends_with("sites.json: Path/file access error."));
}

}  // namespace
}  // namespace quorrix
