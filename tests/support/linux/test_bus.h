// A message bus for one test: a real dbus-daemon in a temporary folder.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>

namespace quorrix::test {

struct TestBusOptions {
  bool isAbstract = false;  // whether its socket has an abstract name instead of a path
  int mostClients = 1000;   // it refuses the introduction of any more
};

class TestBus {
 public:
  explicit TestBus(TestBusOptions options = {});  // returns when the bus answers
  ~TestBus();
  TestBus(const TestBus&) = delete;
  TestBus& operator=(const TestBus&) = delete;

  [[nodiscard]] std::string address() const;

  void kill();     // ends it like a crash
  void restart();  // at the same address
  void freeze();
  void thaw();

 private:
  void start();

  TestBusOptions options_;
  std::filesystem::path folder_;
  pid_t process_ = -1;
};

}  // namespace quorrix::test
