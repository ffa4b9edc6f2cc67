// Runs the helper program, which lies beside the test program.
#pragma once

#include <filesystem>
#include <string>

namespace quorrix::test {

[[nodiscard]] std::filesystem::path helperPath();

// A running helper; ended with the object if it has not ended by itself.
class Helper {
 public:
  // `arguments` as a command line has them, after the program's name.
  explicit Helper(const std::wstring& arguments);
  ~Helper();
  Helper(const Helper&) = delete;
  Helper& operator=(const Helper&) = delete;

 private:
  void* process_;
};

}  // namespace quorrix::test
