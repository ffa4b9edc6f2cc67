// Comma-separated values: a line with the names of the columns, then a line for each site. With
// purchases, a site has a line for each of its purchases, and one if it has no purchase.
#pragma once

#include "data_tool/csv_columns.h"
#include "data_tool/listing.h"

namespace quorrix {

class CsvListing final : public Listing {
 public:
  CsvListing(const DetailChoice& choice, Output& output) : choice_(choice), output_(output) {}

  void begin() override;
  void add(const SiteEntry& site, const std::string& archive, const SiteDetails& details) override;
  void end() override {}

 private:
  void addLine(const CsvRow& row);

  DetailChoice choice_;
  Output& output_;
};

}  // namespace quorrix
