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

  // Drops every slot but the last that holds `target`, and closes the rest up;
  // the last slot stays. When two purchases have the same date, both dates are dropped
  // but the list loses one entry. The entries after it then have the date of another
  // entry, and opening or deleting one of them acts on that other purchase.
  void deleteDeletedRecordDateFromDatesArray(std::string_view target);

 private:
  std::array<std::string, kSlots> slots_;
};

}  // namespace quorrix
