#include "data_tool/file_copy.h"

#include <algorithm>
#include <functional>
#include <string_view>
#include <utility>

#include "data_tool/problem.h"
#include "data_tool/record_reader.h"

namespace quorrix {
namespace {

static_assert(sizeof(std::size_t) >= 8, "a shorter digest could hide a change");

std::size_t digestOf(std::span<const char> bytes) {
  return std::hash<std::string_view>()(std::string_view(bytes.data(), bytes.size()));
}

// Two writes may have the same time if less than this is between them: 2 s on FAT, and a few
// milliseconds elsewhere.
constexpr std::chrono::seconds kClockStep{3};

std::uint64_t offsetOf(std::size_t number) { return std::uint64_t{number} * FileCopy::kBlockSize; }

}  // namespace

FileCopy::FileCopy(FileSystem& files, Path source, Path target)
    : files_(files), source_(std::move(source)), target_(std::move(target)) {}

void FileCopy::copy(LockTurns& turns) {
  std::vector<char> block(kBlockSize);
  std::size_t count = kBlockSize;
  for (std::size_t number = 0; count == kBlockSize; ++number) {
    if (number > 0) turns.betweenReads();
    {
      const auto source = openPatiently(files_, source_, turns);
      if (!source) return;
      if (number == 0) rememberState();
      count = withPath(source_, [&] { return source->readAt(offsetOf(number), block); });
    }
    const auto bytes = std::span<const char>(block).first(count);
    if (!isCopied(number, bytes)) write(number, bytes);
  }
}

bool FileCopy::catchUp(RandomAccessFile* source, BlockBudget& budget) {
  if (source == nullptr) return copy_ == nullptr;
  return withPath(source_, [&] {
    if (isSettled()) return true;
    if (source->length() < length_) return false;
    std::vector<char> block(kBlockSize);
    std::size_t count = kBlockSize;
    for (std::size_t number = 0; count == kBlockSize; ++number) {
      count = source->readAt(offsetOf(number), block);
      const auto bytes = std::span<const char>(block).first(count);
      if (isCopied(number, bytes)) continue;
      if (budget.blocks == 0) return false;
      --budget.blocks;
      kept_.push_back({number, {bytes.begin(), bytes.end()}});
    }
    return true;
  });
}

std::optional<FileCopy::State> FileCopy::stateOfSource() const {
  std::error_code unknown;
  const State state{.length = std::filesystem::file_size(source_, unknown),
                    .written = std::filesystem::last_write_time(source_, unknown)};
  return unknown ? std::nullopt : std::optional(state);
}

// A write that follows soon after another one might not change the time.
void FileCopy::rememberState() {
  state_ = stateOfSource();
  const auto now = std::filesystem::file_time_type::clock::now();
  if (state_ && now - state_->written < kClockStep) state_.reset();
}

bool FileCopy::isSettled() const {
  return state_ && state_->length == length_ && state_ == stateOfSource();
}

bool FileCopy::isCopied(std::size_t number, std::span<const char> bytes) const {
  if (bytes.empty()) return copy_ != nullptr;
  return number < digests_.size() && digests_[number] == digestOf(bytes);
}

void FileCopy::writeKept() {
  for (const KeptBlock& block : kept_) write(block.number, block.bytes);
  kept_.clear();
}

void FileCopy::write(std::size_t number, std::span<const char> bytes) {
  withPath(target_, [&] {
    if (!copy_) copy_ = files_.openRandomAccess(target_);
    if (!bytes.empty()) copy_->writeAt(offsetOf(number), bytes);
  });
  if (bytes.empty()) return;
  length_ = std::max(length_, offsetOf(number) + bytes.size());
  digests_.resize(std::max(digests_.size(), number + 1));
  digests_[number] = digestOf(bytes);
}

void FileCopy::discard() {
  kept_.clear();
  digests_.clear();
  length_ = 0;
  state_.reset();
  if (!copy_) return;
  copy_.reset();
  withPath(target_, [&] { files_.deleteFile(target_); });
}

void FileCopy::sync() {
  if (copy_) withPath(target_, [&] { copy_->sync(); });
}

}  // namespace quorrix
