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
  // the last slot stays. With two purchases of one date both dates go, while the
  // list loses one entry: from there on list and dates are out of step, which
  // whoever opens or deletes an entry behind them lives with.
  void deleteDeletedRecordDateFromDatesArray(std::string_view target);

 private:
  std::array<std::string, kSlots> slots_;
};

}  // namespace quorrix
