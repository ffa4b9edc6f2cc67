// How failures propagate: the platform throws a Failure with one of the numbers below,
// and the guard around a user's operation turns the number into a sentence
// (shell/failure_messages.h). Failures propagate in no other way. In contracts, "throws
// kFileNotFound" means a Failure with that number.
#pragma once

#include <array>
#include <exception>

namespace quorrix {

namespace failure {
inline constexpr int kInvalidCall = 5;  // such as splitting a text at a mark that it lacks
inline constexpr int kOverflow = 6;     // a number does not fit in 16 bits
inline constexpr int kOutOfMemory = 7;
inline constexpr int kIndexOutOfRange = 9;
inline constexpr int kTypeMismatch = 13;  // a text that cannot be read as a date
inline constexpr int kOutOfStackSpace = 28;
inline constexpr int kFileNotFound = 53;
inline constexpr int kDeviceIo = 57;
inline constexpr int kDiskFull = 61;  // or the user's quota is used up
inline constexpr int kTooManyFiles = 67;
inline constexpr int kDeviceUnavailable = 68;
inline constexpr int kDiskNotReady = 71;    // a drive without a medium
inline constexpr int kPathFileAccess = 75;  // refused, read-only, exists already, is a folder
inline constexpr int kPathNotFound = 76;    // the parent folder is missing too
inline constexpr int kInvalidFileFormat = 321;
inline constexpr int kOutOfControlMemory = 31001;
inline constexpr int kElementNotFound = 35601;  // no node of the tree has the key
inline constexpr int kUnknown = 51;             // anything without a number of its own
}  // namespace failure

class Failure final : public std::exception {
 public:
  explicit Failure(int number) noexcept;

  // kPathFileAccess for a file that another program keeps locked for longer than an
  // operation waits. A later attempt may succeed.
  [[nodiscard]] static Failure ofFileInUse() noexcept {
    Failure failure(failure::kPathFileAccess);
    failure.isFileInUse_ = true;
    return failure;
  }

  [[nodiscard]] int number() const noexcept { return number_; }
  [[nodiscard]] bool isFileInUse() const noexcept { return isFileInUse_; }
  // Such as "Failure 53".
  [[nodiscard]] const char* what() const noexcept override { return text_.data(); }

 private:
  int number_;
  std::array<char, 20> text_{};
  bool isFileInUse_ = false;
};

// The number of the exception now being handled: a Failure's own, kOutOfMemory for
// std::bad_alloc, kIndexOutOfRange for std::out_of_range, kOverflow for
// std::overflow_error, else kUnknown. Call it only inside a catch block.
[[nodiscard]] int currentFailureNumber() noexcept;

}  // namespace quorrix
