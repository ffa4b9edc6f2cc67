#include "records/purchases_file.h"

#include <array>

#include "records/record_file.h"

namespace quorrix {
namespace {

using namespace purchase_record;
using PurchaseRecord = std::array<char, kLength>;

constexpr char kTerminator = '~';

std::string textOf(RecordFile::Record record, FieldLayout layout) {
  return std::string(cutAtTilde(fieldOf(record, layout)));
}

void fillTerminated(std::span<char> record, FieldLayout layout, const std::string& text) {
  fillField(record, layout, text + kTerminator);
}

RecordNumber findPurchaseRecord(RecordFile& file, std::string_view siteKey,
                                std::string_view dateStamp) {
  return file.find(siteKey, [dateStamp](RecordFile::Record record) {
    return cutAtTilde(fieldOf(record, kDateStamp)) == dateStamp;
  });
}

}  // namespace

void PurchasesFile::list(std::string_view siteKey,
                         const std::function<void(const PurchaseSummary&)>& visit) {
  RecordFile file(files_, paths_.currentPurchasesFile, kLength, likely_);
  file.forEach(siteKey, [&visit](RecordFile::Record record) {
    visit({.item = textOf(record, kItem),
           .price = textOf(record, kPrice),
           .dateStamp = textOf(record, kDateStamp)});
  });
}

std::optional<Purchase> PurchasesFile::read(std::string_view siteKey, std::string_view dateStamp) {
  RecordFile file(files_, paths_.currentPurchasesFile, kLength, likely_);
  const RecordNumber number = findPurchaseRecord(file, siteKey, dateStamp);
  if (number == kNoRecord) return std::nullopt;
  PurchaseRecord record;
  file.get(number, record);
  return Purchase{.item = textOf(record, kItem),
                  .price = textOf(record, kPrice),
                  .quantity = textOf(record, kQuantity),
                  .paymentMethod = textOf(record, kPaymentMethod),
                  .description = textOf(record, kDescription),
                  .dateStamp = textOf(record, kDateStamp)};
}

void PurchasesFile::save(std::string_view siteKey, const Purchase& purchase) {
  RecordFile file(files_, paths_.currentPurchasesFile, kLength, likely_);
  PurchaseRecord record;
  fillField(record, kSiteKey, siteKey);
  fillTerminated(record, kDateStamp, purchase.dateStamp);
  fillTerminated(record, kPrice, purchase.price);
  fillTerminated(record, kPaymentMethod, purchase.paymentMethod);
  fillTerminated(record, kItem, purchase.item);
  fillTerminated(record, kDescription, purchase.description);
  fillTerminated(record, kQuantity, purchase.quantity);
  // Sought is the whole field, and what is found is cut at its "~": the two are
  // never equal, so that a save adds a purchase even under a date that is there.
  const auto wholeField = fieldOf(record, kDateStamp);
  file.putOrAppend(findPurchaseRecord(file, siteKey, wholeField), record);
}

void PurchasesFile::remove(std::string_view siteKey, std::string_view dateStamp) {
  RecordFile file(files_, paths_.currentPurchasesFile, kLength, likely_);
  file.blank(findPurchaseRecord(file, siteKey, dateStamp));
}

}  // namespace quorrix
