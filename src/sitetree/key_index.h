// A hash index from keys to numbers, with open addressing and eight bytes per slot. It
// stores no keys: the caller says whether a number has the key sought, so that each key
// is stored only once, in the tree.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/prefetch.h"

namespace quorrix {

class KeyIndex {
 public:
  using Number = std::uint32_t;
  static constexpr Number kNone = 0xFFFFFFFF;

  // Makes room for `count` numbers in total, so that inserting them moves nothing.
  void reserve(std::size_t count);

  // Adds a number whose key is not in the index yet.
  void insert(std::uint32_t hash, Number number);

  // Removes a number, which must have been inserted with this hash.
  void erase(std::uint32_t hash, Number number);

  // Removes all numbers.
  void clear();

  // Prefetches the slot at which a search for this hash begins.
  void expect(std::uint32_t hash) const {
    if (!slots_.empty()) prefetch(&slots_[hash & mask()]);
  }

  // The number with this hash for which `isSought` is true, or kNone.
  template <typename IsSought>
  [[nodiscard]] Number find(std::uint32_t hash, IsSought&& isSought) const {
    if (slots_.empty()) return kNone;
    for (std::size_t place = hash & mask();; place = (place + 1) & mask()) {
      const Slot& slot = slots_[place];
      if (slot.number == kNone) return kNone;
      if (slot.hash == hash && isSought(slot.number)) return slot.number;
    }
  }

 private:
  struct Slot {
    std::uint32_t hash = 0;
    Number number = kNone;
  };

  [[nodiscard]] std::size_t mask() const { return slots_.size() - 1; }
  void rebuild(std::size_t slotCount);
  void place(Slot slot);

  std::vector<Slot> slots_;  // their number is a power of two; at most three quarters are in use
  std::size_t used_ = 0;
};

// Hashes a key character by character, so that one pass over an address yields the hashes
// of the keys of all its levels.
class KeyHash {
 public:
  void add(char character) {
    state_ = (state_ ^ static_cast<unsigned char>(character)) * 0x100000001B3U;  // FNV-1a
  }

  void add(std::string_view characters) {
    for (const char character : characters) add(character);
  }

  // Mixes the state, because its low bits depend too little on the last characters.
  [[nodiscard]] std::uint32_t value() const {
    const std::uint64_t mixed = (state_ ^ (state_ >> 29U)) * 0xBF58476D1CE4E5B9U;
    return static_cast<std::uint32_t>(mixed >> 32U);
  }

 private:
  std::uint64_t state_ = 0xCBF29CE484222325U;
};

}  // namespace quorrix
