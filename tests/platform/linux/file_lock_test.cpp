#include "platform/linux/file_lock.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <cerrno>

#include "support/failure_number.h"
#include "support/temporary_folder.h"

namespace quorrix {
namespace {

class FileLockTest : public testing::Test {
 protected:
  [[nodiscard]] FileDescriptor open(int flags) const {
    return FileDescriptor(::open(path_.c_str(), flags | O_CLOEXEC));
  }

  test::TemporaryFolder folder_;
  const Path path_ = folder_.givenAFile("nodes.dat", "");
  const FileDescriptor first_ = open(O_RDONLY);
  const FileDescriptor second_ = open(O_RDWR);
};

TEST_F(FileLockTest, IsSharedByReaders) {
  EXPECT_TRUE(tryToLock(first_, FileLock::Shared, path_));
  EXPECT_TRUE(tryToLock(second_, FileLock::Shared, path_));
}

TEST_F(FileLockTest, IsSharedWithNoWriter) {
  EXPECT_TRUE(tryToLock(first_, FileLock::Shared, path_));
  EXPECT_FALSE(tryToLock(second_, FileLock::Exclusive, path_));
}

TEST_F(FileLockTest, KeepsReadersOutWhileAWriterHasIt) {
  EXPECT_TRUE(tryToLock(second_, FileLock::Exclusive, path_));
  EXPECT_FALSE(tryToLock(first_, FileLock::Shared, path_));
}

TEST_F(FileLockTest, FailsForNoOpenFile) {
  EXPECT_EQ(test::failureNumberOf(
                [this] { return tryToLock(FileDescriptor(), FileLock::Exclusive, path_); }),
            75);
}

TEST(UnavailableLock, IsWhatAFileSystemWithoutLocksAnswers) {
  for (const int code : {ENOLCK, EOPNOTSUPP, ENOSYS}) {
    EXPECT_TRUE(isLockUnavailable(code, FileLock::Shared)) << code;
    EXPECT_TRUE(isLockUnavailable(code, FileLock::Exclusive)) << code;
    EXPECT_FALSE(isHeldElsewhere(code)) << code;
  }
}

TEST(UnavailableLock, IsWhatANetworkFileSystemAnswersToAReader) {
  for (const int code : {EBADF, EINVAL}) {
    EXPECT_TRUE(isLockUnavailable(code, FileLock::Shared)) << code;
    EXPECT_FALSE(isLockUnavailable(code, FileLock::Exclusive)) << code;
  }
}

TEST(UnavailableLock, IsNotALockThatAnotherProgramHolds) {
  for (const int code : {EWOULDBLOCK, EINTR}) {
    EXPECT_TRUE(isHeldElsewhere(code)) << code;
    EXPECT_FALSE(isLockUnavailable(code, FileLock::Shared)) << code;
  }
}

}  // namespace
}  // namespace quorrix
