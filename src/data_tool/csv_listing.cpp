#include "data_tool/csv_listing.h"

#include "data_tool/csv.h"

namespace quorrix {

void CsvListing::begin() { output_.write(csvLine(csvNames(choice_))); }

void CsvListing::add(const SiteEntry& site, const std::string& archive,
                     const SiteDetails& details) {
  CsvRow row{.archive = archive,
             .site = site,
             .notes = details.firstNotes(),
             .login = details.firstLogin()};
  if (details.purchases.empty()) addLine(row);
  for (const PurchaseEntry& purchase : details.purchases) {
    row.purchase = &purchase;
    addLine(row);
  }
}

void CsvListing::addLine(const CsvRow& row) { output_.write(csvLine(csvFields(row, choice_))); }

}  // namespace quorrix
