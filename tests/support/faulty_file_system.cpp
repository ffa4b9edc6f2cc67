#include "support/faulty_file_system.h"

#include <algorithm>
#include <utility>

#include "platform/failure.h"

namespace quorrix::test {

// The planned faults and the calls so far; shared with the open files.
struct FaultyFileSystem::Plan {
  struct Fault {
    std::optional<FileCall> kind;  // nullopt: any call
    int callsLeft;                 // the call fails when this reaches 0
    int number;
    bool isAfterwards = false;
  };
  struct BadSpot {
    std::uint64_t first;
    std::uint64_t count;
    int number;
  };
  struct Cut {
    int readsLeft;
    std::size_t bytes;
  };

  std::vector<FileCall> calls;
  std::vector<Fault> faults;
  std::vector<BadSpot> badSpots;
  std::vector<Cut> cuts;
  std::optional<int> always;
  std::optional<int> oneRead;
  std::optional<int> afterThisCall;
  std::function<void()> look;

  void call(FileCall kind) {
    calls.push_back(kind);
    afterThisCall.reset();
    if (look) look();
    if (always) throw Failure(*always);
    std::optional<int> strikes;
    for (Fault& fault : faults) {
      if (fault.kind && *fault.kind != kind) continue;
      if (--fault.callsLeft == 0) (fault.isAfterwards ? afterThisCall : strikes) = fault.number;
    }
    if (strikes) throw Failure(*strikes);
  }

  void callIsDone() {
    if (const auto number = std::exchange(afterThisCall, std::nullopt)) throw Failure(*number);
  }

  static void requireReadable(const std::vector<BadSpot>& badSpots, std::uint64_t offset,
                              std::uint64_t count) {
    for (const BadSpot& spot : badSpots) {
      if (offset < spot.first + spot.count && spot.first < offset + count) {
        throw Failure(spot.number);
      }
    }
  }

  // How many of the requested bytes the current read may return.
  std::size_t allowedBytes(std::size_t asked) {
    std::size_t allowed = asked;
    for (Cut& cut : cuts) {
      if (--cut.readsLeft == 0) allowed = std::min(allowed, cut.bytes);
    }
    return allowed;
  }
};

class FaultyFileSystem::File final : public RandomAccessFile {
 public:
  File(std::unique_ptr<RandomAccessFile> behind, std::shared_ptr<Plan> plan)
      : behind_(std::move(behind)), plan_(std::move(plan)) {}

  std::uint64_t length() override {
    plan_->call(FileCall::Length);
    return behind_->length();
  }

  std::size_t readAt(std::uint64_t offset, std::span<char> into) override {
    try {
      plan_->call(FileCall::ReadAt);
    } catch (const Failure& reason) {
      badSpots_.push_back({.first = offset, .count = into.size(), .number = reason.number()});
      throw;
    }
    if (const auto number = std::exchange(plan_->oneRead, std::nullopt)) throw Failure(*number);
    Plan::requireReadable(badSpots_, offset, into.size());
    Plan::requireReadable(plan_->badSpots, offset, into.size());
    return behind_->readAt(offset, into.first(plan_->allowedBytes(into.size())));
  }

  void writeAt(std::uint64_t offset, std::span<const char> bytes) override {
    plan_->call(FileCall::WriteAt);
    behind_->writeAt(offset, bytes);
    plan_->callIsDone();
  }

  void sync() override {
    plan_->call(FileCall::Sync);
    behind_->sync();
    plan_->callIsDone();
  }

