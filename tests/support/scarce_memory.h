// Lets memory run out. A test program that has scarce_memory.cpp among its sources has an
// operator new that can be made to fail.
#pragma once

namespace quorrix::test {

// While one lives, the n-th allocation after its beginning fails. One at a time.
class ScarceMemory {
 public:
  explicit ScarceMemory(int n);
  ~ScarceMemory();
  ScarceMemory(const ScarceMemory&) = delete;
  ScarceMemory& operator=(const ScarceMemory&) = delete;
};

}  // namespace quorrix::test
