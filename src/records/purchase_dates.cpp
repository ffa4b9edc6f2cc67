#include "records/purchase_dates.h"

#include <algorithm>
#include <utility>

#include "platform/failure.h"

namespace quorrix {

void PurchaseDates::set(std::size_t index, std::string dateStamp) {
  if (index >= kSlots) throw Failure(failure::kIndexOutOfRange);
  slots_[index] = std::move(dateStamp);
}

const std::string& PurchaseDates::at(std::size_t index) const {
  if (index >= kSlots) throw Failure(failure::kIndexOutOfRange);
  return slots_[index];
}

void PurchaseDates::deleteDeletedRecordDateFromDatesArray(std::string_view target) {
  const auto end = slots_.end() - 1;
  std::fill(std::remove(slots_.begin(), end, target), end, std::string());
}

}  // namespace quorrix
