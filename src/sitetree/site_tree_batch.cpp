#include <algorithm>
#include <span>

#include "platform/failure.h"
#include "platform/prefetch.h"
#include "sitetree/site_tree.h"

namespace quorrix {

void SiteTree::Batch::add(std::string_view siteAddress, char tag, std::uint64_t recordNumber) {
  if (siteAddress.size() > kMaxAddressLength) throw Failure(failure::kIndexOutOfRange);
  if (used_ == entries_.size()) flush();
  Entry& entry = entries_[used_];
  std::copy(siteAddress.begin(), siteAddress.end(), entry.characters.begin());
  entry.levels = addressLevels({entry.characters.data(), siteAddress.size()});
  entry.hashes = hashesOf(entry.levels);
  entry.tag = tag;
  entry.recordNumber = recordNumber;
  expectKeys(entry);
  ++used_;
}

void SiteTree::Batch::flush() {
  const std::span<Entry> collected = std::span(entries_).first(used_);
  used_ = 0;
  for (Entry& entry : collected) expectNode(entry);
  for (const Entry& entry : collected) expectComparison(entry);
  for (const Entry& entry : collected) {
    try {
      const NodeId node = tree_.addMissingLevels(entry.levels, entry.hashes, entry.tag);
      if (tree_.recordNumber(node) == 0) tree_.setRecordNumber(node, entry.recordNumber);
    } catch (...) {
      // Skipped: there may still be memory for the sites after it.
    }
  }
}

void SiteTree::Batch::expectKeys(const Entry& entry) const {
  for (std::size_t k = 0; k < entry.levels.count(); ++k) tree_.index_.expect(entry.hashes[k]);
}

void SiteTree::Batch::expectNode(Entry& entry) const {
  entry.likely = kNoNode;
  for (std::size_t k = entry.levels.count(); k > 0 && entry.likely == kNoNode; --k) {
    entry.likely = tree_.index_.find(entry.hashes[k - 1], [](NodeId) { return true; });
  }
  if (entry.likely != kNoNode) prefetch(&tree_.nodes_[entry.likely]);
}

void SiteTree::Batch::expectComparison(const Entry& entry) const {
  if (entry.likely == kNoNode) return;
  const Node& node = tree_.nodes_[entry.likely];
  prefetch(node.key);
  if (!node.children.empty()) prefetch(&node.children.back());
}

}  // namespace quorrix
