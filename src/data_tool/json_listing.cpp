#include "data_tool/json_listing.h"

#include "data_tool/json_entries.h"

namespace quorrix {

void JsonListing::begin() { items_.emplace(output_); }

void JsonListing::add(const SiteEntry& site, const std::string& archive,
                      const SiteDetails& details) {
  items_->add(jsonOf(site, archive, details, choice_));
}

void JsonListing::end() {
  items_->end();
  output_.write("\n");
}

}  // namespace quorrix
