// The notes, user IDs and purchases of one data folder, by site. Each file has at most 32,767
// records, so they fit in memory however many sites there are.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "data_tool/entries.h"
#include "data_tool/folder_reader.h"

namespace quorrix {

// What a command shows besides the sites themselves.
struct DetailChoice {
  bool notes = false;
  bool purchases = false;
  bool logins = false;
  bool passwords = false;
};

struct SiteDetails {
  std::optional<std::string> notes;
  std::optional<LoginEntry> login;
  std::vector<PurchaseEntry> purchases;
};

class SiteDetailIndex {
 public:
  // Reads the files that `choice` needs. As in Quorrix, the first notes and the first user ID of
  // a site count. Throws Problem for a file with more than 32,767 records that are not deleted.
  SiteDetailIndex(FolderReader& folder, const DetailChoice& choice);

  // Empty for a site without details.
  [[nodiscard]] const SiteDetails& of(const std::string& address) const;

  // All sites with details, sorted by their addresses.
  [[nodiscard]] const std::map<std::string, SiteDetails>& all() const { return details_; }

 private:
  std::map<std::string, SiteDetails> details_;
};

}  // namespace quorrix
