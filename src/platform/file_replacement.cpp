#include "platform/file_replacement.h"

#include <algorithm>
#include <span>
#include <string>
#include <vector>

namespace quorrix {
namespace {

constexpr const char* kReplacementEnding = ".quorrix-new";
constexpr std::size_t kBlockSize = std::size_t{256} * 1024;  // in bytes

}  // namespace

Path replacementNameOf(const Path& path) {
  Path name = path;
  name += kReplacementEnding;
  return name;
}

bool isReplacementName(const Path& path) {
  return path.native().ends_with(Path(kReplacementEnding).native());
}

void writeCopy(RandomAccessFile& from, RandomAccessFile& into) {
  std::vector<char> block(kBlockSize);
  std::uint64_t offset = 0;
  for (std::size_t count = block.size(); count == block.size(); offset += count) {
    count = from.readAt(offset, block);
    into.writeAt(offset, std::span(block).first(count));
  }
}

bool holdSameBytes(RandomAccessFile& one, RandomAccessFile& other) {
  if (one.length() != other.length()) return false;
  std::vector<char> block(kBlockSize);
  std::vector<char> otherBlock(kBlockSize);
  std::uint64_t offset = 0;
  for (std::size_t count = block.size(); count == block.size(); offset += count) {
    count = one.readAt(offset, block);
    if (other.readAt(offset, otherBlock) != count) return false;
    if (!std::equal(block.begin(), block.begin() + static_cast<std::ptrdiff_t>(count),
                    otherBlock.begin())) {
      return false;
    }
  }
  return true;
}

void writeLine(std::string_view line, RandomAccessFile& into) {
  into.writeAt(0, std::string(line) + "\r\n");
}

}  // namespace quorrix
