#include "data_tool/csv_columns.h"

namespace quorrix {

std::vector<std::string> csvNames(const DetailChoice& choice) {
  std::vector<std::string> names{"archive", "address", "scheme", "flag", "visited", "stamp"};
  if (choice.notes) names.emplace_back("notes");
  if (choice.logins) names.emplace_back("user_id");
  if (choice.passwords) names.emplace_back("password");
  if (choice.purchases) {
    names.insert(names.end(),
                 {"purchase_date", "item", "price", "quantity", "payment_method", "description"});
  }
  return names;
}

std::vector<std::string> csvFields(const CsvRow& row, const DetailChoice& choice) {
  static const LoginEntry kNoLogin{};
  static const PurchaseEntry kNoPurchase{};
  const SiteEntry& site = row.site;
  const LoginEntry& login = row.login != nullptr ? *row.login : kNoLogin;
  const PurchaseEntry& purchase = row.purchase != nullptr ? *row.purchase : kNoPurchase;
  std::vector<std::string> fields{row.archive,
                                  site.address,
                                  std::string(schemeName(site.protocolFlag)),
                                  site.unknownFlag,
                                  site.visited ? isoTime(*site.visited) : "",
                                  site.unreadableStamp};
  if (choice.notes) fields.push_back(row.notes != nullptr ? *row.notes : "");
  if (choice.logins) fields.push_back(login.userID);
  if (choice.passwords) fields.push_back(login.password);
  if (choice.purchases) {
    fields.insert(fields.end(), {purchase.date, purchase.item, purchase.price, purchase.quantity,
                                 purchase.paymentMethod, purchase.description});
  }
  return fields;
}

}  // namespace quorrix
