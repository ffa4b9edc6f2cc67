#include "data_tool/csv_listing.h"

#include <utility>

#include "data_tool/csv.h"

namespace quorrix {

void CsvListing::begin() {
  std::vector<std::string> names{"archive", "address", "scheme", "visited"};
  if (choice_.notes) names.emplace_back("notes");
  if (choice_.logins) names.emplace_back("user_id");
  if (choice_.passwords) names.emplace_back("password");
  if (choice_.purchases) {
    names.insert(names.end(),
                 {"purchase_date", "item", "price", "quantity", "payment_method", "description"});
  }
  output_.write(csvLine(names));
}

void CsvListing::add(const SiteEntry& site, const std::string& archive,
                     const SiteDetails& details) {
  std::vector<std::string> fields{archive, site.address, schemeName(site.protocolFlag),
                                  site.visited ? isoTime(*site.visited) : ""};
  if (choice_.notes) fields.push_back(details.notes.value_or(""));
  if (choice_.logins) fields.push_back(details.login ? details.login->userID : "");
  if (choice_.passwords) fields.push_back(details.login ? details.login->password : "");
  if (details.purchases.empty()) addLine(fields, {});
  for (const PurchaseEntry& purchase : details.purchases) addLine(fields, purchase);
}

void CsvListing::addLine(std::vector<std::string> fields, const PurchaseEntry& purchase) {
  if (choice_.purchases) {
    fields.insert(fields.end(), {purchase.date, purchase.item, purchase.price, purchase.quantity,
                                 purchase.paymentMethod, purchase.description});
  }
  output_.write(csvLine(fields));
}

}  // namespace quorrix
