// A data file: records of one length, no header, no separators; record n,
// counted from 1, starts at byte (n - 1) * length. Open for the life of the
// object, which is one operation.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>

#include "platform/file_system.h"

namespace quorrix {

// The number of records that a file of `fileLength` bytes counts: rounded to the
// nearest whole number, a half to the even one.
[[nodiscard]] std::uint64_t recordCountOf(std::uint64_t fileLength, std::size_t recordLength);

enum class FileAccess {
  Read,         // beside other readers
  ReadWrite,    // alone
  AsPermitted,  // ReadWrite; Read where the user may not write to the file
};

class FixedRecordFile {
 public:
  // Creates a missing file.
  FixedRecordFile(FileSystem& files, const Path& path, std::size_t recordLength, FileAccess access);

  [[nodiscard]] std::uint64_t recordCount();

  // The records that begin inside the file, a trailing part record of any length among them.
  [[nodiscard]] std::uint64_t recordsBegun();

  // Bytes that the file does not have read as NUL. `record` has the record's length.
  void get(std::uint64_t number, std::span<char> record);

  // One positioned write of the whole record.
  void put(std::uint64_t number, std::span<const char> record);

  // Returns once what was put has reached the disk.
  void sync();

  enum class ReadFailures { Throw, SkipRecord };

  // Gets records 1 to `last` in order, many to one read, until `visit` returns
  // false. The record's bytes are valid during the call only. Where many cannot be
  // read at once, each is read by itself: every record before an unreadable one is
  // visited.
  using Visit = std::function<bool(std::uint64_t number, std::span<const char> record)>;
  void scan(std::uint64_t last, ReadFailures onFailure, const Visit& visit);

 private:
  [[nodiscard]] std::uint64_t offsetOf(std::uint64_t number) const;
  void read(std::uint64_t firstNumber, std::span<char> records);
  bool scanSingly(std::uint64_t first, std::span<char> records, ReadFailures onFailure,
                  const Visit& visit);

  std::unique_ptr<RandomAccessFile> file_;
  std::size_t recordLength_;
};

}  // namespace quorrix
