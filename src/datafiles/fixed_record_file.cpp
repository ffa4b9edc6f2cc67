#include "datafiles/fixed_record_file.h"

#include <algorithm>
#include <vector>

#include "platform/failure.h"

namespace quorrix {
namespace {

constexpr std::size_t kBlockSize = std::size_t{256} * 1024;  // of a scan, in bytes: fits the cache

std::unique_ptr<RandomAccessFile> openForReading(FileSystem& files, const Path& path) {
  try {
    return files.openForReading(path);
  } catch (const Failure& reason) {
    if (reason.number() != failure::kFileNotFound) throw;
  }
  return files.openRandomAccess(path);
}

std::unique_ptr<RandomAccessFile> open(FileSystem& files, const Path& path, FileAccess access) {
  switch (access) {
    case FileAccess::Read:
      return openForReading(files, path);
    case FileAccess::AsPermitted:
      return files.openAsPermitted(path);
    case FileAccess::ReadWrite:
      break;
  }
  return files.openRandomAccess(path);
}

}  // namespace

std::uint64_t recordCountOf(std::uint64_t fileLength, std::size_t recordLength) {
  const std::uint64_t whole = fileLength / recordLength;
  const std::uint64_t twiceTheRest = 2 * (fileLength % recordLength);
  const bool roundsUp =
      twiceTheRest > recordLength || (twiceTheRest == recordLength && whole % 2 == 1);
  return roundsUp ? whole + 1 : whole;
}

FixedRecordFile::FixedRecordFile(FileSystem& files, const Path& path, std::size_t recordLength,
                                 FileAccess access)
    : file_(open(files, path, access)), recordLength_(recordLength) {}

std::uint64_t FixedRecordFile::recordCount() {
  return recordCountOf(file_->length(), recordLength_);
}

std::uint64_t FixedRecordFile::recordsBegun() {
  return (file_->length() + recordLength_ - 1) / recordLength_;
}

void FixedRecordFile::get(std::uint64_t number, std::span<char> record) { read(number, record); }

void FixedRecordFile::put(std::uint64_t number, std::span<const char> record) {
  file_->writeAt(offsetOf(number), record);
}

void FixedRecordFile::sync() { file_->sync(); }

void FixedRecordFile::scan(std::uint64_t last, ReadFailures onFailure, const Visit& visit) {
  const std::size_t perBlock = std::max<std::size_t>(1, kBlockSize / recordLength_);
  std::vector<char> block(static_cast<std::size_t>(std::min<std::uint64_t>(perBlock, last)) *
                          recordLength_);
  for (std::uint64_t first = 1; first <= last; first += perBlock) {
    const auto count =
        static_cast<std::size_t>(std::min<std::uint64_t>(perBlock, last - first + 1));
    const std::span<char> records(block.data(), count * recordLength_);
    try {
      read(first, records);
    } catch (const Failure&) {
      if (!scanSingly(first, records, onFailure, visit)) return;
      continue;
    }
    for (std::size_t i = 0; i < count; ++i) {
      if (!visit(first + i, records.subspan(i * recordLength_, recordLength_))) return;
    }
  }
}

// An unreadable spot on the disk affects only the record that contains it: the records before it
// are visited in either case, and those after it unless the failure is thrown.
bool FixedRecordFile::scanSingly(std::uint64_t first, std::span<char> records,
                                 ReadFailures onFailure, const Visit& visit) {
  for (std::size_t at = 0; at < records.size(); at += recordLength_) {
    const auto record = records.subspan(at, recordLength_);
    const std::uint64_t number = first + at / recordLength_;
    try {
      get(number, record);
    } catch (const Failure&) {
      if (onFailure == ReadFailures::Throw) throw;
      continue;
    }
    if (!visit(number, record)) return false;
  }
  return true;
}

std::uint64_t FixedRecordFile::offsetOf(std::uint64_t number) const {
  return (number - 1) * recordLength_;
}

void FixedRecordFile::read(std::uint64_t firstNumber, std::span<char> records) {
  const std::size_t got = file_->readAt(offsetOf(firstNumber), records);
  std::fill(records.begin() + static_cast<std::ptrdiff_t>(got), records.end(), '\0');
}

}  // namespace quorrix
