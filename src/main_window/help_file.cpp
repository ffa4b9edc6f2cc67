#include "main_window/help_file.h"

#include <memory>
#include <string_view>

#include "platform/failure.h"
#include "platform/utf8.h"

namespace quorrix {
namespace {

// Text contains no NULs.
bool isText(std::string_view bytes) {
  return isUtf8(bytes) && bytes.find('\0') == std::string_view::npos;
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
