// Something else where nodes.dat or load.txt should be, on the real disk: the program says
// so at its start, and ends.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "platform/linux/posix_file_system.h"
#include "reliability/user.h"
#include "support/linux/ordinary_user.h"
#include "support/site_record_bytes.h"
#include "support/temporary_folder.h"

namespace quorrix {
namespace {

class OddStart : public testing::Test {
 protected:
  // Calls `replace` for each of the two files in turn, and starts the program as an
  // ordinary user.
  static void expectToEndWith(const std::string& sentence,
                              const std::function<void(const Path&)>& replace) {
    for (const char* const name : {"nodes.dat", "load.txt"}) {
      SCOPED_TRACE(name);
      const test::TemporaryFolder folder;
      give(folder);
      const Path file = folder / "Data" / name;
      std::filesystem::remove(file);
      replace(file);
      const test::OrdinaryUser ordinary;
      PosixFileSystem files(std::chrono::milliseconds(0));
      test::User user(files, folder.path());
      EXPECT_FALSE(user.start());
      EXPECT_EQ(user.messageBox().sentences, std::vector<std::string>{sentence});
      EXPECT_FALSE(user.form().isVisible());
    }
  }

 private:
  static void give(const test::TemporaryFolder& folder) {
    namespace fs = std::filesystem;
    fs::create_directory(folder / "Data");
    folder.givenAFile("Data/nodes.dat", test::siteRecord("one.two.three"));
    for (const char* const name : {"notes.dat", "info.dat", "purchases.dat"}) {
      folder.givenAFile(Path("Data") / name, "");
    }
    folder.givenAFile("Data/load.txt", "none\r\n");
    for (const auto& entry : fs::recursive_directory_iterator(folder.path())) {
      fs::permissions(entry.path(), fs::perms::all);
    }
    fs::permissions(folder.path(), fs::perms::all);
  }
};

TEST_F(OddStart, WithAFolderForAFile) {
  expectToEndWith("Path/file access error. Ending program.",
                  [](const Path& path) { std::filesystem::create_directory(path); });
}

TEST_F(OddStart, WithAPipeForAFile) {
  expectToEndWith("Path/file access error. Ending program.", [](const Path& path) {
    ASSERT_EQ(::mkfifo(path.c_str(), 0666), 0);
    ASSERT_EQ(::chmod(path.c_str(), 0666), 0);
  });
}

TEST_F(OddStart, WithALinkIntoAMissingFolderForAFile) {
  expectToEndWith("Unable to find file. Ending program.", [](const Path& path) {
    std::filesystem::create_symlink("/nonexistent/file", path);
  });
}

TEST_F(OddStart, WithALinkToItselfForAFile) {
  expectToEndWith("Path/file access error. Ending program.",
                  [](const Path& path) { std::filesystem::create_symlink(path.filename(), path); });
}

TEST_F(OddStart, WithADeviceForAFile) {
  expectToEndWith("Path/file access error. Ending program.",
                  [](const Path& path) { std::filesystem::create_symlink("/dev/zero", path); });
}

TEST_F(OddStart, WithAFileThatMayNotBeRead) {
  expectToEndWith("Path/file access error. Ending program.", [](const Path& path) {
    std::ofstream(path) << "";
    ASSERT_EQ(::chmod(path.c_str(), 0), 0);
  });
}

}  // namespace
}  // namespace quorrix
