// Reads the records of a data file that Quorrix may be using. The file is open, and locked for
// writers, only while one block is read. It is closed before the block's records are visited,
// so a visitor may be slow. LockTurns keeps it closed for longer from time to time. A missing file
// is never created.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <utility>

#include "data_tool/lock_turns.h"
#include "platform/file_system.h"

namespace quorrix {

// Opens as FileSystem::openForReading(), but keeps trying while the file is in use. Throws
// Problem, except kFileNotFound and kPathNotFound, for which it returns null, and EndRequested.
[[nodiscard]] std::unique_ptr<RandomAccessFile> openPatiently(FileSystem& files, const Path& path,
                                                              const LockTurns& turns = LockTurns());

class RecordReader {
 public:
  explicit RecordReader(FileSystem& files, LockTurns turns = LockTurns())
      : files_(files), turns_(std::move(turns)) {}

  // False ends the reading.
  using Visit = std::function<bool(std::uint64_t number, std::span<const char> record)>;
  using Fail = std::function<bool(std::uint64_t number, int failureNumber)>;

  // Visits every record that begins inside the file, in order. The bytes that a partial last
  // record lacks are NUL. The record is valid only during the call. A record that cannot be read
  // is given to `fail`; without it, it is a Problem. Returns false if the file is missing. Throws
  // Problem if the file cannot be opened, or becomes shorter in between, and EndRequested.
  bool forEach(const Path& path, std::size_t recordLength, const Visit& visit,
               const Fail& fail = {});

 private:
  struct Block;
  bool readBlock(const Path& path, std::uint64_t offset, Block& block);

  FileSystem& files_;
  LockTurns turns_;
};

}  // namespace quorrix
