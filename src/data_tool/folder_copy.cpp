#include "data_tool/folder_copy.h"

#include <memory>
#include <optional>
#include <vector>

#include "data_tool/copy_stage.h"
#include "data_tool/file_copy.h"
#include "data_tool/outside.h"
#include "data_tool/problem.h"
#include "data_tool/resolved_path.h"
#include "datafiles/working_folder.h"
#include "platform/deferred_signals.h"
#include "platform/failure.h"

namespace quorrix {
namespace {

// In the order in which they are released. The largest file is last.
constexpr const char* kFileNames[] = {"load.txt", data_file::kUserIDPassword, data_file::kPurchases,
                                      data_file::kURLNotes, data_file::kNodes};

constexpr int kMostRounds = 5;

// 16 MiB. Quorrix changes one record at a time.
constexpr std::size_t kMostKeptBlocks = 64;

using Sources = std::vector<std::unique_ptr<RandomAccessFile>>;

// Null for each file that is missing. nullopt if another program is writing one of the files. No
// file stays locked then.
std::optional<Sources> openAll(FileSystem& files, const std::vector<FileCopy>& copies) {
  Sources opened;
  for (const FileCopy& copy : copies) {
    try {
      opened.push_back(files.openForReading(copy.source()));
    } catch (const Failure& reason) {
      if (reason.isFileInUse()) return std::nullopt;
      if (reason.number() != failure::kFileNotFound) {
        throw Problem::ofFile(copy.source(), reason.number());
      }
      opened.push_back(nullptr);
    }
  }
  return opened;
}

// The files of one folder as they were at one moment.
class FolderCopy {
 public:
  FolderCopy(FileSystem& files, const Path& from, const Path& into, LockTurns& turns)
      : files_(files), from_(from), turns_(turns) {
    for (const char* const name : kFileNames) copies_.emplace_back(files, from / name, into / name);
  }

  void make() {
    for (int round = 0; round < kMostRounds; ++round) {
      for (FileCopy& copy : copies_) copy.copy(turns_);
      // What was written in between, so that little is left to read while Quorrix waits.
      for (FileCopy& copy : copies_) {
        if (!copy.isSettled()) copy.copy(turns_);
      }
      if (catchUp()) {
        for (FileCopy& copy : copies_) copy.writeKept();
        for (FileCopy& copy : copies_) {
          turns_.throwIfInterrupted();
          copy.sync();
        }
        return;
      }
      for (FileCopy& copy : copies_) copy.discard();
    }
    throw Problem::ofFile(from_, "The files changed while they were copied. Try again.");
  }

 private:
  // All files are locked together, and each is released when it has been read. Nothing is written
  // here, because Quorrix has to wait.
  bool catchUp() {
    Sources sources = openAllPatiently();
    BlockBudget budget{kMostKeptBlocks};
    for (std::size_t i = 0; i < copies_.size(); ++i) {
      if (!copies_[i].catchUp(sources[i].get(), budget)) return false;
      sources[i].reset();
    }
    return true;
  }

  // Between two rounds, Quorrix gets a file that was locked in the first one.
  Sources openAllPatiently() {
    std::optional<Sources> opened;
    const bool isOpen = turns_.succeeds([&] {
      opened = openAll(files_, copies_);
      if (!opened) turns_.pause();
      return opened.has_value();
    });
    if (isOpen) return std::move(*opened);
    throw Problem::ofFile(from_, "Another program is using the files. Try again later.");
  }

  FileSystem& files_;
  const Path& from_;
  LockTurns& turns_;
  std::vector<FileCopy> copies_;
};

// Makes the folder and those above it that are missing.
void makeFolders(FileSystem& files, const Path& folder) {
  if (withPath(folder, [&] { return files.folderExists(folder); })) return;
  makeFolders(files, folder.parent_path());
  withPath(folder, [&] { return files.makeFolder(folder); });
}

}  // namespace

void copyFolders(FileSystem& files, const Path& data, Archives archives, const Path& target,
                 const ReportProblem& report, const LockTiming& timing) {
  requireDataFiles(files, data);
  const Path named = outputTarget(target);
  requireOutside(files, named, data);
  const DeferredSignals signals;
  LockTurns turns(timing, &signals);
  CopyStage stage(files, named);
  FolderCopy(files, data, stage.path(), turns).make();
  for (const DataFolder& folder : readableFoldersOf(files, data, archives, report)) {
    if (folder.archive.empty()) continue;
    const Path into = stage.path() / "Archives" / folder.name;
    makeFolders(files, into);
    FolderCopy(files, folder.path, into, turns).make();
  }
  signals.throwIfPending();
  stage.finish();
}

}  // namespace quorrix
