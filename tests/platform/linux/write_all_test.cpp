#include "platform/linux/write_all.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quorrix {
namespace {

// Writes into a string, each time as many bytes as the list says; a negative number is an
// errno.
class Disk {
 public:
  explicit Disk(std::vector<int> answers) : answers_(std::move(answers)) {}

  ssize_t write(std::span<const char> rest, std::size_t done) {
    EXPECT_EQ(done, bytes.size());
    const int answer = answers_.at(asked_++);
    if (answer < 0) errno = -answer;
    if (answer < 0) return -1;
    bytes.append(rest.data(), static_cast<std::size_t>(answer));
    return answer;
  }

  WriteResult writeWhole(const std::string& text) {
    return writeAll(text, [this](auto rest, std::size_t done) { return write(rest, done); });
  }

  std::string bytes;

 private:
  std::vector<int> answers_;
  std::size_t asked_ = 0;
};

TEST(WriteAll, GoesOnUntilEverythingIsWritten) {
  Disk disk({2, 1, 4});
  EXPECT_EQ(disk.writeWhole("records").reason, 0);
  EXPECT_EQ(disk.bytes, "records");
}

TEST(WriteAll, WritesNothingForNoBytes) {
  Disk disk({});
  EXPECT_EQ(disk.writeWhole("").reason, 0);
}

TEST(WriteAll, RepeatsAWriteThatWasInterrupted) {
  Disk disk({-EINTR, 3, -EINTR, 4});
  EXPECT_EQ(disk.writeWhole("records").reason, 0);
  EXPECT_EQ(disk.bytes, "records");
}

TEST(WriteAll, StopsAtAFailureAndTellsHowFarItGot) {
  Disk disk({3, -EIO});
  const WriteResult result = disk.writeWhole("records");
  EXPECT_EQ(result.done, 3U);
  EXPECT_EQ(result.reason, EIO);
}

TEST(WriteAll, ReportsAFullDiskWhenNothingIsAccepted) {
  Disk disk({3, 0});
  const WriteResult result = disk.writeWhole("records");
  EXPECT_EQ(result.done, 3U);
  EXPECT_EQ(result.reason, ENOSPC);
}

}  // namespace
}  // namespace quorrix
