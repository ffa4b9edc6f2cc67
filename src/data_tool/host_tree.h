// The sites of one data folder, grouped by their hosts.
#pragma once

#include <string>
#include <vector>

#include "data_tool/folder_reader.h"

namespace quorrix {

struct HostGroup {
  std::string host;
  std::vector<SiteEntry> sites;  // in the order of the file
};

// In the order in which the hosts are first in the file.
[[nodiscard]] std::vector<HostGroup> sitesByHost(FolderReader& folder);

// The part of a stored address before its first "/".
[[nodiscard]] std::string hostOf(const std::string& address);

}  // namespace quorrix
