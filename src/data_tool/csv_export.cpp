#include "data_tool/csv_export.h"

#include <string>

#include "data_tool/csv.h"

namespace quorrix {
namespace {

struct Line {
  std::string kind, archive, address, scheme, visited, notes, userID, password;
  PurchaseEntry purchase;
};

std::string textOf(const Line& line, Passwords passwords) {
  std::vector<std::string> fields{line.kind,    line.archive, line.address, line.scheme,
                                  line.visited, line.notes,   line.userID};
  if (passwords == Passwords::Show) fields.push_back(line.password);
  const PurchaseEntry& purchase = line.purchase;
  fields.insert(fields.end(), {purchase.date, purchase.item, purchase.price, purchase.quantity,
                               purchase.paymentMethod, purchase.description});
  return csvLine(fields);
}

void exportFolder(FolderReader& folder, Passwords passwords, Output& output) {
  Line line;
  line.archive = folder.folder().archive;
  const auto lineOf = [&](const char* kind, const std::string& address) {
    Line filled = line;
    filled.kind = kind;
    filled.address = address;
    return filled;
  };
  folder.forEachSite([&](const SiteEntry& site) {
    Line filled = lineOf("site", site.address);
    filled.scheme = schemeName(site.protocolFlag);
    if (site.visited) filled.visited = isoTime(*site.visited);
    output.write(textOf(filled, passwords));
  });
  folder.forEachNotes([&](const NotesEntry& notes) {
    Line filled = lineOf("notes", notes.address);
    filled.notes = notes.text;
    output.write(textOf(filled, passwords));
  });
  folder.forEachLogin([&](const LoginEntry& login) {
    Line filled = lineOf("login", login.address);
    filled.userID = login.userID;
    filled.password = login.password;
    output.write(textOf(filled, passwords));
  });
  folder.forEachPurchase([&](const PurchaseEntry& purchase) {
    Line filled = lineOf("purchase", purchase.address);
    filled.purchase = purchase;
    output.write(textOf(filled, passwords));
  });
}

}  // namespace

void exportCsv(std::vector<FolderReader>& folders, Passwords passwords, Output& output) {
  Line names{"kind", "archive", "address", "scheme", "visited", "notes", "user_id", "password", {}};
  names.purchase = {.address = {},
                    .date = "purchase_date",
                    .item = "item",
                    .price = "price",
                    .quantity = "quantity",
                    .paymentMethod = "payment_method",
                    .description = "description"};
  output.write(textOf(names, passwords));
  for (FolderReader& folder : folders) exportFolder(folder, passwords, output);
}

}  // namespace quorrix
