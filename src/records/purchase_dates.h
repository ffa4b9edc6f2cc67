// The date stamps behind the list of purchases: slot i belongs to list entry i.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace quorrix {

class PurchaseDates {
 public:
  static constexpr std::size_t kSlots = 501;

  // Both throw Failure 9 for an index past the last slot.
  void set(std::size_t index, std::string dateStamp);
  [[nodiscard]] const std::string& at(std::size_t index) const;

  // Removes every slot that holds `target`, except the last slot of the array, and moves
  // the later slots up. The last slot keeps its value. If two purchases have the same
  // date, both dates are removed but the list loses only one row. From then on rows and
  // dates are misaligned, so opening or deleting a later row may affect the wrong
  // purchase.
  void deleteDeletedRecordDateFromDatesArray(std::string_view target);

 private:
  std::array<std::string, kSlots> slots_;
};

}  // namespace quorrix
