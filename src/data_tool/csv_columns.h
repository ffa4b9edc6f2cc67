// The columns of CSV that list, search and export have in common.
#pragma once

#include <string>
#include <vector>

#include "data_tool/entries.h"
#include "data_tool/site_details.h"

namespace quorrix {

// The content of a line. A null pointer gives empty fields.
struct CsvRow {
  const std::string& archive;
  const SiteEntry& site;
  const std::string* notes = nullptr;
  const LoginEntry* login = nullptr;
  const PurchaseEntry* purchase = nullptr;
};

// Archive, address, scheme, flag, visited, stamp, and a column for each detail of the choice. The
// flag is filled only if it stands for no scheme, and the stamp only if it cannot be read.
[[nodiscard]] std::vector<std::string> csvNames(const DetailChoice& choice);

// The fields of these columns.
[[nodiscard]] std::vector<std::string> csvFields(const CsvRow& row, const DetailChoice& choice);

}  // namespace quorrix
