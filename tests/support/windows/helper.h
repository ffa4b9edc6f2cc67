// Runs the helper program, which is in the same folder as the test program.
#pragma once

#include <filesystem>
#include <string>

namespace quorrix::test {

[[nodiscard]] std::filesystem::path helperPath();

// A running helper. The destructor ends it if it is still running.
class Helper {
 public:
  // `arguments` as on a command line, after the program's name.
  explicit Helper(const std::wstring& arguments);
  ~Helper();
  Helper(const Helper&) = delete;
  Helper& operator=(const Helper&) = delete;

 private:
  void* process_;
};

}  // namespace quorrix::test
