// A folder for one test, empty at first and removed with the object.
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

  // Creates the file or replaces its content; returns its path.
  std::filesystem::path givenAFile(const std::filesystem::path& name, std::string_view bytes) const;

  // The whole content of the file. If it cannot be read, fails the test and returns "".
  [[nodiscard]] std::string bytesOf(const std::filesystem::path& name) const;

 private:
  std::filesystem::path path_;
};

}  // namespace quorrix::test
