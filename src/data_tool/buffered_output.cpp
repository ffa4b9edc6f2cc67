#include "data_tool/buffered_output.h"

#include <utility>

namespace quorrix {
namespace {

constexpr std::size_t kPiece = std::size_t{128} * 1024;  // in bytes

}  // namespace

BufferedOutput::BufferedOutput(std::function<void(std::string_view)> passOn)
    : passOn_(std::move(passOn)) {
  buffer_.reserve(kPiece);
}

void BufferedOutput::write(std::string_view text) {
  buffer_ += text;
  if (buffer_.size() >= kPiece) flush();
}

void BufferedOutput::flush() {
  if (!buffer_.empty()) passOn_(buffer_);
  buffer_.clear();
}

}  // namespace quorrix
