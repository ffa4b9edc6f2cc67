#include "platform/linux/posix_replacement.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <utility>

namespace quorrix {
namespace {

constexpr mode_t kPrivateFile = 0600;

// What is there already was left behind by a crash.
FileDescriptor emptied(FileDescriptor file, const Path& path) {
  if (::ftruncate(file.number(), 0) != 0) failWithErrno(path);
  // A file system without modes refuses, and then nothing can be made private.
  [[maybe_unused]] const int result = ::fchmod(file.number(), kPrivateFile);
  return file;
}

}  // namespace

PosixReplacement::PosixReplacement(FileDescriptor file, Path path)
    : path_(std::move(path)), file_(emptied(std::move(file), path_), path_) {}

PosixReplacement::~PosixReplacement() {
  if (!path_.empty()) ::unlink(path_.c_str());
}

void PosixReplacement::takePlaceOf(const Path& target) {
  file_.syncBytes();
  if (::rename(path_.c_str(), target.c_str()) != 0) failWithErrno(target);
  path_.clear();
  syncFolder(target.parent_path());
}

}  // namespace quorrix
