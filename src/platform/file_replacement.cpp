#include "platform/file_replacement.h"

#include <span>
#include <string>
#include <vector>

namespace quorrix {
namespace {

constexpr std::size_t kBlockSize = std::size_t{256} * 1024;  // in bytes

}  // namespace

Path replacementNameOf(const Path& path) {
  Path name = path;
  name += ".quorrix-new";
  return name;
}

void writeCopy(RandomAccessFile& from, RandomAccessFile& into) {
  std::vector<char> block(kBlockSize);
  std::uint64_t offset = 0;
  for (std::size_t count = block.size(); count == block.size(); offset += count) {
    count = from.readAt(offset, block);
    into.writeAt(offset, std::span(block).first(count));
  }
}

void writeLine(std::string_view line, RandomAccessFile& into) {
  into.writeAt(0, std::string(line) + "\r\n");
}

}  // namespace quorrix
