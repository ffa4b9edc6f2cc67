#include "support/linux/system_calls.h"

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <strings.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <filesystem>
#include <string>
#include <type_traits>
#include <utility>

namespace quorrix::test {
namespace {

thread_local const WatchedSystemCalls* watched = nullptr;

// No watching while a hook runs: it may use files itself.
class Unwatched {
 public:
  Unwatched() : before_(std::exchange(watched, nullptr)), errno_(errno) {}
  ~Unwatched() {
    watched = before_;
    errno = errno_;
  }
  Unwatched(const Unwatched&) = delete;
  Unwatched& operator=(const Unwatched&) = delete;

 private:
  const WatchedSystemCalls* before_;
  int errno_;
};

template <typename Function>
Function* nextFunction(const char* name) {
  return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

Path pathOf(int descriptor) {
  std::array<char, 4096> target{};
  const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
  const ssize_t length = ::readlink(link.c_str(), target.data(), target.size());
  return length < 0 ? Path() : Path(std::string(target.data(), static_cast<std::size_t>(length)));
}

// What the C library returns for a failure.
template <typename Result>
Result failed() {
  if constexpr (std::is_pointer_v<Result>) {
    return nullptr;
  } else {
    return -1;
  }
}

// Makes the call unless the test answers it. `makeInfo` is only called while a test
// watches.
template <typename MakeInfo, typename Call>
auto watchedCall(MakeInfo makeInfo, Call call) -> decltype(call()) {
  const WatchedSystemCalls* const watcher = watched;
  if (watcher == nullptr) return call();
  const SystemCallInfo info = makeInfo();
  if (!watcher->watches(info.path)) return call();
  int code = 0;
  {
    const Unwatched off;
    code = watcher->answerTo(info);
  }
  if (code != 0) {
    errno = code;
    return failed<decltype(call())>();
  }
  const auto result = call();
  if constexpr (std::is_pointer_v<decltype(call())>) {
    return result;
  } else {
    if (result < 0) return result;
    const Unwatched off;
    watcher->noteDone(info, static_cast<long>(result));
    return result;
  }
}

// The path to hand to the system.
Path found(const char* path) { return watched == nullptr ? Path(path) : watched->found(path); }

}  // namespace

WatchedSystemCalls::WatchedSystemCalls(const Path& folder) : folder_(folder) { watched = this; }

WatchedSystemCalls::~WatchedSystemCalls() { watched = nullptr; }

bool WatchedSystemCalls::watches(const Path& path) const {
  const std::string& whole = path.native();
  const std::string& start = folder_.native();
  return whole.starts_with(start) && (whole.size() == start.size() || whole[start.size()] == '/');
}

int WatchedSystemCalls::answerTo(const SystemCallInfo& call) const {
  return before_ ? before_(call) : 0;
}

// The path as the disk spells it. What does not exist keeps its spelling.
Path WatchedSystemCalls::found(const Path& path) const {
  if (!foldsCase_ || !watches(path) || path == folder_) return path;
  const Unwatched off;
  const Path folder = found(path.parent_path());
  std::error_code missing;
  for (const auto& entry : std::filesystem::directory_iterator(folder, missing)) {
    const std::string name = entry.path().filename().string();
    if (::strcasecmp(name.c_str(), path.filename().c_str()) == 0) return entry.path();
  }
  return folder / path.filename();
}

void WatchedSystemCalls::noteDone(const SystemCallInfo& call, long result) const {
  if (after_) after_(call, result);
}

}  // namespace quorrix::test

using quorrix::test::nextFunction;
using quorrix::test::pathOf;
using quorrix::test::SystemCall;
using quorrix::test::watchedCall;

// NOLINTBEGIN: declared as the C library declares them.
extern "C" {

int open(const char* path, int flags, ...) {
  static auto* const next = nextFunction<int(const char*, int, ...)>("open");
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  return watchedCall(
      [&] {
        return quorrix::test::SystemCallInfo{
            .kind = SystemCall::Open, .path = path, .flags = flags};
      },
      [&] { return next(quorrix::test::found(path).c_str(), flags, mode); });
}

int stat(const char* path, struct stat* status) noexcept {
  static auto* const next = nextFunction<int(const char*, struct stat*)>("stat");
  return watchedCall(
      [&] { return quorrix::test::SystemCallInfo{.kind = SystemCall::Stat, .path = path}; },
      [&] { return next(quorrix::test::found(path).c_str(), status); });
}

int lstat(const char* path, struct stat* status) noexcept {
  static auto* const next = nextFunction<int(const char*, struct stat*)>("lstat");
  return watchedCall(
      [&] { return quorrix::test::SystemCallInfo{.kind = SystemCall::Stat, .path = path}; },
      [&] { return next(quorrix::test::found(path).c_str(), status); });
}

int fstat(int file, struct stat* status) noexcept {
  static auto* const next = nextFunction<int(int, struct stat*)>("fstat");
  return watchedCall(
      [&] {
        return quorrix::test::SystemCallInfo{
            .kind = SystemCall::Stat, .path = pathOf(file), .descriptor = file};
      },
      [&] { return next(file, status); });
}

int flock(int file, int operation) noexcept {
  static auto* const next = nextFunction<int(int, int)>("flock");
  return watchedCall(
      [&] {
        return quorrix::test::SystemCallInfo{
            .kind = SystemCall::Lock, .path = pathOf(file), .descriptor = file, .flags = operation};
      },
      [&] { return next(file, operation); });
}

ssize_t pread(int file, void* into, size_t count, off_t offset) {
  static auto* const next = nextFunction<ssize_t(int, void*, size_t, off_t)>("pread");
  return watchedCall(
      [&] {
        return quorrix::test::SystemCallInfo{
            .kind = SystemCall::Read, .path = pathOf(file), .descriptor = file, .offset = offset};
      },
      [&] { return next(file, into, count, offset); });
}

ssize_t pwrite(int file, const void* bytes, size_t count, off_t offset) {
  static auto* const next = nextFunction<ssize_t(int, const void*, size_t, off_t)>("pwrite");
  const auto* const watcher = quorrix::test::watched;
  const size_t allowed = watcher == nullptr ? count : std::min(count, watcher->mostBytes());
  return watchedCall(
      [&] {
        return quorrix::test::SystemCallInfo{.kind = SystemCall::Write,
                                             .path = pathOf(file),
                                             .descriptor = file,
                                             .offset = offset,
                                             .bytes = {static_cast<const char*>(bytes), allowed}};
      },
      [&] { return next(file, bytes, allowed, offset); });
}

int ftruncate(int file, off_t length) noexcept {
  static auto* const next = nextFunction<int(int, off_t)>("ftruncate");
  return watchedCall(
      [&] {
        return quorrix::test::SystemCallInfo{.kind = SystemCall::Truncate,
                                             .path = pathOf(file),
                                             .descriptor = file,
                                             .offset = length};
      },
      [&] { return next(file, length); });
}

int fdatasync(int file) {
  static auto* const next = nextFunction<int(int)>("fdatasync");
  return watchedCall(
      [&] {
        return quorrix::test::SystemCallInfo{
            .kind = SystemCall::SyncData, .path = pathOf(file), .descriptor = file};
      },
      [&] { return next(file); });
}

int fsync(int file) {
  static auto* const next = nextFunction<int(int)>("fsync");
  return watchedCall(
      [&] {
        return quorrix::test::SystemCallInfo{
            .kind = SystemCall::Sync, .path = pathOf(file), .descriptor = file};
      },
      [&] { return next(file); });
}

int rename(const char* from, const char* to) noexcept {
  static auto* const next = nextFunction<int(const char*, const char*)>("rename");
  return watchedCall(
      [&] {
        return quorrix::test::SystemCallInfo{.kind = SystemCall::Rename, .path = from, .to = to};
      },
      [&] { return next(quorrix::test::found(from).c_str(), quorrix::test::found(to).c_str()); });
}

int unlink(const char* path) noexcept {
  static auto* const next = nextFunction<int(const char*)>("unlink");
  return watchedCall(
      [&] { return quorrix::test::SystemCallInfo{.kind = SystemCall::Unlink, .path = path}; },
      [&] { return next(quorrix::test::found(path).c_str()); });
}

int mkdir(const char* path, mode_t mode) noexcept {
  static auto* const next = nextFunction<int(const char*, mode_t)>("mkdir");
  return watchedCall(
      [&] { return quorrix::test::SystemCallInfo{.kind = SystemCall::MakeFolder, .path = path}; },
      [&] { return next(quorrix::test::found(path).c_str(), mode); });
}

DIR* opendir(const char* path) {
  static auto* const next = nextFunction<DIR*(const char*)>("opendir");
  return watchedCall(
      [&] { return quorrix::test::SystemCallInfo{.kind = SystemCall::OpenFolder, .path = path}; },
      [&] { return next(quorrix::test::found(path).c_str()); });
}

struct dirent* readdir(DIR* folder) {
  static auto* const next = nextFunction<struct dirent*(DIR*)>("readdir");
  return watchedCall(
      [&] {
        return quorrix::test::SystemCallInfo{.kind = SystemCall::ReadFolder,
                                             .path = pathOf(::dirfd(folder)),
                                             .descriptor = ::dirfd(folder)};
      },
      [&] { return next(folder); });
}

int faccessat(int folder, const char* path, int mode, int flags) noexcept {
  static auto* const next = nextFunction<int(int, const char*, int, int)>("faccessat");
  return watchedCall(
      [&] { return quorrix::test::SystemCallInfo{.kind = SystemCall::Access, .path = path}; },
      [&] { return next(folder, quorrix::test::found(path).c_str(), mode, flags); });
}
}
// NOLINTEND
