#include "reliability/disk_journal.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace quorrix::test {
namespace {

std::string bytesOf(const Path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

struct stat statusOf(int descriptor) {
  struct stat status {};
  if (::fstat(descriptor, &status) != 0) throw std::logic_error("no open file");
  return status;
}

struct stat statusOf(const Path& path) {
  struct stat status {};
  if (::lstat(path.c_str(), &status) != 0) throw std::logic_error("no file " + path.string());
  return status;
}

}  // namespace

DiskJournal::DiskJournal(const Path& folder) : calls_(folder) {
  before_.folders.insert(folder.string());
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    if (entry.is_directory()) before_.folders.insert(entry.path().string());
    if (!entry.is_regular_file()) continue;
    files_[statusOf(entry.path()).st_ino] = ++lastFile_;
    before_.names[entry.path().string()] = lastFile_;
    before_.bytes[lastFile_] = bytesOf(entry.path());
  }
  calls_.beforeEach([this](const SystemCallInfo& call) {
    struct stat status {};
    if (call.kind == SystemCall::Open) isNew_ = ::lstat(call.path.c_str(), &status) != 0;
    return 0;
  });
  calls_.afterEach([this](const SystemCallInfo& call, long result) { note(call, result); });
}

void DiskJournal::note(const SystemCallInfo& call, long result) {
  switch (call.kind) {
    case SystemCall::Open:
      return noteOpened(call, static_cast<int>(result));
    case SystemCall::Write:
      steps_.push_back({.kind = DiskStep::Write,
                        .file = fileOf(call.descriptor),
                        .offset = static_cast<std::size_t>(call.offset),
                        .bytes = {call.bytes.data(), static_cast<std::size_t>(result)}});
      return;
    case SystemCall::Truncate:
      steps_.push_back({.kind = DiskStep::Truncate,
                        .file = fileOf(call.descriptor),
                        .offset = static_cast<std::size_t>(call.offset)});
      return;
    case SystemCall::SyncData:
    case SystemCall::Sync:
      if (S_ISDIR(statusOf(call.descriptor).st_mode)) {
        steps_.push_back({.kind = DiskStep::SyncFolder, .path = call.path});
      } else {
        steps_.push_back({.kind = DiskStep::SyncFile, .file = fileOf(call.descriptor)});
      }
      return;
    case SystemCall::Rename:
      steps_.push_back({.kind = DiskStep::Rename,
                        .file = files_.at(statusOf(call.to).st_ino),
                        .path = call.path,
                        .to = call.to});
      return;
    case SystemCall::Unlink:
      steps_.push_back({.kind = DiskStep::Unlink, .path = call.path});
      return;
    case SystemCall::MakeFolder:
      steps_.push_back({.kind = DiskStep::MakeFolder, .path = call.path});
      return;
    case SystemCall::Stat:
    case SystemCall::Lock:
    case SystemCall::Read:
    case SystemCall::OpenFolder:
    case SystemCall::ReadFolder:
    case SystemCall::Access:
      return;
  }
}

void DiskJournal::noteOpened(const SystemCallInfo& call, int descriptor) {
  if ((call.flags & O_CREAT) == 0 || !isNew_) return;
  // The system may reuse the number of a removed file.
  files_[statusOf(descriptor).st_ino] = ++lastFile_;
  steps_.push_back({.kind = DiskStep::Create, .file = lastFile_, .path = call.path});
}

int DiskJournal::fileOf(int descriptor) const { return files_.at(statusOf(descriptor).st_ino); }

}  // namespace quorrix::test
