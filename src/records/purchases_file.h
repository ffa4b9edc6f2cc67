// purchases.dat: any number of purchases per site, in the order in which they were saved.
// Every method opens the file, works and closes it. A date stamp without a "~" fails with
// kInvalidCall, because purchases are found by their date stamps. Any other text without
// a "~" is the whole field without its padding.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "datafiles/working_folder.h"
#include "platform/file_system.h"
#include "records/record_file.h"

namespace quorrix {

// The texts of the six entry boxes.
struct Purchase {
  std::string item;
  std::string price;
  std::string quantity;
  std::string paymentMethod;
  std::string description;
  std::string dateStamp;
};

// What the list of purchases shows of a purchase.
struct PurchaseSummary {
  std::string item;
  std::string price;
  std::string dateStamp;
};

class PurchasesFile {
 public:
  PurchasesFile(FileSystem& files, const WorkingPaths& paths) : files_(files), paths_(paths) {}

  // Calls `visit` for each of the site's purchases, in file order.
  void list(std::string_view siteKey, const std::function<void(const PurchaseSummary&)>& visit);

  // The first purchase of the site with this date stamp, each text cut at its first "~".
  [[nodiscard]] std::optional<Purchase> read(std::string_view siteKey, std::string_view dateStamp);

  // Appends a record. A record with the same date stamp is never overwritten. Fails, and
  // writes nothing, if a date stamp of the site cannot be read.
  void save(std::string_view siteKey, const Purchase& purchase);

  // Blanks the first record of the site with this date stamp. Writes nothing if there is
  // none.
  void remove(std::string_view siteKey, std::string_view dateStamp);

 private:
  FileSystem& files_;
  const WorkingPaths& paths_;
  LikelyRecord likely_;
};

}  // namespace quorrix