 private:
  std::unique_ptr<RandomAccessFile> behind_;
  std::shared_ptr<Plan> plan_;
  std::vector<Plan::BadSpot> badSpots_;
};

FaultyFileSystem::FaultyFileSystem(FileSystem& behind)
    : behind_(behind), plan_(std::make_shared<Plan>()) {}

void FaultyFileSystem::failAtCall(int n, int number) {
  plan_->faults.push_back({.kind = {}, .callsLeft = n, .number = number});
}

void FaultyFileSystem::failAtCall(FileCall kind, int n, int number) {
  plan_->faults.push_back({.kind = kind, .callsLeft = n, .number = number});
}

void FaultyFileSystem::failAfterCall(int n, int number) {
  plan_->faults.push_back({.kind = {}, .callsLeft = n, .number = number, .isAfterwards = true});
}

void FaultyFileSystem::failOneRead(int number) { plan_->oneRead = number; }

void FaultyFileSystem::failAlways(int number) { plan_->always = number; }

void FaultyFileSystem::spoilBytes(std::uint64_t first, std::uint64_t count, int number) {
  plan_->badSpots.push_back({.first = first, .count = count, .number = number});
}

void FaultyFileSystem::cutReadShort(int n, std::size_t bytes) {
  plan_->cuts.push_back({.readsLeft = n, .bytes = bytes});
}

void FaultyFileSystem::onEveryCall(std::function<void()> look) { plan_->look = std::move(look); }

void FaultyFileSystem::reset() { *plan_ = Plan(); }

const std::vector<FileCall>& FaultyFileSystem::calls() const { return plan_->calls; }

int FaultyFileSystem::callsOf(FileCall kind) const {
  return static_cast<int>(std::count(plan_->calls.begin(), plan_->calls.end(), kind));
}

bool FaultyFileSystem::folderExists(const Path& path) {
  plan_->call(FileCall::FolderExists);
  return behind_.folderExists(path);
}

bool FaultyFileSystem::fileExists(const Path& path) {
  plan_->call(FileCall::FileExists);
  return behind_.fileExists(path);
}

Path FaultyFileSystem::makeFolder(const Path& path) {
  plan_->call(FileCall::MakeFolder);
  Path made = behind_.makeFolder(path);
  plan_->callIsDone();
  return made;
}

std::unique_ptr<RandomAccessFile> FaultyFileSystem::openRandomAccess(const Path& path) {
  plan_->call(FileCall::OpenRandomAccess);
  auto file = std::make_unique<File>(behind_.openRandomAccess(path), plan_);
  plan_->callIsDone();
  return file;
}

std::unique_ptr<RandomAccessFile> FaultyFileSystem::openForReading(const Path& path) {
  plan_->call(FileCall::OpenForReading);
  return std::make_unique<File>(behind_.openForReading(path), plan_);
}

std::unique_ptr<RandomAccessFile> FaultyFileSystem::openAsPermitted(const Path& path) {
  plan_->call(FileCall::OpenAsPermitted);
  return std::make_unique<File>(behind_.openAsPermitted(path), plan_);
}

void FaultyFileSystem::deleteFile(const Path& path) {
  plan_->call(FileCall::DeleteFile);
  behind_.deleteFile(path);
  plan_->callIsDone();
}

void FaultyFileSystem::deleteCopiedFile(const Path& path, const Path& copy) {
  plan_->call(FileCall::DeleteFile);
  behind_.deleteCopiedFile(path, copy);
  plan_->callIsDone();
}

bool FaultyFileSystem::isSameFile(const Path& one, const Path& other) {
  plan_->call(FileCall::IsSameFile);
  return behind_.isSameFile(one, other);
}

void FaultyFileSystem::copyFile(const Path& from, const Path& to) {
  plan_->call(FileCall::CopyFile);
  behind_.copyFile(from, to);
  plan_->callIsDone();
}

void FaultyFileSystem::replaceByLine(const Path& path, std::string_view line) {
  plan_->call(FileCall::ReplaceByLine);
  behind_.replaceByLine(path, line);
  plan_->callIsDone();
}

void FaultyFileSystem::rename(const Path& from, const Path& to) {
  plan_->call(FileCall::Rename);
  behind_.rename(from, to);
}

std::string FaultyFileSystem::readFirstLine(const Path& path) {
  plan_->call(FileCall::ReadFirstLine);
  return behind_.readFirstLine(path);
}

std::vector<Path> FaultyFileSystem::fileNames(const Path& folder) {
  plan_->call(FileCall::FileNames);
  return behind_.fileNames(folder);
}

std::vector<Path> FaultyFileSystem::folderNames(const Path& folder) {
  plan_->call(FileCall::FolderNames);
  return behind_.folderNames(folder);
}

std::vector<Path> FaultyFileSystem::volumes() {
  plan_->call(FileCall::Volumes);
  return behind_.volumes();
}

}  // namespace quorrix::test
