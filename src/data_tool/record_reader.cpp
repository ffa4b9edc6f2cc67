#include "data_tool/record_reader.h"

#include <algorithm>
#include <map>
#include <vector>

#include "data_tool/problem.h"
#include "platform/failure.h"

namespace quorrix {
namespace {

constexpr std::size_t kBlockSize = std::size_t{256} * 1024;  // in bytes: fits the cache

// Files never become shorter, except when all sites are deleted or archived.
constexpr const char* kChanged = "The file changed while it was read. Try again.";

bool isMissing(const Failure& reason) {
  return reason.number() == failure::kFileNotFound || reason.number() == failure::kPathNotFound;
}

}  // namespace

// The records of one read.
struct RecordReader::Block {
  explicit Block(std::size_t length)
      : recordLength(length), bytes(std::max<std::size_t>(1, kBlockSize / length) * length) {}

  [[nodiscard]] std::span<char> record(std::size_t place) {
    return std::span(bytes).subspan(place * recordLength, recordLength);
  }

  [[nodiscard]] std::size_t capacity() const { return bytes.size() / recordLength; }

  // An unreadable spot on the disk affects only the record that contains it.
  void readSingly(RandomAccessFile& file, std::uint64_t offset) {
    for (std::size_t place = 0; place < count; ++place) {
      try {
        static_cast<void>(file.readAt(offset + place * recordLength, record(place)));
      } catch (const Failure& reason) {
        unreadable[place] = reason.number();
      }
    }
  }

  std::size_t recordLength;
  std::vector<char> bytes;
  std::uint64_t fileLength = 0;
  std::size_t count = 0;                  // of records
  std::map<std::size_t, int> unreadable;  // places and failure numbers
};

std::unique_ptr<RandomAccessFile> openPatiently(FileSystem& files, const Path& path,
                                                const LockTurns& turns) {
  std::unique_ptr<RandomAccessFile> file;
  const bool isAnswered = turns.succeeds([&] {
    try {
      file = files.openForReading(path);
      return true;
    } catch (const Failure& reason) {
      if (isMissing(reason)) return true;
      if (!reason.isFileInUse()) throw Problem::ofFile(path, reason.number());
      return false;
    }
  });
  if (isAnswered) return file;
  throw Problem::ofFile(path, "Another program is using this file. Try again later.");
}

bool RecordReader::readBlock(const Path& path, std::uint64_t offset, Block& block) {
  const auto file = openPatiently(files_, path, turns_);
  if (!file) return false;
  const std::uint64_t length = withPath(path, [&] { return file->length(); });
  if (length < block.fileLength) throw Problem::ofFile(path, kChanged);
  block.fileLength = length;
  const std::uint64_t left = length > offset ? length - offset : 0;
  const auto size = static_cast<std::size_t>(std::min<std::uint64_t>(left, block.bytes.size()));
  block.count = (size + block.recordLength - 1) / block.recordLength;
  block.unreadable.clear();
  std::fill(block.bytes.begin(), block.bytes.end(), '\0');
  try {
    static_cast<void>(file->readAt(offset, std::span(block.bytes).first(size)));
  } catch (const Failure&) {
    block.readSingly(*file, offset);
  }
  return true;
}

bool RecordReader::forEach(const Path& path, std::size_t recordLength, const Visit& visit,
                           const Fail& fail) {
  Block block(recordLength);
  std::uint64_t before = 0;  // records of earlier blocks
  do {
    if (before > 0) turns_.betweenReads();
    if (!readBlock(path, before * recordLength, block)) {
      if (before > 0) throw Problem::ofFile(path, kChanged);
      return false;
    }
    for (std::size_t place = 0; place < block.count; ++place) {
      const auto number = before + place + 1;
      const auto failed = block.unreadable.find(place);
      if (failed == block.unreadable.end()) {
        if (!visit(number, block.record(place))) return true;
      } else {
        if (!fail) throw Problem::ofFile(path, failed->second);
        if (!fail(number, failed->second)) return true;
      }
    }
    before += block.count;
  } while (block.count == block.capacity());
  return true;
}

}  // namespace quorrix
