// A message bus of the test's own: a real dbus-daemon in a temporary folder.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>

namespace quorrix::test {

class TestBus {
 public:
  TestBus();  // started, and answering
  ~TestBus();
  TestBus(const TestBus&) = delete;
  TestBus& operator=(const TestBus&) = delete;

  [[nodiscard]] std::string address() const;

  void kill();     // as a crash would
  void restart();  // at the same address
  void freeze();
  void thaw();

 private:
  void start();

  std::filesystem::path folder_;
  pid_t process_ = -1;
};

}  // namespace quorrix::test
