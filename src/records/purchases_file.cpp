#include "records/purchases_file.h"

#include <array>

#include "records/record_file.h"

namespace quorrix {
namespace {

using namespace purchase_record;
using PurchaseRecord = std::array<char, kLength>;

constexpr char kTerminator = '~';
constexpr std::string_view kPadding(" \0", 2);  // an incomplete record is read with NULs

std::string textOf(RecordFile::Record record, FieldLayout layout) {
  return std::string(cutAtTilde(fieldOf(record, layout)));
}

// A text for viewing. A record from another writer may lack the "~". The text is then the
// whole field without its padding, so that the purchase can still be viewed and deleted.
std::string viewedTextOf(RecordFile::Record record, FieldLayout layout) {
  const std::string_view field = fieldOf(record, layout);
  if (field.find(kTerminator) != std::string_view::npos) return textOf(record, layout);
  return std::string(field.substr(0, field.find_last_not_of(kPadding) + 1));
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

// Fails with kInvalidCall if a purchase of the site has a date that cannot be read back.
// The site's purchases are distinguished by date alone, so a purchase appended after such
// a record could be neither viewed nor deleted.
void requireReadableDates(RecordFile& file, std::string_view siteKey) {
  static_cast<void>(file.find(siteKey, [](RecordFile::Record record) {
    static_cast<void>(cutAtTilde(fieldOf(record, kDateStamp)));
    return false;
  }));
}

}  // namespace

void PurchasesFile::list(std::string_view siteKey,
                         const std::function<void(const PurchaseSummary&)>& visit) {
  RecordFile file(files_, paths_.currentPurchasesFile, kLength, FileAccess::Read, likely_);
  file.forEach(siteKey, [&visit](RecordFile::Record record) {
    visit({.item = viewedTextOf(record, kItem),
           .price = viewedTextOf(record, kPrice),
           .dateStamp = textOf(record, kDateStamp)});
  });
}

std::optional<Purchase> PurchasesFile::read(std::string_view siteKey, std::string_view dateStamp) {
  RecordFile file(files_, paths_.currentPurchasesFile, kLength, FileAccess::Read, likely_);
  const RecordNumber number = findPurchaseRecord(file, siteKey, dateStamp);
  if (number == kNoRecord) return std::nullopt;
  PurchaseRecord record;
  file.get(number, record);
  return Purchase{.item = viewedTextOf(record, kItem),
                  .price = viewedTextOf(record, kPrice),
                  .quantity = viewedTextOf(record, kQuantity),
                  .paymentMethod = viewedTextOf(record, kPaymentMethod),
                  .description = viewedTextOf(record, kDescription),
                  .dateStamp = textOf(record, kDateStamp)};
}

void PurchasesFile::save(std::string_view siteKey, const Purchase& purchase) {
  RecordFile file(files_, paths_.currentPurchasesFile, kLength, FileAccess::ReadWrite, likely_);
  PurchaseRecord record;
  fillField(record, kSiteKey, siteKey);
  fillTerminated(record, kDateStamp, purchase.dateStamp);
  fillTerminated(record, kPrice, purchase.price);
  fillTerminated(record, kPaymentMethod, purchase.paymentMethod);
  fillTerminated(record, kItem, purchase.item);
  fillTerminated(record, kDescription, purchase.description);
  fillTerminated(record, kQuantity, purchase.quantity);
  requireReadableDates(file, siteKey);
  file.putOrAppend(kNoRecord, record);
}

void PurchasesFile::remove(std::string_view siteKey, std::string_view dateStamp) {
  RecordFile file(files_, paths_.currentPurchasesFile, kLength, FileAccess::ReadWrite, likely_);
  file.blank(findPurchaseRecord(file, siteKey, dateStamp));
}

}  // namespace quorrix
