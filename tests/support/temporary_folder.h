// A folder of its own for one test, empty at first and gone with the object.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace quorrix::test {

class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }
  [[nodiscard]] std::filesystem::path operator/(const std::filesystem::path& name) const {
    return path_ / name;
  }

  // Makes the file or replaces its content; returns its path.
  std::filesystem::path givenAFile(const std::filesystem::path& name, std::string_view bytes) const;

  // The file's whole content; fails the test and gives "" when it cannot be read.
  [[nodiscard]] std::string bytesOf(const std::filesystem::path& name) const;

 private:
  std::filesystem::path path_;
};

}  // namespace quorrix::test
