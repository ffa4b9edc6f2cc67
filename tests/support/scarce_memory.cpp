#include "support/scarce_memory.h"

#include <cstdlib>
#include <new>

namespace {

int allocationsUntilFailure = 0;  // 0: no failure

}  // namespace

// These are in a file of their own because GCC, where it can inline them, warns about
// memory that comes from "new" and goes to "free".
void* operator new(std::size_t size) {
  if (allocationsUntilFailure > 0 && --allocationsUntilFailure == 0) throw std::bad_alloc();
  if (void* const memory = std::malloc(size > 0 ? size : 1)) return memory;
  throw std::bad_alloc();
}

void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }

namespace quorrix::test {

ScarceMemory::ScarceMemory(int n) { allocationsUntilFailure = n; }

ScarceMemory::~ScarceMemory() { allocationsUntilFailure = 0; }

}  // namespace quorrix::test
