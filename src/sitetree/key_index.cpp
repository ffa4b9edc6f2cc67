#include "sitetree/key_index.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace quorrix {
namespace {

constexpr std::size_t kSmallest = 16;

std::size_t slotsFor(std::size_t count) {
  return std::max(kSmallest, std::bit_ceil(count + count / 3 + 1));
}

}  // namespace

void KeyIndex::reserve(std::size_t count) {
  if (slotsFor(count) > slots_.size()) rebuild(slotsFor(count));
}

void KeyIndex::insert(std::uint32_t hash, Number number) {
  reserve(used_ + 1);
  place({hash, number});
  ++used_;
}

// A search stops at an empty slot, so emptying the slot is not enough: each entry after it
// moves up when its own search would otherwise stop at the gap.
void KeyIndex::erase(std::uint32_t hash, Number number) {
  std::size_t gap = hash & mask();
  while (slots_[gap].number != number) gap = (gap + 1) & mask();
  for (std::size_t next = (gap + 1) & mask(); slots_[next].number != kNone;
       next = (next + 1) & mask()) {
    const std::size_t home = slots_[next].hash & mask();
    if (((next - home) & mask()) < ((next - gap) & mask())) continue;
    slots_[gap] = slots_[next];
    gap = next;
  }
  slots_[gap] = {};
  --used_;
}

void KeyIndex::clear() {
  slots_.clear();
  used_ = 0;
}

void KeyIndex::rebuild(std::size_t slotCount) {
  const auto old = std::exchange(slots_, std::vector<Slot>(slotCount));
  for (const Slot& slot : old) {
    if (slot.number != kNone) place(slot);
  }
}

void KeyIndex::place(Slot slot) {
  std::size_t place = slot.hash & mask();
  while (slots_[place].number != kNone) place = (place + 1) & mask();
  slots_[place] = slot;
}

}  // namespace quorrix
