// The notes, user IDs and purchases of one data folder, by site. Each file has at most 32,767
// records, so they fit in memory however many sites there are.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
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

// All in the order of their files.
struct SiteDetails {
  std::vector<std::string> notes;
  std::vector<LoginEntry> logins;
  std::vector<PurchaseEntry> purchases;

  // Quorrix and the listings show these. Null if nothing is kept.
  [[nodiscard]] const std::string* firstNotes() const {
    return notes.empty() ? nullptr : &notes.front();
  }
  [[nodiscard]] const LoginEntry* firstLogin() const {
    return logins.empty() ? nullptr : &logins.front();
  }
};

class SiteDetailIndex {
 public:
  SiteDetailIndex() = default;

  // Reads the files that `choice` needs. Throws Problem for a file with more than 32,767 records
  // that are not deleted.
  SiteDetailIndex(FolderReader& folder, const DetailChoice& choice);

  // Empty for a site without details.
  [[nodiscard]] const SiteDetails& of(std::string_view address) const;

  // All addresses with details, sorted.
  using Map = std::map<std::string, SiteDetails, std::less<>>;
  [[nodiscard]] const Map& all() const { return details_; }

 private:
  Map details_;
};

}  // namespace quorrix
