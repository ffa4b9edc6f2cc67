// An open file descriptor that closes itself.
#pragma once

#include <unistd.h>

#include <utility>

namespace quorrix {

class FileDescriptor {
 public:
  explicit FileDescriptor(int number = -1) noexcept : number_(number) {}
  FileDescriptor(FileDescriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  ~FileDescriptor() {
    if (number_ >= 0) ::close(number_);
  }

  [[nodiscard]] int number() const noexcept { return number_; }
  [[nodiscard]] bool isOpen() const noexcept { return number_ >= 0; }

 private:
  int number_;
};

}  // namespace quorrix
