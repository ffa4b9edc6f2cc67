#include "platform/first_line.h"

#include <array>
#include <cstddef>
#include <string_view>

namespace quorrix {
namespace {

constexpr std::size_t kLongestFirstLine = std::size_t{64} * 1024;

}  // namespace

std::string firstLineOf(RandomAccessFile& file) {
  std::string line;
  std::array<char, 512> block;
  while (line.size() < kLongestFirstLine) {
    const std::string_view read(block.data(), file.readAt(line.size(), block));
    const auto end = read.find_first_of("\r\n");
    line += read.substr(0, end);
    if (end != std::string_view::npos || read.empty()) break;
  }
  return line;
}

}  // namespace quorrix
