// A data file of records of one length, without a header or separators. Record n, counted
// from 1, starts at byte (n - 1) * length. The file is open for the life of the object,
// which is one operation.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>

#include "platform/file_system.h"

namespace quorrix {

// The number of records in a file of `fileLength` bytes, rounded to the nearest whole
// number. A half is rounded to the even number.
[[nodiscard]] std::uint64_t recordCountOf(std::uint64_t fileLength, std::size_t recordLength);

enum class FileAccess {
  Read,         // shared with other readers
  ReadWrite,    // exclusive
  AsPermitted,  // ReadWrite, or Read if the user may not write to the file
};

class FixedRecordFile {
 public:
  // Creates a missing file.
  FixedRecordFile(FileSystem& files, const Path& path, std::size_t recordLength, FileAccess access);

  [[nodiscard]] std::uint64_t recordCount();

  // The number of records that begin inside the file, including a trailing partial record
  // of any length.
  [[nodiscard]] std::uint64_t recordsBegun();

  // Bytes after the end of the file read as NUL. `record` must have the size of a record.
  void get(std::uint64_t number, std::span<char> record);

  // Writes the whole record in one positioned write.
  void put(std::uint64_t number, std::span<const char> record);

  // Returns once everything put has reached the disk.
  void sync();

  enum class ReadFailures { Throw, SkipRecord };

  // Gets records 1 to `last` in order, many in one read, until `visit` returns false. The
  // record's bytes are valid only during the call. If reading many at once fails, each is
  // read on its own, so that every record before an unreadable one is visited.
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
