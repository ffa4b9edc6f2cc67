#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "benchmarks.h"
#include "datafiles/record_layouts.h"
#include "datafiles/site_record.h"
#include "platform/linux/file_descriptor.h"
#include "platform/linux/posix_file_system.h"
#include "record_kinds.h"
#include "sitetree/site_deletion.h"
#include "turns.h"
#include "unsynced_file_system.h"

namespace quorrix::bench {
namespace {

constexpr std::size_t kRecords = sized(100'000);  // of each file, one per site
constexpr std::size_t kDeleted = sized(20'000);

// The sites to delete were visited in between others. This is the harder case, because
// nearly every page of the files changes.
constexpr std::size_t kStride = kRecords / kDeleted;

enum class Sync { Yes, No };

std::string siteRecordOf(std::string_view address) {
  std::string record(site_record::kLength, ' ');
  fillField(record, site_record::kSiteAddress, address);
  fillField(record, site_record::kProtocolFlag, "N");
  fillField(record, site_record::kAccessStamp, "11/21/25 10:15:00 AM~");
  return record;
}

class FourFiles {
 public:
  struct File {
    Path path;
    std::size_t recordLength;
    std::string deletedRecords;
  };

  explicit FourFiles(BenchData& data) {
    const Path folder = data.folder() / "deletion";
    std::filesystem::create_directory(folder);
    paths_.setFolder(folder);
    const AddressList& addresses = data.addresses(kRecords);
    for (std::size_t i = 0; i < kRecords; i += kStride) deletedKeys_.emplace_back(addresses[i]);
    keys_.assign(deletedKeys_.begin(), deletedKeys_.end());
    add(addresses, paths_.currentNodesFile, site_record::kLength, siteRecordOf);
    for (const RecordKind* const kind : {&purchaseKind(), &notesKind(), &userIDPasswordKind()}) {
      add(addresses, paths_.*kind->path, kind->recordLength,
          [kind](std::string_view address) { return kind->recordOf(kind->rowOf(address, 0)); });
    }
  }

  FourFiles(const FourFiles&) = delete;
  FourFiles& operator=(const FourFiles&) = delete;

  void restore() {
    for (const File& file : files_) {
      const auto open = system_.openRandomAccess(file.path);
      for (std::size_t i = 0; i < kDeleted; ++i) {
        open->writeAt(
            i * kStride * file.recordLength,
            std::span(file.deletedRecords).subspan(i * file.recordLength, file.recordLength));
      }
    }
  }

  void deleteSites(FileSystem& system) {
    deleteSiteRecords(system, paths_, keys_);
    char last = '\0';
    const File& file = files_.back();
    static_cast<void>(system_.openRandomAccess(file.path)->readAt(
        (kDeleted - 1) * kStride * file.recordLength, {&last, 1}));
    if (last != ' ') throw std::runtime_error("the records were not deleted");
  }

  [[nodiscard]] const std::vector<File>& files() const { return files_; }

 private:
  template <typename RecordOf>
  void add(const AddressList& addresses, const Path& path, std::size_t recordLength,
           RecordOf recordOf) {
    File file{.path = path, .recordLength = recordLength, .deletedRecords = {}};
    std::ofstream stream(path, std::ios::binary);
    stream.exceptions(std::ios::failbit | std::ios::badbit);
    for (std::size_t i = 0; i < kRecords; ++i) {
      const std::string record = recordOf(addresses[i]);
      stream << record;
      if (i % kStride == 0) file.deletedRecords += record;
    }
    files_.push_back(std::move(file));
  }

  WorkingPaths paths_;
  std::vector<std::string> deletedKeys_;
  std::vector<std::string_view> keys_;
  std::vector<File> files_;
  PosixFileSystem system_;
};

Turn programTurn(FourFiles& files, Sync sync) {
  return {.run =
              [&files, sync] {
                PosixFileSystem real;
                UnsyncedFileSystem unsynced(real);
                files.deleteSites(sync == Sync::Yes ? static_cast<FileSystem&>(real) : unsynced);
              },
          .prepare = [&files] { files.restore(); }};
}

// Reads the file's bytes, overwrites the records one by one, and syncs the file. Searches
// for nothing.
void readWriteAndSync(const FourFiles::File& file, std::vector<char>& block) {
  const FileDescriptor open(::open(file.path.c_str(), O_RDWR | O_CLOEXEC));
  while (::read(open.number(), block.data(), block.size()) > 0) {
    benchmark::DoNotOptimize(block.data());
  }
  const std::string blank(file.recordLength, ' ');
  for (std::size_t i = 0; i < kDeleted; ++i) {
    const auto offset = static_cast<off_t>(i * kStride * file.recordLength);
    if (::pwrite(open.number(), blank.data(), blank.size(), offset) < 0) {
      throw std::runtime_error("the limit's file cannot be written");
    }
  }
  if (::fdatasync(open.number()) != 0) throw std::runtime_error("the limit's file is not synced");
}

Turn limitTurn(FourFiles& files) {
  return {.run =
              [&files, block = std::vector<char>(std::size_t{256} * 1024)]() mutable {
                for (const auto& file : files.files()) readWriteAndSync(file, block);
              },
          .prepare = [&files] { files.restore(); }};
}

}  // namespace

void registerDeletionBenchmarks(BenchData& data) {
  const auto made = std::make_shared<std::optional<FourFiles>>();
  const auto add = [&data, made](const char* who, const std::function<Turn(FourFiles&)>& turnOf) {
    registerTurns(nameOf(who, kRecords), kRepetitions, [&data, made, turnOf] {
      if (!*made) made->emplace(data);
      return turnOf(**made);
    });
  };
  add("deletion/files_synced", [](FourFiles& files) { return programTurn(files, Sync::Yes); });
  add("deletion/limit_read_write_and_sync", limitTurn);
  add("deletion/files_unsynced", [](FourFiles& files) { return programTurn(files, Sync::No); });
}

}  // namespace quorrix::bench
