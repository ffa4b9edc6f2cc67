// Reads the records of a data file that Quorrix may be using. The file is open, and locked for
// writers, only while one block is read. It is closed before the block's records are visited,
// so a visitor may be slow. A missing file is never created.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>

#include "platform/file_system.h"

namespace quorrix {

// How long to try to open a file that another program has locked.
inline constexpr std::chrono::seconds kReadPatience{5};

// Opens as FileSystem::openForReading(), but keeps trying while the file is in use. Throws
// Problem, except kFileNotFound and kPathNotFound, for which it returns null.
[[nodiscard]] std::unique_ptr<RandomAccessFile> openPatiently(
    FileSystem& files, const Path& path, std::chrono::milliseconds patience = kReadPatience);

class RecordReader {
 public:
  explicit RecordReader(FileSystem& files, std::chrono::milliseconds patience = kReadPatience)
      : files_(files), patience_(patience) {}

  // False ends the reading.
  using Visit = std::function<bool(std::uint64_t number, std::span<const char> record)>;
  using Fail = std::function<bool(std::uint64_t number, int failureNumber)>;

  // Visits every record that begins inside the file, in order. The bytes that a partial last
  // record lacks are NUL. The record is valid only during the call. A record that cannot be read
  // is given to `fail`; without it, it is a Problem. Returns false if the file is missing. Throws
  // Problem if the file cannot be opened, or becomes shorter in between.
  bool forEach(const Path& path, std::size_t recordLength, const Visit& visit,
               const Fail& fail = {});

 private:
  struct Block;
  bool readBlock(const Path& path, std::uint64_t offset, Block& block);

  FileSystem& files_;
  std::chrono::milliseconds patience_;
};

}  // namespace quorrix
