// purchases.dat: any number of purchases per site, in order of saving. Every
// method opens, works and closes. A date stamp without a "~" fails with kInvalidCall, because it is
// what a purchase is found by. Any other text without one is the whole field without its
// padding.
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

// What the list of purchases shows of one.
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

  // Adds a record. One with the same date stamp is never overwritten. Fails, with
  // nothing written, where a date stamp of the site's cannot be read.
  void save(std::string_view siteKey, const Purchase& purchase);

  // Blanks the first record of the site with this date stamp; without one
  // nothing is written.
  void remove(std::string_view siteKey, std::string_view dateStamp);

 private:
  FileSystem& files_;
  const WorkingPaths& paths_;
  LikelyRecord likely_;
};

}  // namespace quorrix
