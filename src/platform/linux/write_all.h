// Writes until everything is written.
#pragma once

#include <sys/types.h>

#include <cerrno>
#include <cstddef>
#include <span>

namespace quorrix {

struct WriteResult {
  std::size_t done;  // bytes
  int reason;        // an errno value; 0 when all bytes were written
};

// Calls `writeSome(rest, done)` until nothing is left or it fails. `rest` are the bytes
// that follow the first `done`; the result is that of pwrite(). A write that was
// interrupted is repeated.
template <typename WriteSome>
[[nodiscard]] WriteResult writeAll(std::span<const char> bytes, WriteSome writeSome) {
  std::size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t count = writeSome(bytes.subspan(done), done);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return {done, errno};
    // A file system that accepts no byte and reports no error counts as full.
    if (count == 0) return {done, ENOSPC};
    done += static_cast<std::size_t>(count);
  }
  return {done, 0};
}

}  // namespace quorrix
