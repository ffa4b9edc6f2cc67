#include "data_tool/folder_listing.h"

#include <set>

namespace quorrix {

bool listFolder(FolderReader& folder, const DetailChoice& choice, const Sought& sought,
                Listing& listing) {
  const std::string& archive = folder.folder().archive;
  const SiteDetailIndex details(folder, choice);
  std::set<std::string> recorded;  // of those with details
  bool isFound = false;
  folder.forEachSite(sought.isRecordSought, [&](const SiteEntry& site) {
    if (details.all().contains(site.address)) recorded.insert(site.address);
    listing.add(site, archive, details.of(site.address));
    isFound = true;
  });
  for (const auto& [address, kept] : details.all()) {
    if (recorded.contains(address) || !sought.isAddressSought(address)) continue;
    listing.add(levelAt(address), archive, kept);
    isFound = true;
  }
  return isFound;
}

}  // namespace quorrix
