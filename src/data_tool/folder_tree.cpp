#include "data_tool/folder_tree.h"

#include <algorithm>
#include <set>

#include "platform/failure.h"

namespace quorrix {

FolderTree::FolderTree(FolderReader& folder, const SiteDetailIndex& details) {
  tree_.addRoot();
  kept_.resize(tree_.size());
  folder.forEachSite([this](const SiteEntry& site) { addSite(site); });
  addDetails(details);
  count();
}

void FolderTree::forEachSite(NodeId level,
                             const std::function<void(const SiteEntry&)>& visit) const {
  std::uint32_t next = kept_[level].firstVisit;
  if (next == kNoVisit) return;
  SiteEntry site = levelAt(std::string(tree_.key(level)));
  for (; next != kNoVisit; next = visits_[next].next) {
    site.protocolFlag = visits_[next].protocolFlag;
    site.visited = visits_[next].time;
    site.unknownFlag.clear();
    site.unreadableStamp.clear();
    if (visits_[next].isUnusual) {
      const auto texts = std::ranges::lower_bound(unusual_, next, {}, &Unusual::visit);
      site.unknownFlag = texts->unknownFlag;
      site.unreadableStamp = texts->unreadableStamp;
    }
    visit(site);
  }
}

void FolderTree::addSite(const SiteEntry& site) {
  const NodeId level = place(site.address);
  if (level == kNoNode) {
    outsiders_.push_back(site);
    return;
  }
  const auto number = static_cast<std::uint32_t>(visits_.size());
  const bool isUnusual = !site.unknownFlag.empty() || !site.unreadableStamp.empty();
  visits_.push_back(
      {.time = site.visited, .protocolFlag = site.protocolFlag, .isUnusual = isUnusual});
  if (isUnusual) unusual_.push_back({number, site.unknownFlag, site.unreadableStamp});
  Kept& kept = kept_[level];
  if (kept.firstVisit == kNoVisit) {
    kept.firstVisit = number;
  } else {
    visits_[kept.lastVisit].next = number;
  }
  kept.lastVisit = number;
}

void FolderTree::addDetails(const SiteDetailIndex& details) {
  std::set<std::string> outside;
  for (const SiteEntry& site : outsiders_) outside.insert(site.address);
  for (const auto& [address, kept] : details.all()) {
    if (place(address) == kNoNode && !outside.contains(address)) {
      outsiders_.push_back(levelAt(address));
    }
  }
}

// A node is always added after its parent.
void FolderTree::count() {
  for (auto level = static_cast<NodeId>(kept_.size()); level-- > 0;) {
    if (kept_[level].isKept) ++kept_[level].inBranch;
    if (level != tree_.root()) kept_[tree_.parent(level)].inBranch += kept_[level].inBranch;
  }
}

// The level of an address with records or details; kNoNode if the tree has no place for it.
NodeId FolderTree::place(std::string_view address) {
  NodeId level = kNoNode;
  try {
    level = tree_.addMissingLevels(addressLevels(address), kNoTag);
  } catch (const Failure&) {
    return kNoNode;
  }
  if (level == tree_.root()) return kNoNode;
  kept_.resize(tree_.size());
  kept_[level].isKept = true;
  return level;
}

}  // namespace quorrix
