// Writes the sites that list and search find, one after the other.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>

#include "data_tool/data_folder.h"
#include "data_tool/entries.h"
#include "data_tool/output.h"
#include "data_tool/site_details.h"

namespace quorrix {

enum class ListFormat { Table, Json, Csv };

struct ListingChoice {
  ListFormat format = ListFormat::Table;
  DetailChoice details;
};

struct TableFrame {
  // Of the column for the names of archives; 0 without archives, and the column is left out.
  std::size_t archiveColumns = 0;
  // Longer lines are cut; nullopt if lines are not cut.
  std::optional<std::size_t> width;
};

class Listing {
 public:
  virtual ~Listing() = default;

  virtual void begin() = 0;
  virtual void add(const SiteEntry& site, const std::string& archive,
                   const SiteDetails& details) = 0;
  virtual void end() = 0;
};

// `output` must outlive the listing.
[[nodiscard]] std::unique_ptr<Listing> makeListing(const ListingChoice& choice,
                                                   const TableFrame& frame, Output& output);

}  // namespace quorrix
