#include "data_tool/lock_turns.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "data_tool/file_copy.h"
#include "data_tool/record_reader.h"
#include "support/faulty_file_system.h"
#include "support/memory_file_system.h"

namespace quorrix {
namespace {

using namespace std::chrono_literals;
using test::FileCall;
using Clock = LockTiming::Clock;

constexpr std::size_t kBlock = std::size_t{256} * 1024;

// A file of 40 blocks on a disk that needs `readTime_` for each, in a time that passes only while
// something is read or slept.
class LockTurnsTest : public testing::Test {
 protected:
  LockTurnsTest() {
    memory_.givenAFile("nodes.dat", std::string(40 * kBlock, 'x'));
    files_.onEveryCall([this] {
      if (files_.calls().back() == FileCall::ReadAt) now_ += readTime_;
    });
  }

  LockTiming timing() {
    return {.now = [this] { return now_; },
            .sleep =
                [this](std::chrono::milliseconds time) {
                  EXPECT_EQ(time, 15ms);
                  EXPECT_EQ(filesOpen(), 0);
                  pauses_.push_back(now_ - start_);
                  now_ += time;
                }};
  }

  // Without the copy, which is not locked for others.
  [[nodiscard]] int filesOpen() const { return memory_.openFiles() - copiesOpen_; }

  void read() {
    RecordReader reader(files_, LockTurns(timing()));
    std::uint64_t count = 0;
    reader.forEach("nodes.dat", 1024, [&](std::uint64_t, std::span<const char>) {
      ++count;
      return true;
    });
    EXPECT_EQ(count, 40U * 256);
  }

  void copy() {
    LockTurns turns(timing());
    FileCopy copy(files_, "nodes.dat", "copy.dat");
    copiesOpen_ = 1;
    copy.copy(turns);
    EXPECT_EQ(memory_.bytesOf("copy.dat").size(), 40 * kBlock);
  }

  // The longest time without a pause.
  [[nodiscard]] Clock::duration longestTurn() const {
    Clock::duration longest = pauses_.empty() ? now_ - start_ : pauses_.front();
    for (std::size_t i = 1; i < pauses_.size(); ++i) {
      longest = std::max(longest, pauses_[i] - pauses_[i - 1] - 15ms);
    }
    return longest;
  }

  const Clock::time_point start_{};
  Clock::time_point now_{};
  std::chrono::microseconds readTime_{};
  std::vector<Clock::duration> pauses_;
  int copiesOpen_ = 0;
  test::MemoryFileSystem memory_;
  test::FaultyFileSystem files_{memory_};
};

TEST_F(LockTurnsTest, LetOthersHaveAFileThatASlowDiskReads) {
  readTime_ = 50ms;
  read();
  EXPECT_EQ(pauses_.size(), 20U);  // the last one before the end is read
  EXPECT_EQ(longestTurn(), 100ms);
}

TEST_F(LockTurnsTest, LetOthersHaveAFileThatIsCopied) {
  readTime_ = 50ms;
  copy();
  EXPECT_EQ(pauses_.size(), 20U);
  EXPECT_EQ(longestTurn(), 100ms);
}

TEST_F(LockTurnsTest, FollowEveryBlockOfAVerySlowDisk) {
  readTime_ = 300ms;
  read();
  EXPECT_EQ(pauses_.size(), 40U);
  EXPECT_EQ(longestTurn(), 300ms);
}

TEST_F(LockTurnsTest, HardlyDelayAFastDisk) {
  readTime_ = 2500us;
  read();
  EXPECT_EQ(pauses_.size(), 1U);
  pauses_.clear();
  readTime_ = 1ms;
  read();
  EXPECT_TRUE(pauses_.empty());
}

TEST_F(LockTurnsTest, EndWhenThePatienceRunsOut) {
  LockTiming timing = this->timing();
  timing.patience = 200ms;
  const LockTurns turns(timing);
  int attempts = 0;
  const auto attempt = [&] {
    ++attempts;
    now_ += 50ms;
    return false;
  };
  EXPECT_FALSE(turns.succeeds(attempt));
  EXPECT_EQ(attempts, 4);
  EXPECT_TRUE(turns.succeeds([] { return true; }));
}

}  // namespace
}  // namespace quorrix
