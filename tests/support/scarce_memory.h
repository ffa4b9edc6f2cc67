// Makes memory run out. A test program with scarce_memory.cpp among its sources has an
// operator new that can be made to fail.
#pragma once

namespace quorrix::test {

// While this object exists, the n-th allocation since its construction fails. Only one
// may exist at a time.
class ScarceMemory {
 public:
  explicit ScarceMemory(int n);
  ~ScarceMemory();
  ScarceMemory(const ScarceMemory&) = delete;
  ScarceMemory& operator=(const ScarceMemory&) = delete;
};

}  // namespace quorrix::test
