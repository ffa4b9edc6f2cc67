#include "data_tool/host_tree.h"

#include <unordered_map>

namespace quorrix {

std::vector<HostGroup> sitesByHost(FolderReader& folder) {
  std::vector<HostGroup> groups;
  std::unordered_map<std::string, std::size_t> places;
  folder.forEachSite([&](const SiteEntry& site) {
    const auto [place, isNew] = places.try_emplace(hostOf(site.address), groups.size());
    if (isNew) groups.push_back({.host = place->first, .sites = {}});
    groups[place->second].sites.push_back(site);
  });
  return groups;
}

std::string hostOf(const std::string& address) { return address.substr(0, address.find('/')); }

}  // namespace quorrix
