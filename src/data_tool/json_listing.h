// A JSON array with one object for each site, each in a line of its own.
#pragma once

#include <optional>

#include "data_tool/json_items.h"
#include "data_tool/listing.h"

namespace quorrix {

class JsonListing final : public Listing {
 public:
  JsonListing(const DetailChoice& choice, Output& output) : choice_(choice), output_(output) {}

  void begin() override;
  void add(const SiteEntry& site, const std::string& archive, const SiteDetails& details) override;
  void end() override;

 private:
  DetailChoice choice_;
  Output& output_;
  std::optional<JsonItems> items_;  // from begin() on
};

}  // namespace quorrix
