// Tells the processor to fetch memory that will be read soon.
#pragma once

#ifdef _MSC_VER
#include <intrin.h>
#endif

namespace quorrix {

inline void prefetch(const void* address) {
#ifdef _MSC_VER
  _mm_prefetch(static_cast<const char*>(address), _MM_HINT_T0);
#else
  __builtin_prefetch(address);
#endif
}

}  // namespace quorrix
