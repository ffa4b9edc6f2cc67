// When the file system in memory reports that a file is in use, like the real ones.
#include "support/memory_file_system.h"

#include <gtest/gtest.h>

#include "support/failure_number.h"

namespace quorrix::test {
namespace {

constexpr const char* kNodes = "Quorrix/Data/nodes.dat";

class MemoryFileSystemTest : public testing::Test {
 protected:
  MemoryFileSystem files_;
};

TEST_F(MemoryFileSystemTest, SaysThatAFileOpenForWritingIsInUse) {
  files_.givenAFile(kNodes, "old");
  const auto held = files_.openRandomAccess(kNodes);
  EXPECT_TRUE(failsBecauseInUse([&] { return files_.openRandomAccess(kNodes); }));
  EXPECT_TRUE(failsBecauseInUse([&] { return files_.openForReading(kNodes); }));
  EXPECT_TRUE(failsBecauseInUse([&] { return files_.openAsPermitted(kNodes); }));
  EXPECT_TRUE(failsBecauseInUse([&] { files_.deleteFile(kNodes); }));
  EXPECT_TRUE(failsBecauseInUse([&] { files_.copyFile(kNodes, "Quorrix/Data/copy"); }));
}

TEST_F(MemoryFileSystemTest, SaysThatAFileOpenForReadingIsInUseByAReader) {
  files_.givenAFile(kNodes, "old");
  const auto held = files_.openForReading(kNodes);
  EXPECT_NE(files_.openForReading(kNodes), nullptr);
  EXPECT_TRUE(failsBecauseInUse([&] { return files_.openRandomAccess(kNodes); }));
  EXPECT_TRUE(failsBecauseInUse([&] { files_.deleteFile(kNodes); }));
}

TEST_F(MemoryFileSystemTest, DoesNotSaySoOfAReadOnlyFileOrAFolder) {
  files_.givenAReadOnlyFile(kNodes, "old");
  for (const Path& path : {Path(kNodes), Path("Quorrix/Data")}) {
    EXPECT_EQ(failureNumberOf([&] { return files_.openRandomAccess(path); }), 75);
    EXPECT_FALSE(failsBecauseInUse([&] { return files_.openRandomAccess(path); }));
    EXPECT_EQ(failureNumberOf([&] { files_.deleteFile(path); }), 75);
    EXPECT_FALSE(failsBecauseInUse([&] { files_.deleteFile(path); }));
  }
}

}  // namespace
}  // namespace quorrix::test
