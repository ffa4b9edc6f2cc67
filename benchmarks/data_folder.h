// The folder for the benchmarks' data, which should be on a disk. It is created for one
// run and removed at its end.
#pragma once

#include <filesystem>
#include <string>

namespace quorrix::bench {

class DataFolder {
 public:
  // Creates the folder in $QUORRIX_BENCH_DIR or, if that is not set, in the build folder.
  DataFolder();
  ~DataFolder();
  DataFolder(const DataFolder&) = delete;
  DataFolder& operator=(const DataFolder&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

// A description of the file system and the disk that hold `folder`, such as "ext4 on
// /dev/sda1, reported as not rotating". It says if they are memory, where a sync costs
// nothing.
[[nodiscard]] std::string storageUnder(const std::filesystem::path& folder);

}  // namespace quorrix::bench
