#include "data_tool/json_listing.h"

#include "data_tool/json_entries.h"

namespace quorrix {

void JsonListing::begin() { output_.write("["); }

void JsonListing::add(const SiteEntry& site, const std::string& archive,
                      const SiteDetails& details) {
  output_.write(isEmpty_ ? "\n" : ",\n");
  output_.write(jsonOf(site, archive, details, choice_));
  isEmpty_ = false;
}

void JsonListing::end() { output_.write(isEmpty_ ? "]\n" : "\n]\n"); }

}  // namespace quorrix
