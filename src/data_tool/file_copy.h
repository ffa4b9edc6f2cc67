// The copy of one file that Quorrix may be writing. The copy is made without keeping the file
// locked; later the file is locked for one read, which shows what has changed since.
// folder_copy.cpp does that for all files of a folder at once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "data_tool/lock_turns.h"
#include "platform/file_system.h"

namespace quorrix {

// How many changed blocks may still be kept in memory while files are locked. Shared by the
// files of a folder.
struct BlockBudget {
  std::size_t blocks;
};

class FileCopy {
 public:
  static constexpr std::size_t kBlockSize = std::size_t{256} * 1024;  // in bytes

  // `source` may be missing; then `target` will be, too. `target` must not exist.
  FileCopy(FileSystem& files, Path source, Path target);

  // Copies the file, which may change at the same time. The source is locked only while a block
  // is read, and never while the copy is written. A second call writes only the blocks that have
  // changed. Throws Problem, and EndRequested between blocks.
  void copy(LockTurns& turns);

  // Whether the length and the time of the source show that nothing was written to it since copy()
  // began. False for a while after it was written to.
  [[nodiscard]] bool isSettled() const;

  // Compares the copy with the source, which the caller has locked, or null if it is missing. Reads
  // the whole source unless isSettled(). Keeps in memory the blocks that differ. Returns false if
  // the copy has to be made again: the source is now shorter or missing, or too many blocks differ.
  [[nodiscard]] bool catchUp(RandomAccessFile* source, BlockBudget& budget);

  // Writes the blocks that catchUp() kept.
  void writeKept();

  // Removes the copy, so that it can be made again.
  void discard();

  // Returns once the copy has reached the disk.
  void sync();

  [[nodiscard]] const Path& source() const { return source_; }

 private:
  // Blocks are counted from 0. Only the last one is shorter than kBlockSize; it may be empty.
  struct KeptBlock {
    std::size_t number;
    std::vector<char> bytes;
  };

  struct State {
    std::uint64_t length;
    std::filesystem::file_time_type written;

    bool operator==(const State&) const = default;
  };

  // nullopt if it is unknown.
  [[nodiscard]] std::optional<State> stateOfSource() const;
  void rememberState();
  [[nodiscard]] bool isCopied(std::size_t number, std::span<const char> bytes) const;
  void write(std::size_t number, std::span<const char> bytes);

  FileSystem& files_;
  Path source_;
  Path target_;
  std::unique_ptr<RandomAccessFile> copy_;  // null until the source was seen
  std::uint64_t length_ = 0;                // of the copy, in bytes
  // Of each block of the copy. Comparing digests instead of the copy itself keeps the source from
  // being locked while a slow disk is read.
  std::vector<std::size_t> digests_;
  std::vector<KeptBlock> kept_;
  // Of the source before its first block was read; nullopt if it does not prove anything.
  std::optional<State> state_;
};

}  // namespace quorrix
