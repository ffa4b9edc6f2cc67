// The folder that the benchmarks keep their data in: made for one run, on a disk,
// removed at its end.
#pragma once

#include <filesystem>
#include <string>

namespace quorrix::bench {

class DataFolder {
 public:
  // In $QUORRIX_BENCH_DIR, else in the build folder.
  DataFolder();
  ~DataFolder();
  DataFolder(const DataFolder&) = delete;
  DataFolder& operator=(const DataFolder&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

// The file system and the disk that hold `folder`, in words: "ext4 on /dev/sda1, a
// disk without moving parts". Says so when it is memory, where a sync costs nothing.
[[nodiscard]] std::string storageUnder(const std::filesystem::path& folder);

}  // namespace quorrix::bench
