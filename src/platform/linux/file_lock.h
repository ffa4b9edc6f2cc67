// flock locks on open files, and whether a path still leads to one. The lock is
// advisory and ends with the file descriptor.
#pragma once

#include <sys/stat.h>

#include "platform/file_system.h"
#include "platform/linux/file_descriptor.h"

namespace quorrix {

// Readers share a file; a writer has it alone.
enum class FileLock { Shared, Exclusive };

// Whether flock() failed with this errno because another open file holds the lock.
[[nodiscard]] bool isHeldElsewhere(int code) noexcept;

// Whether flock() failed with this errno because the file system grants no such lock. A
// network file system may support locks but grant none on a descriptor that cannot write.
[[nodiscard]] bool isLockUnavailable(int code, FileLock lock) noexcept;

// False while another open file holds the lock. True if the file system has no locks: the
// file is then used without one. Throws Failure for every other error.
[[nodiscard]] bool tryToLock(const FileDescriptor& file, FileLock lock, const Path& path);

// Throws kPathFileAccess for anything that is not a regular file.
[[nodiscard]] struct stat statusOf(const FileDescriptor& file, const Path& path);

[[nodiscard]] bool isSameFile(const struct stat& one, const struct stat& other) noexcept;

}  // namespace quorrix
