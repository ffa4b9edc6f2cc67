#include "main_window/help_file.h"

#include <memory>
#include <string_view>

#include "platform/failure.h"

namespace quorrix {
namespace {

using Byte = unsigned char;

// How many bytes the character at the beginning of `text` has, 0 where there is none:
// a stray or missing continuation byte, a longer form than needed, a surrogate, a
// number beyond the last character, and what no text has, NUL.
std::size_t characterLength(std::string_view text) {
  const auto at = [text](std::size_t i) { return i < text.size() ? Byte(text[i]) : Byte{0}; };
  const auto continues = [at](std::size_t i) { return (at(i) & 0xC0) == 0x80; };
  const Byte first = at(0);
  if (first == 0) return 0;
  if (first < 0x80) return 1;
  if (first >= 0xC2 && first < 0xE0) return continues(1) ? 2 : 0;
  if (first >= 0xE0 && first < 0xF0) {
    if (!continues(1) || !continues(2)) return 0;
    const bool isOverlong = first == 0xE0 && at(1) < 0xA0;
    const bool isSurrogate = first == 0xED && at(1) >= 0xA0;
    return isOverlong || isSurrogate ? 0 : 3;
  }
  if (first >= 0xF0 && first < 0xF5) {
    if (!continues(1) || !continues(2) || !continues(3)) return 0;
    const bool isOverlong = first == 0xF0 && at(1) < 0x90;
    const bool isBeyondLast = first == 0xF4 && at(1) >= 0x90;
    return isOverlong || isBeyondLast ? 0 : 4;
  }
  return 0;
}

bool isText(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::size_t length = characterLength(bytes);
    if (length == 0) return false;
    bytes.remove_prefix(length);
  }
  return true;
}

}  // namespace

std::string readHelpFile(FileSystem& files, const Path& path) {
  const std::unique_ptr<RandomAccessFile> file = files.openForReading(path);
  const std::uint64_t length = file->length();
  if (length == 0 || length > kMaxHelpFileBytes) throw Failure(failure::kInvalidFileFormat);
  std::string page(static_cast<std::size_t>(length), '\0');
  if (file->readAt(0, page) != page.size()) throw Failure(failure::kInvalidFileFormat);
  if (!isText(page)) throw Failure(failure::kInvalidFileFormat);
  return page;
}

}  // namespace quorrix
