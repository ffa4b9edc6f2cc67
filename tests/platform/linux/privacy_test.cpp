#include "platform/privacy.h"

#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>

#include "support/linux/child_process.h"
#include "support/temporary_folder.h"

namespace quorrix {
namespace {

TEST(Privacy, LeavesNoCoreOfAProgramThatCrashes) {
  const int status = test::waitStatusOfAChild([]() -> int {
    const rlimit anySize{RLIM_INFINITY, RLIM_INFINITY};
    ::setrlimit(RLIMIT_CORE, &anySize);
    forbidMemoryDumps();
    std::signal(SIGABRT, SIG_DFL);
    std::abort();
  });
  ASSERT_TRUE(WIFSIGNALED(status)) << status;
  EXPECT_EQ(WTERMSIG(status), SIGABRT);
  EXPECT_FALSE(WCOREDUMP(status));
}

TEST(Privacy, ClosesTheMemoryToOtherPrograms) {
  const int before = ::prctl(PR_GET_DUMPABLE);
  forbidMemoryDumps();
  EXPECT_EQ(::prctl(PR_GET_DUMPABLE), 0);
  ::prctl(PR_SET_DUMPABLE, before);
}

class PrivacyOfAFolder : public testing::Test {
 protected:
  // Closes the folder to others, starting from these permission bits. Returns the bits
  // afterwards.
  [[nodiscard]] unsigned closed(mode_t before) const {
    ::chmod(data_.c_str(), before);
    closeToOthers(data_);
    struct stat status {};
    ::stat(data_.c_str(), &status);
    return status.st_mode & 07777U;
  }

  PrivacyOfAFolder() { std::filesystem::create_directory(data_); }

  test::TemporaryFolder folder_;
  const Path data_ = folder_ / "Data";
};

TEST_F(PrivacyOfAFolder, TakesTheRightsOfAllOthers) {
  EXPECT_EQ(closed(0755), 0700U);
  EXPECT_EQ(closed(0777), 0700U);
  EXPECT_EQ(closed(0701), 0700U);
  EXPECT_EQ(closed(0700), 0700U);
}

TEST_F(PrivacyOfAFolder, LeavesTheOwnersRightsAlone) { EXPECT_EQ(closed(0555), 0500U); }

TEST_F(PrivacyOfAFolder, LeavesAloneWhatIsNoFolder) {
  const Path file = folder_.givenAFile("file", "bytes");
  ::chmod(file.c_str(), 0644);
  closeToOthers(file);
  closeToOthers(folder_ / "missing");
  struct stat status {};
  ASSERT_EQ(::stat(file.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0644U);
  EXPECT_FALSE(std::filesystem::exists(folder_ / "missing"));
}

}  // namespace
}  // namespace quorrix
