#include <fcntl.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "archives/archive_operations.h"
#include "archives/last_archive.h"
#include "benchmarks.h"
#include "platform/linux/file_descriptor.h"
#include "platform/linux/posix_file_system.h"
#include "platform/system_clock.h"
#include "record_kinds.h"
#include "shell/app_paths.h"
#include "sitetree/site_file.h"
#include "turns.h"
#include "unsynced_file_system.h"

namespace quorrix::bench {
namespace {

constexpr std::size_t kSites = sized(200'000);
constexpr std::size_t kRecords = sized(32'767);  // of each of the other three files

enum class Sync { Yes, No };

void copyBytes(const Path& from, const Path& to) {
  std::filesystem::copy_file(from, to, std::filesystem::copy_options::overwrite_existing);
}

// The program's folder with full data files, and an archive of the same size.
class FullFolders {
 public:
  explicit FullFolders(BenchData& data)
      : program_(data.folder() / "archive"), appPaths_(program_), archive_(program_ / "May") {
    std::filesystem::create_directories(program_ / "Data");
    std::filesystem::create_directories(archive_);
    std::ofstream(program_ / "Data" / "load.txt") << "none\r\n";
    paths_.setFolder(program_ / "Data");
    originals_.push_back(data.siteFile(kSites).currentNodesFile);
    for (const RecordKind* const kind : {&notesKind(), &purchaseKind(), &userIDPasswordKind()}) {
      originals_.push_back(data.recordFile(*kind, kRecords).*kind->path);
    }
  }

  FullFolders(const FullFolders&) = delete;
  FullFolders& operator=(const FullFolders&) = delete;

  void fillDataFolder() { fill(paths_.loadPath); }
  void fillBoth() {
    fill(paths_.loadPath);
    fill(archive_);
  }

  void emptyArchive() {
    std::filesystem::remove_all(archive_);
    std::filesystem::create_directory(archive_);
  }

  void archive(FileSystem& system) {
    if (!hasSitesToArchive(system, paths_)) throw std::runtime_error("nothing to archive");
    moveIntoArchive(system, paths_, archive_, EarlierArchive::None);
    rememberNoArchive(system, appPaths_);
    requireCopiesIn(archive_);
  }

  // Builds the tree, but not its view.
  void load(FileSystem& system) {
    SystemClock clock;
    SiteTree tree;
    paths_.setFilesFolder(archive_);
    SiteFile(system, clock, paths_).loadNodes(tree);
    takeOverArchive(system, appPaths_, paths_, archive_);
    rememberArchive(system, appPaths_, archive_);
    requireCopiesIn(paths_.loadPath);
    if (tree.size() < kSites) throw std::runtime_error("the tree was not built");
  }

  // Copies the files' bytes and nothing else. Each file reaches the disk before the next
  // one is copied.
  void copyAndSync() {
    for (const Path& original : originals_) {
      const Path target = archive_ / original.filename();
      copyBytes(original, target);
      const FileDescriptor written(::open(target.c_str(), O_RDONLY | O_CLOEXEC));
      if (::fsync(written.number()) != 0) throw std::runtime_error("a copy is not synced");
    }
  }

 private:
  void fill(const Path& folder) {
    for (const Path& original : originals_) copyBytes(original, folder / original.filename());
  }

  void requireCopiesIn(const Path& folder) {
    for (const Path& original : originals_) {
      const auto length = std::filesystem::file_size(original);
      if (std::filesystem::file_size(folder / original.filename()) != length) {
        throw std::runtime_error("a file was not copied");
      }
    }
  }

  Path program_;
  AppPaths appPaths_;
  Path archive_;
  WorkingPaths paths_;
  std::vector<Path> originals_;
};

using Operation = void (FullFolders::*)(FileSystem& system);

std::function<void()> runOf(FullFolders& folders, Operation operation, Sync sync) {
  return [&folders, operation, sync] {
    PosixFileSystem real;
    UnsyncedFileSystem unsynced(real);
    (folders.*operation)(sync == Sync::Yes ? static_cast<FileSystem&>(real) : unsynced);
  };
}

Turn archivingTurn(FullFolders& folders, Sync sync) {
  return {.run = runOf(folders, &FullFolders::archive, sync), .prepare = [&folders] {
            folders.emptyArchive();
            folders.fillDataFolder();
          }};
}

Turn loadingTurn(FullFolders& folders, Sync sync) {
  return {.run = runOf(folders, &FullFolders::load, sync),
          .prepare = [&folders] { folders.fillBoth(); }};
}

Turn limitTurn(FullFolders& folders) {
  return {.run = [&folders] { folders.copyAndSync(); },
          .prepare = [&folders] { folders.emptyArchive(); }};
}

}  // namespace

void registerArchiveBenchmarks(BenchData& data) {
  const auto made = std::make_shared<std::optional<FullFolders>>();
  const auto add = [&data, made](const char* who, const std::function<Turn(FullFolders&)>& turnOf) {
    registerTurns(nameOf(who, kSites), kRepetitions, [&data, made, turnOf] {
      if (!*made) made->emplace(data);
      return turnOf(**made);
    });
  };
  add("archive/files_synced", [](FullFolders& all) { return archivingTurn(all, Sync::Yes); });
  add("archive/limit_copy_and_sync", limitTurn);
  add("archive/files_unsynced", [](FullFolders& all) { return archivingTurn(all, Sync::No); });
  add("archive_load/files_synced", [](FullFolders& all) { return loadingTurn(all, Sync::Yes); });
  add("archive_load/files_unsynced", [](FullFolders& all) { return loadingTurn(all, Sync::No); });
}

}  // namespace quorrix::bench
